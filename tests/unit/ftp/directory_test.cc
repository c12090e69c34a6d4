// Remote directories: create, current, set, delete, exists.
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Directories : public FtpTest {};

TEST_F(Directories, CreateTexts) {
  std::string msg;
  EXPECT_EQ(c->FTPSessionDirectoryCreate("   ", msg), kFalse);
  EXPECT_EQ(msg, "Directory has not been defined.");
  EXPECT_EQ(net->Count(Op::kConnect), 0) << "refused without touching the server";

  EXPECT_EQ(c->FTPSessionDirectoryCreate("new", msg), kFalse);
  EXPECT_EQ(msg, "Can't Create Directory [new] - Session is not opened.");
  EXPECT_EQ(c->FTPShortError(), "Session is not opened.");

  OpenSession();
  msg = "keep";
  EXPECT_EQ(c->FTPSessionDirectoryCreate(" new ", msg), kTrue);
  EXPECT_EQ(msg, "keep");
  EXPECT_TRUE(net->IsDirectory("/new"));

  EXPECT_EQ(c->FTPSessionDirectoryCreate("new", msg), kFalse);
  EXPECT_EQ(msg, "Can't Create Directory [new] - Error - FTPSessionDirectoryCreate/550 new: Can't create directory.");
  EXPECT_EQ(c->FTPShortError(), "Error - FTPSessionDirectoryCreate/550 new: Can't create directory.");

  net->Fail(Op::kCreateDirectory, platform::kErrorInternetTimeout);
  EXPECT_EQ(c->FTPSessionDirectoryCreate("other", msg), kFalse);
  EXPECT_EQ(msg, "Can't Create Directory [other] - Error - FTPSessionDirectoryCreate/12002.");
}

TEST_F(Directories, WithoutAConnectionNothingIsSentAndNoTextIsLeft) {
  std::string msg;
  c->FTPSessionDirectoryCreate("", msg);  // leaves a text behind, which each member below clears
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "");
  EXPECT_EQ(c->FTPLastError(), "");
  c->FTPSessionDirectoryCreate("", msg);
  EXPECT_EQ(c->FTPSessionDirectoryCurrentSet("/x"), kFalse);
  EXPECT_EQ(c->FTPLastError() + c->FTPShortError(), "");
  c->FTPSessionDirectoryCreate("", msg);
  EXPECT_EQ(c->FTPSessionDirectoryDelete("/x"), kFalse);
  EXPECT_EQ(c->FTPLastError() + c->FTPShortError(), "");
  EXPECT_EQ(c->FTPSessionDirectoryExists(""), kFalse);
  EXPECT_EQ(net->log.size(), 0u);
}

TEST_F(Directories, CurrentSetSendsATrailingSlashAndDeleteNone) {
  net->AddDirectory("/pub/sub");
  OpenSession();
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "/");
  EXPECT_EQ(c->FTPSessionDirectoryCurrentSet(" pub "), kTrue);
  EXPECT_EQ(net->log.back(), "Cwd pub/");
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "/pub");
  EXPECT_EQ(c->FTPSessionDirectoryDelete("sub/"), kTrue);
  EXPECT_EQ(net->log.back(), "Rmd sub");
  EXPECT_FALSE(net->IsDirectory("/pub/sub"));
  net->AddDirectory("/pub/sub");
  EXPECT_EQ(c->FTPSessionDirectoryDelete("sub/ "), kTrue);
  EXPECT_EQ(net->log.back(), "Rmd sub/") << "the slash is looked for before trimming";

  EXPECT_EQ(c->FTPSessionDirectoryDelete("missing"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "FTPSessionDirectoryDelete/550 missing: No such file or directory.");
  EXPECT_EQ(c->FTPSessionDirectoryCurrentSet("missing"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "FTPSessionDirectoryCurrentSet/550 missing/: No such file or directory.");
}

TEST_F(Directories, CurrentTooLongForTheBufferIsAFailure) {
  const std::string deep = "/" + std::string(259, 'd');  // 260 characters: no room for the terminator
  net->AddDirectory(deep);
  OpenSession();
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet(deep), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "");
  EXPECT_EQ(c->FTPLastError(), "FTPSessionDirectoryCurrent/122.");
  EXPECT_EQ(c->FTPShortError(), "FTPSessionDirectoryCurrent/122");
}

TEST_F(Directories, ExistsChangesInAndBackOut) {
  net->AddDirectory("/pub/sub");
  OpenSession();
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("/pub"), kTrue);
  struct Row {
    std::string label, dir;
    Boolean expected;
    int changes;  // directory changes sent
  };
  const std::vector<Row> rows = {
      {"empty", "", kTrue, 0},
      {"the current one", "/pub", kTrue, 0},
      {"current with slash", "/pub/", kTrue, 0},
      {"a sub-directory", "sub", kTrue, 2},
      {"missing", "nothing", kFalse, 2},
      {"a file is no directory", "/pub/../pub/x", kFalse, 2},
  };
  for (const Row& r : rows) {
    const int before = net->Count(Op::kSetCurrentDirectory);
    EXPECT_EQ(c->FTPSessionDirectoryExists(r.dir), r.expected) << r.label;
    EXPECT_EQ(net->Count(Op::kSetCurrentDirectory) - before, r.changes) << r.label;
    EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "/pub") << r.label << ": back where it was";
    EXPECT_EQ(c->FTPLastError(), "") << r.label << ": the change back cleared the texts";
  }
  // Failing to get back is a failure whatever was found.
  net->Fail(Op::kSetCurrentDirectory, kExtended, "550 No.", 1);
  EXPECT_EQ(c->FTPSessionDirectoryExists("sub"), kFalse);
}

}  // namespace
}  // namespace tolva::ftptest
