#include "platform/linux/settings/settings_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/settings/settings_key_path.h"
#include "tolva/platform/settings_store.h"

namespace tolva::platform::posix {

namespace {

// Long enough for another process's transaction of a 1 MB value to finish,
// short enough that a wedged writer does not freeze the host for good.
constexpr int kBusyTimeoutMs = 10000;

constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS settings_keys("
    "  path TEXT NOT NULL PRIMARY KEY COLLATE NOCASE,"
    "  parent TEXT NOT NULL COLLATE NOCASE,"
    "  name TEXT NOT NULL) WITHOUT ROWID;"
    "CREATE INDEX IF NOT EXISTS settings_keys_by_parent ON settings_keys(parent, name COLLATE NOCASE);"
    "CREATE TABLE IF NOT EXISTS settings_values("
    "  path TEXT NOT NULL COLLATE NOCASE,"
    "  name TEXT NOT NULL COLLATE NOCASE,"
    "  type INTEGER NOT NULL,"
    "  data BLOB NOT NULL,"
    "  PRIMARY KEY(path, name)) WITHOUT ROWID;";

// The sub-tree of ?1: the key itself and every path that starts with ?1 "\".
// "\" and "]" are neighbours and no letter folds between them, so the range
// holds exactly the descendants under the case-insensitive collation.
constexpr const char* kTreeKeysDelete =
    "DELETE FROM settings_keys WHERE path = ?1 OR (path >= ?1 || '\\' AND path < ?1 || ']')";
constexpr const char* kTreeValuesDelete =
    "DELETE FROM settings_values WHERE path = ?1 OR (path >= ?1 || '\\' AND path < ?1 || ']')";

long StoreError(int rc) {
  switch (rc & 0xff) {
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return kSettingsAccessDenied;
    default:
      return kSettingsStoreFailed;
  }
}

// Resets a statement when the scope that used it ends, on every path.
class Use {
 public:
  explicit Use(sqlite3_stmt* stmt) noexcept : stmt_(stmt) {}
  ~Use() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

  void Text(int i, const std::string& s) {
    sqlite3_bind_text(stmt_, i, s.data(), static_cast<int>(s.size()), SQLITE_STATIC);
  }
  void Blob(int i, const std::string& s) {
    // A zero-length blob still binds as a blob, not as NULL.
    sqlite3_bind_blob(stmt_, i, s.empty() ? "" : s.data(), static_cast<int>(s.size()), SQLITE_STATIC);
  }
  void Int(int i, std::int64_t v) { sqlite3_bind_int64(stmt_, i, v); }
  std::string Column(int i) const {
    const void* p = sqlite3_column_blob(stmt_, i);
    const int n = sqlite3_column_bytes(stmt_, i);
    return p && n > 0 ? std::string(static_cast<const char*>(p), static_cast<std::size_t>(n)) : std::string();
  }

 private:
  sqlite3_stmt* stmt_;
};

void MakeDirectories(const std::string& file) {
  const std::size_t slash = file.find_last_of('/');
  if (slash == std::string::npos || slash == 0) return;
  const std::string dir = file.substr(0, slash);
  for (std::size_t i = 1; i <= dir.size(); ++i)
    if (i == dir.size() || dir[i] == '/') ::mkdir(dir.substr(0, i).c_str(), 0700);
}

}  // namespace

// A write transaction taken at once (BEGIN IMMEDIATE), so that two writers
// queue on the busy time-out instead of failing when one upgrades a read
// lock; rolled back unless committed.
class SettingsDatabase::Transaction {
 public:
  explicit Transaction(SettingsDatabase& db) : db_(db) { rc_ = db_.Step(db_.begin_); }
  ~Transaction() {
    if (rc_ == kSettingsOk && !done_) db_.Step(db_.rollback_);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  long status() const noexcept { return rc_; }
  long Commit() {
    done_ = true;
    return db_.Step(db_.commit_);
  }

 private:
  SettingsDatabase& db_;
  long rc_ = kSettingsOk;
  bool done_ = false;
};

SettingsDatabase::SettingsDatabase(Options options) noexcept : options_(std::move(options)) {}

SettingsDatabase::~SettingsDatabase() {
  Close();
}

void SettingsDatabase::Close() noexcept {
  for (sqlite3_stmt** s : {&key_exists_, &key_insert_, &value_get_, &value_set_, &value_delete_, &tree_keys_delete_,
                           &tree_values_delete_, &children_, &value_at_, &begin_, &commit_, &rollback_}) {
    sqlite3_finalize(*s);
    *s = nullptr;
  }
  if (db_) sqlite3_close_v2(db_);
  db_ = nullptr;
  read_only_ = false;
}

long SettingsDatabase::Open(Need need) {
  if (!db_) {
    if (options_.path.empty()) return kSettingsNotFound;
    struct stat st;
    const bool exists = ::stat(options_.path.c_str(), &st) == 0;
    // A read never creates the database: a host that only reads leaves no trace.
    if (!exists && need == Need::kRead) return kSettingsNotFound;
    if (const long rc = OpenFile(!exists); rc != kSettingsOk) return rc;
  }
  if (need == Need::kWrite && read_only_) return kSettingsAccessDenied;
  return kSettingsOk;
}

long SettingsDatabase::OpenFile(bool create) {
  if (create) {
    if (options_.make_directories) MakeDirectories(options_.path);
    const int fd = ::open(options_.path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, options_.file_mode);
    if (fd < 0) return errno == EACCES || errno == EROFS || errno == EPERM ? kSettingsAccessDenied : kSettingsNotFound;
    ::close(fd);
  }
  const bool writable = ::faccessat(AT_FDCWD, options_.path.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
  const int flags = (writable ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(options_.path.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
    Close();
    return kSettingsStoreFailed;
  }
  sqlite3_busy_timeout(db_, kBusyTimeoutMs);
  read_only_ = !writable || sqlite3_db_readonly(db_, "main") == 1;
  const bool ok = read_only_ || SetUp() == SQLITE_OK;
  // A corrupt file fails here, before anything was written to it.
  if (!ok || !Prepare()) {
    Close();
    return kSettingsStoreFailed;
  }
  return kSettingsOk;
}

int SettingsDatabase::SetUp() {
  // Two processes opening a new database at once race to switch it to WAL
  // and to create its tables. Where waiting could deadlock, SQLite answers
  // the loser "database is locked" at once instead of waiting on the busy
  // time-out; the loser tries again, for as long as that time-out, rather
  // than failing the save that opened the database.
  constexpr int kRetryMs = 5;
  for (int waited = 0;; waited += kRetryMs) {
    int rc = SQLITE_OK;
    // synchronous=NORMAL in WAL mode: a commit is in the log before the call
    // returns, so killing the process loses nothing acknowledged; only a
    // power cut may drop the last commits, never corrupt the file.
    if (options_.wal) rc = sqlite3_exec(db_, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) rc = sqlite3_exec(db_, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
    // The tables are made in a write transaction taken at once, which waits
    // its turn instead of failing when another process made them first.
    if (rc == SQLITE_OK) rc = sqlite3_exec(db_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) rc = sqlite3_exec(db_, kSchema, nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) rc = sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr);
    if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    if ((rc & 0xff) != SQLITE_BUSY || waited >= kBusyTimeoutMs) return rc;
    ::usleep(kRetryMs * 1000);
  }
}

bool SettingsDatabase::Prepare() {
  struct {
    sqlite3_stmt** stmt;
    const char* sql;
  } const all[] = {
      {&key_exists_, "SELECT 1 FROM settings_keys WHERE path = ?1"},
      {&key_insert_, "INSERT OR IGNORE INTO settings_keys(path, parent, name) VALUES(?1, ?2, ?3)"},
      {&value_get_, "SELECT type, data FROM settings_values WHERE path = ?1 AND name = ?2"},
      {&value_set_,
       "INSERT INTO settings_values(path, name, type, data) VALUES(?1, ?2, ?3, ?4) "
       "ON CONFLICT(path, name) DO UPDATE SET type = excluded.type, data = excluded.data"},
      {&value_delete_, "DELETE FROM settings_values WHERE path = ?1 AND name = ?2"},
      {&tree_keys_delete_, kTreeKeysDelete},
      {&tree_values_delete_, kTreeValuesDelete},
      {&children_, "SELECT name FROM settings_keys WHERE parent = ?1 ORDER BY name COLLATE NOCASE, name"},
      {&value_at_,
       "SELECT name, type, data FROM settings_values WHERE path = ?1 ORDER BY name COLLATE NOCASE, name "
       "LIMIT 1 OFFSET ?2"},
      {&begin_, "BEGIN IMMEDIATE"},
      {&commit_, "COMMIT"},
      {&rollback_, "ROLLBACK"},
  };
  for (const auto& s : all)
    if (sqlite3_prepare_v3(db_, s.sql, -1, SQLITE_PREPARE_PERSISTENT, s.stmt, nullptr) != SQLITE_OK) return false;
  return true;
}

long SettingsDatabase::Step(sqlite3_stmt* stmt) {
  const int rc = sqlite3_step(stmt);
  if (rc == SQLITE_ROW || rc == SQLITE_DONE) return kSettingsOk;
  const long err = StoreError(rc);
  sqlite3_reset(stmt);
  return err;
}

long SettingsDatabase::KeyExists(const std::string& path) {
  if (path.empty()) return kSettingsOk;  // the root always exists
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc;
  Use use(key_exists_);
  use.Text(1, path);
  const int rc = sqlite3_step(key_exists_);
  if (rc == SQLITE_ROW) return kSettingsOk;
  return rc == SQLITE_DONE ? kSettingsNotFound : StoreError(rc);
}

long SettingsDatabase::CanWrite() {
  return Open(Need::kWrite);
}

long SettingsDatabase::EnsureKeyLocked(const std::string& path) {
  if (path.empty()) return kSettingsOk;
  {
    Use use(key_exists_);
    use.Text(1, path);
    const int rc = sqlite3_step(key_exists_);
    if (rc == SQLITE_ROW) return kSettingsOk;
    if (rc != SQLITE_DONE) return StoreError(rc);
  }
  const std::vector<std::string_view> levels = KeyLevels(path);
  for (std::string_view level : levels)
    if (level.size() > kMaxKeyNameLength) return kSettingsInvalidParameter;
  std::string parent;
  for (std::string_view level : levels) {
    const std::string name(level);
    const std::string here = JoinKeyPath(parent, name);
    Use use(key_insert_);
    use.Text(1, here);
    use.Text(2, parent);
    use.Text(3, name);
    if (const long rc = Step(key_insert_); rc != kSettingsOk) return rc;
    parent = here;
  }
  return kSettingsOk;
}

long SettingsDatabase::EnsureKey(const std::string& path) {
  if (const long rc = Open(Need::kWrite); rc != kSettingsOk) return rc;
  if (KeyExists(path) == kSettingsOk) return kSettingsOk;
  Transaction t(*this);
  if (t.status() != kSettingsOk) return t.status();
  if (const long rc = EnsureKeyLocked(path); rc != kSettingsOk) return rc;
  return t.Commit();
}

long SettingsDatabase::Get(const std::string& path, const std::string& name, std::uint32_t& type, std::string& data) {
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc;
  Use use(value_get_);
  use.Text(1, path);
  use.Text(2, name);
  const int rc = sqlite3_step(value_get_);
  if (rc == SQLITE_DONE) return kSettingsNotFound;
  if (rc != SQLITE_ROW) return StoreError(rc);
  type = static_cast<std::uint32_t>(sqlite3_column_int64(value_get_, 0));
  data = use.Column(1);
  return kSettingsOk;
}

long SettingsDatabase::ValueAt(const std::string& path, std::uint32_t index, std::string& name, std::uint32_t& type,
                               std::string& data) {
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc == kSettingsNotFound ? kSettingsNoMoreItems : rc;
  // Values of one key are few; an offset per index is cheap enough here.
  Use use(value_at_);
  use.Text(1, path);
  use.Int(2, index);
  const int rc = sqlite3_step(value_at_);
  if (rc == SQLITE_DONE) return kSettingsNoMoreItems;
  if (rc != SQLITE_ROW) return StoreError(rc);
  name = use.Column(0);
  type = static_cast<std::uint32_t>(sqlite3_column_int64(value_at_, 1));
  data = use.Column(2);
  return kSettingsOk;
}

long SettingsDatabase::Set(const std::string& path, const std::string& name, std::uint32_t type,
                           const std::string& data) {
  if (const long rc = Open(Need::kWrite); rc != kSettingsOk) return rc;
  Transaction t(*this);
  if (t.status() != kSettingsOk) return t.status();
  if (const long rc = EnsureKeyLocked(path); rc != kSettingsOk) return rc;
  {
    Use use(value_set_);
    use.Text(1, path);
    use.Text(2, name);
    use.Int(3, type);
    use.Blob(4, data);
    if (const long rc = Step(value_set_); rc != kSettingsOk) return rc;
  }
  return t.Commit();
}

long SettingsDatabase::DeleteValue(const std::string& path, const std::string& name) {
  // Deleting from a database that does not exist must not create it.
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc;
  if (const long rc = Open(Need::kWrite); rc != kSettingsOk) return rc;
  Use use(value_delete_);
  use.Text(1, path);
  use.Text(2, name);
  if (const long rc = Step(value_delete_); rc != kSettingsOk) return rc;
  return sqlite3_changes(db_) > 0 ? kSettingsOk : kSettingsNotFound;
}

long SettingsDatabase::DeleteTree(const std::string& path) {
  if (path.empty()) return kSettingsInvalidParameter;
  // Deleting from a database that does not exist must not create it.
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc;
  if (const long rc = Open(Need::kWrite); rc != kSettingsOk) return rc;
  Transaction t(*this);
  if (t.status() != kSettingsOk) return t.status();
  int removed = 0;
  for (sqlite3_stmt* stmt : {tree_values_delete_, tree_keys_delete_}) {
    Use use(stmt);
    use.Text(1, path);
    if (const long rc = Step(stmt); rc != kSettingsOk) return rc;
    if (stmt == tree_keys_delete_) removed = sqlite3_changes(db_);
  }
  if (removed == 0) return kSettingsNotFound;  // nothing to commit; rolled back
  return t.Commit();
}

long SettingsDatabase::SubKeys(const std::string& path, std::vector<std::string>& names) {
  names.clear();
  if (const long rc = Open(Need::kRead); rc != kSettingsOk) return rc;
  Use use(children_);
  use.Text(1, path);
  int rc;
  while ((rc = sqlite3_step(children_)) == SQLITE_ROW) names.push_back(use.Column(0));
  return rc == SQLITE_DONE ? kSettingsOk : StoreError(rc);
}

std::uint64_t SettingsDatabase::Version() {
  // This connection's own changes only: cheap enough to ask on every call.
  // Another process's changes show at the next enumeration from index 0.
  return db_ ? static_cast<std::uint64_t>(sqlite3_total_changes64(db_)) + 1 : 0;
}

}  // namespace tolva::platform::posix
