// One SQLite database file holding one root of the settings store: a table
// of keys (by normal path) and a table of values (by key path and name).
// Opened on first use, created by the first write; prepared statements are
// kept for the life of the connection.
#ifndef TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_DATABASE_H_
#define TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_DATABASE_H_

#include <cstdint>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace tolva::platform::posix {

class SettingsDatabase {
 public:
  struct Options {
    std::string path;
    // Files are created with this mode (the user's database is private).
    unsigned file_mode = 0600;
    // The default per-user location may not exist yet on a fresh account.
    bool make_directories = false;
    // WAL for the per-user database. The machine database keeps a rollback
    // journal: its readers may not write next to it, and a WAL database
    // cannot be read without its shared-memory file.
    bool wal = true;
  };

  explicit SettingsDatabase(Options options) noexcept;
  ~SettingsDatabase();
  SettingsDatabase(const SettingsDatabase&) = delete;
  SettingsDatabase& operator=(const SettingsDatabase&) = delete;

  // All paths below are normal key paths ("" is the root). Results are the
  // store's error numbers (see settings_store.h).
  long KeyExists(const std::string& path);
  // 0 when this process may write the database (creating it if needed).
  long CanWrite();
  long EnsureKey(const std::string& path);
  long Get(const std::string& path, const std::string& name, std::uint32_t& type, std::string& data);
  // The value at `index` of `path` in case-insensitive name order; 259 past the last.
  long ValueAt(const std::string& path, std::uint32_t index, std::string& name, std::uint32_t& type, std::string& data);
  // Creates missing keys along `path`, then stores the value; one transaction.
  long Set(const std::string& path, const std::string& name, std::uint32_t type, const std::string& data);
  long DeleteValue(const std::string& path, const std::string& name);
  long DeleteTree(const std::string& path);
  // The names of the sub-keys of `path` in case-insensitive order.
  long SubKeys(const std::string& path, std::vector<std::string>& names);
  // Changes whenever this connection changed the database (0 while it is not open).
  std::uint64_t Version();

 private:
  enum class Need { kRead, kWrite };
  class Transaction;

  // 0 and an open connection, or the reason there is none.
  long Open(Need need);
  long OpenFile(bool create);
  void Close() noexcept;
  // Switches a writable database to WAL and makes its tables; an SQLite code.
  int SetUp();
  bool Prepare();
  long EnsureKeyLocked(const std::string& path);
  long Step(sqlite3_stmt* stmt);

  Options options_;
  sqlite3* db_ = nullptr;
  bool read_only_ = false;
  sqlite3_stmt* key_exists_ = nullptr;
  sqlite3_stmt* key_insert_ = nullptr;
  sqlite3_stmt* value_get_ = nullptr;
  sqlite3_stmt* value_set_ = nullptr;
  sqlite3_stmt* value_delete_ = nullptr;
  sqlite3_stmt* tree_keys_delete_ = nullptr;
  sqlite3_stmt* tree_values_delete_ = nullptr;
  sqlite3_stmt* children_ = nullptr;
  sqlite3_stmt* value_at_ = nullptr;
  sqlite3_stmt* begin_ = nullptr;
  sqlite3_stmt* commit_ = nullptr;
  sqlite3_stmt* rollback_ = nullptr;
};

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_DATABASE_H_
