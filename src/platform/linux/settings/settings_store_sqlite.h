// The settings store of this platform: the per-user and machine roots, each
// in its own SQLite database, with Windows-style open keys and sub-key
// enumeration over a snapshot that is stable while the key is unchanged.
#ifndef TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_STORE_SQLITE_H_
#define TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_STORE_SQLITE_H_

#include <cstdint>
#include <map>
#include <mutex>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/settings/settings_database.h"
#include "tolva/platform/settings_store.h"

namespace tolva::platform::posix {

class SqliteSettingsStore : public SettingsStore {
 public:
  SqliteSettingsStore(SettingsDatabase::Options user, SettingsDatabase::Options machine) noexcept;

  long OpenKey(SettingsKey root, const std::string& path, std::uint32_t access, SettingsKey& key) override;
  long CreateKey(SettingsKey root, const std::string& path, SettingsKey& key) override;
  long CloseKey(SettingsKey key) override;
  long EnumKey(SettingsKey key, std::uint32_t index, std::string& name) override;
  long QueryValue(SettingsKey key, const std::string& name, std::uint32_t& type, std::string& data) override;
  long EnumValue(SettingsKey key, std::uint32_t index, std::string& name, std::uint32_t& type,
                 std::string& data) override;
  long SetValue(SettingsKey key, const std::string& name, std::uint32_t type, const std::string& data) override;

  long GetString(const std::string& path, const std::string& name, std::string& value) override;
  long SetString(const std::string& path, const std::string& name, const std::string& value) override;
  long DeleteValue(const std::string& path, const std::string& name) override;
  long DeleteKey(const std::string& path) override;

 private:
  struct Place {
    SettingsDatabase* db = nullptr;
    std::string path;  // normal
  };
  struct OpenKeyState {
    Place place;
    std::uint32_t access = 0;
    // The sub-key names last enumerated, and the database version they were read at.
    std::vector<std::string> names;
    std::uint64_t names_version = 0;
    bool names_valid = false;
  };

  // Where `path` below `root` (a root constant or an open key) lives; false
  // for an unknown root.
  bool Locate(SettingsKey root, const std::string& path, Place& place);
  OpenKeyState* Find(SettingsKey key);
  SettingsKey Register(Place place, std::uint32_t access);

  std::mutex mu_;
  SettingsDatabase user_;
  SettingsDatabase machine_;
  std::map<SettingsKey, OpenKeyState> open_;
  SettingsKey next_key_ = 1;
};

// The service of this folder, as linux_services.cc assembles it.
// The per-user settings database under $XDG_CONFIG_HOME (default ~/.config).
std::shared_ptr<SettingsStore> NewSettingsStore();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_STORE_SQLITE_H_
