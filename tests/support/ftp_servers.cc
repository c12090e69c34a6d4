#include "support/ftp_servers.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <sstream>
#include <thread>

namespace tolva::testing {
namespace {

namespace fs = std::filesystem;
constexpr const char* kPython = "/usr/bin/python3";  // the Debian python that has pyftpdlib
constexpr const char* kProftpd = "/usr/sbin/proftpd";
// crypt(3) MD5 hash of "tolva-pw", for proftpd's and pure-ftpd's user files.
constexpr const char* kPasswordHash = "$1$tolvasal$pNVok5UT8Vfj5O9jzLPHt/";

// One user with full rights in its root, MLSD on.
constexpr const char* kPyftpdlibLauncher = R"PY(
import sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
root, user, password, port = sys.argv[1:5]
Handler = FTPHandler
if len(sys.argv) > 6:
    from pyftpdlib.handlers import TLS_FTPHandler as Handler
    Handler.certfile, Handler.keyfile = sys.argv[5:7]
    Handler.tls_control_required = Handler.tls_data_required = True
Handler.authorizer = DummyAuthorizer()
Handler.authorizer.add_user(user, password, root, perm="elradfmwMT")
server = FTPServer(("127.0.0.1", int(port)), Handler)
server.max_cons = 64
server.serve_forever()
)PY";

// The scripted server (see MisbehavingFtpd in the header).
constexpr const char* kMisbehavingServer = R"PY(
import json, os, socket, sys, threading, time
port_file, sc = sys.argv[1], json.loads(sys.argv[2])

class Session:
    def __init__(self, conn):
        self.conn, self.pasv, self.cwd = conn, None, "/"

    def send(self, text):
        data = text.encode("latin-1")
        step = 3 if sc.get("split_replies") else len(data) or 1
        for i in range(0, len(data), step):
            self.conn.sendall(data[i:i + step])
            if sc.get("split_replies"):
                time.sleep(0.001)

    def reply(self, code, text):
        self.send("%d %s\r\n" % (code, text))

    def passive(self):
        self.pasv = socket.create_server(("127.0.0.1", 0))
        self.pasv.settimeout(10)
        return self.pasv.getsockname()[1]

    def accept(self):
        data, _ = self.pasv.accept()
        self.pasv.close()
        return data

    def send_data(self, payload, mode):
        self.reply(150, "Opening data connection.")
        data = self.accept()
        if mode in ("drop_data", "stall"):
            data.sendall(payload[:len(payload) // 2])
            if mode == "stall":
                time.sleep(3600)
            data.close()
            return self.reply(426, "Connection closed; transfer aborted.")
        data.sendall(payload)
        data.close()
        self.reply(226, "Transfer complete.")

    def run(self):
        time.sleep(sc.get("stall_greeting", 0))
        size = sc.get("greeting_bytes", 0)
        self.send("220-" + "x" * size + "\r\n220 ready\r\n" if size else "220 misbehaving server ready\r\n")
        buf = b""
        while True:
            while b"\n" not in buf:
                chunk = self.conn.recv(65536)
                if not chunk:
                    return
                buf += chunk
            line, buf = buf.split(b"\n", 1)
            line = line.rstrip(b"\r")
            verb, _, arg = line.decode("latin-1").partition(" ")
            verb = verb.upper()
            print(verb, flush=True)
            time.sleep(sc.get("stall_on", {}).get(verb, 0))
            if verb in sc.get("drop_on", []) or not self.command(verb, arg):
                return

    def command(self, verb, arg):
        multi = sc.get("multiline")
        if verb == "USER":
            self.reply(331, "Password please.")
        elif verb == "PASS":
            self.send("530 Login incorrect.\r\n" if sc.get("login") == "refuse" else "230 Logged in.\r\n")
        elif verb == "AUTH" and sc.get("auth") == "stall":
            self.reply(234, "Proceed with negotiation.")
            time.sleep(3600)
        elif verb == "EPSV" and not sc.get("no_epsv"):
            self.reply(229, "Entering Extended Passive Mode (|||%d|)" % self.passive())
        elif verb == "PASV":
            port = self.passive()
            self.reply(227, "Entering Passive Mode (127,0,0,1,%d,%d)" % (port // 256, port % 256))
        elif verb == "PWD":
            self.send(('257-Here it is\r\n257-more text\r\n' if multi else "") + '257 "%s" is current.\r\n' % self.cwd)
        elif verb == "CWD":
            self.cwd = arg if arg.startswith("/") else self.cwd.rstrip("/") + "/" + arg
            self.send("250-Changed.\r\n250-Line two\r\n250 OK\r\n" if multi else "250 OK\r\n")
        elif verb == "RETR" and arg in sc.get("files", {}):
            payload = sc["files"][arg].encode("latin-1")
            self.send_data(payload, sc.get("retr_mode"))
        elif verb == "STOR":
            self.reply(150, "Send it.")
            data, got = self.accept(), 0
            while True:
                if sc.get("stor_mode") == "drop_data" and got >= 65536:
                    data.close()
                    self.reply(426, "Connection closed; transfer aborted.")
                    return True
                chunk = data.recv(65536)
                if not chunk:
                    break
                got += len(chunk)
            data.close()
            self.reply(226, "Stored %d bytes." % got)
        elif verb in ("TYPE", "DELE", "MKD", "RMD", "ABOR"):
            self.reply(200, "OK")
        elif verb == "QUIT":
            self.reply(221, "Bye.")
            return False
        else:
            self.reply(550 if verb == "RETR" else 502, "No.")
        return True

def serve(conn):
    try:
        Session(conn).run()
    except OSError:
        pass
    conn.close()

listener = socket.create_server(("127.0.0.1", 0))
with open(port_file + ".tmp", "w") as f:
    f.write(str(listener.getsockname()[1]))
os.rename(port_file + ".tmp", port_file)
while True:
    threading.Thread(target=serve, args=(listener.accept()[0],), daemon=True).start()
)PY";

bool Executable(const std::string& path) {
  return ::access(path.c_str(), X_OK) == 0;
}
bool Succeeds(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// Waits up to five seconds for the greeting on a port, then logs in (through TLS, certificate unchecked,
// when a fourth argument says so): exit status 0 when all went well.
// A daemon that runs as root needs privileges (chroot, a user switch) a container may refuse, so it
// counts as started only when it really logs its user in.
constexpr const char* kProbe = R"PY(
import ftplib, ssl, sys, time
port, user, password = int(sys.argv[1]), sys.argv[2], sys.argv[3]
for _ in range(100):
    try:
        ftp = ftplib.FTP_TLS(context=ssl._create_unverified_context()) if sys.argv[4:] else ftplib.FTP()
        ftp.connect("127.0.0.1", port, timeout=5)
        break
    except OSError:
        time.sleep(0.05)
else:
    sys.exit(1)
ftp.login(user, password)
)PY";

bool Probe(std::uint16_t port, const std::string& user, const std::string& password, bool tls) {
  ChildProcess probe;
  std::vector<std::string> argv{kPython, "-c", kProbe, std::to_string(port), user, password};
  if (tls) argv.push_back("tls");
  return probe.Spawn(argv, "/dev/null") && probe.Wait() == 0;
}

std::uint16_t PickFreePort() {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  const bool ok = ::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
                  ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0;
  ::close(fd);
  return ok ? ntohs(addr.sin_port) : 0;
}

std::string DaemonDir() {
  const char* env = std::getenv("TOLVA_FTPD_DIR");
  return env && *env ? env : "/opt/tolva-ftpd";
}

// Why `kind` cannot run here, or "" when it can.
std::string WhyNot(FtpServerKind kind) {
  const std::string dir = DaemonDir();
  switch (kind) {
    case FtpServerKind::kPyftpdlib:
      if (!Succeeds(std::string(kPython) + " -c 'import pyftpdlib'")) return "python3-pyftpdlib is not installed";
      break;
    case FtpServerKind::kProftpd:
      if (!Executable(kProftpd)) return "proftpd-basic is not installed";
      break;
    case FtpServerKind::kVsftpd:
    case FtpServerKind::kPureFtpd:
      if (::geteuid() != 0) return "needs root, the tests run unprivileged";
      if (!Executable(dir + (kind == FtpServerKind::kVsftpd ? "/usr/sbin/vsftpd" : "/usr/sbin/pure-ftpd")))
        return "not unpacked in " + dir + " (scripts/install.d/ftp-daemons.sh)";
      break;
  }
  std::string why;
  return FtpServer::Start(kind, &why) ? "" : "does not start here: " + why.substr(0, why.find('\n'));
}

// vsftpd's login services are named after the test process, so one left behind by a process that was
// killed is recognised by its pid and removed.
constexpr const char* kPamPrefix = "tolva-vsftpd-";
void RemoveStaleVsftpdServices() {
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator("/etc/pam.d", ec)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind(kPamPrefix, 0) == 0 && ::kill(std::atoi(name.c_str() + std::strlen(kPamPrefix)), 0) != 0)
      ::unlink(entry.path().c_str());
  }
}

}  // namespace

std::string FtpServerName(FtpServerKind kind) {
  static const char* const kNames[] = {"pyftpdlib", "proftpd", "vsftpd", "pure_ftpd"};
  return kNames[static_cast<int>(kind)];
}

std::vector<FtpServerKind> AvailableFtpServers() {
  static std::once_flag once;
  static std::vector<FtpServerKind> kinds;
  std::call_once(once, [] {
    for (auto kind :
         {FtpServerKind::kPyftpdlib, FtpServerKind::kProftpd, FtpServerKind::kVsftpd, FtpServerKind::kPureFtpd}) {
      const std::string why = WhyNot(kind);
      if (why.empty())
        kinds.push_back(kind);
      else
        std::cerr << "NOTICE: FTP server skipped: " << FtpServerName(kind) << ": " << why << "\n";
    }
  });
  return kinds;
}

std::string MakeTempDir(const std::string& prefix) {
  std::string templ = (fs::temp_directory_path() / (prefix + "XXXXXX")).string();
  return ::mkdtemp(templ.data()) ? templ : "";
}

void RemoveTree(const std::string& path) {
  std::error_code ec;
  if (!path.empty()) fs::remove_all(path, ec);
}

int CountOpenDescriptors() {
  std::error_code ec;
  const auto it = fs::directory_iterator("/proc/self/fd", ec);
  return static_cast<int>(std::distance(it, fs::directory_iterator())) - 1;  // the iterator's own
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

bool ChildProcess::Spawn(const std::vector<std::string>& argv, const std::string& log_path) {
  std::vector<char*> args;
  for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  const pid_t parent = ::getpid();
  const pid_t pid = ::fork();
  if (pid < 0) return false;
  if (pid == 0) {
    // A test that crashes must not leave servers behind.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(127);
    ::setpgid(0, 0);
    const int log = ::open(log_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int null = ::open("/dev/null", O_RDONLY);
    ::dup2(null, 0);
    ::dup2(log, 1);
    ::dup2(log, 2);
    ::execv(args[0], args.data());
    ::_exit(127);
  }
  pid_ = pid;
  return true;
}

int ChildProcess::Wait() {
  int status = -1;
  if (pid_ > 0) ::waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool ChildProcess::Running() {
  int status = 0;
  if (pid_ > 0 && ::waitpid(pid_, &status, WNOHANG) == pid_) pid_ = -1;
  return pid_ > 0;
}

void ChildProcess::Stop() {
  const pid_t pid = pid_;
  if (pid <= 0) return;
  // The group goes too: the daemons' session processes live in it.
  ::kill(-pid, SIGTERM);
  ::kill(pid, SIGTERM);  // in case it had not made its group yet
  for (int i = 0; i < 100 && Running(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  ::kill(-pid, SIGKILL);
  if (Running()) ::kill(pid, SIGKILL);
  Wait();
}

// Waits for a child that writes the port it listens on into `port_file`: 0 when it exited first or took
// more than five seconds.
static std::uint16_t WaitForPortFile(ChildProcess& child, const std::string& port_file) {
  for (int i = 0; i < 200; ++i) {
    const std::string text = ReadWholeFile(port_file);
    if (!text.empty()) return static_cast<std::uint16_t>(std::atoi(text.c_str()));
    if (!child.Running()) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
  return 0;
}

std::optional<TestCertificates> TestCertificates::Make(const std::string& dir, std::string* why) {
  TestCertificates c{dir + "/authority.pem", dir + "/server.pem",      dir + "/expired.pem",
                     dir + "/other.pem",     dir + "/self-signed.pem", dir + "/key.pem"};
  const std::string ca_key = dir + "/authority-key.pem", csr = dir + "/server.csr", local_names = dir + "/local.ext";
  WriteWholeFile(local_names, "subjectAltName=IP:127.0.0.1,DNS:localhost\n");
  WriteWholeFile(dir + "/other.ext", "subjectAltName=DNS:other.invalid\n");
  const std::string req = "openssl req -batch -newkey rsa:2048 -nodes ";
  const std::string sign = "openssl x509 -req -in " + csr + " -CA " + c.authority + " -CAkey " + ca_key +
                           " -CAcreateserial -CAserial " + dir + "/serial -extfile ";
  for (const std::string& command :
       {req + "-x509 -days 2 -subj /CN=Tolva-Test-Authority -keyout " + ca_key + " -out " + c.authority,
        req + "-subj /CN=127.0.0.1 -keyout " + c.key + " -out " + csr, sign + local_names + " -days 2 -out " + c.server,
        sign + local_names + " -days -1 -out " + c.expired, sign + dir + "/other.ext -days 2 -out " + c.other_name,
        "openssl x509 -req -in " + csr + " -key " + c.key + " -extfile " + local_names + " -days 2 -out " +
            c.self_signed}) {
    if (!Succeeds(command)) {
      if (why) *why = "openssl failed: " + command;
      return std::nullopt;
    }
  }
  return c;
}

std::unique_ptr<FtpServer> FtpServer::Start(FtpServerKind kind, std::string* why, const std::string& tls_certificate,
                                            const std::string& tls_key) {
  std::unique_ptr<FtpServer> server(new FtpServer());
  server->kind_ = kind;
  server->tls_certificate_ = tls_certificate;
  server->tls_key_ = tls_key;
  std::string reason;
  if (server->Launch(&reason)) return server;
  if (why) *why = FtpServerName(kind) + ": " + reason + "\n" + server->LogText();
  return nullptr;
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
  const std::string root = Root();
  if (work_.empty() || ::mkdir(root.c_str(), 0777) != 0) {
    *why = "cannot make its directories";
    return false;
  }
  ::chmod(work_.c_str(), 0755);
  ::chmod(root.c_str(), 0777);
  const bool as_root = ::geteuid() == 0;
  const std::string dir = DaemonDir();
  // The daemons run their sessions as another user (nobody, or daemon for vsftpd), who owns the root.
  const uid_t session_uid = kind_ == FtpServerKind::kVsftpd ? 1 : as_root ? 65534 : ::geteuid();
  const gid_t session_gid = kind_ == FtpServerKind::kVsftpd ? 1 : as_root ? 65534 : ::getegid();
  if (kind_ != FtpServerKind::kPyftpdlib && ::chown(root.c_str(), session_uid, session_gid) != 0) {
    *why = "cannot hand the root to the session user";
    return false;
  }
  const std::string uid_gid = std::to_string(session_uid) + ":" + std::to_string(session_gid);
  const bool tls = !tls_certificate_.empty();
  switch (kind_) {
    case FtpServerKind::kPyftpdlib:
      return SpawnOnFreePort(why, [&] {
        std::vector<std::string> argv{kPython, "-c",       kPyftpdlibLauncher,   root,
                                      User(),  Password(), std::to_string(port_)};
        if (tls) argv.insert(argv.end(), {tls_certificate_, tls_key_});
        return argv;
      });
    case FtpServerKind::kProftpd: {
      // proftpd refuses world-readable user files.
      const std::string passwd = work_ + "/passwd", group = work_ + "/group";
      WriteWholeFile(passwd, User() + ":" + kPasswordHash + ":" + uid_gid + "::" + root + ":/bin/sh\n");
      WriteWholeFile(group, "tolva:x:" + std::to_string(session_gid) + ":" + User() + "\n");
      ::chmod(passwd.c_str(), 0600);
      ::chmod(group.c_str(), 0600);
      return SpawnOnFreePort(why, [&] {
        std::ofstream(work_ + "/proftpd.conf", std::ios::trunc)
            << "ServerType standalone\nDefaultServer on\nPort " << port_ << "\n"
            << "DefaultAddress 127.0.0.1\nSocketBindTight on\nUseIPv6 off\nUseReverseDNS off\nMaxInstances 64\n"
            << (as_root ? "User nobody\nGroup nogroup\n" : "") << "AuthOrder mod_auth_file.c\n"
            << "AuthUserFile " << passwd << "\nAuthGroupFile " << group << "\n"
            << "RequireValidShell off\nDefaultRoot ~\nAllowOverwrite on\n"
            << "PidFile " << work_ << "/proftpd.pid\nScoreboardFile " << work_ << "/proftpd.scoreboard\n"
            << "DelayTable none\nWtmpLog off\nTransferLog none\nSystemLog " << work_ << "/proftpd.syslog\n";
        if (tls) {
          std::ofstream(work_ + "/proftpd.conf", std::ios::app)
              << "ModulePath /usr/lib/proftpd\nLoadModule mod_tls.c\nTLSEngine on\nTLSRequired on\n"
              << "TLSProtocol TLSv1.2 TLSv1.3\nTLSRSACertificateFile " << tls_certificate_ << "\n"
              << "TLSRSACertificateKeyFile " << tls_key_ << "\nTLSLog " << work_ << "/tls.log\n";
        }
        return std::vector<std::string>{kProftpd, "-n", "-q", "-c", work_ + "/proftpd.conf"};
      });
    }
    case FtpServerKind::kVsftpd: {
      // vsftpd logs a virtual user in through PAM (pam_userdb reads the password from a Berkeley DB that
      // perl's DB_File writes), then runs the session as "daemon": it changes into that account's home
      // before the chroot, and daemon's (/usr/sbin) exists on every Debian system, unlike nobody's.
      RemoveStaleVsftpdServices();
      const std::string users = work_ + "/users";
      if (!Succeeds("/usr/bin/perl -MDB_File -MFcntl -e 'tie my %h, \"DB_File\", $ARGV[0], O_RDWR|O_CREAT, 0600, "
                    "$DB_HASH or die; $h{$ARGV[1]} = $ARGV[2]' '" +
                    users + ".db' '" + User() + "' '" + Password() + "'")) {
        *why = "perl DB_File could not write the password database";
        return false;
      }
      static int servers = 0;
      const std::string service = kPamPrefix + std::to_string(::getpid()) + "-" + std::to_string(++servers);
      pam_service_file_ = "/etc/pam.d/" + service;
      if (!WriteWholeFile(pam_service_file_,
                          "auth required pam_userdb.so db=" + users + "\naccount required pam_permit.so\n")) {
        *why = "cannot write " + pam_service_file_;
        return false;
      }
      ::mkdir((work_ + "/empty").c_str(), 0755);  // its unprivileged chroot
      return SpawnOnFreePort(why, [&] {
        // Containers often forbid the namespaces and filters vsftpd would set up for itself.
        std::ofstream(work_ + "/vsftpd.conf", std::ios::trunc)
            << "listen=YES\nlisten_ipv6=NO\nlisten_address=127.0.0.1\nlisten_port=" << port_ << "\n"
            << "background=NO\nanonymous_enable=NO\nlocal_enable=YES\nwrite_enable=YES\nlocal_umask=022\n"
            << "guest_enable=YES\nguest_username=daemon\nvirtual_use_local_privs=YES\n"
            << "pam_service_name=" << service << "\nchroot_local_user=YES\nallow_writeable_chroot=YES\n"
            << "local_root=" << root << "\nsecure_chroot_dir=" << work_ << "/empty\n"
            << "seccomp_sandbox=NO\nisolate=NO\nisolate_network=NO\ndelay_failed_login=0\n";
        if (tls) {
          std::ofstream(work_ + "/vsftpd.conf", std::ios::app)
              << "ssl_enable=YES\nssl_ciphers=HIGH\nrsa_cert_file=" << tls_certificate_ << "\n"
              << "rsa_private_key_file=" << tls_key_ << "\n";
        }
        return std::vector<std::string>{dir + "/usr/sbin/vsftpd", work_ + "/vsftpd.conf"};
      });
    }
    case FtpServerKind::kPureFtpd:
      // A virtual user in pure-ftpd's own database. The hash is written here: pure-pw's default argon2
      // costs about four seconds a login on these machines.
      if (!WriteWholeFile(work_ + "/passwd",
                          User() + ":" + kPasswordHash + ":" + uid_gid + "::" + root + "/./::::::::::::\n") ||
          !Succeeds(dir + "/usr/bin/pure-pw mkdb " + work_ + "/pure.pdb -f " + work_ + "/passwd")) {
        *why = "pure-pw could not make the user database";
        return false;
      }
      return SpawnOnFreePort(why, [&] {
        std::vector<std::string> argv{dir + "/usr/sbin/pure-ftpd", "-S", "127.0.0.1," + std::to_string(port_), "-l",
                                      "puredb:" + work_ + "/pure.pdb", "-E", "-A", "-H", "-c", "64", "-C", "64",
                                      // listings stop at 2000 names unless told otherwise
                                      "-L", "100000:8"};
        if (tls) argv.insert(argv.end(), {"-Y", "2", "-2", tls_certificate_ + "," + tls_key_});
        return argv;
      });
  }
  return false;
}

bool FtpServer::SpawnOnFreePort(std::string* why, const std::function<std::vector<std::string>()>& command) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    port_ = PickFreePort();
    if (!process_.Spawn(command(), work_ + "/server.log")) break;
    // A port taken meanwhile greets with another server's voice while ours fails to bind and exits.
    if (Probe(port_, User(), Password(), !tls_certificate_.empty()) && process_.Running()) return true;
    process_.Stop();
  }
  *why = "did not start, or did not log its user in";
  return false;
}

std::unique_ptr<MisbehavingFtpd> MisbehavingFtpd::Start(const std::string& scenario_json, std::string* why) {
  std::unique_ptr<MisbehavingFtpd> server(new MisbehavingFtpd());
  server->work_ = MakeTempDir("tolva-misftpd-");
  const std::string port_file = server->work_ + "/port";
  if (!server->work_.empty() && server->process_.Spawn({kPython, "-c", kMisbehavingServer, port_file, scenario_json},
                                                       server->work_ + "/server.log"))
    server->port_ = WaitForPortFile(server->process_, port_file);
  if (server->port_ != 0) return server;
  if (why) *why = "did not start: " + ReadWholeFile(server->work_ + "/server.log");
  return nullptr;
}

std::string MisbehavingFtpd::LogText() const {
  return ReadWholeFile(work_ + "/server.log");
}

MisbehavingFtpd::~MisbehavingFtpd() {
  process_.Stop();
  RemoveTree(work_);
}

}  // namespace tolva::testing
