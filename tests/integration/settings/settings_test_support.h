// Support for tests on real settings databases.
#ifndef TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_
#define TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/settings/settings_store_sqlite.h"
#include "support/ftp_servers.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_settings {

// A fresh directory under the test's own TMPDIR, removed with everything in it.
struct TempDir {
  std::string path = tolva::testing::MakeTempDir("tolva-settings-");
  ~TempDir() { tolva::testing::RemoveTree(path); }
  std::string operator/(const std::string& name) const { return path + "/" + name; }
};

// The real store, counting the keys left open and the calls that write.
class CountingStore : public platform::posix::SqliteSettingsStore {
 public:
  CountingStore(const std::string& user_db, const std::string& machine_db)
      : SqliteSettingsStore({user_db, 0600, false, true}, {machine_db, 0644, false, false}) {}
  long OpenKey(platform::SettingsKey root, const std::string& path, std::uint32_t access,
               platform::SettingsKey& key) override {
    return Count(open_keys, SqliteSettingsStore::OpenKey(root, path, access, key));
  }
  long CloseKey(platform::SettingsKey key) override { return Count(open_keys, SqliteSettingsStore::CloseKey(key), -1); }
  long SetString(const std::string& path, const std::string& name, const std::string& value) override {
    return ++writes, SqliteSettingsStore::SetString(path, name, value);
  }
  long DeleteValue(const std::string& path, const std::string& name) override {
    return ++writes, SqliteSettingsStore::DeleteValue(path, name);
  }
  long DeleteKey(const std::string& path) override { return ++writes, SqliteSettingsStore::DeleteKey(path); }

  int open_keys = 0;
  int writes = 0;

 private:
  static long Count(int& counter, long rc, int by = 1) { return counter += rc == 0 ? by : 0, rc; }
};

// A component whose application `app` keeps its settings in `user_db`.
inline std::unique_ptr<Tolva2011Register> OnDatabase(const std::string& user_db, const std::string& app) {
  platform::Services s;
  s.settings = platform::NewSettingsDatabase(user_db, "");
  auto c = std::make_unique<Tolva2011Register>(s);
  c->RegistryApp(app);
  return c;
}

// Runs `body` in a child process and returns what it returned; a root child
// first becomes nobody (65534) when asked, as root ignores file permissions.
inline std::string InChild(const std::function<std::string()>& body, bool as_ordinary_user = false) {
  int fds[2];
  if (::pipe(fds) != 0) return "<no pipe>";
  const pid_t pid = ::fork();
  if (pid < 0) return "<no fork>";
  if (pid == 0) {
    std::string out = "<no setuid>";
    if (!as_ordinary_user || ::geteuid() != 0 || (::setgid(65534) == 0 && ::setuid(65534) == 0)) out = body();
    ::_exit(::write(fds[1], out.data(), out.size()) == static_cast<ssize_t>(out.size()) ? 0 : 1);  // a few bytes
  }
  ::close(fds[1]);
  std::string out;
  char buf[4096];
  for (ssize_t n; (n = ::read(fds[0], buf, sizeof buf)) > 0;) out.append(buf, static_cast<std::size_t>(n));
  ::close(fds[0]);
  ::waitpid(pid, nullptr, 0);
  return out;
}

inline std::string IntegrityCheck(const std::string& path) {
  sqlite3* db = nullptr;
  sqlite3_stmt* st = nullptr;
  std::string result = "<cannot open>";
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
      sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
    result = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
  sqlite3_finalize(st);
  sqlite3_close(db);
  return result;
}

}  // namespace tolva::testing_settings

#endif  // TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_
