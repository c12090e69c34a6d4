// Support for tests of the settings database on real files: a temporary
// directory, a component on a database in it, and a child process that can
// run as an ordinary user (root ignores file permissions).
#ifndef TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_
#define TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_

#include <ftw.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "tolva/tolva2011register.h"

namespace tolva::testing_settings {

class TempDir {
 public:
  TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string templ = std::string(base && *base ? base : "/tmp") + "/tolva-settings-XXXXXX";
    if (::mkdtemp(templ.data())) path_ = templ;
  }
  ~TempDir() {
    if (path_.empty()) return;
    ::nftw(
        path_.c_str(),
        [](const char* p, const struct stat*, int, struct FTW*) {
          ::chmod(p, 0700);
          ::remove(p);
          return 0;
        },
        16, FTW_DEPTH | FTW_PHYS);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  static void Write(const std::string& path, const std::string& data) { std::ofstream(path, std::ios::binary) << data; }
  static std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
  }

 private:
  std::string path_;
};

// Services with only a settings database (and the real profile files for the backup).
inline platform::Services DatabaseServices(const std::string& user_db, const std::string& machine_db = "") {
  platform::Services s = platform::LinuxServices();
  s.settings = platform::NewSettingsDatabase(user_db, machine_db);
  return s;
}

// Runs `body` in a child process and returns what it returned. When this
// process is root and `as_ordinary_user` is set, the child first becomes
// user and group 65534 (nobody), so that permissions apply to it.
inline std::string InChild(const std::function<std::string()>& body, bool as_ordinary_user = false) {
  int fds[2];
  if (::pipe(fds) != 0) return "<no pipe>";
  const pid_t pid = ::fork();
  if (pid < 0) return "<no fork>";
  if (pid == 0) {
    ::close(fds[0]);
    std::string out;
    if (as_ordinary_user && ::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) out = "<no setuid>";
    if (out.empty()) out = body();
    std::size_t done = 0;
    while (done < out.size()) {
      const ssize_t w = ::write(fds[1], out.data() + done, out.size() - done);
      if (w <= 0) break;
      done += static_cast<std::size_t>(w);
    }
    ::_exit(0);
  }
  ::close(fds[1]);
  std::string out;
  char buf[4096];
  ssize_t n;
  while ((n = ::read(fds[0], buf, sizeof buf)) > 0) out.append(buf, static_cast<std::size_t>(n));
  ::close(fds[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  return out;
}

// The result of PRAGMA integrity_check on a database file, opened read only.
inline std::string IntegrityCheck(const std::string& path) {
  sqlite3* db = nullptr;
  std::string result = "<cannot open>";
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
      result = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
  return result;
}

}  // namespace tolva::testing_settings

#endif  // TOLVA_TESTS_INTEGRATION_SETTINGS_SETTINGS_TEST_SUPPORT_H_
