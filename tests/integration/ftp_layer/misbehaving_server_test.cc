// The layer against a server that misbehaves on purpose: every fault ends in
// an error number within the time-outs, never a hang, a leaked descriptor or
// a damaged local file, and a session that survived a fault answers its next
// command correctly.
#include <dirent.h>

#include <gtest/gtest.h>

#include <chrono>
#include <set>

#include "integration/ftp_layer/ftp_layer_test_support.h"
#include "support/misbehaving_ftpd.h"

namespace tolva::testing {
namespace {

using platform::FindData;
using platform::InternetHandle;
using Clock = std::chrono::steady_clock;

// Short time-outs keep the suite quick; the bound on elapsed time below is
// the "no hang" promise, with room for a loaded machine.
constexpr std::uint32_t kTimeoutMs = 800;
constexpr auto kNoHangBound = std::chrono::seconds(8);

struct Fault : ::testing::Test {
  std::unique_ptr<MisbehavingFtpd> Start(const std::string& json) {
    std::string why;
    auto server = MisbehavingFtpd::Start(json, &why);
    EXPECT_TRUE(server) << why;
    return server;
  }
  std::unique_ptr<LayerSession> Session(const MisbehavingFtpd& server) {
    auto s = std::make_unique<LayerSession>();
    s->lib->SetTimeouts(kTimeoutMs, kTimeoutMs);
    s->Connect(server.HostPort(), "u", "p");
    return s;
  }
  std::string Pwd(LayerSession& s) {
    std::string dir;
    if (!s.lib->GetCurrentDirectory(s.connection, dir, 260)) return "failed " + std::to_string(s.lib->LastError());
    return dir;
  }
  void SetUp() override {
    local_ = MakeTempDir("tolva-fault-");
    fds_before_ = CountOpenDescriptors();
  }
  void TearDown() override {
    EXPECT_EQ(fds_before_, CountOpenDescriptors()) << "descriptor leaked";
    RemoveTree(local_);
  }
  std::size_t LocalEntries() {
    std::size_t n = 0;
    DIR* d = ::opendir(local_.c_str());
    while (dirent* e = ::readdir(d)) n += e->d_name[0] == '.' && (e->d_name[1] == 0 || e->d_name[1] == '.') ? 0 : 1;
    ::closedir(d);
    return n;
  }
  std::string local_;
  int fds_before_ = 0;
};

TEST_F(Fault, ConnectFailuresEndInTheirErrorNumbersWithoutHanging) {
  struct Row {
    const char* scenario;
    std::uint32_t error;
    const char* response_prefix;
    const char* label;
  };
  const Row rows[] = {
      {R"({"login": "refuse"})", platform::kErrorInternetExtendedError, "530", "login refused"},
      {R"({"stall_greeting": 30})", platform::kErrorInternetTimeout, "", "greeting never comes"},
      {R"({"stall_on": {"PASS": 30}})", platform::kErrorInternetTimeout, "", "stall before the login reply"},
      {R"({"drop_on": ["PASS"]})", platform::kErrorInternetConnectionAborted, "", "control dropped at login"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    auto server = Start(row.scenario);
    ASSERT_TRUE(server);
    const auto start = Clock::now();
    auto s = Session(*server);
    EXPECT_EQ(0u, s->connection);
    EXPECT_EQ(row.error, s->lib->LastError());
    EXPECT_EQ(0u, s->lib->LastResponseInfo().rfind(row.response_prefix, 0)) << s->lib->LastResponseInfo();
    EXPECT_LT(Clock::now() - start, kNoHangBound);
  }
}

TEST_F(Fault, NothingListensOrNameUnknown) {
  LayerSession s;
  s.lib->SetTimeouts(kTimeoutMs, kTimeoutMs);
  EXPECT_FALSE(s.Connect("127.0.0.1:" + std::to_string(PickFreePort()), "u", "p"));
  EXPECT_EQ(platform::kErrorInternetCannotConnect, s.lib->LastError());
  EXPECT_FALSE(s.Connect("no-such-host.invalid", "u", "p"));
  EXPECT_EQ(platform::kErrorInternetNameNotResolved, s.lib->LastError());
  EXPECT_FALSE(s.Connect("[::1", "u", "p"));
  EXPECT_EQ(platform::kErrorInternetNameNotResolved, s.lib->LastError());
}

TEST_F(Fault, OddlyShapedRepliesAreReadWhole) {
  struct Row {
    const char* scenario;
    const char* label;
  };
  const Row rows[] = {{R"({"split_replies": true})", "replies split across packets"},
                      {R"({"multiline": true})", "multi-line replies"},
                      {R"({"split_replies": true, "multiline": true})", "both"},
                      {R"({"greeting_bytes": 1048576})", "a 1 MB greeting line"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    auto server = Start(row.scenario);
    ASSERT_TRUE(server);
    auto s = Session(*server);
    ASSERT_NE(0u, s->connection) << s->lib->LastError();
    EXPECT_TRUE(s->lib->SetCurrentDirectory(s->connection, "dir"));
    EXPECT_EQ("/dir", Pwd(*s));
    EXPECT_EQ("/dir", Pwd(*s)) << "replies out of step";
  }
}

TEST_F(Fault, HostileListingsGiveNamesAsListedAndSkipGarbage) {
  std::string listing =
      "total 12\r\n"
      "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 .\r\n"
      "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 ..\r\n"
      "-rw-r--r-- 1 0 0 10 Jan  5  2020 ../../x\r\n"
      "-rw-r--r-- 1 0 0 11 Jan  5  2020 a/b\r\n"
      "-rw-r--r-- 1 0 0 12 Jan  5  2020 back\\slash\r\n"
      "-rw-r--r-- 1 0 0 13 Jan  5  2020 nul\\u0000byte\r\n"
      "complete garbage line\r\n"
      "-rw-r--r-- 1 0 0 99999999999999999999999 Jan  5  2020 overflowing size\r\n"
      "-rw-r--r-- 1 0 0 14 Jan  5  2020 " +
      std::string(4096, 'n') + "\r\n";
  // JSON-escape the backslash; \u0000 stays an escape for the NUL.
  std::string escaped;
  for (char c : listing) {
    if (c == '\r')
      escaped += "\\r";
    else if (c == '\n')
      escaped += "\\n";
    else
      escaped += c;
  }
  auto pos = escaped.find("back\\slash");
  escaped.replace(pos, 10, "back\\\\slash");
  auto server = Start(R"({"listing": ")" + escaped + R"("})");
  ASSERT_TRUE(server);
  auto s = Session(*server);
  ASSERT_NE(0u, s->connection);
  std::set<std::string> names;
  FindData d;
  InternetHandle find = s->lib->FindFirstFile(s->connection, "", d, 0);
  ASSERT_NE(0u, find) << s->lib->LastError();
  do names.insert(d.name);
  while (s->lib->FindNextFile(find, d));
  s->lib->CloseHandle(find);
  const std::set<std::string> expected = {"../../x", "a/b", "back\\slash", std::string("nul\0byte", 8),
                                          std::string(4096, 'n')};
  EXPECT_EQ(expected, names);
  EXPECT_EQ("/", Pwd(*s));
}

TEST_F(Fault, TransferFaultsFailCleanlyAndTheSessionGoesOn) {
  struct Row {
    const char* scenario;
    bool get;  // else put
    std::uint32_t error;
    bool session_survives;
    const char* label;
  };
  // The scenario travels in argv, which holds at most 128 KiB per argument.
  const std::string file = std::string(R"("files": {"f.bin": ")") + std::string(100000, 'z') + R"("})";
  const Row rows[] = {
      {"retr_mode\": \"drop_data", true, platform::kErrorInternetExtendedError, true, "data dropped mid-get"},
      {"retr_mode\": \"stall", true, platform::kErrorInternetTimeout, false, "stall mid-get"},
      {"stor_mode\": \"drop_data", false, platform::kErrorInternetExtendedError, true, "data dropped mid-put"},
  };
  const std::string existing = local_ + "/f.bin";
  const std::string upload = local_ + "/up.bin";
  ASSERT_TRUE(WriteWholeFile(upload, PatternBytes(4 << 20)));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    auto server = Start(std::string("{\"") + row.scenario + "\", " + file + "}");
    ASSERT_TRUE(server);
    auto s = Session(*server);
    ASSERT_NE(0u, s->connection);
    ASSERT_TRUE(WriteWholeFile(existing, "precious"));
    const auto start = Clock::now();
    const bool ok = row.get
                        ? s->lib->GetFile(s->connection, "f.bin", existing, false, 0, platform::kFtpTransferTypeBinary)
                        : s->lib->PutFile(s->connection, upload, "f.bin", platform::kFtpTransferTypeBinary);
    EXPECT_FALSE(ok);
    EXPECT_EQ(row.error, s->lib->LastError());
    EXPECT_LT(Clock::now() - start, kNoHangBound);
    EXPECT_EQ("precious", ReadWholeFile(existing)) << "failed get damaged the local file";
    EXPECT_EQ(2u, LocalEntries()) << "temporary file left behind";
    const std::string pwd = Pwd(*s);
    if (row.session_survives) {
      EXPECT_EQ("/", pwd);
    } else {
      EXPECT_NE("/", pwd);  // out of step: refused at once rather than misread
    }
    EXPECT_LT(Clock::now() - start, kNoHangBound);
  }
}

TEST_F(Fault, ListingFaults) {
  for (
      const char* scenario :
      {R"({"list_mode": "drop_data", "listing": "-rw-r--r-- 1 0 0 1 Jan  5  2020 a\r\n-rw-r--r-- 1 0 0 1 Jan  5  2020 b\r\n"})",
       R"({"list_mode": "drop_control", "listing": "x"})", R"({"stall_on": {"LIST": 30}})"}) {
    SCOPED_TRACE(scenario);
    auto server = Start(scenario);
    ASSERT_TRUE(server);
    auto s = Session(*server);
    ASSERT_NE(0u, s->connection);
    const auto start = Clock::now();
    FindData d;
    EXPECT_EQ(0u, s->lib->FindFirstFile(s->connection, "*", d, 0));
    EXPECT_NE(platform::kErrorNoMoreFiles, s->lib->LastError()) << "a failed listing must not look empty";
    EXPECT_LT(Clock::now() - start, kNoHangBound);
  }
}

TEST_F(Fault, ExtraBytesBeyondTheAnnouncedSizeAreKept) {
  auto server = Start(R"({"retr_mode": "extra", "files": {"f": "abc"}})");
  ASSERT_TRUE(server);
  auto s = Session(*server);
  ASSERT_TRUE(s->lib->GetFile(s->connection, "f", local_ + "/f", false, 0, platform::kFtpTransferTypeBinary));
  EXPECT_EQ("abcEXTRA BYTES", ReadWholeFile(local_ + "/f"));
}

TEST_F(Fault, A1KGetCostsNoMoreExchangesThanAPlainClient) {
  auto server = Start(R"({"files": {"f": ")" + std::string(1024, 'k') + R"("}})");
  ASSERT_TRUE(server);
  {
    auto s = Session(*server);
    ASSERT_TRUE(s->lib->GetFile(s->connection, "f", local_ + "/f", false, 0, platform::kFtpTransferTypeBinary));
    ASSERT_TRUE(s->lib->GetFile(s->connection, "f", local_ + "/g", false, 0, platform::kFtpTransferTypeBinary));
  }
  std::vector<std::string> verbs;
  for (const auto& line : server->Commands()) verbs.push_back(line.substr(0, line.find(' ')));
  const std::vector<std::string> expected = {"USER", "PASS", "TYPE", "EPSV", "RETR", "EPSV", "RETR", "QUIT"};
  EXPECT_EQ(expected, verbs);
}

TEST_F(Fault, CommandInjectionThroughNamesIsRefused) {
  auto server = Start("{}");
  ASSERT_TRUE(server);
  auto s = Session(*server);
  EXPECT_FALSE(s->lib->DeleteFile(s->connection, "a\r\nDELE b"));
  EXPECT_EQ(platform::kErrorInvalidParameter, s->lib->LastError());
  EXPECT_EQ(0, server->Count("DELE"));
  EXPECT_EQ("/", Pwd(*s));
}

}  // namespace
}  // namespace tolva::testing
