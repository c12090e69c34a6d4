// Real FTP servers for tests: each one runs as a child process on
// 127.0.0.1, on a free port, with its own temporary root directory and its
// own user, and is stopped by its process id when the object goes away.
//
//   auto server = tolva::testing::FtpServer::Start(FtpServerKind::kPyftpdlib);
//   if (!server) GTEST_SKIP() << why;
//   lib->Connect(inet, server->HostPort(), 0, server->User(), server->Password(), ...);
//   // files the server sees live under server->Root()
//
// AvailableFtpServers() lists the kinds that can run on this machine, so a
// test table can run against every server (TEST_P + ValuesIn).
#ifndef TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_
#define TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tolva::testing {

enum class FtpServerKind { kPyftpdlib, kProftpd, kVsftpd, kPureFtpd };

// "pyftpdlib", "proftpd", "vsftpd", "pure-ftpd": usable as a test name suffix.
std::string FtpServerName(FtpServerKind kind);

// The kinds whose daemon is installed and can run as the current user
// (vsftpd and pure-ftpd need root, and are tried once with a real login, as
// a container may refuse them chroot or a user switch). Prints a notice to
// stderr, once, for each kind it leaves out and why.
std::vector<FtpServerKind> AvailableFtpServers();

// Where the unpacked daemons live (scripts/install.d/ftp-daemons.sh):
// $TOLVA_FTPD_DIR, else /opt/tolva-ftpd.
std::string FtpDaemonDir();

// A running child process (server) stopped by its pid on destruction.
class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Starts argv[0] with `argv`; stdout and stderr go to `log_path`.
  bool Spawn(const std::vector<std::string>& argv, const std::string& log_path);
  // SIGTERM, then SIGKILL after a grace period; reaps the child.
  void Stop();
  bool Running();
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
};

class FtpServer {
 public:
  // Starts a server of `kind`; nullptr (with the reason in `why`) when it
  // could not start within a few seconds.
  static std::unique_ptr<FtpServer> Start(FtpServerKind kind, std::string* why = nullptr);
  ~FtpServer();
  FtpServer(const FtpServer&) = delete;
  FtpServer& operator=(const FtpServer&) = delete;

  FtpServerKind Kind() const { return kind_; }
  std::string Name() const { return FtpServerName(kind_); }
  std::string Host() const { return "127.0.0.1"; }
  std::uint16_t Port() const { return port_; }
  std::string HostPort() const { return Host() + ":" + std::to_string(port_); }
  std::string User() const { return user_; }
  std::string Password() const { return password_; }
  // The directory the user lands in after login, on the local disk.
  std::string Root() const { return root_; }
  // True when the server offers MLSD (so listings do not go through LIST).
  bool HasMlsd() const { return kind_ != FtpServerKind::kVsftpd; }
  bool Running() { return process_.Running(); }
  // Server's own log (for a failing test's message).
  std::string LogText() const;

 private:
  FtpServer() = default;
  bool Launch(std::string* why);
  bool LaunchPyftpdlib(std::string* why);
  bool LaunchProftpd(std::string* why);
  bool LaunchVsftpd(std::string* why);
  bool LaunchPureFtpd(std::string* why);
  // Picks a free port, runs the daemon `command` gives for it (it may
  // write a configuration naming port_) and waits for its greeting.
  bool SpawnOnFreePort(std::string* why, const std::function<std::vector<std::string>()>& command);

  FtpServerKind kind_ = FtpServerKind::kPyftpdlib;
  std::string work_;              // temporary directory: config, logs, root
  std::string pam_service_file_;  // vsftpd's login service, removed on stop
  std::string root_;
  std::string user_ = "tolva";
  std::string password_ = "tolva-pw";
  std::uint16_t port_ = 0;
  ChildProcess process_;
};

// Helpers shared by the fixtures.
std::string MakeTempDir(const std::string& prefix);
void RemoveTree(const std::string& path);
// A port that was free a moment ago on 127.0.0.1 (the kernel's choice).
std::uint16_t PickFreePort();
// Waits until a server on 127.0.0.1:port sends its "220" greeting.
bool WaitForGreeting(std::uint16_t port, int timeout_ms);
// Number of open descriptors of this process (for leak checks).
int CountOpenDescriptors();
std::string ReadWholeFile(const std::string& path);
bool WriteWholeFile(const std::string& path, const std::string& bytes);

}  // namespace tolva::testing

#endif  // TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_
