// The FTP layer against every real server available here (they list, store and treat TYPE A each their
// own way) and against a scripted server that misbehaves on purpose: every fault ends in an error number
// within the time-outs, never a hang, a leaked descriptor or a damaged local file.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "platform/linux/ftp/poco_internet_library.h"
#include "support/ftp_servers.h"
#include "tolva/platform/internet.h"

namespace tolva::testing {
namespace {

namespace p = platform;
using p::FindData;
using p::InternetHandle;
using Clock = std::chrono::steady_clock;
constexpr std::size_t kBlock = 1 << 20;  // the layer's transfer block
constexpr std::uint32_t kBinary = p::kFtpTransferTypeBinary, kAscii = p::kFtpTransferTypeAscii;

// A library, an Internet handle and a connection, closed on every path.
struct Session {
  std::shared_ptr<p::InternetLibrary> lib = p::posix::NewInternetLibrary();
  InternetHandle internet = lib->Open("tolva-test", p::kInternetOpenTypeDirect, 0);
  InternetHandle connection = 0;
  explicit Session(std::uint32_t timeout_ms = 0) {
    if (timeout_ms) lib->SetTimeouts(timeout_ms, timeout_ms);
  }
  ~Session() {
    if (connection) lib->CloseHandle(connection);
    lib->CloseHandle(internet);
  }
  bool Connect(const std::string& host_port, const std::string& user = "u", const std::string& password = "p") {
    connection = lib->Connect(internet, host_port, 0, user, password, p::kInternetServiceFtp, p::kInternetFlagPassive);
    return connection != 0;
  }
  std::string Error() const { return std::to_string(lib->LastError()) + " " + lib->LastResponseInfo(); }
  std::string Pwd() {
    std::string dir;
    return lib->GetCurrentDirectory(connection, dir, 260) ? dir : "failed " + Error();
  }
  bool Get(const std::string& remote, const std::string& local, std::uint32_t type = kBinary, bool fail = false) {
    return lib->GetFile(connection, remote, local, fail, 0, type);
  }
  bool Put(const std::string& local, const std::string& remote, std::uint32_t type = kBinary) {
    return lib->PutFile(connection, local, remote, type);
  }
  std::vector<FindData> List(const std::string& mask) {
    std::vector<FindData> all;
    FindData d;
    const InternetHandle find = lib->FindFirstFile(connection, mask, d, 0);
    if (find == 0) return all;
    do all.push_back(d);
    while (lib->FindNextFile(find, d));
    EXPECT_EQ(p::kErrorNoMoreFiles, lib->LastError());
    EXPECT_TRUE(lib->CloseHandle(find));
    return all;
  }
  // Reads an open file in blocks of `block`; every read but the last must fill its block (a short socket
  // read is not the end of the data).
  std::string ReadAll(InternetHandle file, std::uint32_t block, std::size_t expected_size) {
    std::string back;
    std::vector<char> buffer(block);
    std::uint32_t got = 0;
    do {
      if (!lib->ReadFile(file, buffer.data(), block, got)) return back + " read failed " + Error();
      if (back.size() + got < expected_size) {
        EXPECT_EQ(block, got);
      }
      back.append(buffer.data(), got);
    } while (got != 0 && back.size() <= expected_size);
    return back;
  }
};

// Bytes 0..255 with a position-dependent twist, so shifted or dropped blocks show.
std::string PatternBytes(std::size_t size) {
  std::string s(size, '\0');
  for (std::size_t i = 0; i < size; ++i) s[i] = static_cast<char>((i * 131 + i / 997) & 0xFF);
  return s;
}

class RealServer : public ::testing::TestWithParam<FtpServerKind> {
 protected:
  void SetUp() override {
    std::string why;
    server_ = FtpServer::Start(GetParam(), &why);
    ASSERT_TRUE(server_) << why;
    root_ = server_->Root();
    local_ = MakeTempDir("tolva-ftp-local-");
    ASSERT_TRUE(s_.Connect(server_->HostPort(), server_->User(), server_->Password())) << s_.Error() << "\n"
                                                                                       << server_->LogText();
  }
  void TearDown() override { RemoveTree(local_); }

  std::unique_ptr<FtpServer> server_;
  std::string root_, local_;
  Session s_;
};

TEST_P(RealServer, TransfersRoundTripWholeAcrossBlockBoundaries) {
  struct Row {
    std::string local;
    std::uint32_t type;
    const char* back;  // what a get of the upload gives; nullptr: the same bytes
  };
  const std::string xs(kBlock - 1, 'x');
  const std::vector<Row> rows = {{"", kBinary, nullptr},
                                 {PatternBytes(kBlock), kBinary, nullptr},
                                 {PatternBytes(kBlock + 1), kBinary, nullptr},
                                 {"a\nb\n", kAscii, "a\r\nb\r\n"},
                                 {xs + "\r\ny", kAscii, nullptr}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.local.size() > 32 ? std::to_string(row.local.size()) + " bytes" : row.local);
    ASSERT_TRUE(WriteWholeFile(local_ + "/up", row.local));
    ASSERT_TRUE(s_.Put(local_ + "/up", "file", row.type)) << s_.Error();
    if (row.type == kBinary) {
      EXPECT_TRUE(ReadWholeFile(root_ + "/file") == row.local) << "stored";
    }
    ASSERT_TRUE(s_.Get("file", local_ + "/down", row.type)) << s_.Error();
    EXPECT_TRUE(ReadWholeFile(local_ + "/down") == (row.back ? row.back : row.local))
        << "size " << ReadWholeFile(local_ + "/down").size();
  }
}

TEST_P(RealServer, ListingsGiveNamesTypesSizesAndDates) {
  const std::set<std::string> names = {"with blank.txt", "caf\xC3\xA9.txt", "semi;colon.txt"};
  ASSERT_TRUE(WriteWholeFile(local_ + "/up", "abc"));
  for (const auto& name : names) ASSERT_TRUE(s_.Put(local_ + "/up", name)) << name << ": " << s_.Error();
  ::mkdir((root_ + "/sub").c_str(), 0777);
  ASSERT_TRUE(WriteWholeFile(root_ + "/sub/a.txt", std::string(1234, 'a')));
  ASSERT_TRUE(WriteWholeFile(root_ + "/sub/b.dat", "bb"));

  std::map<std::string, FindData> all;
  for (auto& e : s_.List("")) all[e.name] = e;
  for (const auto& name : names) EXPECT_EQ("abc", ReadWholeFile(root_ + "/" + name)) << name;
  for (const auto& name : names) EXPECT_TRUE(all.count(name)) << "not listed: [" << name << "]";
  // Servers that list the directory itself and its parent (MLSD cdir and
  // pdir) have them kept, as directories under the names they give.
  const bool dots = GetParam() == FtpServerKind::kProftpd || GetParam() == FtpServerKind::kPureFtpd;
  EXPECT_EQ(names.size() + (dots ? 3 : 1), all.size());
  for (const std::string dir : {"sub", ".", ".."}) {
    if (!dots && dir != "sub") continue;
    EXPECT_TRUE(all[dir].attributes & p::kFileAttributeDirectory) << dir;
  }
  const auto in_sub = s_.List("sub/*.txt");
  ASSERT_EQ(1u, in_sub.size()) << "a mask with a directory lists that directory";
  EXPECT_EQ("a.txt", in_sub[0].name);
  EXPECT_FALSE(in_sub[0].attributes & p::kFileAttributeDirectory);
  EXPECT_EQ(1234u, in_sub[0].size);
  EXPECT_TRUE(in_sub[0].last_write.valid && in_sub[0].last_write.year >= 2020);
  EXPECT_TRUE(s_.List("nothing*").empty());
  EXPECT_EQ(p::kErrorNoMoreFiles, s_.lib->LastError()) << "no match is an empty listing, not a failure";
}

TEST_P(RealServer, CommandsAndTheFailuresServersReport) {
  auto& lib = *s_.lib;
  std::string cwd;
  EXPECT_FALSE(lib.GetCurrentDirectory(s_.connection, cwd, 1));  // "/" and its terminator need 2
  EXPECT_EQ(p::kErrorInsufficientBuffer, lib.LastError());

  // Refusals are 12003 with the server's own reply, and a failed or refused get keeps the local file.
  const std::string keep = local_ + "/keep";
  ASSERT_TRUE(WriteWholeFile(root_ + "/r.bin", "remote"));
  ASSERT_TRUE(WriteWholeFile(keep, "precious"));
  struct Row {
    std::function<bool()> call;
    std::uint32_t error;
    const char* label;
  };
  const Row rows[] = {
      {[&] { return lib.SetCurrentDirectory(s_.connection, "missing"); }, p::kErrorInternetExtendedError, "CWD"},
      {[&] { return lib.DeleteFile(s_.connection, "missing"); }, p::kErrorInternetExtendedError, "DELE"},
      {[&] { return s_.Get("missing", keep); }, p::kErrorInternetExtendedError, "RETR"},
      {[&] { return s_.Get("r.bin", keep, kBinary, true); }, 80, "get onto an existing file, failing if it exists"},
      // Refused before anything is sent: the server would take the second line for a command of its own.
      {[&] { return lib.DeleteFile(s_.connection, "a\r\nDELE r.bin"); }, p::kErrorInvalidParameter, "CR LF in a name"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_FALSE(row.call());
    EXPECT_EQ(row.error, lib.LastError());
    if (row.error == p::kErrorInternetExtendedError) {
      EXPECT_EQ('5', lib.LastResponseInfo().at(0));
    }
    EXPECT_EQ("precious", ReadWholeFile(keep));
    EXPECT_EQ("/", s_.Pwd()) << "the session goes on";
  }
  EXPECT_TRUE(s_.Get("r.bin", keep));
  EXPECT_EQ("remote", ReadWholeFile(keep));
}

TEST_P(RealServer, OpenFilesStreamInBothDirections) {
  auto& lib = *s_.lib;
  const std::string bytes = PatternBytes(3 * 100000 + 17);
  InternetHandle w = lib.OpenFile(s_.connection, "stream.bin", p::kGenericWrite, kBinary);
  ASSERT_NE(0u, w) << s_.Error();
  EXPECT_FALSE(lib.CreateDirectory(s_.connection, "x")) << "a command while a file is open is refused, not mixed in";
  EXPECT_EQ(p::kErrorFtpTransferInProgress, lib.LastError());
  for (std::size_t pos = 0; pos < bytes.size(); pos += 65536) {
    std::uint32_t written = 0;
    const auto n = static_cast<std::uint32_t>(std::min<std::size_t>(65536, bytes.size() - pos));
    ASSERT_TRUE(lib.WriteFile(w, bytes.data() + pos, n, written));
    EXPECT_EQ(n, written);
  }
  ASSERT_TRUE(lib.CloseHandle(w)) << s_.Error();
  EXPECT_TRUE(ReadWholeFile(root_ + "/stream.bin") == bytes);
  InternetHandle r = lib.OpenFile(s_.connection, "stream.bin", p::kGenericRead, kBinary);
  ASSERT_NE(0u, r);
  EXPECT_TRUE(s_.ReadAll(r, 100000, bytes.size()) == bytes);
  ASSERT_TRUE(lib.CloseHandle(r));

  // ASCII reads give CR LF whatever the server sends, also when a block ends between the CR and the LF.
  // Longer than one socket block, so the reads go on past the first one.
  std::string unix_text, crlf_text;
  for (int i = 0; i < 400; ++i) {
    unix_text += "one\ntwo\n\nfour\n";
    crlf_text += "one\r\ntwo\r\n\r\nfour\r\n";
  }
  ASSERT_TRUE(WriteWholeFile(root_ + "/unix.txt", unix_text + "last"));
  for (std::uint32_t block : {1u, 2u, 3u, 4u, 7u, 4096u}) {
    SCOPED_TRACE(block);
    r = lib.OpenFile(s_.connection, "unix.txt", p::kGenericRead, kAscii);
    ASSERT_NE(0u, r) << s_.Error();
    EXPECT_TRUE(s_.ReadAll(r, block, crlf_text.size() + 4) == crlf_text + "last");
    ASSERT_TRUE(lib.CloseHandle(r)) << s_.Error();
  }

  // Closing a download midway aborts it and leaves the session in step, without a leaked descriptor.
  ASSERT_TRUE(WriteWholeFile(root_ + "/big.bin", PatternBytes(32 << 20)));
  const int fds_before = CountOpenDescriptors();
  for (int i = 0; i < 3; ++i) {
    r = lib.OpenFile(s_.connection, "big.bin", p::kGenericRead, kBinary);
    ASSERT_NE(0u, r) << i << " " << s_.Error();
    std::vector<char> block(4096);
    std::uint32_t got = 0;
    ASSERT_TRUE(lib.ReadFile(r, block.data(), 4096, got));
    EXPECT_EQ(4096u, got);
    EXPECT_TRUE(lib.CloseHandle(r));
    EXPECT_EQ("/", s_.Pwd()) << "after abort " << i;
  }
  EXPECT_EQ(fds_before, CountOpenDescriptors());
}

TEST_P(RealServer, TenThousandConnectCloseCyclesLeakNoDescriptor) {
  // The full ten thousand where a login is cheap; the daemons that fork a process per login are slow.
  const int rounds = GetParam() == FtpServerKind::kPyftpdlib ? 10000 : GetParam() == FtpServerKind::kProftpd ? 20 : 100;
  const int fds_before = CountOpenDescriptors();
  for (int i = 0; i < rounds; ++i)
    ASSERT_TRUE(Session().Connect(server_->HostPort(), server_->User(), server_->Password())) << i;
  EXPECT_EQ(fds_before, CountOpenDescriptors());
}

INSTANTIATE_TEST_SUITE_P(Servers, RealServer, ::testing::ValuesIn(AvailableFtpServers()),
                         [](const auto& info) { return FtpServerName(info.param); });

// Short time-outs keep the suite quick; the bound on elapsed time is the "no hang" promise, with room for a
// loaded machine.
constexpr std::uint32_t kTimeoutMs = 800;
constexpr auto kNoHangBound = std::chrono::seconds(8);

class Fault : public ::testing::Test {
 protected:
  void SetUp() override {
    local_ = MakeTempDir("tolva-fault-");
    fds_before_ = CountOpenDescriptors();
  }
  void TearDown() override {
    EXPECT_EQ(fds_before_, CountOpenDescriptors()) << "descriptor leaked";
    RemoveTree(local_);
  }
  std::unique_ptr<MisbehavingFtpd> Start(const std::string& json) {
    std::string why;
    auto server = MisbehavingFtpd::Start(json, &why);
    EXPECT_TRUE(server) << why;
    return server;
  }
  std::unique_ptr<Session> Connect(const MisbehavingFtpd* server) {
    auto s = std::make_unique<Session>(kTimeoutMs);
    EXPECT_TRUE(server && s->Connect(server->HostPort())) << s->Error();
    return s;
  }
  std::size_t LocalEntries() const {
    const std::filesystem::directory_iterator it(local_);
    return static_cast<std::size_t>(std::distance(begin(it), end(it)));
  }
  std::string local_;
  int fds_before_ = 0;
};

TEST_F(Fault, ConnectFailuresEndInTheirErrorNumbersWithoutHanging) {
  // Bound but not listening: a connection there is refused, every time.
  const int closed = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  ASSERT_EQ(0, ::bind(closed, reinterpret_cast<sockaddr*>(&addr), len));
  ASSERT_EQ(0, ::getsockname(closed, reinterpret_cast<sockaddr*>(&addr), &len));
  struct Row {
    const char* scenario;  // else `host` is dialled
    std::string host;
    std::uint32_t error;
    const char* response_prefix;
    const char* label;
  };
  const Row rows[] = {
      {R"({"login": "refuse"})", "", p::kErrorInternetExtendedError, "530", "login refused"},
      {R"({"stall_greeting": 30})", "", p::kErrorInternetTimeout, "", "greeting never comes"},
      {R"({"stall_on": {"PASS": 30}})", "", p::kErrorInternetTimeout, "", "stall before the login reply"},
      {R"({"drop_on": ["PASS"]})", "", p::kErrorInternetConnectionAborted, "", "control dropped at login"},
      {nullptr, "127.0.0.1:" + std::to_string(ntohs(addr.sin_port)), p::kErrorInternetCannotConnect, "", "refused"},
      // A label longer than 63 bytes: the resolver refuses it without sending a query anywhere.
      {nullptr, std::string(64, 'x') + ".invalid", p::kErrorInternetNameNotResolved, "", "unresolvable name"},
      {nullptr, "[::1", p::kErrorInternetNameNotResolved, "", "malformed host"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    auto server = row.scenario ? Start(row.scenario) : nullptr;
    const auto start = Clock::now();
    Session s(kTimeoutMs);
    EXPECT_FALSE(s.Connect(server ? server->HostPort() : row.host));
    EXPECT_EQ(row.error, s.lib->LastError());
    EXPECT_EQ(0u, s.lib->LastResponseInfo().rfind(row.response_prefix, 0)) << s.lib->LastResponseInfo();
    EXPECT_LT(Clock::now() - start, kNoHangBound);
  }
  ::close(closed);
}

TEST_F(Fault, OddlyShapedRepliesAreReadWhole) {
  for (const char* scenario : {R"({"split_replies": true})", R"({"multiline": true})",
                               R"({"split_replies": true, "multiline": true})", R"({"greeting_bytes": 1048576})"}) {
    SCOPED_TRACE(scenario);
    auto server = Start(scenario);
    auto s = Connect(server.get());
    EXPECT_TRUE(s->lib->SetCurrentDirectory(s->connection, "dir"));
    EXPECT_EQ("/dir", s->Pwd());
    EXPECT_EQ("/dir", s->Pwd()) << "replies out of step";
  }
}

TEST_F(Fault, TransferFaultsFailCleanlyAndTheSessionGoesOn) {
  struct Row {
    const char* scenario;
    bool get;  // else put
    std::uint32_t error;
    const char* local_after;  // the local file after a get
    const char* pwd_after;    // nullptr: the session is out of step and refuses at once
    const char* label;
  };
  // The scenario travels in argv, which holds at most 128 KiB an argument.
  const std::string file = std::string(R"("files": {"f.bin": ")") + std::string(100000, 'z') + R"(", "f": "abc"})";
  const Row rows[] = {
      {R"("retr_mode": "drop_data")", true, p::kErrorInternetExtendedError, "precious", "/", "data dropped mid-get"},
      {R"("retr_mode": "stall")", true, p::kErrorInternetTimeout, "precious", nullptr, "stall mid-get"},
      {R"("stor_mode": "drop_data")", false, p::kErrorInternetExtendedError, "precious", "/", "data dropped mid-put"},
      {R"("no_epsv": true)", true, 0, "abc", "/", "EPSV refused: PASV instead"},
  };
  ASSERT_TRUE(WriteWholeFile(local_ + "/up.bin", PatternBytes(4 << 20)));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    auto server = Start(std::string("{") + row.scenario + ", " + file + "}");
    auto s = Connect(server.get());
    ASSERT_TRUE(WriteWholeFile(local_ + "/f", "precious"));
    const auto start = Clock::now();
    const std::string remote = row.error ? "f.bin" : "f";
    EXPECT_EQ(row.error == 0, row.get ? s->Get(remote, local_ + "/f") : s->Put(local_ + "/up.bin", remote));
    if (row.error) {
      EXPECT_EQ(row.error, s->lib->LastError());
    }
    EXPECT_LT(Clock::now() - start, kNoHangBound);
    EXPECT_EQ(row.local_after, ReadWholeFile(local_ + "/f"));
    EXPECT_EQ(2u, LocalEntries()) << "temporary file left behind";
    if (row.pwd_after)
      EXPECT_EQ(row.pwd_after, s->Pwd());
    else
      EXPECT_NE("/", s->Pwd()) << "out of step: refused at once rather than misread";
    EXPECT_LT(Clock::now() - start, kNoHangBound);
  }
}

}  // namespace
}  // namespace tolva::testing
