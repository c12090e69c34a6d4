// An in-memory profile store for unit tests: each profile is a byte string
// in a map, read and edited with the same line model as the real service,
// so members that use profile values can be tested without touching disk.
#ifndef TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_
#define TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_

#include <map>
#include <string>

#include "platform/linux/profiles/profile_file.h"
#include "tolva/platform/file_patterns.h"
#include "tolva/platform/profile_store.h"

namespace tolva::fakes {

class FakeProfileStore : public platform::ProfileStore {
 public:
  // Profiles by path ("\" turned to "/"; a bare name is placed in windows_directory).
  std::map<std::string, std::string> files;
  std::string windows_directory = "/windows";
  int writes = 0;

  std::string Resolve(const std::string& file) const {
    const std::string p = platform::ToPlatformPath(file);
    return !p.empty() && p.find('/') == std::string::npos ? windows_directory + "/" + p : p;
  }

  std::size_t GetString(const std::string& section, const std::string& key, const std::string& default_value,
                        std::string& out, std::size_t buffer_size, const std::string& file) override {
    const std::size_t room = buffer_size ? buffer_size - 1 : 0;
    auto it = files.find(Resolve(file));
    const tolva::platform::posix::ProfileFile parsed(it == files.end() ? std::string() : it->second);
    const auto found = parsed.Find(section, key);
    out.assign(found ? found->substr(0, room)
                     : tolva::platform::posix::TrimProfileBlanks(default_value).substr(0, room));
    return out.size();
  }

  bool WriteString(const std::string& section, const std::string& key, const std::string* value,
                   const std::string& file) override {
    ++writes;
    auto it = files.find(Resolve(file));
    if (it == files.end() && !value) return true;
    bool changed = false;
    std::string updated = tolva::platform::posix::ProfileFile(it == files.end() ? std::string() : it->second)
                              .WithValue(section, key, value, changed);
    if (changed) files[Resolve(file)] = std::move(updated);
    return true;
  }

  std::size_t GetSystemString(const std::string& section, const std::string& key, const std::string& default_value,
                              std::string& out, std::size_t buffer_size) override {
    return GetString(section, key, default_value, out, buffer_size, windows_directory + "/win.ini");
  }
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_
