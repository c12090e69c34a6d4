// The directory, file, file-test and profile members against the in-memory
// file system and profile store.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "fakes/fake_profile_store.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using Op = fakes::FakeFileSystem::Op;
using fakes::FakeFileSystem;

class FilesTest : public ::testing::Test {
 protected:
  FilesTest() : c(Services()) {}
  platform::Services Services() {
    platform::Services s;
    s.files = fs;
    s.profiles = profiles;
    return s;
  }
  std::shared_ptr<FakeFileSystem> fs = std::make_shared<FakeFileSystem>();
  std::shared_ptr<fakes::FakeProfileStore> profiles = std::make_shared<fakes::FakeProfileStore>();
  Tolva2011Register c;
};

// A member's result and its message text, as one comparable string.
std::string Outcome(Boolean result, const std::string& message) {
  return std::to_string(result) + " " + message;
}

TEST_F(FilesTest, ExistsMembersNameFilesDirectoriesAndPatterns) {
  fs->AddFile("/d/a.txt", "x");
  fs->AddFile("/d/locked.txt", "x");
  fs->AddDirectory("/d/sub.txt");
  fs->Fail(Op::kOpen, "/d/locked.txt", FakeFileSystem::PermissionDenied());
  struct Row {
    const char* label;
    std::string path;
    Boolean directory_exists, file_exists;
  } rows[] = {
      {"directory", "/d/sub.txt", kTrue, kFalse},
      {"file", "/d/a.txt", kTrue, kTrue},
      {"a file that cannot be opened counts as missing", "/d/locked.txt", kTrue, kFalse},
      {"missing", "/d/b.txt", kFalse, kFalse},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(c.DirectoryExists(r.path), r.directory_exists) << r.label;
    EXPECT_EQ(c.FileExists(r.path), r.file_exists) << r.label;
  }
  EXPECT_EQ(c.FileExists("/d/*.txt"), kTrue) << "a pattern";
}

TEST_F(FilesTest, NoServicesMeansQuietFailure) {
  Tolva2011Register bare{platform::Services{}};
  EXPECT_EQ(bare.WinDirectory(), "");
  EXPECT_EQ(bare.FileReadProfileString("/x.ini", "S", "k", " d "), " d ");
}

TEST_F(FilesTest, ReadFileFullReportsEachFailureWithItsText) {
  fs->AddFile("/d/text.txt", "a\r\nb");
  fs->AddFile("/d/empty.txt", "");
  struct Row {
    const char* label;
    std::string path, result, message;
  } rows[] = {
      {"text", "/d/text.txt", "a\r\nb", ""},
      {"empty name", "", "", "File Path has not been defined."},
      {"missing file", "/d/none.txt", "", "File [/d/none.txt] does not exist."},
      {"empty file", "/d/empty.txt", "", "File does not contain any data."},
  };
  for (const auto& r : rows) {
    std::string msg = "stale";
    EXPECT_EQ(c.ReadFileFull(r.path, msg) + "|" + msg, r.result + "|" + r.message) << r.label;
  }
}

TEST_F(FilesTest, KillFilesClearsProtectionOnceWhenAllowed) {
  for (Boolean clear : {kTrue, kFalse}) {
    fs->AddFile("/k/a.tmp", "x");
    fs->AddFile("/k/b.tmp", "x");
    fs->AddFile("/k/keep.txt", "x");
    fs->nodes["/k/b.tmp"].read_only = true;
    std::string msg;
    EXPECT_EQ(Outcome(c.KillFiles("/k/*.tmp", msg, kTrue, clear), msg),
              clear ? "-1 " : "0 Files [/k/*.tmp] can't be deleted - Path/File access error");
    EXPECT_EQ(std::vector<bool>({fs->IsFile("/k/a.tmp"), fs->IsFile("/k/b.tmp"), fs->IsFile("/k/keep.txt")}),
              std::vector<bool>({false, !clear, true}))
        << clear;
  }
}

TEST_F(FilesTest, KillTempFilesDeletesOnlyTaggedTempFiles) {
  for (const char* name : {"/tmp/abc1.tmp", "/tmp/xyz1.tmp", "/tmp/abc3.txt"}) fs->AddFile(name, "");
  std::string msg;
  EXPECT_EQ(c.KillTempFiles("abc", msg), kTrue) << msg;
  EXPECT_EQ(std::vector<bool>({fs->IsFile("/tmp/abc1.tmp"), fs->IsFile("/tmp/xyz1.tmp"), fs->IsFile("/tmp/abc3.txt")}),
            std::vector<bool>({false, true, true}));
}

TEST_F(FilesTest, SpecialDirectoriesAndTempFileNames) {
  fs->windows_directory = "  /home/u/.config ";
  EXPECT_EQ(c.WinDirectory(), "/home/u/.config\\");
  const std::string name = c.WinTempFile("ABCdef");  // the tag's first three letters, lower-cased
  EXPECT_EQ(name.rfind("/tmp/abc", 0), 0u) << name;
  EXPECT_FALSE(fs->IsFile(name)) << "no file is left";
}

TEST_F(FilesTest, FileTestAsciiJudgesTheFirstBytesOrTheName) {
  fs->AddFile("/t/a.bin", "a\r\nb\r\n");
  fs->AddFile("/t/d.bin", std::string("a\r\n\0", 4));
  EXPECT_EQ(c.FileTestAscii("/t/a.bin"), kTrue);
  EXPECT_EQ(c.FileTestAscii("/t/d.bin"), kFalse) << "a NUL byte marks binary";
  EXPECT_EQ(c.FileTestAscii("/t/notes.TXT"), kTrue) << "a missing file is judged by its name";
  // Only the first 2048 bytes count, and no more are read.
  fs->AddFile("/t/big", std::string(2047, 'a') + "\n" + std::string(1, '\0'));
  fs->bytes_read = 0;
  EXPECT_EQ(c.FileTestAscii("/t/big"), kTrue);
  EXPECT_LE(fs->bytes_read, 2048u);
}

TEST_F(FilesTest, FileTestIdenticalComparesDatesThenSizesThenData) {
  const platform::FileTime t0{2011, 5, 1, 10, 0, 0}, t59{2011, 5, 1, 10, 0, 59}, t100{2011, 5, 1, 10, 1, 0};
  struct Row {
    const char* label;
    std::string data1, data2;
    platform::FileTime time1, time2;
    Boolean dates, sizes, data;
    Long data_bytes;
    Boolean expected;
  } rows[] = {
      {"same everything", "abc", "abc", t0, t0, kTrue, kTrue, kTrue, 100000, kTrue},
      {"a minute boundary between", "abc", "abc", t59, t100, kTrue, kTrue, kFalse, 100000, kFalse},
      {"contents differ at exactly the limit", "abc", "abd", t0, t0, kTrue, kTrue, kTrue, 3, kFalse},
  };
  for (const auto& r : rows) {
    fs->AddFile("/one", r.data1, r.time1);
    fs->AddFile("/two", r.data2, r.time2);
    EXPECT_EQ(c.FileTestIdentical("/one", "/two", r.dates, r.sizes, r.data, r.data_bytes), r.expected) << r.label;
  }
  EXPECT_EQ(c.FileTestIdentical("/none1", "/none2"), kTrue) << "two missing files are identical";
  EXPECT_EQ(c.FileTestIdentical("/one", "/none"), kFalse);
}

TEST_F(FilesTest, ProfileReadAppliesTheDefaultRules) {
  const std::string f = "/p/app.ini";
  profiles->files[f] = "[Main]\r\nName =  Tolva  \r\nEmpty=\r\nLong=" + std::string(2000, 'z') + "\r\n";
  EXPECT_EQ(c.FileReadProfileString(f, "Main", "Name", "d"), "Tolva");
  EXPECT_EQ(c.FileReadProfileString(f, "Main", "Empty", "  d  "), "  d  ") << "an empty value: the default, untrimmed";
  EXPECT_EQ(c.FileReadProfileString(f, "Main", "None", "  d  "), "d") << "a missing key: the default, trimmed";
  EXPECT_EQ(c.FileReadProfileString(f, "Main", "Long").size(), 1023u);
}

TEST_F(FilesTest, ProfileWriteSetsReplacesAndDeletes) {
  c.FileWriteProfileString("\\p\\app.ini", "Main", "Name", "one");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nName=one\r\n");
  c.FileWriteProfileString("/p/app.ini", "main", "name", "two");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nname=two\r\n");
  c.FileWriteProfileString("/p/app.ini", "Main", "Name", "");  // an empty value removes the key
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\n");
}

}  // namespace
}  // namespace tolva
