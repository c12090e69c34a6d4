// An in-memory settings store for unit tests: the per-user and machine
// roots as maps, case-insensitive names, enumeration in folded-name order,
// a root that can be made read-only, injected failures and a count of the
// keys left open.
#ifndef TOLVA_TESTS_FAKES_FAKE_SETTINGS_STORE_H_
#define TOLVA_TESTS_FAKES_FAKE_SETTINGS_STORE_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "tolva/platform/settings_store.h"

namespace tolva::fakes {

class FakeSettingsStore : public platform::SettingsStore {
 public:
  struct Value {
    std::uint32_t type = platform::kRegSz;
    std::string data;
  };
  enum Root { kUser = 0, kMachine = 1 };

  // Test set-up and inspection, bypassing access checks.
  void Put(Root root, const std::string& path, const std::string& name, std::uint32_t type, const std::string& data);
  void PutString(const std::string& user_path, const std::string& name, const std::string& data) {
    Put(kUser, user_path, name, platform::kRegSz, data);
  }
  void AddKey(Root root, const std::string& path);
  bool HasKey(Root root, const std::string& path) const;
  std::optional<Value> Find(Root root, const std::string& path, const std::string& name) const;
  std::optional<std::string> FindString(const std::string& user_path, const std::string& name) const;
  std::size_t open_keys() const { return open_.size(); }

  bool user_writable = true;
  bool machine_writable = true;
  bool fail_reads = false;   // every read fails with 1016
  bool fail_writes = false;  // every write fails with 1016 and changes nothing
  int writes = 0;            // write calls made, failed ones included
  int reads = 0;

  long OpenKey(platform::SettingsKey root, const std::string& path, std::uint32_t access,
               platform::SettingsKey& key) override;
  long CreateKey(platform::SettingsKey root, const std::string& path, platform::SettingsKey& key) override;
  long CloseKey(platform::SettingsKey key) override;
  long EnumKey(platform::SettingsKey key, std::uint32_t index, std::string& name) override;
  long QueryValue(platform::SettingsKey key, const std::string& name, std::uint32_t& type, std::string& data) override;
  long EnumValue(platform::SettingsKey key, std::uint32_t index, std::string& name, std::uint32_t& type,
                 std::string& data) override;
  long SetValue(platform::SettingsKey key, const std::string& name, std::uint32_t type,
                const std::string& data) override;
  long GetString(const std::string& path, const std::string& name, std::string& value) override;
  long SetString(const std::string& path, const std::string& name, const std::string& value) override;
  long DeleteValue(const std::string& path, const std::string& name) override;
  long DeleteKey(const std::string& path) override;

 private:
  struct Open {
    Root root;
    std::string path;  // folded
    std::uint32_t access;
  };
  static std::string Fold(const std::string& s);
  static std::string Normal(const std::string& path);
  bool Locate(platform::SettingsKey root, const std::string& path, Root& where, std::string& folded) const;
  bool Writable(Root root) const { return root == kUser ? user_writable : machine_writable; }
  void Ensure(Root root, const std::string& normal_path);

  // (root, folded path) -> spelling of the last level; the root itself is implicit.
  std::map<std::pair<int, std::string>, std::string> keys_;
  // (root, folded path, folded name) -> value, and the name as first spelt
  std::map<std::tuple<int, std::string, std::string>, Value> values_;
  std::map<std::tuple<int, std::string, std::string>, std::string> value_names_;
  std::map<platform::SettingsKey, Open> open_;
  platform::SettingsKey next_ = 1;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_SETTINGS_STORE_H_
