// The FTP over TLS part of the tour: one secure session on a local server
// whose certificate was made on the spot by a private authority.
//   tolva-demo ftp-tls HOST:PORT USER PASSWORD AUTHORITY_PEM LOCAL_WORK_DIRECTORY
#include <iostream>
#include <string>

#include "demo.h"

namespace {

using tolva::Long;

std::string YesNo(tolva::Boolean b) {
  return b == tolva::kTrue ? "True" : "False";
}

int FtpTls(const demo::Args& args) {
  if (args.size() < 5) {
    std::cerr << "usage: ftp-tls HOST:PORT USER PASSWORD AUTHORITY_PEM LOCAL_WORK_DIRECTORY\n";
    return 2;
  }
  const std::string &host_name = args[0], &user = args[1], &password = args[2], &authority = args[3];
  const std::string local = args[4] + "/";
  demo::ConsoleHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  c.FTPConnectTimeout(10000);
  c.FTPReadTimeout(10000);
  std::string msg;

  demo::Heading("FTP over TLS: the system's authorities do not know the server");
  c.FTPSecurity(1);
  demo::Show("FTPSecurity", std::to_string(c.FTPSecurity()) + " (TLS required)");
  demo::Show("FTPSessionOpen", YesNo(c.FTPSessionOpen(host_name, user, password, msg)));
  demo::Show("ErrorMessage", msg);
  Long pending = 0;
  demo::Show("FTPSessionError", c.FTPSessionError("FTPSessionOpen", pending));

  demo::Heading("FTP over TLS: trusting the authority that signed its certificate");
  c.FTPCertificateFile(authority);
  demo::Show("FTPCertificateFile", c.FTPCertificateFile());
  msg.clear();
  if (c.FTPSessionOpen(host_name, user, password, msg) != tolva::kTrue) {
    demo::Show("FTPSessionOpen failed", msg);
    return 1;
  }
  demo::Show("FTPSessionOpen", "True (control and data connections encrypted)");
  Long files = 0, dirs = 0;
  c.FTPSessionFileFindCount("*", files, dirs, msg);
  demo::Show("FTPSessionFileFindCount", std::to_string(files) + " files, " + std::to_string(dirs) + " directories");
  demo::Show("FTPSessionGet secret.txt", YesNo(c.FTPSessionGet("secret.txt", local + "secret.txt", tolva::kTrue, msg)));
  demo::Show("FTPSessionPut back.txt", YesNo(c.FTPSessionPut(local + "secret.txt", "back.txt", tolva::kTrue, msg)));
  demo::Show("FTPSessionFileExists back.txt", YesNo(c.FTPSessionFileExists("back.txt", msg)));
  c.FTPSessionClose();
  demo::Show("FTPGetBinaryFile (its own TLS connection)",
             YesNo(c.FTPGetBinaryFile(host_name, user, password, "back.txt", local + "one-call.txt", msg)));
  return 0;
}

TOLVA_DEMO_COMMAND("ftp-tls", "HOST:PORT USER PASSWORD AUTHORITY_PEM LOCAL_WORK_DIRECTORY", FtpTls);

}  // namespace
