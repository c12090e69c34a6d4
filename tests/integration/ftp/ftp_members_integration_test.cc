// The FTP members through the public interface, on the real FTP library and every real server the
// machine can run. Skipped, with a notice, without an FTP library.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/ftp_servers.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing {
namespace {

namespace fs = std::filesystem;

class FtpMembers : public ::testing::TestWithParam<FtpServerKind> {};

// What only a real server shows: a refused login, directories made and removed on its disk, the current
// directory kept over a reconnect, ASCII and binary on the wire, and the one-call members' own sessions.
TEST_P(FtpMembers, SessionsDirectoriesAndTransfers) {
  platform::Services services = platform::LinuxServices();
  if (!services.internet) GTEST_SKIP() << "no FTP library on this build yet: the real-server tests did not run";
  std::string why, msg;
  const auto server = FtpServer::Start(GetParam(), &why);
  ASSERT_TRUE(server) << why;
  // Files the test leaves on failure go with the throw-away home.
  const std::string h = server->HostPort(), root = server->Root(), local = MakeTempDir("tolva-ftp-members-");
  Tolva2011Register c(services);
  c.FTPConnectTimeout(5000);
  c.FTPReadTimeout(5000);
  EXPECT_EQ(c.FTPSessionOpen(h, server->User(), "wrong", msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session [" + h + "] - Session can't be connected.");
  ASSERT_EQ(c.FTPSessionOpen(h, server->User(), server->Password(), msg), kTrue) << msg;
  const std::string home = c.FTPSessionDirectoryCurrent();
  EXPECT_EQ(c.FTPSessionDirectoryCreate("made", msg), kTrue) << msg;
  EXPECT_TRUE(fs::is_directory(root + "/made"));
  EXPECT_EQ(c.FTPSessionDirectoryCreate("made", msg), kFalse);
  EXPECT_EQ(c.FTPSessionDirectoryExists("made"), kTrue);
  EXPECT_EQ(c.FTPSessionDirectoryExists("missing"), kFalse);
  EXPECT_EQ(c.FTPSessionDirectoryCurrent(), home) << "back where it was";
  ASSERT_EQ(c.FTPSessionDirectoryCurrentSet("made"), kTrue) << c.FTPLastError();
  EXPECT_EQ(c.FTPSessionReconnect(msg), kTrue) << msg;
  EXPECT_EQ(c.FTPSessionDirectoryCurrent(), home == "/" ? "/made" : home + "/made") << "kept over a reconnect";
  ASSERT_EQ(c.FTPSessionDirectoryCurrentSet(home), kTrue);
  EXPECT_EQ(c.FTPSessionDirectoryDelete("made/"), kTrue) << c.FTPLastError();
  EXPECT_FALSE(fs::exists(root + "/made"));

  const std::string binary = std::string(70000, '\0') + "\r\n\x1a\xff\n";
  WriteWholeFile(local + "/bin.dat", binary);
  WriteWholeFile(root + "/text.txt", "one\ntwo\n");
  ASSERT_EQ(c.FTPSessionGet("text.txt", local + "/text.txt", kTrue, msg), kTrue) << msg;
  EXPECT_EQ(ReadWholeFile(local + "/text.txt"), "one\r\ntwo\r\n");
  ASSERT_EQ(c.FTPSessionPut(local + "/bin.dat", "back.dat", kFalse, msg), kTrue) << msg;
  EXPECT_EQ(ReadWholeFile(root + "/back.dat"), binary);
  // A mask download takes the files and refuses the "." and ".." that some
  // servers list, writing nothing outside its directory.
  fs::create_directory(local + "/dl");
  ASSERT_EQ(c.FTPSessionGetMask("*", local + "/dl", msg), kTrue) << msg;
  EXPECT_EQ(ReadWholeFile(local + "/dl/back.dat"), binary);
  EXPECT_EQ(std::distance(fs::directory_iterator(local + "/dl"), {}), 2);
  const bool dots = GetParam() == FtpServerKind::kProftpd || GetParam() == FtpServerKind::kPureFtpd;
  EXPECT_EQ(msg.find("not a safe local file name") != std::string::npos, dots) << msg;
  c.FTPSessionClose();
  EXPECT_EQ(c.FTPSessionTest(msg), kFalse);
  ASSERT_EQ(c.FTPGetBinaryFile(h, server->User(), server->Password(), "back.dat", local + "/x", msg), kTrue) << msg;
  EXPECT_EQ(ReadWholeFile(local + "/x"), binary);
  EXPECT_EQ(c.FTPTest(h, server->User(), server->Password(), msg), kTrue) << msg;
  EXPECT_EQ(c.FTPTest(h, server->User(), "bad", msg), kFalse);
  RemoveTree(local);
}

INSTANTIATE_TEST_SUITE_P(Servers, FtpMembers, ::testing::ValuesIn(AvailableFtpServers()),
                         [](const auto& info) { return FtpServerName(info.param); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FtpMembers);

}  // namespace
}  // namespace tolva::testing
