// The file members on the real file system, in a temporary directory.
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "integration/files/temp_dir.h"
#include "platform/linux/files/file_system_posix.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_files {
namespace {

class PosixFilesTest : public ::testing::Test {
 protected:
  PosixFilesTest() : c(platform::LinuxServices()) { ::getcwd(cwd_, sizeof cwd_); }
  ~PosixFilesTest() override { (void)::chdir(cwd_); }

  TempDir dir;
  Tolva2011Register c;
  char cwd_[4096] = {};
};

TEST_F(PosixFilesTest, DirectoryMakeCreatesTheMissingLevelsAndKeepsTheCurrentDirectory) {
  ::mkdir((dir / "a").c_str(), 0755);
  ASSERT_EQ(::chdir(dir.path().c_str()), 0);
  std::string msg;
  EXPECT_EQ(c.DirectoryMake("a\\b/c d", msg), kTrue) << msg;
  struct stat st {};
  EXPECT_EQ(::stat((dir / "a/b/c d").c_str(), &st), 0);
  char now[4096];
  ASSERT_TRUE(::getcwd(now, sizeof now));
  EXPECT_EQ(std::string(now), dir.path());
}

TEST_F(PosixFilesTest, WholeFilesAreReplacedAndAFailedWriteNeverDestroysOne) {
  std::string msg;
  const std::string data = std::string("line 1\r\nline 2\0bytes\xff", 22);
  const std::string path = dir / "caf\xC3\xA9 file.txt";
  EXPECT_EQ(c.WriteFile(path, data, msg), kTrue) << msg;
  EXPECT_EQ(c.ReadFileFull(path, msg) + msg, data);
  // A directory where the file should be.
  ::mkdir((dir / "adir").c_str(), 0755);
  EXPECT_EQ(c.WriteFile(dir / "adir", "x", msg), kFalse);
  EXPECT_EQ(msg, "Path/File access error");
  EXPECT_EQ(TempDir::Read(path), data);
  // Permissions of a replaced file are kept.
  ::chmod(path.c_str(), 0640);
  EXPECT_EQ(c.WriteFile(path, "abc", msg), kTrue) << msg;
  EXPECT_EQ(TempDir::Read(path), "abc");  // replaced, not appended
  struct stat st {};
  ASSERT_EQ(::stat(path.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0640u);
  std::vector<std::string> left;
  for (const auto& e : std::filesystem::directory_iterator(dir.path())) left.push_back(e.path().filename().string());
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{"adir", "caf\xC3\xA9 file.txt"})) << "no temporary file left behind";
}

}  // namespace
}  // namespace tolva::testing_files
