// File transfers: whole files, the automatic type, mask downloads, buffered
// transfers with progress and stop, and the head of a remote file.
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

std::string Bytes(std::size_t n) {
  std::string s(n, '\0');
  for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(i * 7 + 1);
  return s;
}

class Transfers : public FtpTest {
 protected:
  void SetUp() override {
    net->Add("/big", Bytes(300));
    net->Add("/empty", "");
    files->AddFile("/l", Bytes(300));
  }
  // Every transfer must leave the session usable: no file or search handle behind.
  void TearDown() override {
    std::string msg;
    if (c->FTPConnect() != 0) {
      EXPECT_EQ(Answer(c->FTPSessionTest(msg), msg), "-1 ");
    }
  }
};

TEST_F(Transfers, Refusals) {
  using M = std::string;
  ExpectRefusals({
      {"get: no local, its stop kept out of the short text", [&](M& m) { return c->FTPSessionGet(" a ", " ", 0, m); },
       "Can't Get File [a] - {Local File has not been defined}."},
  });
  OpenSession();
  ExpectRefusals({
      {"get: missing", [&](M& m) { return c->FTPSessionGet("no", "/x", kFalse, m); },
       "Can't Get File [no] - Get Error - {FTPSessionGet/550 no: No such file or directory.}"},
      {"buffered get: empty", [&](M& m) { return c->FTPSessionGetBuffered("empty", "/l", kFalse, m, 100); },
       "Can't Get File [empty] - {File is empty.}"},
      {"buffered get: local can't be opened",
       [&](M& m) {
         files->Fail(fakes::FakeFileSystem::Op::kOpen, "/locked", fakes::FakeFileSystem::PermissionDenied());
         return c->FTPSessionGetBuffered("big", "/locked", kFalse, m, 100);
       },
       "Can't Get File [big] - {Permission denied}."},
      {"buffered get: read fails",
       [&](M& m) {
         net->Fail("Read", kAborted, "", 1);
         return c->FTPSessionGetBuffered("big", "/l", kFalse, m, 100);
       },
       "Can't Get File [big] - FTP Read Error - {FTPSessionGetBuffered/12030}."},
      {"buffered put: write fails",
       [&](M& m) {
         net->Fail("Write", kAborted, "", 1);
         return c->FTPSessionPutBuffered("/l", "r", kFalse, m, 100);
       },
       "Can't Put File [/l] - FTP Put Error - {FTPSessionPutBuffered/12030}."},
  });
}

TEST_F(Transfers, OnlyExactTrueMeansTextAndOnlyGetsAskForAReload) {
  OpenSession();
  std::string msg;
  for (Boolean ascii : {kTrue, Boolean{1}}) {
    c->FTPSessionGet("big", "/got", ascii, msg);
    c->FTPSessionPut("/l", "up", ascii, msg);
    c->FTPSessionGetBuffered("big", "/got", ascii, msg, 200);
    c->FTPSessionPutBuffered("/l", "up", ascii, msg, 200);
  }
  EXPECT_EQ(net->Calls("GetFile") + net->Calls("PutFile") + net->Calls("OpenFile"),
            "GetFile big /got 80000001;GetFile big /got 80000002;PutFile up /l 1;PutFile up /l 2;"
            "OpenFile big 80000000 80000001;OpenFile up 40000000 1;"
            "OpenFile big 80000000 80000002;OpenFile up 40000000 2;");
}

TEST_F(Transfers, AutoFetchesBinaryFirstAndTextAgain) {
  net->Add("/text.txt", "line\r\n");
  net->Add("/bin.dat", std::string("\x01\x00\xff", 3));
  OpenSession();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetAuto("bin.dat", "/bin.dat", msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");
  ASSERT_EQ(c->FTPSessionGetAuto("text.txt", "/text.txt", msg), kTrue) << msg;
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "True");
  EXPECT_EQ(net->Calls("GetFile"),
            "GetFile bin.dat /bin.dat 80000002;GetFile text.txt /text.txt 80000002;"
            "GetFile text.txt /text.txt 80000001;");
}

TEST_F(Transfers, MaskDownloadsEachSafeFileAndReportsIt) {
  net->nodes = {{"/", {true, ""}}};
  net->Add("/a", "a");
  net->Add("/b", std::string("\0", 1));
  net->Add("/sub");
  files->AddDirectory("/dl");
  OpenSession();
  net->Fail("GetFile", kTimeout);
  std::string msg = "stale";
  EXPECT_EQ(Answer(c->FTPSessionGetMask("*", "/dl", msg), msg),
            "-1 Can't Get File [a] - Get Error - FTPSessionGet/12002.")
      << "a failure does not end the mask; its text stays";
  EXPECT_EQ(Events(), (std::vector<std::string>{"Downloaded a 0", "Downloaded b -1"}));

  // A listed name never becomes a path outside the chosen directory. The
  // directories "." and ".." are refused aloud; other directories silently.
  net->listing.emplace();
  for (const std::string& name :
       std::vector<std::string>{".", "..", "sub", "..", "../evil", "a\\b", std::string("n\0ul", 4), "ok"}) {
    platform::FindData d;
    d.attributes = net->listing->size() < 3 ? platform::kFileAttributeDirectory : platform::kFileAttributeNormal;
    d.name = name;
    net->listing->push_back(d);
  }
  net->Add("/ok", "fine\r\n");
  net->Add("/evil", "boom");
  net->log.clear();
  host.events.clear();
  EXPECT_EQ(c->FTPSessionGetMask("*", "/dl", msg), kTrue);
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"Downloaded . 0", "Downloaded .. 0", "Downloaded .. 0", "Downloaded ../evil 0",
                                      "Downloaded a\\b 0", "Downloaded n 0", "Downloaded ok -1"}));
  EXPECT_EQ(net->Calls("GetFile"), "GetFile ok /dl\\ok 80000002;GetFile ok /dl\\ok 80000001;");
}

TEST_F(Transfers, BufferedTransfersGoInBlocksWithProgress) {
  OpenSession();
  std::string msg;
  // A file that fits one buffer, or any file without a buffer, goes whole.
  net->Add("/f", Bytes(100));
  ASSERT_EQ(c->FTPSessionGetBuffered("f", "/f", kFalse, msg, 100), kTrue) << msg;
  ASSERT_EQ(c->FTPSessionPutBuffered("/l", "s", kTrue, msg, -1), kTrue) << msg;
  EXPECT_EQ(net->Calls("GetFile") + net->Calls("PutFile"), "GetFile f /f 80000002;PutFile s /l 1;");

  net->Add("/two", Bytes(200));
  ASSERT_EQ(c->FTPSessionGetBuffered(" two ", "/two", kFalse, msg, 100), kTrue) << msg;
  EXPECT_EQ(files->Contents("/two"), Bytes(200));
  ASSERT_EQ(c->FTPSessionPutBuffered(" /l ", "r", kFalse, msg, 100), kTrue) << msg;
  EXPECT_EQ(net->nodes.at("/r").data, Bytes(300));
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"GetProgress two 0/200", "GetProgress two 100/200", "GetProgress two 200/200",
                                      "GetProgress two 200/200", "PutProgress /l 0/300", "PutProgress /l 100/300",
                                      "PutProgress /l 200/300", "PutProgress /l 300/300"}));
  // Blocks are capped at 100,000 bytes.
  net->Add("/large", std::string(250001, 'x'));
  net->log.clear();
  ASSERT_EQ(c->FTPSessionGetBuffered("large", "/large", kTrue, msg, 250000), kTrue) << msg;
  EXPECT_EQ(net->Calls("Read"), "Read 100000;Read 100000;Read 100000;");
  EXPECT_EQ(files->Contents("/large").size(), 250001u);
}

TEST_F(Transfers, AStoppedGetSucceedsWithAPartialFileAndAStoppedPutFails) {
  files->AddFile("/big", std::string(500, 'O'));
  OpenSession();
  std::string msg = "keep";
  StopAt("GetProgress big 100/");
  EXPECT_EQ(Answer(c->FTPSessionGetBuffered("big", "/big", kFalse, msg, 100), msg), "-1 keep");
  EXPECT_EQ(c->FTPSessionStopped(), kTrue);
  EXPECT_EQ(files->Contents("/big"), Bytes(100) + std::string(400, 'O')) << "the stopped read is not written";
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"GetProgress big 0/300", "GetProgress big 100/300", "GetProgress big 100/300"}));
  StopAt("PutProgress /l 100/");
  EXPECT_EQ(Answer(c->FTPSessionPutBuffered("/l", "r", kFalse, msg, 100), msg), "0 Can't Put File [/l] - Interrupted.");
  EXPECT_EQ(c->FTPShortError(), "Interrupted.");
  EXPECT_EQ(c->FTPSessionStopped(), kTrue);
  // Each transfer starts with fresh flags; a stop requested between transfers has no effect.
  host.on_event = nullptr;
  c->FTPSessionStop();
  ASSERT_EQ(c->FTPSessionGetBuffered("big", "/big", kFalse, msg, 100), kTrue);
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
  EXPECT_EQ(files->Contents("/big"), Bytes(300) + std::string(200, 'O'));
}

}  // namespace
}  // namespace tolva::ftptest
