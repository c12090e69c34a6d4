// The settings store interface: SettingsStore, its roots, value types,
// results and access rights, and this platform's SQLite store.
#ifndef TOLVA_PLATFORM_SETTINGS_STORE_H_
#define TOLVA_PLATFORM_SETTINGS_STORE_H_

#include <cstdint>
#include <memory>
#include <string>

#include "tolva/export.h"

namespace tolva::platform {

using SettingsKey = std::uint32_t;  ///< an open key; 0 is none

/// The roots. HKEY_CLASSES_ROOT: the machine root's `SOFTWARE\Classes`.
inline constexpr SettingsKey kHkeyClassesRoot = 0x80000000;
/// HKEY_CURRENT_USER: the per-user store.
inline constexpr SettingsKey kHkeyCurrentUser = 0x80000001;
/// HKEY_LOCAL_MACHINE: the machine store.
inline constexpr SettingsKey kHkeyLocalMachine = 0x80000002;

/// Value type: a string.
inline constexpr std::uint32_t kRegSz = 1;
/// Value type: a string with %NAME% environment references.
inline constexpr std::uint32_t kRegExpandSz = 2;
/// Value type: a 32-bit number.
inline constexpr std::uint32_t kRegDword = 4;

/// Result: success.
inline constexpr long kSettingsOk = 0;
/// Result: the key or value does not exist.
inline constexpr long kSettingsNotFound = 2;
/// Result: the right asked for is not granted (a machine store opened by a user).
inline constexpr long kSettingsAccessDenied = 5;
/// Result: the key handle is 0 or not open.
inline constexpr long kSettingsInvalidHandle = 6;
/// Result: an argument is invalid (a key name too long, the root given to DeleteKey).
inline constexpr long kSettingsInvalidParameter = 87;
/// Result: an enumeration is past its last item.
inline constexpr long kSettingsNoMoreItems = 259;
/// Result: the store itself failed (unreadable, corrupt, out of space).
inline constexpr long kSettingsStoreFailed = 1016;

/// Access right: read values.
inline constexpr std::uint32_t kKeyQueryValue = 0x0001;
/// Access right: write values.
inline constexpr std::uint32_t kKeySetValue = 0x0002;
/// Access right: create sub-keys.
inline constexpr std::uint32_t kKeyCreateSubKey = 0x0004;
/// Access right: enumerate sub-keys.
inline constexpr std::uint32_t kKeyEnumerateSubKeys = 0x0008;
/// Access right: change notification.
inline constexpr std::uint32_t kKeyNotify = 0x0010;
/// Access right: create links.
inline constexpr std::uint32_t kKeyCreateLink = 0x0020;
/// The rights that need a writable store.
inline constexpr std::uint32_t kKeyWriteRights = kKeySetValue | kKeyCreateSubKey | kKeyCreateLink;

/// The longest key name (one level of a path), in bytes.
inline constexpr std::size_t kMaxKeyNameLength = 255;

/// The hierarchical settings store: roots, key paths (`Software\App\Section`) and named values of type
/// string, expandable string and 32-bit number.
///
/// Key and value names compare case-insensitively (ASCII letters; other bytes compare exactly) and keep the
/// spelling they were created with. Sub-keys enumerate in case-insensitive name order, stable while the key is
/// unchanged. In a key path `\` separates the levels; empty levels (a leading, trailing or doubled `\`) are
/// ignored, so "" is the root itself.
///
/// Every call returns a Windows error number, one of the kSettings results. Calls come from the host's thread;
/// an implementation may be shared by several components of one program.
class TOLVA_EXPORT SettingsStore {
 public:
  /// A store; implementations open their databases lazily.
  SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;
  /// Closes the store.
  virtual ~SettingsStore() = default;

  /// RegOpenKeyEx: opens the existing key `path` under `root` with the rights `access` and stores its handle
  /// in `key` (0 on failure). Asking for write rights (kKeyWriteRights) fails with 5 where the caller may not
  /// write the root's store. The caller closes the key with CloseKey.
  virtual long OpenKey(SettingsKey root, const std::string& path, std::uint32_t access, SettingsKey& key) = 0;
  /// RegCreateKeyEx: opens the key `path` under `root` with every right into `key`, creating it and any
  /// missing level above it; 5 where the store may not be written, 87 for a level longer than kMaxKeyNameLength.
  virtual long CreateKey(SettingsKey root, const std::string& path, SettingsKey& key) = 0;
  /// RegCloseKey: closes `key`.
  virtual long CloseKey(SettingsKey key) = 0;
  /// RegEnumKey: the name of sub-key `index` (0-based) of `key` in case-insensitive order into `name`, or 259
  /// past the last. Needs kKeyEnumerateSubKeys.
  virtual long EnumKey(SettingsKey key, std::uint32_t index, std::string& name) = 0;
  /// RegQueryValueEx: the `type` and raw `data` of the value `name` of `key` (strings without their
  /// terminator, numbers as 4 little-endian bytes). "" names the key's default value. Needs kKeyQueryValue.
  virtual long QueryValue(SettingsKey key, const std::string& name, std::uint32_t& type, std::string& data) = 0;
  /// RegEnumValue: the `name`, `type` and `data` of value `index` (0-based) of `key` in case-insensitive
  /// name order, or 259 past the last. Needs kKeyQueryValue.
  virtual long EnumValue(SettingsKey key, std::uint32_t index, std::string& name, std::uint32_t& type,
                         std::string& data) = 0;
  /// RegSetValueEx: stores the value `name` of `key` with `type` and `data`, replacing one of the same name.
  /// Needs kKeySetValue; each call is one durable transaction.
  virtual long SetValue(SettingsKey key, const std::string& name, std::uint32_t type, const std::string& data) = 0;

  /// The application-settings calls (GetSetting / SaveSetting / DeleteSetting) work on a `path` under the
  /// per-user root. GetString reads the string value `name` into `value` (2 when absent or not a string).
  virtual long GetString(const std::string& path, const std::string& name, std::string& value) = 0;
  /// Stores the string `value` as `name` at `path`, creating missing keys along the path; one durable
  /// transaction.
  virtual long SetString(const std::string& path, const std::string& name, const std::string& value) = 0;
  /// Deletes the value `name` at `path`.
  virtual long DeleteValue(const std::string& path, const std::string& name) = 0;
  /// Deletes the key `path` with everything below it (the root itself is refused with 87).
  virtual long DeleteKey(const std::string& path) = 0;
};

/// The settings store of this platform, kept in SQLite databases: the per-user root in `user_database`;
/// the machine root in `machine_database`, a database that only its owner may write: anyone else opens it
/// read only, and asking for write rights on it fails with 5. An empty path leaves that root without a store
/// (every open fails with 2). A database is opened on first use and created on the first write, never by a
/// read; its directory is not created. A file that cannot be opened, is unreadable or corrupt makes that root
/// fail (2 on reads, 1016 on writes) and is left untouched. Writes are one transaction each in WAL mode with a
/// busy time-out, so several processes may write at once and a process that is killed never loses a write
/// that returned 0.
TOLVA_EXPORT std::shared_ptr<SettingsStore> NewSettingsDatabase(const std::string& user_database,
                                                                const std::string& machine_database);

/// The default per-user database: $TOLVA_SETTINGS_DB, else $XDG_CONFIG_HOME/tolva/settings.db
/// (XDG_CONFIG_HOME defaulting to ~/.config; its missing directories are made, private to the user, on the
/// first write).
TOLVA_EXPORT std::string DefaultUserSettingsDatabase();
/// The default machine database: $TOLVA_MACHINE_SETTINGS_DB, else /etc/tolva/settings.db.
TOLVA_EXPORT std::string DefaultMachineSettingsDatabase();

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_SETTINGS_STORE_H_
