#include "support/ftp_servers.h"

#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace tolva::testing {
namespace {

constexpr const char* kPython = "/usr/bin/python3";  // the Debian python that has pyftpdlib
constexpr const char* kProftpd = "/usr/sbin/proftpd";
// crypt(3) MD5 hash of "tolva-pw" for proftpd's AuthUserFile.
constexpr const char* kPasswordHash = "$1$tolvasal$pNVok5UT8Vfj5O9jzLPHt/";

// pyftpdlib through its API: one user with full rights in its root, MLSD on,
// bound to a kernel-chosen port that it writes to a file once listening.
constexpr const char* kPyftpdlibLauncher = R"PY(
import os, sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
root, user, password, port_file = sys.argv[1:5]
auth = DummyAuthorizer()
auth.add_user(user, password, root, perm="elradfmwMT")
FTPHandler.authorizer = auth
FTPHandler.timeout = 120
server = FTPServer(("127.0.0.1", 0), FTPHandler)
server.max_cons = 64
with open(port_file + ".tmp", "w") as f:
    f.write(str(server.socket.getsockname()[1]))
os.rename(port_file + ".tmp", port_file)
server.serve_forever()
)PY";

bool FileExecutable(const std::string& path) {
  return ::access(path.c_str(), X_OK) == 0;
}

// Sends `line` (unless empty) and reads one reply, multi-line ones whole;
// its code, or -1 on a closed or silent connection.
int Exchange(int fd, const std::string& line) {
  if (!line.empty() && ::send(fd, line.data(), line.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(line.size()))
    return -1;
  std::string text;
  for (;;) {
    // The reply is complete when its last line starts with the code and a blank.
    for (std::size_t start = 0, end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
      if (end - start >= 4 && text[start + 3] == ' ' && text.compare(0, 3, text, start, 3) == 0)
        return std::atoi(text.substr(0, 3).c_str());
    }
    pollfd p{fd, POLLIN, 0};
    char buf[4096];
    if (::poll(&p, 1, 5000) != 1) return -1;
    const ssize_t n = ::recv(fd, buf, sizeof buf, 0);
    if (n <= 0) return -1;
    text.append(buf, static_cast<std::size_t>(n));
  }
}

// True when the server logs its user in: the daemons that run as root need
// privileges (chroot, switching users) a container may not grant.
bool LoginWorks(FtpServer& server) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  addr.sin_port = htons(server.Port());
  const bool ok = ::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 && Exchange(fd, "") == 220 &&
                  Exchange(fd, "USER " + server.User() + "\r\n") == 331 &&
                  Exchange(fd, "PASS " + server.Password() + "\r\n") == 230 && Exchange(fd, "PWD\r\n") == 257;
  ::close(fd);
  return ok;
}

// Adds `kind` when a server of it starts and logs in here, else says why.
void AddIfUsable(FtpServerKind kind, std::vector<FtpServerKind>& kinds, std::vector<std::string>& notices) {
  std::string why;
  auto server = FtpServer::Start(kind, &why);
  if (!server) {
    notices.push_back(FtpServerName(kind) + ": does not start here: " + why.substr(0, why.find('\n')));
  } else if (!LoginWorks(*server)) {
    notices.push_back(FtpServerName(kind) +
                      ": starts but cannot log its user in here (chroot or user switch refused?)");
  } else {
    kinds.push_back(kind);
  }
}

}  // namespace

std::string FtpServerName(FtpServerKind kind) {
  switch (kind) {
    case FtpServerKind::kPyftpdlib:
      return "pyftpdlib";
    case FtpServerKind::kProftpd:
      return "proftpd";
    case FtpServerKind::kVsftpd:
      return "vsftpd";
    case FtpServerKind::kPureFtpd:
      return "pure_ftpd";
  }
  return "unknown";
}

std::string FtpDaemonDir() {
  const char* env = std::getenv("TOLVA_FTPD_DIR");
  return env && *env ? env : "/opt/tolva-ftpd";
}

std::vector<FtpServerKind> AvailableFtpServers() {
  static std::once_flag once;
  static std::vector<FtpServerKind> kinds;
  std::call_once(once, [] {
    std::vector<std::string> notices;
    if (FileExecutable(kPython) && std::system("/usr/bin/python3 -c 'import pyftpdlib' >/dev/null 2>&1") == 0) {
      kinds.push_back(FtpServerKind::kPyftpdlib);
    } else {
      notices.push_back("pyftpdlib: python3-pyftpdlib is not installed");
    }
    if (FileExecutable(kProftpd))
      kinds.push_back(FtpServerKind::kProftpd);
    else
      notices.push_back("proftpd: proftpd-basic is not installed");
    // vsftpd and pure-ftpd run as root (they switch to their session
    // users themselves), unpacked by scripts/install.d/ftp-daemons.sh.
    const std::string dir = FtpDaemonDir();
    const bool root = ::geteuid() == 0;
    if (!root) {
      notices.push_back("vsftpd: needs root, the tests run unprivileged");
    } else if (!FileExecutable(dir + "/usr/sbin/vsftpd")) {
      notices.push_back("vsftpd: not unpacked in " + dir + " (scripts/install.d/ftp-daemons.sh)");
    } else if (::access("/etc/pam.d", W_OK) != 0 || std::system("/usr/bin/perl -MDB_File -e 1 >/dev/null 2>&1") != 0) {
      notices.push_back("vsftpd: needs a writable /etc/pam.d and perl's DB_File for its PAM user database");
    } else {
      AddIfUsable(FtpServerKind::kVsftpd, kinds, notices);
    }
    if (!root) {
      notices.push_back("pure-ftpd: needs root, the tests run unprivileged");
    } else if (!FileExecutable(dir + "/usr/sbin/pure-ftpd") || !FileExecutable(dir + "/usr/bin/pure-pw")) {
      notices.push_back("pure-ftpd: not unpacked in " + dir + " (scripts/install.d/ftp-daemons.sh)");
    } else {
      AddIfUsable(FtpServerKind::kPureFtpd, kinds, notices);
    }
    for (const auto& n : notices) std::cerr << "NOTICE: FTP server skipped: " << n << "\n";
  });
  return kinds;
}

// ---------------------------------------------------------------------------
// Helpers

std::string MakeTempDir(const std::string& prefix) {
  std::string templ = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
  if (::mkdtemp(templ.data()) == nullptr) return "";
  return templ;
}

void RemoveTree(const std::string& path) {
  if (path.empty()) return;
  std::error_code ec;
  std::filesystem::remove_all(path, ec);
}

std::uint16_t PickFreePort() {
  int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return 0;
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  std::uint16_t port = 0;
  if (::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
      ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0) {
    port = ntohs(addr.sin_port);
  }
  ::close(fd);
  return port;
}

bool WaitForGreeting(std::uint16_t port, int timeout_ms) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  while (std::chrono::steady_clock::now() < deadline) {
    int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(port);
    bool greeted = false;
    if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) {
      pollfd p{fd, POLLIN, 0};
      char buf[4] = {};
      if (::poll(&p, 1, 2000) == 1 && ::recv(fd, buf, 3, 0) == 3) greeted = std::strncmp(buf, "220", 3) == 0;
      ::shutdown(fd, SHUT_RDWR);
    }
    ::close(fd);
    if (greeted) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

int CountOpenDescriptors() {
  int n = 0;
  DIR* d = ::opendir("/proc/self/fd");
  if (!d) return -1;
  while (dirent* e = ::readdir(d)) {
    if (e->d_name[0] != '.') ++n;
  }
  ::closedir(d);
  return n - 1;  // the directory stream itself
}

std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return static_cast<bool>(out);
}

// ---------------------------------------------------------------------------
// ChildProcess

ChildProcess::~ChildProcess() {
  Stop();
}

bool ChildProcess::Spawn(const std::vector<std::string>& argv, const std::string& log_path) {
  std::vector<char*> args;
  for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  const pid_t parent = ::getpid();
  pid_t pid = ::fork();
  if (pid < 0) return false;
  if (pid == 0) {
    // A test that crashes must not leave servers behind.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(127);
    ::setpgid(0, 0);
    int log = ::open(log_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    int null = ::open("/dev/null", O_RDONLY);
    if (null >= 0) ::dup2(null, 0);
    if (log >= 0) {
      ::dup2(log, 1);
      ::dup2(log, 2);
    }
    ::execv(args[0], args.data());
    ::_exit(127);
  }
  pid_ = pid;
  return true;
}

bool ChildProcess::Running() {
  if (pid_ <= 0) return false;
  int status = 0;
  pid_t r = ::waitpid(pid_, &status, WNOHANG);
  if (r == pid_) {
    pid_ = -1;
    return false;
  }
  return true;
}

void ChildProcess::Stop() {
  if (pid_ <= 0) return;
  // The server is its own process group leader: its session children go too.
  ::kill(-pid_, SIGTERM);
  ::kill(pid_, SIGTERM);
  for (int i = 0; i < 100; ++i) {
    int status = 0;
    if (::waitpid(pid_, &status, WNOHANG) == pid_) {
      ::kill(-pid_, SIGKILL);  // leftover session processes, if any
      pid_ = -1;
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ::kill(-pid_, SIGKILL);
  ::kill(pid_, SIGKILL);
  int status = 0;
  ::waitpid(pid_, &status, 0);
  pid_ = -1;
}

// ---------------------------------------------------------------------------
// FtpServer

std::unique_ptr<FtpServer> FtpServer::Start(FtpServerKind kind, std::string* why) {
  std::unique_ptr<FtpServer> server(new FtpServer());
  server->kind_ = kind;
  std::string reason;
  if (!server->Launch(&reason)) {
    if (why) *why = FtpServerName(kind) + ": " + reason + "\n" + server->LogText();
    return nullptr;
  }
  return server;
}

FtpServer::~FtpServer() {
  process_.Stop();
  if (!pam_service_file_.empty()) ::unlink(pam_service_file_.c_str());
  RemoveTree(work_);
}

std::string FtpServer::LogText() const {
  return work_.empty() ? "" : ReadWholeFile(work_ + "/server.log");
}

bool FtpServer::Launch(std::string* why) {
  work_ = MakeTempDir("tolva-ftpd-" + FtpServerName(kind_) + "-");
  if (work_.empty()) {
    *why = "cannot make a temporary directory";
    return false;
  }
  ::chmod(work_.c_str(), 0755);
  root_ = work_ + "/root";
  if (::mkdir(root_.c_str(), 0777) != 0) {
    *why = "cannot make the root directory";
    return false;
  }
  ::chmod(root_.c_str(), 0777);
  switch (kind_) {
    case FtpServerKind::kPyftpdlib:
      return LaunchPyftpdlib(why);
    case FtpServerKind::kProftpd:
      return LaunchProftpd(why);
    case FtpServerKind::kVsftpd:
      return LaunchVsftpd(why);
    case FtpServerKind::kPureFtpd:
      return LaunchPureFtpd(why);
  }
  return false;
}

bool FtpServer::LaunchPyftpdlib(std::string* why) {
  const std::string port_file = work_ + "/port";
  if (!process_.Spawn({kPython, "-c", kPyftpdlibLauncher, root_, user_, password_, port_file}, work_ + "/server.log")) {
    *why = "fork failed";
    return false;
  }
  for (int i = 0; i < 200 && port_ == 0; ++i) {
    std::string text = ReadWholeFile(port_file);
    if (!text.empty())
      port_ = static_cast<std::uint16_t>(std::atoi(text.c_str()));
    else if (!process_.Running())
      break;
    else
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
  if (port_ == 0 || !WaitForGreeting(port_, 5000)) {
    *why = "did not start listening";
    return false;
  }
  return true;
}

bool FtpServer::LaunchProftpd(std::string* why) {
  // As root, the sessions run as nobody and the user owns its root; as an
  // ordinary user, everything runs as that user.
  const bool root = ::geteuid() == 0;
  const uid_t uid = root ? 65534 : ::geteuid();
  const gid_t gid = root ? 65534 : ::getegid();
  if (root && ::chown(root_.c_str(), uid, gid) != 0) {
    *why = "cannot hand the root to nobody";
    return false;
  }
  {
    std::ofstream users(work_ + "/passwd");
    users << user_ << ":" << kPasswordHash << ":" << uid << ":" << gid << "::" << root_ << ":/bin/sh\n";
    std::ofstream groups(work_ + "/group");
    groups << "tolva:x:" << gid << ":" << user_ << "\n";
  }
  // proftpd refuses world-readable user files.
  ::chmod((work_ + "/passwd").c_str(), 0600);
  ::chmod((work_ + "/group").c_str(), 0600);
  return SpawnOnFreePort(why, [&] {
    std::ofstream conf(work_ + "/proftpd.conf", std::ios::trunc);
    conf << "ServerName \"tolva test\"\n"
         << "ServerType standalone\n"
         << "DefaultServer on\n"
         << "Port " << port_ << "\n"
         << "DefaultAddress 127.0.0.1\n"
         << "SocketBindTight on\n"
         << "UseIPv6 off\n"
         << "UseReverseDNS off\n"
         << "MaxInstances 64\n"
         << (root ? "User nobody\nGroup nogroup\n" : "") << "AuthOrder mod_auth_file.c\n"
         << "AuthUserFile " << work_ << "/passwd\n"
         << "AuthGroupFile " << work_ << "/group\n"
         << "RequireValidShell off\n"
         << "RootLogin off\n"
         << "DefaultRoot ~\n"
         << "AllowOverwrite on\n"
         << "AllowStoreRestart on\n"
         << "Umask 022\n"
         << "PidFile " << work_ << "/proftpd.pid\n"
         << "ScoreboardFile " << work_ << "/proftpd.scoreboard\n"
         << "DelayTable none\n"
         << "WtmpLog off\n"
         << "TransferLog none\n"
         << "SystemLog " << work_ << "/proftpd.syslog\n"
         << "TimeoutIdle 600\n"
         << "TimeoutNoTransfer 600\n"
         << "<Limit SITE_CHMOD>\n  AllowAll\n</Limit>\n";
    return std::vector<std::string>{kProftpd, "-n", "-q", "-c", work_ + "/proftpd.conf"};
  });
}

// A test process that was killed leaves its vsftpd login service behind:
// remove those whose password database has gone with their server.
static void RemoveStaleVsftpdServices() {
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator("/etc/pam.d", ec)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("tolva-tolva-ftpd-vsftpd-", 0) != 0) continue;
    const std::string text = ReadWholeFile(entry.path().string());
    const std::size_t at = text.find("db=");
    if (at == std::string::npos) continue;
    const std::string db = text.substr(at + 3, text.find_first_of(" \n", at) - at - 3);
    if (::access((db + ".db").c_str(), F_OK) != 0) ::unlink(entry.path().c_str());
  }
}

bool FtpServer::LaunchVsftpd(std::string* why) {
  RemoveStaleVsftpdServices();
  // vsftpd logs a virtual user in through PAM and then runs the session as
  // a real account. The password lives in a Berkeley DB read by pam_userdb
  // (written with perl's DB_File, linked against the same libdb), named by
  // a PAM service of this server's own. The session account is "daemon":
  // vsftpd changes into its home before the chroot, and daemon's home
  // (/usr/sbin) exists on every Debian system, unlike nobody's.
  const uid_t uid = 1;
  const gid_t gid = 1;
  if (::chown(root_.c_str(), uid, gid) != 0) {
    *why = "cannot hand the root to daemon";
    return false;
  }
  const std::string users = work_ + "/users";
  const std::string make_db =
      "/usr/bin/perl -MDB_File -MFcntl -e 'tie my %h, \"DB_File\", $ARGV[0], "
      "O_RDWR|O_CREAT, 0600, $DB_HASH or die; $h{$ARGV[1]} = $ARGV[2]' '" +
      users + ".db' '" + user_ + "' '" + password_ + "' >/dev/null 2>&1";
  if (std::system(make_db.c_str()) != 0) {
    *why = "perl DB_File could not write the password database";
    return false;
  }
  // PAM looks services up by their lower-case name.
  std::string service = "tolva-" + std::filesystem::path(work_).filename().string();
  for (char& c : service) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  pam_service_file_ = "/etc/pam.d/" + service;
  if (!WriteWholeFile(pam_service_file_,
                      "auth required pam_userdb.so db=" + users + "\naccount required pam_permit.so\n")) {
    *why = "cannot write " + pam_service_file_;
    return false;
  }
  const std::string empty = work_ + "/empty";  // vsftpd's unprivileged chroot
  ::mkdir(empty.c_str(), 0755);
  const std::string dir = FtpDaemonDir();
  return SpawnOnFreePort(why, [&] {
    std::ofstream conf(work_ + "/vsftpd.conf", std::ios::trunc);
    conf << "listen=YES\nlisten_ipv6=NO\nlisten_address=127.0.0.1\n"
         << "listen_port=" << port_ << "\n"
         << "background=NO\n"
         << "anonymous_enable=NO\nlocal_enable=YES\nwrite_enable=YES\nlocal_umask=022\n"
         << "guest_enable=YES\nguest_username=daemon\nvirtual_use_local_privs=YES\n"
         << "pam_service_name=" << service << "\n"
         << "chroot_local_user=YES\nallow_writeable_chroot=YES\n"
         << "local_root=" << root_ << "\n"
         << "secure_chroot_dir=" << empty
         << "\n"
         // Containers often forbid the namespaces and filters vsftpd would
         // otherwise set up for itself.
         << "seccomp_sandbox=NO\nisolate=NO\nisolate_network=NO\n"
         << "xferlog_enable=NO\ntcp_wrappers=NO\n"
         << "max_clients=64\nmax_per_ip=64\n"
         << "idle_session_timeout=600\ndata_connection_timeout=600\n"
         << "delay_failed_login=0\nforce_dot_files=YES\n";
    return std::vector<std::string>{dir + "/usr/sbin/vsftpd", work_ + "/vsftpd.conf"};
  });
}

bool FtpServer::LaunchPureFtpd(std::string* why) {
  // Virtual user "tolva" in pure-ftpd's own database, running as nobody.
  // The password file is written here with an MD5 crypt hash: pure-pw's
  // default argon2 hash costs about four seconds a login on these machines.
  if (::chown(root_.c_str(), 65534, 65534) != 0) {
    *why = "cannot hand the root to nobody";
    return false;
  }
  const std::string dir = FtpDaemonDir();
  if (!WriteWholeFile(work_ + "/passwd",
                      user_ + ":" + kPasswordHash + ":65534:65534::" + root_ + "/./::::::::::::\n")) {
    *why = "cannot write the password file";
    return false;
  }
  const std::string command =
      dir + "/usr/bin/pure-pw mkdb " + work_ + "/pure.pdb -f " + work_ + "/passwd >/dev/null 2>&1";
  if (std::system(command.c_str()) != 0) {
    *why = "pure-pw could not make the user database";
    return false;
  }
  return SpawnOnFreePort(why, [&] {
    return std::vector<std::string>{dir + "/usr/sbin/pure-ftpd", "-S", "127.0.0.1," + std::to_string(port_), "-l",
                                    "puredb:" + work_ + "/pure.pdb", "-E", "-A", "-H", "-c", "64", "-C", "64",
                                    // listings stop at 2000 names unless told otherwise
                                    "-L", "100000:8"};
  });
}

bool FtpServer::SpawnOnFreePort(std::string* why, const std::function<std::vector<std::string>()>& command) {
  // A daemon told its port cannot report a port taken in the meantime other
  // than by never greeting: then try another.
  for (int attempt = 0; attempt < 3; ++attempt) {
    port_ = PickFreePort();
    if (!process_.Spawn(command(), work_ + "/server.log")) {
      *why = "fork failed";
      return false;
    }
    if (WaitForGreeting(port_, 5000)) return true;
    process_.Stop();
  }
  *why = "did not start listening";
  return false;
}

}  // namespace tolva::testing
