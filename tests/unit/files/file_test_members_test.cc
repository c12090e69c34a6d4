// FileExists, FileTestAscii and FileTestIdentical against the in-memory file system.
#include <string>

#include "unit/files/files_fixture.h"

namespace tolva::testing_files {
namespace {

using Op = fakes::FakeFileSystem::Op;

class FileTestMembersTest : public FilesTest {};

TEST_F(FileTestMembersTest, ExistsOpensNamesAndListsPatterns) {
  fs->AddFile("/d/a.txt", "x");
  fs->AddFile("/d/.hidden.txt", "x");
  fs->AddFile("/d/locked.txt", "x");
  fs->AddDirectory("/d/sub.txt");
  fs->Fail(Op::kOpen, "/d/locked.txt", fakes::FakeFileSystem::PermissionDenied());
  struct Row {
    const char* label;
    std::string path;
    Boolean expected;
  } rows[] = {
      {"file", "/d/a.txt", kTrue},
      {"backslashes", "\\d\\a.txt", kTrue},
      {"missing", "/d/b.txt", kFalse},
      {"empty", "", kFalse},
      {"a directory is no file", "/d/sub.txt", kFalse},
      {"a file that cannot be opened counts as missing", "/d/locked.txt", kFalse},
      {"hidden file named exactly", "/d/.hidden.txt", kTrue},
      {"pattern", "/d/*.txt", kTrue},
      {"question mark", "/d/?.txt", kTrue},
      {"pattern matching only hidden files", "/d/.h*", kFalse},
      {"pattern matching only a directory", "/d/sub*", kFalse},
      {"pattern in a missing directory", "/none/*.txt", kFalse},
  };
  for (const auto& r : rows) EXPECT_EQ(c.FileExists(r.path), r.expected) << r.label;
}

TEST_F(FileTestMembersTest, AsciiJudgesTheFirstBytesOrTheName) {
  const std::string text_then_nul = std::string(2048, 'a') + "\r\n" + std::string(1, '\0');
  const std::string nul_then_text = std::string(1, '\0') + std::string(3000, 'a') + "\r\n";
  struct Row {
    const char* label;
    std::string path;
    std::string data;  // "" with `create` false: the file does not exist
    bool create;
    Boolean expected;
  } rows[] = {
      {"CR LF text", "/t/a.bin", "a\r\nb\r\n", true, kTrue},
      {"LF text", "/t/b.bin", "a\nb\n", true, kTrue},
      {"CR text", "/t/c.bin", "a\rb", true, kTrue},
      {"NUL with line ends", "/t/d.bin", std::string("a\r\n\0", 4), true, kFalse},
      {"one line without an end", "/t/e.txt", "just words", true, kFalse},
      {"empty file, whatever its name", "/t/f.txt", "", true, kFalse},
      {"NUL only after 2048 bytes", "/t/g.bin", std::string(2047, 'a') + "\n" + std::string(1, '\0'), true, kTrue},
      {"line end only after 2048 bytes", "/t/h.bin", text_then_nul, true, kFalse},
      {"NUL in the first bytes wins over later text", "/t/i.bin", nul_then_text, true, kFalse},
      {"missing .TXT", "/t/notes.TXT", "", false, kTrue},
      {"missing .csv", "/t/x.csv", "", false, kTrue},
      {"missing .html", "/t/x.html", "", false, kTrue},
      {"missing .htm", "/t/x.htm", "", false, kTrue},
      {"missing .shtml", "/t/x.shtml", "", false, kTrue},
      {"missing .doc", "/t/x.doc", "", false, kFalse},
      {"missing without extension", "/t/x", "", false, kFalse},
  };
  for (const auto& r : rows) {
    if (r.create) fs->AddFile(r.path, r.data);
    EXPECT_EQ(c.FileTestAscii(r.path), r.expected) << r.label;
  }
}

TEST_F(FileTestMembersTest, AsciiReadsAtMost2048BytesOfAHugeFile) {
  fs->AddFile("/big.txt", std::string(10 << 20, 'a') + "\r\n");
  fs->bytes_read = 0;
  EXPECT_EQ(c.FileTestAscii("/big.txt"), kFalse);
  EXPECT_LE(fs->bytes_read, 2048u);
}

TEST_F(FileTestMembersTest, IdenticalComparesInTheDocumentedOrder) {
  const platform::FileTime t0{2011, 5, 1, 10, 0, 0};
  const platform::FileTime t59{2011, 5, 1, 10, 0, 59};
  const platform::FileTime t100{2011, 5, 1, 10, 1, 0};
  const platform::FileTime next_year{2012, 5, 1, 10, 0, 0};
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
}

TEST_F(FileTestMembersTest, IdenticalWithMissingFiles) {
  fs->AddFile("/one", "abc");
  EXPECT_EQ(c.FileTestIdentical("/none1", "/none2"), kTrue);  // two missing files are identical
  EXPECT_EQ(c.FileTestIdentical("/one", "/none"), kFalse);
  EXPECT_EQ(c.FileTestIdentical("/none", "/one"), kFalse);
}

}  // namespace
}  // namespace tolva::testing_files
