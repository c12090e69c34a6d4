// Directory members against the in-memory file system.
#include <string>
#include <vector>

#include "unit/files/files_fixture.h"

namespace tolva::testing_files {
namespace {

using Op = fakes::FakeFileSystem::Op;

class DirectoryMembersTest : public FilesTest {};

TEST_F(DirectoryMembersTest, ExistsAnswersForDirectoriesAndFilesAlike) {
  fs->AddDirectory("/data/sub");
  fs->AddFile("/data/file.txt", "x");
  fs->AddDirectory("/data/.hidden");
  struct Row {
    const char* label;
    std::string path;
    Boolean expected;
  } rows[] = {
      {"directory", "/data/sub", kTrue},
      {"trailing backslash removed", "/data/sub\\", kTrue},
      {"backslash separators", "\\data\\sub", kTrue},
      {"an ordinary file counts too", "/data/file.txt", kTrue},
      {"hidden directory named exactly", "/data/.hidden", kTrue},
      {"missing", "/data/none", kFalse},
      {"empty", "", kFalse},
      {"only a backslash", "\\", kFalse},
      {"root", "/", kTrue},
  };
  for (const auto& r : rows) EXPECT_EQ(c.DirectoryExists(r.path), r.expected) << r.label;
}

TEST_F(DirectoryMembersTest, ChangeReportsTheDirectoryItCouldNotReach) {
  fs->AddDirectory("/data/sub");
  std::string msg = "stale";
  EXPECT_EQ(c.DirectoryChange("/data/sub\\", msg), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(fs->cwd, "/data/sub");
  EXPECT_EQ(c.DirectoryChange("/nowhere\\", msg), kFalse);
  EXPECT_EQ(msg, "Directory [/nowhere] can't be accessed - Path not found");
  fs->Fail(Op::kChangeDirectory, "/data", {75, ""});
  EXPECT_EQ(c.DirectoryChange("/data", msg), kFalse);
  EXPECT_EQ(msg, "Directory [/data] can't be accessed.");
}

TEST_F(DirectoryMembersTest, MakeCreatesEachMissingLevelInOrderAndRestoresTheCurrentDirectory) {
  fs->AddDirectory("/work/a");
  fs->cwd = "/work";
  std::string msg;
  EXPECT_EQ(c.DirectoryMake("a\\b/c", msg), kTrue) << msg;
  EXPECT_EQ(msg, "");
  const std::vector<std::string> expected = {"mkdir a\\b", "mkdir a\\b/c", "cd /work"};
  EXPECT_EQ(fs->calls, expected);
  EXPECT_TRUE(fs->IsDirectory("/work/a/b/c"));
  EXPECT_EQ(fs->cwd, "/work");
}

TEST_F(DirectoryMembersTest, MakeOfAnExistingDirectoryTouchesNothing) {
  fs->AddDirectory("/x/y");
  std::string msg = "stale";
  EXPECT_EQ(c.DirectoryMake("  /x/y\\ ", msg), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_TRUE(fs->calls.empty());
}

TEST_F(DirectoryMembersTest, MakeFailuresGiveTheirOwnTexts) {
  struct Row {
    const char* label;
    std::string path;
    std::string expected;
  } rows[] = {
      {"first segment is the drive and must exist", "nodrive/b", "Drive [nodrive\\] does not exist."},
      {"a bare name is only a drive", "newdir", "Drive [newdir\\] does not exist."},
      {"creation refused", "/locked/b", "Directory [/locked] can't be created - Permission denied"},
      {"a file in the way", "/file.txt/sub", "Directory [/file.txt/sub] can't be created - Path not found"},
  };
  fs->Fail(Op::kMakeDirectory, "/locked", fakes::FakeFileSystem::PermissionDenied());
  fs->AddFile("/file.txt", "x");
  for (const auto& r : rows) {
    std::string msg;
    EXPECT_EQ(c.DirectoryMake(r.path, msg), kFalse) << r.label;
    EXPECT_EQ(msg, r.expected) << r.label;
  }
}

TEST_F(DirectoryMembersTest, MakeReportsAnOldDirectoryThatCannotBeRestored) {
  fs->cwd = "/tmp";
  fs->Fail(Op::kChangeDirectory, "/tmp", {70, "Permission denied"});
  std::string msg;
  EXPECT_EQ(c.DirectoryMake("/new", msg), kFalse);
  EXPECT_EQ(msg, "Old Directory [/tmp] can't be reset.");
  EXPECT_TRUE(fs->IsDirectory("/new"));
}

TEST_F(DirectoryMembersTest, MakeWithoutACurrentDirectoryFailsCleanly) {
  fs->Fail(Op::kCurrentDirectory, "*", {57, "Device I/O error"});
  std::string msg;
  EXPECT_EQ(c.DirectoryMake("/new/dir", msg), kFalse);
  EXPECT_EQ(msg, "Directory [/new/dir] can't be created - Device I/O error");
}

TEST_F(DirectoryMembersTest, NoFileSystemMeansQuietFailure) {
  Tolva2011Register bare{platform::Services{}};
  std::string msg;
  EXPECT_EQ(bare.DirectoryExists("/"), kFalse);
  EXPECT_EQ(bare.DirectoryMake("/a/b", msg), kFalse);
  EXPECT_FALSE(msg.empty());
  EXPECT_EQ(bare.FileExists("/x"), kFalse);
  EXPECT_EQ(bare.WinDirectory(), "");
  EXPECT_EQ(bare.ReadFile("/x"), "");
}

}  // namespace
}  // namespace tolva::testing_files
