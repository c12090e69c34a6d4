#include "platform/linux/settings/settings_store_sqlite.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "platform/linux/settings/settings_key_path.h"

namespace tolva::platform::posix {

namespace {

constexpr const char* kClassesPath = "SOFTWARE\\Classes";
// Handles stay below the root constants so the two can never be confused.
constexpr SettingsKey kLastHandle = 0x7fffffff;

std::string Environment(const char* name) {
  const char* v = std::getenv(name);
  return v ? std::string(v) : std::string();
}

std::string HomeDirectory() {
  std::string home = Environment("HOME");
  if (!home.empty()) return home;
  if (const passwd* pw = ::getpwuid(::geteuid()); pw && pw->pw_dir) return pw->pw_dir;
  return {};
}

// XDG_CONFIG_HOME only counts when it is absolute.
std::string ConfigHome() {
  const std::string xdg = Environment("XDG_CONFIG_HOME");
  if (!xdg.empty() && xdg[0] == '/') return xdg;
  const std::string home = HomeDirectory();
  return home.empty() ? std::string() : home + "/.config";
}

SettingsDatabase::Options UserOptions(const std::string& path, bool make_directories) {
  SettingsDatabase::Options o;
  o.path = path;
  o.file_mode = 0600;
  o.make_directories = make_directories;
  o.wal = true;
  return o;
}

SettingsDatabase::Options MachineOptions(const std::string& path) {
  SettingsDatabase::Options o;
  o.path = path;
  o.file_mode = 0644;  // everyone reads, only the owner writes
  o.make_directories = false;
  o.wal = false;
  return o;
}

}  // namespace

SqliteSettingsStore::SqliteSettingsStore(SettingsDatabase::Options user, SettingsDatabase::Options machine) noexcept
    : user_(std::move(user)), machine_(std::move(machine)) {}

bool SqliteSettingsStore::Locate(SettingsKey root, const std::string& path, Place& place) {
  const std::string sub = NormalKeyPath(path);
  switch (root) {
    case kHkeyCurrentUser:
      place = {&user_, sub};
      return true;
    case kHkeyLocalMachine:
      place = {&machine_, sub};
      return true;
    case kHkeyClassesRoot:
      place = {&machine_, JoinKeyPath(kClassesPath, sub)};
      return true;
    default:
      break;
  }
  const OpenKeyState* base = Find(root);
  if (!base) return false;
  place = {base->place.db, JoinKeyPath(base->place.path, sub)};
  return true;
}

SqliteSettingsStore::OpenKeyState* SqliteSettingsStore::Find(SettingsKey key) {
  auto it = open_.find(key);
  return it == open_.end() ? nullptr : &it->second;
}

SettingsKey SqliteSettingsStore::Register(Place place, std::uint32_t access) {
  SettingsKey key = next_key_;
  while (open_.count(key)) key = key == kLastHandle ? 1 : key + 1;
  next_key_ = key == kLastHandle ? 1 : key + 1;
  OpenKeyState& state = open_[key];
  state.place = std::move(place);
  state.access = access;
  return key;
}

long SqliteSettingsStore::OpenKey(SettingsKey root, const std::string& path, std::uint32_t access, SettingsKey& key) {
  std::lock_guard<std::mutex> lock(mu_);
  key = 0;
  Place place;
  if (!Locate(root, path, place)) return kSettingsInvalidHandle;
  if (const long rc = place.db->KeyExists(place.path); rc != kSettingsOk) return rc;
  if ((access & kKeyWriteRights) != 0)
    if (const long rc = place.db->CanWrite(); rc != kSettingsOk) return rc;
  key = Register(std::move(place), access);
  return kSettingsOk;
}

long SqliteSettingsStore::CreateKey(SettingsKey root, const std::string& path, SettingsKey& key) {
  std::lock_guard<std::mutex> lock(mu_);
  key = 0;
  Place place;
  if (!Locate(root, path, place)) return kSettingsInvalidHandle;
  if (const long rc = place.db->EnsureKey(place.path); rc != kSettingsOk) return rc;
  key = Register(std::move(place), 0x3f);
  return kSettingsOk;
}

long SqliteSettingsStore::CloseKey(SettingsKey key) {
  std::lock_guard<std::mutex> lock(mu_);
  return open_.erase(key) ? kSettingsOk : kSettingsInvalidHandle;
}

long SqliteSettingsStore::EnumKey(SettingsKey key, std::uint32_t index, std::string& name) {
  std::lock_guard<std::mutex> lock(mu_);
  OpenKeyState* state = Find(key);
  if (!state) return kSettingsInvalidHandle;
  if ((state->access & kKeyEnumerateSubKeys) == 0) return kSettingsAccessDenied;
  // One query per enumeration rather than one per index: reading index i
  // with OFFSET would make listing n sub-keys cost n squared. Index 0 starts
  // a fresh enumeration; later indexes read the same list while this
  // process has not changed the database, so the order stays stable.
  const std::uint64_t version = state->place.db->Version();
  if (!state->names_valid || index == 0 || version != state->names_version) {
    const long rc = state->place.db->SubKeys(state->place.path, state->names);
    state->names_valid = rc == kSettingsOk;
    state->names_version = state->place.db->Version();
    if (rc != kSettingsOk && rc != kSettingsNotFound) return rc;
  }
  if (index >= state->names.size()) return kSettingsNoMoreItems;
  name = state->names[index];
  return kSettingsOk;
}

long SqliteSettingsStore::QueryValue(SettingsKey key, const std::string& name, std::uint32_t& type, std::string& data) {
  std::lock_guard<std::mutex> lock(mu_);
  OpenKeyState* state = Find(key);
  if (!state) return kSettingsInvalidHandle;
  if ((state->access & kKeyQueryValue) == 0) return kSettingsAccessDenied;
  return state->place.db->Get(state->place.path, name, type, data);
}

long SqliteSettingsStore::EnumValue(SettingsKey key, std::uint32_t index, std::string& name, std::uint32_t& type,
                                    std::string& data) {
  std::lock_guard<std::mutex> lock(mu_);
  OpenKeyState* state = Find(key);
  if (!state) return kSettingsInvalidHandle;
  if ((state->access & kKeyQueryValue) == 0) return kSettingsAccessDenied;
  return state->place.db->ValueAt(state->place.path, index, name, type, data);
}

long SqliteSettingsStore::SetValue(SettingsKey key, const std::string& name, std::uint32_t type,
                                   const std::string& data) {
  std::lock_guard<std::mutex> lock(mu_);
  OpenKeyState* state = Find(key);
  if (!state) return kSettingsInvalidHandle;
  if ((state->access & kKeySetValue) == 0) return kSettingsAccessDenied;
  return state->place.db->Set(state->place.path, name, type, data);
}

long SqliteSettingsStore::GetString(const std::string& path, const std::string& name, std::string& value) {
  std::lock_guard<std::mutex> lock(mu_);
  std::uint32_t type = 0;
  std::string data;
  const long rc = user_.Get(NormalKeyPath(path), name, type, data);
  if (rc != kSettingsOk) return rc;
  if (type != kRegSz && type != kRegExpandSz) return kSettingsNotFound;
  value = std::move(data);
  return kSettingsOk;
}

long SqliteSettingsStore::SetString(const std::string& path, const std::string& name, const std::string& value) {
  std::lock_guard<std::mutex> lock(mu_);
  return user_.Set(NormalKeyPath(path), name, kRegSz, value);
}

long SqliteSettingsStore::DeleteValue(const std::string& path, const std::string& name) {
  std::lock_guard<std::mutex> lock(mu_);
  return user_.DeleteValue(NormalKeyPath(path), name);
}

long SqliteSettingsStore::DeleteKey(const std::string& path) {
  std::lock_guard<std::mutex> lock(mu_);
  return user_.DeleteTree(NormalKeyPath(path));
}

std::string UserDatabasePath() {
  const std::string given = Environment("TOLVA_SETTINGS_DB");
  if (!given.empty()) return given;
  const std::string config = ConfigHome();
  return config.empty() ? std::string() : config + "/tolva/settings.db";
}

std::string MachineDatabasePath() {
  const std::string given = Environment("TOLVA_MACHINE_SETTINGS_DB");
  return given.empty() ? std::string("/etc/tolva/settings.db") : given;
}

std::shared_ptr<SettingsStore> NewSettingsStore() {
  // Only the default location gets its directories made; a path the host or
  // the environment names is used as it stands.
  const bool is_default = Environment("TOLVA_SETTINGS_DB").empty();
  return std::make_shared<SqliteSettingsStore>(UserOptions(UserDatabasePath(), is_default),
                                               MachineOptions(MachineDatabasePath()));
}

}  // namespace tolva::platform::posix

namespace tolva::platform {

std::string DefaultUserSettingsDatabase() {
  return posix::UserDatabasePath();
}
std::string DefaultMachineSettingsDatabase() {
  return posix::MachineDatabasePath();
}

std::shared_ptr<SettingsStore> NewSettingsDatabase(const std::string& user_database,
                                                   const std::string& machine_database) {
  try {
    return std::make_shared<posix::SqliteSettingsStore>(posix::UserOptions(user_database, false),
                                                        posix::MachineOptions(machine_database));
  } catch (...) {
    return nullptr;
  }
}

}  // namespace tolva::platform
