#include "fakes/fake_profile_store.h"

#include "platform/linux/profiles/profile_file.h"
#include "tolva/platform/file_patterns.h"

namespace tolva::fakes {

std::string FakeProfileStore::Resolve(const std::string& file) const {
  std::string p = platform::ToPlatformPath(file);
  if (!p.empty() && p.find('/') == std::string::npos) p = windows_directory + "/" + p;
  return p;
}

std::size_t FakeProfileStore::GetString(const std::string& section, const std::string& key,
                                        const std::string& default_value, std::string& out, std::size_t buffer_size,
                                        const std::string& file) {
  const std::size_t room = buffer_size ? buffer_size - 1 : 0;
  auto it = files.find(Resolve(file));
  if (it != files.end()) {
    const platform::posix::ProfileFile parsed(it->second);
    if (auto v = parsed.Find(section, key)) {
      out.assign(v->substr(0, room));
      return out.size();
    }
  }
  out.assign(platform::posix::TrimProfileBlanks(default_value).substr(0, room));
  return out.size();
}

bool FakeProfileStore::WriteString(const std::string& section, const std::string& key, const std::string* value,
                                   const std::string& file) {
  ++writes;
  if (fail_writes) return false;
  const std::string path = Resolve(file);
  auto it = files.find(path);
  if (it == files.end() && !value) return true;
  bool changed = false;
  std::string updated = platform::posix::ProfileFile(it == files.end() ? std::string() : it->second)
                            .WithValue(section, key, value, changed);
  if (changed) files[path] = std::move(updated);
  return true;
}

std::size_t FakeProfileStore::GetSystemString(const std::string& section, const std::string& key,
                                              const std::string& default_value, std::string& out,
                                              std::size_t buffer_size) {
  return GetString(section, key, default_value, out, buffer_size, windows_directory + "/win.ini");
}

}  // namespace tolva::fakes
