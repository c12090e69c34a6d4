// The hierarchical settings store: roots, key paths ("Software\App\Section")
// and named values of type string, expandable string and 32-bit number.
// Key and value names compare case-insensitively; sub-keys enumerate in
// case-insensitive name order. Return values are Windows error numbers:
// 0 success, 2 not found, 5 access denied, 259 no more items.
#ifndef TOLVA_PLATFORM_SETTINGS_STORE_H_
#define TOLVA_PLATFORM_SETTINGS_STORE_H_

#include <cstdint>
#include <string>

namespace tolva::platform {

using SettingsKey = std::uint32_t;  // an open key; 0 is none

inline constexpr SettingsKey kHkeyClassesRoot = 0x80000000;
inline constexpr SettingsKey kHkeyCurrentUser = 0x80000001;
inline constexpr SettingsKey kHkeyLocalMachine = 0x80000002;

inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegExpandSz = 2;
inline constexpr std::uint32_t kRegDword = 4;

inline constexpr long kSettingsOk = 0;
inline constexpr long kSettingsNotFound = 2;
inline constexpr long kSettingsAccessDenied = 5;
inline constexpr long kSettingsNoMoreItems = 259;

// Access masks.
inline constexpr std::uint32_t kKeyQueryValue = 0x0001;
inline constexpr std::uint32_t kKeySetValue = 0x0002;
inline constexpr std::uint32_t kKeyCreateSubKey = 0x0004;
inline constexpr std::uint32_t kKeyEnumerateSubKeys = 0x0008;

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // RegOpenKeyEx: opens an existing key under a root; asking for write
  // access (set value / create sub-key) fails with 5 where the caller may not write.
  virtual long OpenKey(SettingsKey root, const std::string& path, std::uint32_t access, SettingsKey& key) = 0;
  virtual long CloseKey(SettingsKey key) = 0;
  // RegEnumKey: the name of sub-key `index`, or 259 past the last.
  virtual long EnumKey(SettingsKey key, std::uint32_t index, std::string& name) = 0;
  // RegQueryValueEx: type and raw data (strings without their terminator,
  // numbers as 4 little-endian bytes).
  virtual long QueryValue(SettingsKey key, const std::string& name, std::uint32_t& type, std::string& data) = 0;

  // The application-settings calls (GetSetting / SaveSetting /
  // DeleteSetting) on a path under the per-user root; SetString creates
  // missing keys along the path.
  virtual long GetString(const std::string& path, const std::string& name, std::string& value) = 0;
  virtual long SetString(const std::string& path, const std::string& name, const std::string& value) = 0;
  virtual long DeleteValue(const std::string& path, const std::string& name) = 0;
  // Deletes the key with everything below it.
  virtual long DeleteKey(const std::string& path) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_SETTINGS_STORE_H_
