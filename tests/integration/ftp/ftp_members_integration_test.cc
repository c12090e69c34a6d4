// The FTP members through the public interface, on the real FTP library and every real server the
// machine can run. Skipped, with a notice, without an FTP library.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/ftp_servers.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

namespace fs = std::filesystem;
using Events = std::vector<std::string>;

class Recorder : public Tolva2011RegisterEvents, public HostContainer {
 public:
  Events events;
  std::function<void(Long, Long)> on_progress;
  void FTPSessionFileFound(Boolean& d, std::string& n, Long& s, std::string&, std::string&, Boolean&) override {
    events.push_back("Found " + n + " " + std::to_string(d) + " " + std::to_string(s));
  }
  void FTPSessionFileDeleted(std::string& p, Boolean& ok) override { Add("Deleted " + p, ok); }
  void FTPSessionFileDownloaded(std::string& p, Boolean& ok) override { Add("Downloaded " + p, ok); }
  void FTPSessionGetProgress(std::string&, Long& done, Long& total) override { Progress("Get", done, total); }
  void FTPSessionPutProgress(std::string&, Long& done, Long& total) override { Progress("Put", done, total); }
  Events Take(bool sorted = true) {
    Events e = std::move(events);
    events.clear();
    if (sorted) std::sort(e.begin(), e.end());
    return e;
  }

 private:
  void Add(const std::string& what, Long n) { events.push_back(what + " " + std::to_string(n)); }
  void Progress(const std::string& what, Long done, Long total) {
    Add(what, done);
    if (on_progress) on_progress(done, total);
  }
};

class FtpMembers : public ::testing::TestWithParam<testing::FtpServerKind> {
 protected:
  void SetUp() override {
    platform::Services services = platform::LinuxServices();
    if (!services.internet) GTEST_SKIP() << "no FTP library on this build yet: the real-server tests did not run";
    std::string why;
    server = testing::FtpServer::Start(GetParam(), &why);
    ASSERT_TRUE(server) << why;
    root = server->Root();
    local = testing::MakeTempDir("tolva-ftp-members-");
    c = std::make_unique<Tolva2011Register>(services, &host, &host);
    c->FTPConnectTimeout(5000);
    c->FTPReadTimeout(5000);
  }
  void TearDown() override {
    if (c) c->FTPSessionClose();
    testing::RemoveTree(local.string());
  }
  void Open() {
    std::string msg;
    ASSERT_EQ(c->FTPSessionOpen(h(), server->User(), server->Password(), msg), kTrue) << msg;
    home = c->FTPSessionDirectoryCurrent();
  }
  static std::string Read(const fs::path& p) { return testing::ReadWholeFile(p.string()); }
  static void Write(const fs::path& p, const std::string& data) { testing::WriteWholeFile(p.string(), data); }
  std::string h() const { return server->HostPort(); }
  std::string Local(const std::string& name) const { return (local / name).string(); }
  bool OnlyOnce() const { return GetParam() == testing::FtpServerKind::kPyftpdlib; }

  std::unique_ptr<testing::FtpServer> server;
  fs::path root, local;
  std::string home, msg;
  Recorder host;
  std::unique_ptr<Tolva2011Register> c;
};

// What only a real server shows: a refused login, directories made and removed on its disk, the current
// directory kept over a reconnect, ASCII and binary on the wire, and the one-call members' own sessions.
TEST_P(FtpMembers, SessionsDirectoriesAndTransfers) {
  EXPECT_EQ(c->FTPSessionOpen(h(), server->User(), "wrong", msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session [" + h() + "] - Session can't be connected.");
  Open();
  EXPECT_EQ(c->FTPSessionDirectoryCreate("made", msg), kTrue) << msg;
  EXPECT_TRUE(fs::is_directory(root / "made"));
  EXPECT_EQ(c->FTPSessionDirectoryCreate("made", msg), kFalse);
  EXPECT_EQ(c->FTPSessionDirectoryExists("made"), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryExists("missing"), kFalse);
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), home) << "back where it was";
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("made"), kTrue) << c->FTPLastError();
  EXPECT_EQ(c->FTPSessionReconnect(msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), home == "/" ? "/made" : home + "/made") << "kept over a reconnect";
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet(home), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryDelete("made/"), kTrue) << c->FTPLastError();
  EXPECT_FALSE(fs::exists(root / "made"));

  const std::string binary = std::string(70000, '\0') + "\r\n\x1a\xff\n";
  Write(local / "bin.dat", binary);
  Write(root / "text.txt", "one\ntwo\n");
  ASSERT_EQ(c->FTPSessionGet("text.txt", Local("text.txt"), kTrue, msg), kTrue) << msg;
  EXPECT_EQ(Read(Local("text.txt")), "one\r\ntwo\r\n");
  ASSERT_EQ(c->FTPSessionPut(Local("bin.dat"), "back.dat", kFalse, msg), kTrue) << msg;
  EXPECT_EQ(Read(root / "back.dat"), binary);
  c->FTPSessionClose();
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  ASSERT_EQ(c->FTPGetBinaryFile(h(), server->User(), server->Password(), "back.dat", Local("x"), msg), kTrue) << msg;
  EXPECT_EQ(Read(Local("x")), binary);
  EXPECT_EQ(c->FTPTest(h(), server->User(), server->Password(), msg), kTrue) << msg;
  EXPECT_EQ(c->FTPTest(h(), server->User(), "bad", msg), kFalse);
}

TEST_P(FtpMembers, FindCountDownloadAndDeleteByMask) {
  Write(root / "a.txt", "aaa");
  Write(root / "b.txt", "bb\n");
  Write(root / "c.log", "c");
  fs::create_directories(root / "sub");
  fs::create_directories(local / "dl");
  Open();
  EXPECT_EQ(c->FTPSessionFileFind("*.txt", msg), 2) << msg;
  EXPECT_EQ(host.Take(), (Events{"Found a.txt 0 3", "Found b.txt 0 3"}));
  Long files = 0, dirs = 0;
  EXPECT_EQ(c->FTPSessionFileFindCount("*", files, dirs, msg), kTrue);
  EXPECT_EQ(files * 10 + dirs, 31) << files << " files, " << dirs << " directories";

  fs::create_directories(root / "d.txt");
  host.events.clear();
  ASSERT_EQ(c->FTPSessionGetMask("*.txt", Local("dl"), msg), kTrue) << msg;
  EXPECT_EQ(host.Take(), (Events{"Downloaded a.txt -1", "Downloaded b.txt -1"})) << "directories are not files";
  EXPECT_EQ(Read(local / "dl" / "b.txt"), "bb\r\n");
  EXPECT_EQ(c->FTPSessionFileDeleteMask("*.txt", msg), kTrue) << msg;
  EXPECT_EQ(host.Take(), (Events{"Deleted a.txt -1", "Deleted b.txt -1"}));
  EXPECT_FALSE(fs::exists(root / "a.txt"));
  EXPECT_TRUE(fs::exists(root / "c.log"));
}

TEST_P(FtpMembers, BufferedTransfersReportProgressAndStop) {
  std::string data(250000, 'z');
  for (std::size_t i = 0; i < data.size(); i += 7) data[i] = static_cast<char>(i);
  Write(root / "big.bin", data);
  Open();
  ASSERT_EQ(c->FTPSessionGetBuffered("big.bin", Local("big.bin"), kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(Read(Local("big.bin")), data);
  EXPECT_EQ(host.Take(false), (Events{"Get 0", "Get 100000", "Get 200000", "Get 250000"}));

  host.on_progress = [&](Long done, Long) {
    if (done >= 100000) c->FTPSessionStop();
  };
  EXPECT_EQ(c->FTPSessionGetBuffered("big.bin", Local("part.bin"), kFalse, msg, 50000), kTrue);
  EXPECT_EQ(c->FTPSessionStopped(), kTrue);
  EXPECT_LT(fs::file_size(Local("part.bin")), data.size());
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << "a stopped get leaves the session usable: " << msg;
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), home) << "and the connection answers its next command";
  EXPECT_EQ(c->FTPSessionPutBuffered(Local("big.bin"), "up.bin", kFalse, msg, 100000), kFalse);
  EXPECT_EQ(msg, "Can't Put File [" + Local("big.bin") + "] - Interrupted.");
  host.on_progress = nullptr;
  ASSERT_EQ(c->FTPSessionPutBuffered(Local("big.bin"), "up.bin", kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(Read(root / "up.bin"), data);
  std::string head;
  Long got = 0;
  ASSERT_EQ(c->FTPSessionGetBuffer("big.bin", 10, head, got, msg), kTrue) << msg;
  EXPECT_EQ(head, data.substr(0, 10));
  EXPECT_EQ(got, 10);
}

// A local disk that fills up mid-download, played by a file-size limit (writes past it fail as on a full
// disk): the get fails with a clear text, the old file stays, no partial file is left, the session goes on.
TEST_P(FtpMembers, ADiskThatFillsUpFailsTheGetAndKeepsTheOldFile) {
  if (!OnlyOnce()) GTEST_SKIP() << "local behaviour: one server is enough";
  Write(root / "big.bin", std::string(1 << 20, 'b'));
  Write(local / "big.bin", "the old contents");
  Open();
  rlimit saved{};
  ::getrlimit(RLIMIT_FSIZE, &saved);
  rlimit small = saved;
  small.rlim_cur = 64 * 1024;
  const auto handler = ::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  const Boolean got = c->FTPSessionGet("big.bin", Local("big.bin"), kFalse, msg);
  ::setrlimit(RLIMIT_FSIZE, &saved);
  ::signal(SIGXFSZ, handler);
  EXPECT_EQ(got, kFalse);
  EXPECT_EQ(msg.rfind("Can't Get File [big.bin] - Get Error", 0), 0u) << msg;
  EXPECT_EQ(Read(local / "big.bin"), "the old contents");
  EXPECT_EQ(std::distance(fs::directory_iterator(local), fs::directory_iterator()), 1) << "partial file left";
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionGet("big.bin", Local("again.bin"), kFalse, msg), kTrue) << msg;
}

INSTANTIATE_TEST_SUITE_P(Servers, FtpMembers, ::testing::ValuesIn(testing::AvailableFtpServers()),
                         [](const auto& info) { return testing::FtpServerName(info.param); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FtpMembers);

}  // namespace
}  // namespace tolva
