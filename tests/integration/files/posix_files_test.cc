// The file members on the real file system, in a temporary directory.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
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

  std::vector<std::string> Names(const std::string& pattern, std::uint32_t attributes) {
    std::vector<platform::DirEntry> found;
    platform::FileError error;
    EXPECT_TRUE(fs->List(pattern, attributes, found, error)) << error.description;
    std::vector<std::string> names;
    for (const auto& e : found) names.push_back(e.name);
    std::sort(names.begin(), names.end());
    return names;
  }

  TempDir dir;
  std::shared_ptr<platform::FileSystem> fs = platform::posix::NewFileSystem();
  Tolva2011Register c;
  char cwd_[4096] = {};
};

TEST_F(PosixFilesTest, ListingsFilterByPatternAndAttributes) {
  ASSERT_FALSE(dir.path().empty());
  for (const char* f : {"a.txt", "b.txt", "ab.csv", ".hidden.txt", "name with blanks.txt", "caf\xC3\xA9.txt"})
    TempDir::Write(dir / f, "x");
  ::mkdir((dir / "sub.txt").c_str(), 0755);
  using V = std::vector<std::string>;
  struct Row {
    const char* label;
    std::string pattern;
    std::uint32_t attributes;
    V expected;
  } rows[] = {
      {"star", dir / "*.txt", platform::kAttrNormal, V{"a.txt", "b.txt", "caf\xC3\xA9.txt", "name with blanks.txt"}},
      {"question mark", dir / "?.txt", platform::kAttrNormal, V{"a.txt", "b.txt"}},
      {"with directories", dir / "s*", platform::kAttrDirectory, V{"sub.txt"}},
      {"directories left out", dir / "s*", platform::kAttrNormal, V{}},
      {"hidden only when asked", dir / ".*", platform::kAttrHidden, V{".hidden.txt"}},
      {"backslash separators", dir / "a*", platform::kAttrNormal, V{"a.txt", "ab.csv"}},
      {"exact name with blanks", dir / "name with blanks.txt", platform::kAttrNormal, V{"name with blanks.txt"}},
      {"exact hidden name", dir / ".hidden.txt", platform::kAttrNormal, V{".hidden.txt"}},
      {"missing directory", dir / "none/*", platform::kAttrNormal, V{}},
  };
  for (auto& r : rows) {
    if (std::string(r.label) == "backslash separators") std::replace(r.pattern.begin(), r.pattern.end(), '/', '\\');
    EXPECT_EQ(Names(r.pattern, r.attributes), r.expected) << r.label;
  }
}

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
  // Absolute, with a trailing separator and backslashes.
  std::string abs = dir / "x\\y\\z\\";
  EXPECT_EQ(c.DirectoryMake(abs, msg), kTrue) << msg;
  EXPECT_EQ(c.DirectoryExists(dir / "x/y/z"), kTrue);
  // A file in the way.
  TempDir::Write(dir / "file", "x");
  EXPECT_EQ(c.DirectoryMake(dir / "file/sub", msg), kFalse);
  EXPECT_NE(msg.find("can't be created - Path not found"), std::string::npos) << msg;
}

TEST_F(PosixFilesTest, ReadAndWriteWholeFiles) {
  std::string msg;
  const std::string data = std::string("line 1\r\nline 2\0bytes\xff", 22);
  const std::string path = dir / "caf\xC3\xA9 file.txt";
  EXPECT_EQ(c.WriteFile(path, data, msg), kTrue) << msg;
  EXPECT_EQ(c.ReadFileFull(path, msg), data);
  EXPECT_EQ(msg, "");
  std::string back = path;
  std::replace(back.begin(), back.end(), '/', '\\');
  EXPECT_EQ(c.ReadFile(back), data);
  EXPECT_EQ(c.WriteFile(path, "abc", msg), kTrue);
  EXPECT_EQ(TempDir::Read(path), "abc");  // replaced, not appended
}

TEST_F(PosixFilesTest, AFailedWriteNeverDestroysTheFile) {
  std::string msg;
  TempDir::Write(dir / "keep.txt", "precious");
  // A directory where the file should be, and a file where a directory should be.
  ::mkdir((dir / "adir").c_str(), 0755);
  EXPECT_EQ(c.WriteFile(dir / "adir", "x", msg), kFalse);
  EXPECT_EQ(msg, "Path/File access error");
  EXPECT_EQ(c.WriteFile(dir / "keep.txt/inner", "x", msg), kFalse);
  EXPECT_EQ(msg, "Path not found");
  EXPECT_EQ(TempDir::Read(dir / "keep.txt"), "precious");
  // Permissions of a replaced file are kept.
  ::chmod((dir / "keep.txt").c_str(), 0640);
  EXPECT_EQ(c.WriteFile(dir / "keep.txt", "new", msg), kTrue) << msg;
  struct stat st {};
  ASSERT_EQ(::stat((dir / "keep.txt").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0640u);
  // A link keeps pointing at the file it named.
  ASSERT_EQ(::symlink((dir / "keep.txt").c_str(), (dir / "link.txt").c_str()), 0);
  EXPECT_EQ(c.WriteFile(dir / "link.txt", "via link", msg), kTrue) << msg;
  struct stat lst {};
  ASSERT_EQ(::lstat((dir / "link.txt").c_str(), &lst), 0);
  EXPECT_TRUE(S_ISLNK(lst.st_mode));
  EXPECT_EQ(TempDir::Read(dir / "keep.txt"), "via link");
  // A device is written where it is, never replaced.
  EXPECT_EQ(c.WriteFile("/dev/null", "discard", msg), kTrue) << msg;
  ASSERT_EQ(::stat("/dev/null", &st), 0);
  EXPECT_TRUE(S_ISCHR(st.st_mode));
  // No temporary file is left behind.
  EXPECT_EQ(Names(dir / ".*", platform::kAttrHidden), std::vector<std::string>{});
}

TEST_F(PosixFilesTest, AFileLargerThanMemoryGivesAClearText) {
  const std::string huge = dir / "huge.bin";
  {
    const int fd = ::open(huge.c_str(), O_WRONLY | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    const long pages = ::sysconf(_SC_PHYS_PAGES), size = ::sysconf(_SC_PAGESIZE);
    // Sparse: takes no disk space.
    ASSERT_EQ(::ftruncate(fd, static_cast<off_t>(pages) * size * 2), 0);
    ::close(fd);
  }
  std::string msg;
  EXPECT_EQ(c.ReadFileFull(huge, msg), "");
  EXPECT_EQ(msg, "File Read Error - Out of memory");
  EXPECT_EQ(c.FileTestAscii(huge), kFalse);  // reads only its first bytes
}

TEST_F(PosixFilesTest, UnreadableFilesAsAnOrdinaryUserSeesThem) {
  const std::string secret = dir / "secret.txt";
  TempDir::Write(secret, "data\r\n");
  ::chmod(secret.c_str(), 0);
  ::chmod(dir.path().c_str(), 0755);
  // Root reads anything, so the check runs in a child that drops to an ordinary user.
  int pipefd[2];
  ASSERT_EQ(::pipe(pipefd), 0);
  const pid_t pid = ::fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    ::close(pipefd[0]);
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    Tolva2011Register child(platform::LinuxServices());
    std::string msg;
    const std::string text = child.ReadFileFull(secret, msg);
    const std::string direct = child.ReadFile(secret);
    const std::string report = msg + "|" + text + "|" + direct + "|" + std::to_string(child.FileExists(secret));
    (void)::write(pipefd[1], report.data(), report.size());
    ::_exit(0);
  }
  ::close(pipefd[1]);
  std::string report;
  char buf[512];
  for (ssize_t n; (n = ::read(pipefd[0], buf, sizeof buf)) > 0;) report.append(buf, static_cast<std::size_t>(n));
  ::close(pipefd[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "child could not drop privileges";
  // A file that exists but cannot be opened counts as missing for FileExists,
  // and ReadFileFull asks FileExists first.
  EXPECT_EQ(report, "File [" + c.FilePathShorten(secret) + "] does not exist.|||0");
}

TEST_F(PosixFilesTest, TempFilesAreMadeAndKilledInTheTempDirectory) {
  ::setenv("TMPDIR", dir.path().c_str(), 1);
  EXPECT_EQ(c.WinTempPath(), dir.path() + "/");
  const std::string name = c.WinTempFile("Zed");
  EXPECT_EQ(name.rfind(dir.path() + "/zed", 0), 0u) << name;
  EXPECT_EQ(c.FileExists(name), kFalse);
  std::string made;
  platform::FileError error;
  ASSERT_TRUE(fs->TempFileName(dir.path(), "zed", made, error));
  ASSERT_TRUE(fs->TempFileName(dir.path(), "zed", made, error));
  TempDir::Write(dir / "zed-keep.txt", "x");
  std::string msg;
  EXPECT_EQ(c.KillTempFiles("zed", msg), kTrue) << msg;
  EXPECT_EQ(Names(dir / "*", platform::kAttrNormal), std::vector<std::string>{"zed-keep.txt"});
  EXPECT_EQ(c.KillTempFiles("zed", msg), kFalse);
  EXPECT_NE(msg.find("] do not exist."), std::string::npos);
  ::unsetenv("TMPDIR");
}

TEST_F(PosixFilesTest, FileTestsOnRealFiles) {
  TempDir::Write(dir / "one.txt", "same\r\n");
  TempDir::Write(dir / "two.txt", "same\r\n");
  TempDir::Write(dir / "bin.dat", std::string("a\0b\r\n", 5));
  EXPECT_EQ(c.FileTestAscii(dir / "one.txt"), kTrue);
  EXPECT_EQ(c.FileTestAscii(dir / "bin.dat"), kFalse);
  EXPECT_EQ(c.FileTestAscii(dir.path()), kFalse);  // a directory is no text file
  EXPECT_EQ(c.FileTestIdentical(dir / "one.txt", dir / "two.txt", kFalse, kTrue, kTrue), kTrue);
  EXPECT_EQ(c.FileTestIdentical(dir / "one.txt", dir / "bin.dat", kFalse, kFalse, kTrue), kFalse);
  std::string msg;
  EXPECT_EQ(c.KillFile(dir / "one.txt", msg), kTrue) << msg;
  EXPECT_EQ(c.KillFile(dir.path(), msg), kFalse);  // a directory is not deleted as a file
  EXPECT_EQ(c.DirectoryExists(dir.path()), kTrue);
}

}  // namespace
}  // namespace tolva::testing_files
