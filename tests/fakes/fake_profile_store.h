// An in-memory profile store for unit tests: each profile is a byte string
// in a map, read and edited with the same line model as the real service,
// so members that use profile values can be tested without touching disk.
#ifndef TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_
#define TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_

#include <map>
#include <string>

#include "tolva/platform/profile_store.h"

namespace tolva::fakes {

class FakeProfileStore : public platform::ProfileStore {
 public:
  // Profiles by path ("\" turned to "/"; a bare name is placed in windows_directory).
  std::map<std::string, std::string> files;
  std::string windows_directory = "/windows";
  bool fail_writes = false;  // every write fails and changes nothing
  int writes = 0;

  std::string Resolve(const std::string& file) const;

  std::size_t GetString(const std::string& section, const std::string& key, const std::string& default_value,
                        std::string& out, std::size_t buffer_size, const std::string& file) override;
  bool WriteString(const std::string& section, const std::string& key, const std::string* value,
                   const std::string& file) override;
  std::size_t GetSystemString(const std::string& section, const std::string& key, const std::string& default_value,
                              std::string& out, std::size_t buffer_size) override;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_PROFILE_STORE_H_
