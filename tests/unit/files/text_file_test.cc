// ReadFile, ReadFileFull and WriteFile against the in-memory file system.
#include <string>

#include "textdata/text_file.h"
#include "unit/files/files_fixture.h"

namespace tolva::testing_files {
namespace {

using Op = fakes::FakeFileSystem::Op;

class TextFileTest : public FilesTest {};

TEST_F(TextFileTest, ReadFullReportsEachFailureWithItsText) {
  fs->AddFile("/d/text.txt", "a\r\nb");
  fs->AddFile("/d/empty.txt", "");
  fs->AddFile("/d/broken.txt", "data");
  fs->AddFile("/run/rel.txt", "relative");
  fs->Fail(Op::kRead, "/d/broken.txt", {57, "Device I/O error"});
  c.DirectoryRun("/run");
  struct Row {
    const char* label;
    std::string path;
    std::string result, message;
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
    EXPECT_EQ(c.ReadFileFull(r.path, msg), r.result) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
  }
}

TEST_F(TextFileTest, ReadFileHandsBackBytesAndNothingOnFailure) {
  fs->AddFile("/d/empty.txt", "");
  fs->AddFile("/d/bytes.bin", std::string("\0\xff\r\n", 4));
  EXPECT_EQ(c.ReadFile("/d/bytes.bin"), std::string("\0\xff\r\n", 4));  // bytes in, bytes out
  EXPECT_EQ(c.ReadFile("/d/missing"), "");
  // A zero-length file is never opened, so a failing read cannot touch it.
  fs->Fail(Op::kRead, "/d/empty.txt", {57, "Device I/O error"});
  fs->Fail(Op::kOpen, "/d/empty.txt", {57, "Device I/O error"});
  EXPECT_EQ(c.ReadFile("/d/empty.txt"), "");
  EXPECT_EQ(fs->bytes_read, 4u);
}

TEST_F(TextFileTest, WriteReplacesAndReportsThePlatformText) {
  std::string msg = "stale";
  EXPECT_EQ(c.WriteFile("/d/out.txt", "abc", msg), kFalse);
  EXPECT_EQ(msg, "Path not found");
  fs->AddDirectory("/d");
  EXPECT_EQ(c.WriteFile("/d/out.txt", "abc", msg), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(c.WriteFile("\\d\\out.txt", "x\r\n", msg), kTrue);
  EXPECT_EQ(fs->Contents("/d/out.txt"), "x\r\n");  // replaced, not appended, no line end added
  fs->nodes["/d/out.txt"].read_only = true;
  EXPECT_EQ(c.WriteFile("/d/out.txt", "lost?", msg), kFalse);
  EXPECT_EQ(msg, "Path/File access error");
  EXPECT_EQ(fs->Contents("/d/out.txt"), "x\r\n");
  EXPECT_EQ(c.WriteFile("", "abc", msg), kFalse);
  EXPECT_EQ(msg, "Bad file name or number");
}

TEST(ProgressIntervalTest, ZeroOrLessCountsAsOne) {
  struct Row {
    Long increment, records;
    bool due;
  } rows[] = {{0, 1, true}, {-5, 7, true}, {1, 3, true}, {10, 9, false}, {10, 20, true}, {3, 4, false}};
  for (const auto& r : rows)
    EXPECT_EQ(textdata::ProgressDue(r.records, r.increment), r.due) << r.increment << " " << r.records;
  EXPECT_EQ(textdata::ProgressInterval(0), 1);
  EXPECT_EQ(textdata::ProgressInterval(250), 250);
}

}  // namespace
}  // namespace tolva::testing_files
