// Explicit FTP over TLS through the public members, on every real server that runs here in TLS mode
// (TLS required on control and data connections), with certificates openssl makes for the test; and
// every way a secure session can be refused, each with its own text and number.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "support/ftp_servers.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing {
namespace {

namespace fs = std::filesystem;

// The host stops a buffered get at its second progress event.
struct StopHalfWay : Tolva2011RegisterEvents {
  Tolva2011Register* component = nullptr;
  int seen = 0;
  void FTPSessionGetProgress(std::string&, Long&, Long&) override {
    if (++seen == 2) component->FTPSessionStop();
  }
};

const TestCertificates& Certificates() {
  static const std::optional<TestCertificates> made = [] {
    std::string why;
    auto c = TestCertificates::Make(MakeTempDir("tolva-tls-certs-"), &why);
    if (!c) std::cerr << "certificates: " << why << "\n";
    return c;
  }();
  return made.value();
}

std::unique_ptr<FtpServer> StartTls(FtpServerKind kind, const std::string& certificate) {
  std::string why;
  auto server = FtpServer::Start(kind, &why, certificate, Certificates().key);
  if (!server)
    std::cerr << "NOTICE: FTP over TLS skipped: " << FtpServerName(kind) << ": " << why.substr(0, why.find('\n'))
              << "\n";
  return server;
}

void UseTls(Tolva2011Register& c, Long security, const std::string& trusted) {
  c.FTPSecurity(security);
  c.FTPCertificateFile(trusted);
  c.FTPConnectTimeout(5000);
  c.FTPReadTimeout(5000);
}

class FtpTls : public ::testing::TestWithParam<FtpServerKind> {};

TEST_P(FtpTls, EveryKindOfTransferRunsThroughTls) {
  const auto server = StartTls(GetParam(), Certificates().server);
  if (!server) GTEST_SKIP() << "does not start in TLS mode here";
  const std::string h = server->HostPort(), user = server->User(), pw = server->Password();
  const std::string root = server->Root(), local = MakeTempDir("tolva-tls-local-");
  StopHalfWay host;
  Tolva2011Register c(platform::LinuxServices(), nullptr, &host);
  host.component = &c;
  UseTls(c, 1, Certificates().authority);
  std::string content(3 << 20, '\0'), msg;
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7 + i / 4096);
  WriteWholeFile(root + "/big.bin", content);

  ASSERT_EQ(c.FTPSessionOpen(h, user, pw, msg), kTrue) << msg << "\n" << server->LogText();
  HostArray<std::string> files;
  EXPECT_EQ(c.FTPSessionFileFindFiles("*.bin", files, 10, msg), 1) << msg;
  ASSERT_EQ(c.FTPSessionGet("big.bin", local + "/got", kFalse, msg), kTrue) << msg;
  EXPECT_TRUE(ReadWholeFile(local + "/got") == content);
  ASSERT_EQ(c.FTPSessionPut(local + "/got", "up.bin", kFalse, msg), kTrue) << msg;
  EXPECT_TRUE(ReadWholeFile(root + "/up.bin") == content);
  EXPECT_EQ(c.FTPSessionGetBuffered("big.bin", local + "/half", kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(c.FTPSessionStopped(), kTrue);
  EXPECT_LT(fs::file_size(local + "/half"), content.size());
  // proftpd ends a TLS session whose download was cut off; the others go on, and a reconnect serves both.
  ASSERT_EQ(c.FTPSessionReconnect(msg), kTrue) << msg;
  fs::create_directory(local + "/dl");
  ASSERT_EQ(c.FTPSessionGetMask("*.bin", local + "/dl", msg), kTrue) << msg;
  EXPECT_TRUE(ReadWholeFile(local + "/dl/big.bin") == content && ReadWholeFile(local + "/dl/up.bin") == content);
  c.FTPSessionClose();
  ASSERT_EQ(c.FTPGetBinaryFile(h, user, pw, "up.bin", local + "/one", msg), kTrue) << msg;
  EXPECT_TRUE(ReadWholeFile(local + "/one") == content);
  RemoveTree(local);
}

INSTANTIATE_TEST_SUITE_P(Servers, FtpTls, ::testing::ValuesIn(AvailableFtpServers()),
                         [](const auto& info) { return FtpServerName(info.param); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FtpTls);

// Each row opens a session to a server with the row's certificate (or to the scripted server, which offers
// no TLS or stalls its handshake) and expects the open to fail with the row's text and number, or to
// succeed when the number is 0. A refused session never carries the user name or password.
TEST(FtpTlsRefusals, EachFailureHasItsTextAndNumber) {
  const auto& certs = Certificates();
  const std::string kOpen = "Can't Open Session [";
  struct Row {
    std::string label, served, host, trusted;
    Long security, number;
    std::string detail;
  } rows[] = {
      {"self-signed, trusted by file", certs.self_signed, "127.0.0.1", certs.self_signed, 1, 0, ""},
      {"authority's, reached by name", certs.server, "localhost", certs.authority, 1, 0, ""},
      {"not from a trusted authority", certs.server, "127.0.0.1", "", 1, 12045,
       "The server's certificate is not signed by a trusted authority (12045)."},
      {"self-signed, other file trusted", certs.self_signed, "127.0.0.1", certs.authority, 1, 12045,
       "The server's certificate is not signed by a trusted authority (12045)."},
      {"expired", certs.expired, "127.0.0.1", certs.authority, 1, 12037,
       "The server's certificate has expired or is not yet valid (12037)."},
      {"for another name", certs.other_name, "127.0.0.1", certs.authority, 1, 12038,
       "The server's certificate does not name this host (12038)."},
      {"trust file missing", certs.server, "127.0.0.1", "/nonexistent.pem", 1, 0,
       "Certificate file [/nonexistent.pem] can't be read: File not found."},
      {"no TLS offered, TLS required", "", "", "", 1, 12157, "TLS refused by the server (12157): 502 No."},
      {"no TLS offered, TLS if offered", "", "", "", 2, 0, ""},
      {"no TLS offered, plain FTP", "", "", "", 0, 0, ""},
      {"handshake never answered", "stall", "", "", 1, 12002,
       "The server did not answer in time, during the connection or its TLS handshake (12002)."},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    std::unique_ptr<FtpServer> server;
    std::unique_ptr<MisbehavingFtpd> scripted;
    std::string h, msg, why;
    if (row.served.empty() || row.served == "stall") {
      scripted = MisbehavingFtpd::Start(row.served.empty() ? "{}" : R"({"auth": "stall"})", &why);
      ASSERT_TRUE(scripted) << why;
      h = scripted->HostPort();
    } else {
      server = StartTls(FtpServerKind::kPyftpdlib, row.served);
      if (!server) GTEST_SKIP() << "pyftpdlib does not start in TLS mode here";
      h = row.host + ":" + std::to_string(server->Port());
    }
    Tolva2011Register c(platform::LinuxServices());
    UseTls(c, row.security, row.trusted);
    if (row.served == "stall") c.FTPReadTimeout(500);
    const Boolean opened = c.FTPSessionOpen(h, "tolva", "tolva-pw", msg);
    Long pending = 0;
    EXPECT_EQ(c.FTPSessionError("", pending), row.number ? std::to_string(row.number) : "");
    if (row.detail.empty()) {
      EXPECT_EQ(opened, kTrue) << msg;
      EXPECT_EQ(c.FTPSessionDirectoryCurrent(), "/");
    } else {
      EXPECT_EQ(opened, kFalse);
      EXPECT_EQ(msg, kOpen + h + "] - " + row.detail);
      EXPECT_EQ(c.FTPShortError(), row.detail);
    }
    c.FTPSessionClose();
    EXPECT_EQ(c.FTPTest(h, "tolva", "tolva-pw", msg), opened) << "the connection test follows the same choice";
    if (scripted) {
      const std::string log = scripted->LogText();
      EXPECT_EQ(log.find("AUTH") != std::string::npos, row.security != 0) << log;
      EXPECT_EQ(log.find("USER") != std::string::npos, row.number == 0) << log;
      EXPECT_EQ(log.find("PASS") != std::string::npos, row.number == 0) << log;
    }
  }
}

}  // namespace
}  // namespace tolva::testing
