// The FTP members through the public interface, on the real FTP library and
// every real server the machine can run (127.0.0.1, a temporary root each,
// stopped by process id). Skipped, with a notice, without an FTP library.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include <algorithm>
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

std::string Read(const fs::path& p) {
  return testing::ReadWholeFile(p.string());
}
void Write(const fs::path& p, const std::string& data) {
  fs::create_directories(p.parent_path());
  testing::WriteWholeFile(p.string(), data);
}
std::string WithoutCr(std::string s) {
  s.erase(std::remove(s.begin(), s.end(), '\r'), s.end());
  return s;
}

class Recorder : public Tolva2011RegisterEvents, public HostContainer {
 public:
  std::vector<std::string> events;
  std::function<void(Long, Long)> on_progress;
  void FTPSessionFileFound(Boolean& d, std::string& n, Long& s, std::string&, std::string&, Boolean&) override {
    events.push_back("Found " + n + " " + std::to_string(d) + " " + std::to_string(s));
  }
  void FTPSessionFileDeleted(std::string& p, Boolean& ok) override {
    events.push_back("Deleted " + p + " " + std::to_string(ok));
  }
  void FTPSessionFileDownloaded(std::string& p, Boolean& ok) override {
    events.push_back("Downloaded " + p + " " + std::to_string(ok));
  }
  void FTPSessionGetProgress(std::string&, Long& done, Long& total) override {
    events.push_back("Get " + std::to_string(done));
    if (on_progress) on_progress(done, total);
  }
  void FTPSessionPutProgress(std::string&, Long& done, Long& total) override {
    events.push_back("Put " + std::to_string(done));
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
    if (!server) GTEST_SKIP() << testing::FtpServerName(GetParam()) << " did not start: " << why;
    root = server->Root();
    local = testing::MakeTempDir("tolva-ftp-members-");
    c = std::make_unique<Tolva2011Register>(services, &host, &host);
    c->FTPConnectTimeout(5000);
    c->FTPReadTimeout(5000);
  }
  void TearDown() override {
    if (c) c->FTPSessionClose();
    if (!local.empty()) testing::RemoveTree(local.string());
  }
  void Open() {
    std::string msg;
    ASSERT_EQ(c->FTPSessionOpen(h(), server->User(), server->Password(), msg), kTrue) << msg;
    home = c->FTPSessionDirectoryCurrent();
  }
  std::string h() const { return server->HostPort(); }
  std::string Local(const std::string& name) const { return (local / name).string(); }

  std::unique_ptr<testing::FtpServer> server;
  fs::path root, local;
  std::string home;
  Recorder host;
  std::unique_ptr<Tolva2011Register> c;
};

TEST_P(FtpMembers, SessionOpensClosesReconnectsAndNamesAFailedLogin) {
  std::string msg;
  EXPECT_EQ(c->FTPSessionOpen(h(), server->User(), "wrong", msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session [" + h() + "] - Session can't be connected.");
  EXPECT_EQ(c->FTPShortError(), "Session can't be connected.");
  Open();
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << msg;
  fs::create_directories(root / "pub");
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("pub"), kTrue) << c->FTPLastError();
  EXPECT_EQ(c->FTPSessionReconnect(msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), home == "/" ? "/pub" : home + "/pub");
  c->FTPSessionClose();
  EXPECT_EQ(c->FTPSession(), 0);
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  EXPECT_EQ(msg, "Session is not opened.");
}

TEST_P(FtpMembers, Directories) {
  Open();
  std::string msg;
  EXPECT_FALSE(home.empty());
  EXPECT_EQ(c->FTPSessionDirectoryCreate("made", msg), kTrue) << msg;
  EXPECT_TRUE(fs::is_directory(root / "made"));
  EXPECT_EQ(c->FTPSessionDirectoryCreate("made", msg), kFalse);
  EXPECT_EQ(msg.rfind("Can't Create Directory [made] - Error - FTPSessionDirectoryCreate/", 0), 0u) << msg;
  EXPECT_EQ(c->FTPSessionDirectoryExists("made"), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryExists("missing"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "");
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), home) << "back where it was";
  EXPECT_EQ(c->FTPSessionDirectoryDelete("made/"), kTrue) << c->FTPLastError();
  EXPECT_FALSE(fs::exists(root / "made"));
}

TEST_P(FtpMembers, FindListCountAndDeleteByMask) {
  Write(root / "a.txt", "aaa");
  Write(root / "b.txt", "bb");
  Write(root / "c.log", "c");
  fs::create_directories(root / "sub");
  Open();
  std::string msg;
  EXPECT_EQ(c->FTPSessionFileFind("*.txt", msg), 2) << msg;
  std::sort(host.events.begin(), host.events.end());
  EXPECT_EQ(host.events, (std::vector<std::string>{"Found a.txt 0 3", "Found b.txt 0 2"}));

  Long files = 0, dirs = 0;
  EXPECT_EQ(c->FTPSessionFileFindCount("*", files, dirs, msg), kTrue);
  EXPECT_EQ(files, 3);
  EXPECT_EQ(dirs, 1);
  auto names = HostArray<std::string>::OneDim(1, 5);
  auto sizes = HostArray<Long>::OneDim(1, 5);
  auto dates = HostArray<std::string>::OneDim(1, 5);
  auto times = HostArray<std::string>::OneDim(1, 5);
  EXPECT_EQ(c->FTPSessionFileFindFilesFull("*", names, sizes, dates, times, 5, msg), 3);
  for (Long i = 1; i <= 3; ++i) {
    EXPECT_FALSE(names.At(i)->empty());
    EXPECT_EQ(dates.At(i)->size(), 10u) << "yyyy-mm-dd: " << *dates.At(i);
  }
  Long size = 0;
  std::string date, time;
  EXPECT_EQ(c->FTPSessionFileExistsFull("a.txt", size, date, time, msg), kTrue);
  EXPECT_EQ(size, 3);

  host.events.clear();
  EXPECT_EQ(c->FTPSessionFileDeleteMask("*.txt", msg), kTrue) << msg;
  EXPECT_EQ(host.events.size(), 2u);
  EXPECT_FALSE(fs::exists(root / "a.txt"));
  EXPECT_TRUE(fs::exists(root / "c.log"));
  EXPECT_EQ(c->FTPSessionFileDelete("a.txt"), kFalse);
  EXPECT_EQ(c->FTPLastError().rfind("FTPSessionFileDelete/", 0), 0u);
}

TEST_P(FtpMembers, GetAndPutTextAndBinary) {
  std::string binary(70000, '\0');
  for (std::size_t i = 0; i < binary.size(); ++i) binary[i] = static_cast<char>(i * 31);
  Write(root / "bin.dat", binary);
  Write(root / "text.txt", "one\ntwo\n");
  Open();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGet("bin.dat", Local("bin.dat"), kFalse, msg), kTrue) << msg;
  EXPECT_EQ(Read(Local("bin.dat")), binary);
  ASSERT_EQ(c->FTPSessionGet("text.txt", Local("text.txt"), kTrue, msg), kTrue) << msg;
  EXPECT_EQ(Read(Local("text.txt")), "one\r\ntwo\r\n");
  ASSERT_EQ(c->FTPSessionGetAuto("text.txt", Local("auto.txt"), msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "True");

  ASSERT_EQ(c->FTPSessionPut(Local("bin.dat"), "back.dat", kFalse, msg), kTrue) << msg;
  EXPECT_EQ(Read(root / "back.dat"), binary);
  ASSERT_EQ(c->FTPSessionPut(Local("text.txt"), "back.txt", kTrue, msg), kTrue) << msg;
  EXPECT_EQ(WithoutCr(Read(root / "back.txt")), "one\ntwo\n") << "line for line";

  EXPECT_EQ(c->FTPSessionGet("missing", Local("m"), kFalse, msg), kFalse);
  EXPECT_EQ(msg.rfind("Can't Get File [missing] - Get Error - FTPSessionGet/", 0), 0u) << msg;
}

TEST_P(FtpMembers, MaskDownload) {
  Write(root / "x1.csv", "1\n");
  Write(root / "x2.csv", "2\n");
  fs::create_directories(root / "x3.csv");
  fs::create_directories(local / "dl");
  Open();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetMask("*.csv", Local("dl"), msg), kTrue) << msg;
  std::sort(host.events.begin(), host.events.end());
  EXPECT_EQ(host.events, (std::vector<std::string>{"Downloaded x1.csv -1", "Downloaded x2.csv -1"}));
  EXPECT_EQ(Read(local / "dl" / "x2.csv"), "2\r\n");
}

TEST_P(FtpMembers, BufferedTransfersReportProgressAndStop) {
  std::string data(250000, 'z');
  for (std::size_t i = 0; i < data.size(); i += 7) data[i] = static_cast<char>(i);
  Write(root / "big.bin", data);
  Open();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("big.bin", Local("big.bin"), kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(Read(Local("big.bin")), data);
  EXPECT_EQ(host.events, (std::vector<std::string>{"Get 0", "Get 100000", "Get 200000", "Get 250000"}));

  host.events.clear();
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

// A file larger than a Long can count moves whole; the host's counters stop
// at the largest Long instead of wrapping into negative sizes. One server
// is enough: the sizes live in this component, not in the server.
TEST_P(FtpMembers, AFileOfMoreThanTwoGiBMovesWholeWithClampedCounters) {
  if (GetParam() != testing::FtpServerKind::kPyftpdlib) GTEST_SKIP() << "measured against pyftpdlib only";
  const std::uint64_t size = (std::uint64_t{9} << 28) + 12345;  // 2.25 GiB and a bit
  {
    // Sparse on the server's side: no disk is spent on it there.
    Write(root / "huge.bin", "");
    fs::resize_file(root / "huge.bin", size);
  }
  Open();
  Long last_done = 0;
  bool sane = true;
  host.on_progress = [&](Long done, Long total) {
    sane = sane && done >= last_done && total == 2147483647;
    last_done = done;
  };
  std::string msg;
  EXPECT_EQ(c->FTPSessionGetBuffered("huge.bin", Local("huge.bin"), kFalse, msg, 8 << 20), kTrue) << msg;
  host.on_progress = nullptr;
  EXPECT_TRUE(sane) << "progress went backwards, or the total was not the largest Long";
  EXPECT_EQ(last_done, 2147483647);
  std::error_code ec;
  EXPECT_EQ(fs::file_size(Local("huge.bin"), ec), size);
  fs::remove(Local("huge.bin"), ec);
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << msg;
}

// A local disk that fills up mid-download: a file-size limit stands in for
// it (writes past it fail as on a full disk). The get fails with a clear
// text, the file that was there before is untouched, no partial file is
// left behind, and the session goes on.
TEST_P(FtpMembers, ADiskThatFillsUpFailsTheGetAndKeepsTheOldFile) {
  if (GetParam() != testing::FtpServerKind::kPyftpdlib) GTEST_SKIP() << "local behaviour: one server is enough";
  Write(root / "big.bin", std::string(1 << 20, 'b'));
  Write(local / "big.bin", "the old contents");
  Open();
  std::string msg;
  Boolean got = kTrue;
  {
    struct Limit {
      rlimit saved{};
      void (*handler)(int) = ::signal(SIGXFSZ, SIG_IGN);
      Limit() {
        ::getrlimit(RLIMIT_FSIZE, &saved);
        rlimit small = saved;
        small.rlim_cur = 64 * 1024;
        ::setrlimit(RLIMIT_FSIZE, &small);
      }
      ~Limit() {
        ::setrlimit(RLIMIT_FSIZE, &saved);
        ::signal(SIGXFSZ, handler);
      }
    } limit;
    got = c->FTPSessionGet("big.bin", Local("big.bin"), kFalse, msg);
  }
  EXPECT_EQ(got, kFalse);
  EXPECT_EQ(msg.rfind("Can't Get File [big.bin] - Get Error", 0), 0u) << msg;
  EXPECT_EQ(Read(local / "big.bin"), "the old contents");
  std::vector<std::string> left;
  for (const auto& entry : fs::directory_iterator(local)) left.push_back(entry.path().filename().string());
  EXPECT_EQ(left, std::vector<std::string>{"big.bin"});
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionGet("big.bin", Local("again.bin"), kFalse, msg), kTrue) << msg;
}

TEST_P(FtpMembers, OneCallTransfersAndTests) {
  Write(root / "one.txt", "one\n");
  Write(local / "two.bin", std::string("\x00\x01", 2));
  fs::create_directories(root / "pub");
  std::string msg;
  ASSERT_EQ(c->FTPGetAsciiFile(h(), server->User(), server->Password(), "one.txt", Local("one.txt"), msg), kTrue)
      << msg;
  EXPECT_EQ(Read(Local("one.txt")), "one\r\n");
  ASSERT_EQ(c->FTPPutBinaryFile(h(), server->User(), server->Password(), Local("two.bin"), "two.bin", msg), kTrue)
      << msg;
  EXPECT_EQ(Read(root / "two.bin"), std::string("\x00\x01", 2));
  EXPECT_EQ(c->FTPGetBinaryFile(h(), server->User(), "bad", "one.txt", Local("x"), msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session [" + h() + "] - Session can't be connected.");

  EXPECT_EQ(c->FTPTest(h(), server->User(), server->Password(), msg), kTrue) << msg;
  EXPECT_EQ(c->FTPTest(h(), server->User(), "bad", msg), kFalse);
  EXPECT_EQ(msg, "FTP Test Failure [" + h() + "] - Session can't be connected.");
  EXPECT_EQ(c->FTPTestDirectory(h(), server->User(), server->Password(), "pub", msg), kFalse)
      << "no session of the component";
  EXPECT_EQ(msg, "Internet Directory [pub] does not exist.");
  Open();
  EXPECT_EQ(c->FTPTestDirectory(h(), server->User(), server->Password(), "pub", msg), kTrue) << msg;
}

INSTANTIATE_TEST_SUITE_P(Servers, FtpMembers, ::testing::ValuesIn(testing::AvailableFtpServers()),
                         [](const auto& info) {
                           std::string name = testing::FtpServerName(info.param);
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FtpMembers);

}  // namespace
}  // namespace tolva
