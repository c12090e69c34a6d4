// Deleting files and the special directories, against the in-memory file system.
#include <string>

#include "unit/files/files_fixture.h"

namespace tolva::testing_files {
namespace {

using Op = fakes::FakeFileSystem::Op;

class KillAndTempTest : public FilesTest {};

TEST_F(KillAndTempTest, KillFileTexts) {
  fs->AddFile("/d/a.txt", "x");
  fs->AddFile("/d/ro.txt", "x");
  fs->nodes["/d/ro.txt"].read_only = true;
  struct Row {
    const char* label;
    std::string path;
    Boolean expected;
    std::string message;
  } rows[] = {
      {"empty path", "", kFalse, "File Path has not been defined."},
      {"missing", "/d/none.txt", kFalse, "File [/d/none.txt] does not exist."},
      {"protected", "/d/ro.txt", kFalse, "File [/d/ro.txt] can't be deleted - Path/File access error"},
      {"deleted", "/d/a.txt", kTrue, ""},
      {"gone after deletion", "/d/a.txt", kFalse, "File [/d/a.txt] does not exist."},
  };
  for (const auto& r : rows) {
    std::string msg = "stale";
    EXPECT_EQ(c.KillFile(r.path, msg), r.expected) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
  }
}

TEST_F(KillAndTempTest, KillFilesClearsProtectionOnceWhenAllowed) {
  struct Row {
    const char* label;
    Boolean clear;
    Boolean expected;
    std::string message;
    bool remaining;
  } rows[] = {
      {"attributes cleared and retried", kTrue, kTrue, "", false},
      {"protection kept when not asked", kFalse, kFalse, "Files [/k/*.tmp] can't be deleted - Path/File access error",
       true},
  };
  for (const auto& r : rows) {
    fs->AddFile("/k/a.tmp", "x");
    fs->AddFile("/k/b.tmp", "x");
    fs->AddFile("/k/keep.txt", "x");
    fs->nodes["/k/b.tmp"].read_only = true;
    std::string msg;
    EXPECT_EQ(c.KillFiles("/k/*.tmp", msg, kTrue, r.clear), r.expected) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_FALSE(fs->IsFile("/k/a.tmp")) << r.label;
    EXPECT_EQ(fs->IsFile("/k/b.tmp"), r.remaining) << r.label;
    EXPECT_TRUE(fs->IsFile("/k/keep.txt")) << r.label;
  }
}

TEST_F(KillAndTempTest, KillFilesWhenNothingMatches) {
  std::string msg;
  EXPECT_EQ(c.KillFiles("/k/*.none", msg), kFalse);
  EXPECT_EQ(msg, "Files [/k/*.none] do not exist.");
  EXPECT_EQ(c.KillFiles("/k/*.none", msg, kFalse), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(c.KillFiles("", msg), kFalse);
  EXPECT_EQ(msg, "File Path has not been defined.");
}

TEST_F(KillAndTempTest, KillFilesReportsAFailureThatIsNotAboutProtection) {
  fs->AddFile("/k/a.tmp", "x");
  fs->Fail(Op::kDelete, "/k/*.tmp", {57, "Device I/O error"});
  std::string msg;
  EXPECT_EQ(c.KillFiles("/k/*.tmp", msg), kFalse);
  EXPECT_EQ(msg, "Files [/k/*.tmp] can't be deleted - Device I/O error");
  // Only the one deletion: other errors are not retried.
  EXPECT_EQ(std::count(fs->calls.begin(), fs->calls.end(), "delete /k/*.tmp"), 1);
}

TEST_F(KillAndTempTest, KillTempFilesDeletesOnlyTaggedTempFiles) {
  fs->AddFile("/tmp/abc1.tmp", "");
  fs->AddFile("/tmp/abc2.tmp", "");
  fs->AddFile("/tmp/xyz1.tmp", "");
  fs->AddFile("/tmp/abc3.txt", "");
  std::string msg;
  EXPECT_EQ(c.KillTempFiles("abc", msg), kTrue) << msg;
  EXPECT_FALSE(fs->IsFile("/tmp/abc1.tmp"));
  EXPECT_FALSE(fs->IsFile("/tmp/abc2.tmp"));
  EXPECT_TRUE(fs->IsFile("/tmp/xyz1.tmp"));
  EXPECT_TRUE(fs->IsFile("/tmp/abc3.txt"));
  EXPECT_EQ(c.KillTempFiles("abc", msg), kFalse);
  EXPECT_EQ(msg, "Files [/tmp/\\abc*.tmp] do not exist.");
}

TEST_F(KillAndTempTest, SpecialDirectories) {
  fs->windows_directory = "  /home/u/.config ";
  EXPECT_EQ(c.WinDirectory(), "/home/u/.config\\");
  EXPECT_EQ(c.WinSysDirectory(), "/windows/system\\");
  EXPECT_EQ(c.WinTempPath(), "/tmp/");
  fs->temp_path = std::string(600, 'x');
  EXPECT_EQ(c.WinTempPath(), "");
}

TEST_F(KillAndTempTest, TempFileNamesUseThePrefixAndLeaveNoFile) {
  struct Row {
    const char* label;
    std::string tag;
    std::string prefix;
  } rows[] = {
      {"three letters, lower-cased", "ABCdef", "/tmp/abc"},
      {"short tag takes the default", "ab", "/tmp/tvq"},
      {"empty tag", "", "/tmp/tvq"},
  };
  for (const auto& r : rows) {
    const std::string name = c.WinTempFile(r.tag);
    EXPECT_EQ(name.rfind(r.prefix, 0), 0u) << r.label << ": " << name;
    EXPECT_EQ(name.substr(name.size() - 4), ".tmp") << r.label;
    EXPECT_FALSE(fs->IsFile(name)) << r.label;
  }
  fs->Fail(Op::kWrite, "/tmp", {70, "Permission denied"});
  EXPECT_EQ(c.WinTempFile("abc", "/fallback.tmp"), "/fallback.tmp");
}

}  // namespace
}  // namespace tolva::testing_files
