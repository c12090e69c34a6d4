// Real FTP servers for tests. Each runs as a child process on 127.0.0.1 with its own temporary root and
// user ("tolva" / "tolva-pw"), and is stopped by its process id when the object goes away.
// AvailableFtpServers() gives the kinds that start and log their user in here: vsftpd and pure-ftpd need
// root and scripts/install.d/ftp-daemons.sh ($TOLVA_FTPD_DIR, else /opt/tolva-ftpd). Each kind left out
// is named once in a NOTICE line. vsftpd logs its user in through a PAM service of its own
// (/etc/pam.d/tolva-...), removed with the server.
#ifndef TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_
#define TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolva::testing {

enum class FtpServerKind { kPyftpdlib, kProftpd, kVsftpd, kPureFtpd };

std::string FtpServerName(FtpServerKind kind);
std::vector<FtpServerKind> AvailableFtpServers();

// A child process in a process group of its own, stopped by its pid (the group too) on destruction.
class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess() { Stop(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  // Runs argv[0] with stdout and stderr into `log_path`.
  bool Spawn(const std::vector<std::string>& argv, const std::string& log_path);
  void Stop();
  bool Running();
  // Waits for the child to end: its exit status, or -1.
  int Wait();

 private:
  pid_t pid_ = -1;
};

// Certificates that openssl makes in `dir` for TLS tests, all on one RSA key (`key`): an authority, what it
// signed for 127.0.0.1 and localhost (`server`), the same but valid until yesterday (`expired`) or for
// another name only (`other_name`), and a self-signed one for 127.0.0.1 and localhost (`self_signed`).
struct TestCertificates {
  std::string authority, server, expired, other_name, self_signed, key;
  static std::optional<TestCertificates> Make(const std::string& dir, std::string* why);
};

class FtpServer {
 public:
  // nullptr, with the reason and the server's log in `why`, when it does not start. With a certificate the
  // server speaks explicit FTP over TLS only, on control and data connections, and keeps its own default
  // on TLS session reuse.
  static std::unique_ptr<FtpServer> Start(FtpServerKind kind, std::string* why = nullptr,
                                          const std::string& tls_certificate = {}, const std::string& tls_key = {});
  ~FtpServer();
  FtpServer(const FtpServer&) = delete;
  FtpServer& operator=(const FtpServer&) = delete;

  std::string Name() const { return FtpServerName(kind_); }
  std::uint16_t Port() const { return port_; }
  std::string HostPort() const { return "127.0.0.1:" + std::to_string(port_); }
  std::string User() const { return "tolva"; }
  std::string Password() const { return "tolva-pw"; }
  // The directory the user lands in, on the local disk.
  std::string Root() const { return work_ + "/root"; }
  std::string LogText() const;

 private:
  FtpServer() = default;
  bool Launch(std::string* why);
  // Runs the daemon `command` gives for a free port until it logs the user in (a port picked free may be
  // taken before the daemon binds it).
  bool SpawnOnFreePort(std::string* why, const std::function<std::vector<std::string>()>& command);

  FtpServerKind kind_ = FtpServerKind::kPyftpdlib;
  std::string tls_certificate_, tls_key_;
  std::string work_;              // configuration, log and root
  std::string pam_service_file_;  // vsftpd's login service
  std::uint16_t port_ = 0;
  ChildProcess process_;
};

// A scripted server that misbehaves on purpose, for fault tests. The scenario is JSON; its keys (all
// optional):
//   login "refuse" (530 on PASS); stall_greeting: seconds before the greeting; greeting_bytes: size of
//   a multi-line greeting; split_replies: replies go out three bytes a packet; multiline: PWD and CWD
//   answer in several lines; stall_on {"VERB": seconds} before answering it; drop_on ["VERB", ...]:
//   close the control connection on it; no_epsv: EPSV is refused, so clients fall back to PASV;
//   files {"name": "latin-1 content"} for RETR; retr_mode "drop_data" (half, then 426) | "stall" (half,
//   then silence); stor_mode "drop_data" (426 after 64 KiB); auth "stall" (AUTH TLS gets 234, then
//   silence; without it AUTH is refused). LogText() lists the verb of every command that arrived.
class MisbehavingFtpd {
 public:
  static std::unique_ptr<MisbehavingFtpd> Start(const std::string& scenario_json, std::string* why = nullptr);
  ~MisbehavingFtpd();
  std::string HostPort() const { return "127.0.0.1:" + std::to_string(port_); }
  std::string LogText() const;

 private:
  std::string work_;
  std::uint16_t port_ = 0;
  ChildProcess process_;
};

std::string MakeTempDir(const std::string& prefix);
void RemoveTree(const std::string& path);
// Open descriptors of this process, for leak checks.
int CountOpenDescriptors();
std::string ReadWholeFile(const std::string& path);
bool WriteWholeFile(const std::string& path, const std::string& bytes);

}  // namespace tolva::testing

#endif  // TOLVA_TESTS_SUPPORT_FTP_SERVERS_H_
