// The directory, file, file-test and profile members against the in-memory
// file system and profile store.
#include <gtest/gtest.h>

#include <algorithm>
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
  constexpr Boolean kUnchecked = 1;  // patterns are FileExists' business
  fs->AddFile("/d/a.txt", "x");
  fs->AddFile("/d/.hidden.txt", "x");
  fs->AddFile("/d/locked.txt", "x");
  fs->AddDirectory("/d/sub.txt");
  fs->AddDirectory("/d/.hid");
  fs->Fail(Op::kOpen, "/d/locked.txt", FakeFileSystem::PermissionDenied());
  struct Row {
    const char* label;
    std::string path;
    Boolean directory_exists, file_exists;
  } rows[] = {
      {"directory", "/d/sub.txt", kTrue, kFalse},
      {"directory, trailing backslash removed", "/d/sub.txt\\", kTrue, kFalse},
      {"directory, backslash separators", "\\d\\sub.txt", kTrue, kFalse},
      {"hidden directory named exactly", "/d/.hid", kTrue, kFalse},
      {"root", "/", kTrue, kFalse},
      {"file", "/d/a.txt", kTrue, kTrue},
      {"file, backslashes", "\\d\\a.txt", kTrue, kTrue},
      {"hidden file named exactly", "/d/.hidden.txt", kTrue, kTrue},
      {"a file that cannot be opened counts as missing", "/d/locked.txt", kTrue, kFalse},
      {"missing", "/d/b.txt", kFalse, kFalse},
      {"empty", "", kFalse, kFalse},
      {"only a backslash", "\\", kFalse, kFalse},
      {"pattern", "/d/*.txt", kUnchecked, kTrue},
      {"question mark", "/d/?.txt", kUnchecked, kTrue},
      {"pattern matching only hidden files", "/d/.h*", kUnchecked, kFalse},
      {"pattern matching only a directory", "/d/sub*", kUnchecked, kFalse},
      {"pattern in a missing directory", "/none/*.txt", kUnchecked, kFalse},
  };
  for (const auto& r : rows) {
    if (r.directory_exists != kUnchecked) {
      EXPECT_EQ(c.DirectoryExists(r.path), r.directory_exists) << r.label;
    }
    EXPECT_EQ(c.FileExists(r.path), r.file_exists) << r.label;
  }
}

TEST_F(FilesTest, DirectoryChangeReportsTheDirectoryItCouldNotReach) {
  fs->AddDirectory("/data/sub");
  std::string msg = "stale";
  EXPECT_EQ(Outcome(c.DirectoryChange("/data/sub\\", msg), msg), "-1 ");
  EXPECT_EQ(fs->cwd, "/data/sub");
  EXPECT_EQ(Outcome(c.DirectoryChange("/nowhere\\", msg), msg),
            "0 Directory [/nowhere] can't be accessed - Path not found");
  fs->Fail(Op::kChangeDirectory, "/data", {75, ""});
  EXPECT_EQ(Outcome(c.DirectoryChange("/data", msg), msg), "0 Directory [/data] can't be accessed.");
}

TEST_F(FilesTest, DirectoryMakeCreatesEachMissingLevelInOrderAndRestoresTheCurrentDirectory) {
  fs->AddDirectory("/work/a");
  fs->AddDirectory("/x/y");
  fs->cwd = "/work";
  std::string msg = "stale";
  EXPECT_EQ(Outcome(c.DirectoryMake("  /x/y\\ ", msg), msg), "-1 ");
  EXPECT_TRUE(fs->calls.empty()) << "an existing directory is left alone";
  EXPECT_EQ(Outcome(c.DirectoryMake("a\\b/c", msg), msg), "-1 ");
  EXPECT_EQ(fs->calls, (std::vector<std::string>{"mkdir a\\b", "mkdir a\\b/c", "cd /work"}));
  EXPECT_TRUE(fs->IsDirectory("/work/a/b/c"));
  EXPECT_EQ(fs->cwd, "/work");
}

TEST_F(FilesTest, DirectoryMakeFailuresGiveTheirOwnTexts) {
  fs->Fail(Op::kMakeDirectory, "/locked", FakeFileSystem::PermissionDenied());
  fs->AddFile("/file.txt", "x");
  struct Row {
    const char* label;
    std::string path, expected;
  } rows[] = {
      {"first segment is the drive and must exist", "nodrive/b", "Drive [nodrive\\] does not exist."},
      {"a bare name is only a drive", "newdir", "Drive [newdir\\] does not exist."},
      {"creation refused", "/locked/b", "Directory [/locked] can't be created - Permission denied"},
      {"a file in the way", "/file.txt/sub", "Directory [/file.txt/sub] can't be created - Path not found"},
  };
  for (const auto& r : rows) {
    std::string msg;
    EXPECT_EQ(Outcome(c.DirectoryMake(r.path, msg), msg), "0 " + r.expected) << r.label;
  }
  std::string msg;
  fs->cwd = "/tmp";
  fs->Fail(Op::kChangeDirectory, "/tmp", {70, "Permission denied"});
  EXPECT_EQ(Outcome(c.DirectoryMake("/new", msg), msg), "0 Old Directory [/tmp] can't be reset.");
  EXPECT_TRUE(fs->IsDirectory("/new"));
  fs->Fail(Op::kCurrentDirectory, "*", {57, "Device I/O error"});
  EXPECT_EQ(Outcome(c.DirectoryMake("/new/dir", msg), msg),
            "0 Directory [/new/dir] can't be created - Device I/O error");
}

TEST_F(FilesTest, NoServicesMeansQuietFailure) {
  Tolva2011Register bare{platform::Services{}};
  std::string msg;
  EXPECT_EQ(bare.DirectoryExists("/"), kFalse);
  EXPECT_EQ(bare.DirectoryMake("/a/b", msg), kFalse);
  EXPECT_FALSE(msg.empty());
  EXPECT_EQ(bare.FileExists("/x"), kFalse);
  EXPECT_EQ(bare.WinDirectory(), "");
  EXPECT_EQ(bare.ReadFile("/x"), "");
  EXPECT_EQ(bare.FileReadProfileString("/x.ini", "S", "k", " d "), " d ");
  bare.FileWriteProfileString("/x.ini", "S", "k", "v");  // nothing to write to; no crash
}

TEST_F(FilesTest, ReadFileFullReportsEachFailureWithItsText) {
  fs->AddFile("/d/text.txt", "a\r\nb");
  fs->AddFile("/d/empty.txt", "");
  fs->AddFile("/d/broken.txt", "data");
  fs->AddFile("/run/rel.txt", "relative");
  fs->Fail(Op::kRead, "/d/broken.txt", {57, "Device I/O error"});
  c.DirectoryRun("/run");
  struct Row {
    const char* label;
    std::string path, result, message;
  } rows[] = {
      {"text", "/d/text.txt", "a\r\nb", ""},
      {"backslashes", "\\d\\text.txt", "a\r\nb", ""},
      {"empty name", "", "", "File Path has not been defined."},
      {"missing directory", "/none/x.txt", "", "Directory [/none/] does not exist."},
      {"missing file", "/d/none.txt", "", "File [/d/none.txt] does not exist."},
      {"a directory is no file", "/d", "", "File [/d] does not exist."},
      {"empty file", "/d/empty.txt", "", "File does not contain any data."},
      {"read error", "/d/broken.txt", "", "File Read Error - Device I/O error"},
      {"bare name resolved in DirectoryRun", "rel.txt", "relative", ""},
  };
  for (const auto& r : rows) {
    std::string msg = "stale";
    EXPECT_EQ(c.ReadFileFull(r.path, msg) + "|" + msg, r.result + "|" + r.message) << r.label;
  }
}

TEST_F(FilesTest, ReadFileHandsBackBytesAndNothingOnFailure) {
  fs->AddFile("/d/empty.txt", "");
  fs->AddFile("/d/bytes.bin", std::string("\0\xff\r\n", 4));
  EXPECT_EQ(c.ReadFile("/d/bytes.bin"), std::string("\0\xff\r\n", 4));
  EXPECT_EQ(c.ReadFile("/d/missing"), "");
  // A zero-length file is never opened, so a failing read cannot touch it.
  fs->Fail(Op::kRead, "/d/empty.txt", {57, "Device I/O error"});
  fs->Fail(Op::kOpen, "/d/empty.txt", {57, "Device I/O error"});
  EXPECT_EQ(c.ReadFile("/d/empty.txt"), "");
  EXPECT_EQ(fs->bytes_read, 4u);
}

TEST_F(FilesTest, WriteFileReplacesAndReportsThePlatformText) {
  std::string msg = "stale";
  EXPECT_EQ(Outcome(c.WriteFile("/d/out.txt", "abc", msg), msg), "0 Path not found");
  fs->AddDirectory("/d");
  EXPECT_EQ(Outcome(c.WriteFile("/d/out.txt", "abc", msg), msg), "-1 ");
  EXPECT_EQ(c.WriteFile("\\d\\out.txt", "x\r\n", msg), kTrue);
  EXPECT_EQ(fs->Contents("/d/out.txt"), "x\r\n");  // replaced, not appended, no line end added
  fs->nodes["/d/out.txt"].read_only = true;
  EXPECT_EQ(Outcome(c.WriteFile("/d/out.txt", "lost?", msg), msg), "0 Path/File access error");
  EXPECT_EQ(fs->Contents("/d/out.txt"), "x\r\n");
  EXPECT_EQ(Outcome(c.WriteFile("", "abc", msg), msg), "0 Bad file name or number");
}

TEST_F(FilesTest, KillFileTexts) {
  fs->AddFile("/d/a.txt", "x");
  fs->AddFile("/d/ro.txt", "x");
  fs->nodes["/d/ro.txt"].read_only = true;
  struct Row {
    const char* label;
    std::string path, outcome;
  } rows[] = {
      {"empty path", "", "0 File Path has not been defined."},
      {"missing", "/d/none.txt", "0 File [/d/none.txt] does not exist."},
      {"protected", "/d/ro.txt", "0 File [/d/ro.txt] can't be deleted - Path/File access error"},
      {"deleted", "/d/a.txt", "-1 "},
      {"gone after deletion", "/d/a.txt", "0 File [/d/a.txt] does not exist."},
  };
  for (const auto& r : rows) {
    std::string msg = "stale";
    EXPECT_EQ(Outcome(c.KillFile(r.path, msg), msg), r.outcome) << r.label;
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
  std::string msg;
  EXPECT_EQ(Outcome(c.KillFiles("/k/*.none", msg), msg), "0 Files [/k/*.none] do not exist.");
  EXPECT_EQ(Outcome(c.KillFiles("/k/*.none", msg, kFalse), msg), "-1 ");
  EXPECT_EQ(Outcome(c.KillFiles("", msg), msg), "0 File Path has not been defined.");
  // A failure that is not about protection is reported, not retried.
  fs->AddFile("/k/a.tmp", "x");
  fs->Fail(Op::kDelete, "/k/*.tmp", {57, "Device I/O error"});
  fs->calls.clear();
  EXPECT_EQ(Outcome(c.KillFiles("/k/*.tmp", msg), msg), "0 Files [/k/*.tmp] can't be deleted - Device I/O error");
  EXPECT_EQ(std::count(fs->calls.begin(), fs->calls.end(), "delete /k/*.tmp"), 1);
}

TEST_F(FilesTest, KillTempFilesDeletesOnlyTaggedTempFiles) {
  for (const char* name : {"/tmp/abc1.tmp", "/tmp/abc2.tmp", "/tmp/xyz1.tmp", "/tmp/abc3.txt"}) fs->AddFile(name, "");
  std::string msg;
  EXPECT_EQ(c.KillTempFiles("abc", msg), kTrue) << msg;
  EXPECT_EQ(std::vector<bool>({fs->IsFile("/tmp/abc1.tmp"), fs->IsFile("/tmp/abc2.tmp"), fs->IsFile("/tmp/xyz1.tmp"),
                               fs->IsFile("/tmp/abc3.txt")}),
            std::vector<bool>({false, false, true, true}));
  EXPECT_EQ(Outcome(c.KillTempFiles("abc", msg), msg), "0 Files [/tmp/\\abc*.tmp] do not exist.");
}

TEST_F(FilesTest, SpecialDirectoriesAndTempFileNames) {
  fs->windows_directory = "  /home/u/.config ";
  EXPECT_EQ(c.WinDirectory(), "/home/u/.config\\");
  EXPECT_EQ(c.WinSysDirectory(), "/windows/system\\");
  EXPECT_EQ(c.WinTempPath(), "/tmp/");
  struct Row {
    const char* label;
    std::string tag, prefix;
  } rows[] = {
      {"three letters, lower-cased", "ABCdef", "/tmp/abc"},
      {"short tag takes the default", "ab", "/tmp/tvq"},
      {"empty tag", "", "/tmp/tvq"},
  };
  for (const auto& r : rows) {
    const std::string name = c.WinTempFile(r.tag);
    EXPECT_EQ(name.rfind(r.prefix, 0), 0u) << r.label << ": " << name;
    EXPECT_EQ(name.substr(name.size() - 4), ".tmp") << r.label;
    EXPECT_FALSE(fs->IsFile(name)) << r.label << ": no file is left";
  }
  fs->Fail(Op::kWrite, "/tmp", {70, "Permission denied"});
  EXPECT_EQ(c.WinTempFile("abc", "/fallback.tmp"), "/fallback.tmp");
  fs->temp_path = std::string(600, 'x');
  EXPECT_EQ(c.WinTempPath(), "");
}

TEST_F(FilesTest, FileTestAsciiJudgesTheFirstBytesOrTheName) {
  struct Row {
    const char* label;
    std::string path;
    const char* data;  // nullptr: the file does not exist
    std::size_t size;
    Boolean expected;
  } rows[] = {
      {"CR LF text", "/t/a.bin", "a\r\nb\r\n", 6, kTrue},
      {"LF text", "/t/b.bin", "a\nb\n", 4, kTrue},
      {"CR text", "/t/c.bin", "a\rb", 3, kTrue},
      {"NUL with line ends", "/t/d.bin", "a\r\n\0", 4, kFalse},
      {"one line without an end", "/t/e.txt", "just words", 10, kFalse},
      {"empty file, whatever its name", "/t/f.txt", "", 0, kFalse},
      {"missing .TXT", "/t/notes.TXT", nullptr, 0, kTrue},
      {"missing .csv", "/t/x.csv", nullptr, 0, kTrue},
      {"missing .html", "/t/x.html", nullptr, 0, kTrue},
      {"missing .htm", "/t/x.htm", nullptr, 0, kTrue},
      {"missing .shtml", "/t/x.shtml", nullptr, 0, kTrue},
      {"missing .doc", "/t/x.doc", nullptr, 0, kFalse},
      {"missing without extension", "/t/x", nullptr, 0, kFalse},
  };
  for (const auto& r : rows) {
    if (r.data) fs->AddFile(r.path, std::string(r.data, r.size));
    EXPECT_EQ(c.FileTestAscii(r.path), r.expected) << r.label;
  }
  // Only the first 2048 bytes count, and no more are read.
  const std::string a2047 = std::string(2047, 'a'), nul(1, '\0');
  struct Big {
    const char* label;
    std::string data;
    Boolean expected;
  } big[] = {
      {"NUL only after 2048 bytes", a2047 + "\n" + nul, kTrue},
      {"line end only after 2048 bytes", a2047 + "a\r\n" + nul, kFalse},
      {"NUL in the first bytes wins over later text", nul + std::string(3000, 'a') + "\r\n", kFalse},
      {"huge file", std::string(10 << 20, 'a') + "\r\n", kFalse},
  };
  for (const auto& r : big) {
    fs->AddFile("/t/big", r.data);
    fs->bytes_read = 0;
    EXPECT_EQ(c.FileTestAscii("/t/big"), r.expected) << r.label;
    EXPECT_LE(fs->bytes_read, 2048u) << r.label;
  }
}

TEST_F(FilesTest, FileTestIdenticalComparesDatesThenSizesThenData) {
  const platform::FileTime t0{2011, 5, 1, 10, 0, 0}, t59{2011, 5, 1, 10, 0, 59}, t100{2011, 5, 1, 10, 1, 0},
      next_year{2012, 5, 1, 10, 0, 0};
  struct Row {
    const char* label;
    std::string data1, data2;
    platform::FileTime time1, time2;
    Boolean dates, sizes, data;
    Long data_bytes;
    Boolean expected;
  } rows[] = {
      {"same everything", "abc", "abc", t0, t0, kTrue, kTrue, kTrue, 100000, kTrue},
      {"seconds inside one minute", "abc", "abc", t0, t59, kTrue, kTrue, kFalse, 100000, kTrue},
      {"a minute boundary between", "abc", "abc", t59, t100, kTrue, kTrue, kFalse, 100000, kFalse},
      {"a minute boundary, dates not tested", "abc", "abc", t59, t100, kFalse, kTrue, kFalse, 100000, kTrue},
      {"same minute of another year", "abc", "abc", t0, next_year, kTrue, kTrue, kFalse, 100000, kFalse},
      {"sizes differ", "abc", "abcd", t0, t0, kTrue, kTrue, kFalse, 100000, kFalse},
      {"sizes differ, not tested", "abc", "abcd", t0, t0, kTrue, kFalse, kFalse, 100000, kTrue},
      {"contents differ, not tested", "abc", "abd", t0, t0, kTrue, kTrue, kFalse, 100000, kTrue},
      {"contents differ", "abc", "abd", t0, t0, kTrue, kTrue, kTrue, 100000, kFalse},
      {"contents differ at exactly the limit", "abc", "abd", t0, t0, kTrue, kTrue, kTrue, 3, kFalse},
      {"first file one byte over the limit", "abc", "abd", t0, t0, kTrue, kTrue, kTrue, 2, kTrue},
      {"1 is not true", "abc", "abd", t0, t100, 1, 1, 1, 100000, kTrue},
  };
  for (const auto& r : rows) {
    fs->AddFile("/one", r.data1, r.time1);
    fs->AddFile("/two", r.data2, r.time2);
    EXPECT_EQ(c.FileTestIdentical("/one", "/two", r.dates, r.sizes, r.data, r.data_bytes), r.expected) << r.label;
  }
  EXPECT_EQ(c.FileTestIdentical("/none1", "/none2"), kTrue) << "two missing files are identical";
  EXPECT_EQ(c.FileTestIdentical("/one", "/none"), kFalse);
  EXPECT_EQ(c.FileTestIdentical("/none", "/one"), kFalse);
}

TEST_F(FilesTest, ProfileReadAppliesTheDefaultRules) {
  profiles->files["/p/app.ini"] =
      "[Main]\r\nName =  Tolva  \r\nEmpty=\r\nQuoted=\" x \"\r\nLong=" + std::string(2000, 'z') + "\r\n";
  struct Row {
    const char* label;
    std::string file, section, key, def, expected;
  } rows[] = {
      {"value trimmed", "/p/app.ini", "Main", "Name", "d", "Tolva"},
      {"case and blanks in names", "/p/app.ini", " main ", "NAME", "d", "Tolva"},
      {"empty value gives the default, untrimmed", "/p/app.ini", "Main", "Empty", "  d  ", "  d  "},
      {"missing key gives the default trimmed", "/p/app.ini", "Main", "None", "  d  ", "d"},
      {"missing key, empty default", "/p/app.ini", "Main", "None", "", ""},
      {"missing section", "/p/app.ini", "Other", "Name", "d", "d"},
      {"quotes removed, then the member trims", "/p/app.ini", "Main", "Quoted", "d", "x"},
      {"missing file", "/p/none.ini", "Main", "Name", "d", "d"},
  };
  for (const auto& r : rows) EXPECT_EQ(c.FileReadProfileString(r.file, r.section, r.key, r.def), r.expected) << r.label;
  EXPECT_EQ(c.FileReadProfileString("/p/app.ini", "Main", "Long").size(), 1023u);
}

TEST_F(FilesTest, ProfileWriteSetsReplacesAndDeletes) {
  c.FileWriteProfileString("\\p\\app.ini", "Main", "Name", "one");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nName=one\r\n");
  c.FileWriteProfileString("/p/app.ini", "main", "name", "two");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nname=two\r\n");
  c.FileWriteProfileString("/p/app.ini", "Main", "Name", "");  // an empty value removes the key
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\n");
  EXPECT_EQ(c.FileReadProfileString("/p/app.ini", "Main", "Name", "gone"), "gone");
  c.FileWriteProfileString("app.ini", "S", "k", "v");  // a bare name lives in the Windows directory
  EXPECT_EQ(profiles->files.count("/windows/app.ini"), 1u);
  EXPECT_EQ(c.FileReadProfileString("app.ini", "S", "k"), "v");
}

}  // namespace
}  // namespace tolva
