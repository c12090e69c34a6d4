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
    files->AddFile("/empty", "");
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
  Long written = 0;
  std::string buffer;
  ExpectRefusals({
      {"get: no local, its stop kept out of the short text", [&](M& m) { return c->FTPSessionGet(" a ", " ", 0, m); },
       "Can't Get File [a] - {Local File has not been defined}."},
      {"get: no session", [&](M& m) { return c->FTPSessionGet("a", "/x", kFalse, m); },
       "Can't Get File [a] - {Session is not opened.}"},
      {"put: no local", [&](M& m) { return c->FTPSessionPut("  ", "r", kFalse, m); },
       "Can't Put File - {Local File has not been defined.}"},
  });
  OpenSession();
  ExpectRefusals({
      {"get: missing", [&](M& m) { return c->FTPSessionGet("no", "/x", kFalse, m); },
       "Can't Get File [no] - Get Error - {FTPSessionGet/550 no: No such file or directory.}"},
      {"put: empty remote goes to the server", [&](M& m) { return c->FTPSessionPut("/l", " ", kFalse, m); },
       "Can't Put File [/l] - FTP Put Error - {FTPSessionPut/553 Could not create file.}"},
      {"put: missing local", [&](M& m) { return c->FTPSessionPut("/none", "r", kFalse, m); },
       "Can't Put File [/none] - FTP Put Error - {FTPSessionPut/2}."},
      {"buffered get: no local, with its stop", [&](M& m) { return c->FTPSessionGetBuffered("big", "", 0, m, 100); },
       "Can't Get File [big] - {Local File has not been defined.}"},
      {"buffered get: missing", [&](M& m) { return c->FTPSessionGetBuffered("no", "/l", kFalse, m, 100); },
       "Can't Get File [no] - {File does not exist.}"},
      {"buffered get: empty", [&](M& m) { return c->FTPSessionGetBuffered("empty", "/l", kFalse, m, 100); },
       "Can't Get File [empty] - {File is empty.}"},
      {"buffered get: local can't be opened",
       [&](M& m) {
         files->Fail(fakes::FakeFileSystem::Op::kOpen, "/locked", fakes::FakeFileSystem::PermissionDenied());
         return c->FTPSessionGetBuffered("big", "/locked", kFalse, m, 100);
       },
       "Can't Get File [big] - {Permission denied}."},
      {"buffered get: remote can't be opened",
       [&](M& m) {
         net->Fail("OpenFile", kExtended, "550 No access.\r\n");
         return c->FTPSessionGetBuffered("big", "/l", kFalse, m, 100);
       },
       "Can't Open File [big] - FTP Open Error - {FTPSessionGetBuffered/550 No access.}"},
      {"buffered get: read fails",
       [&](M& m) {
         net->Fail("Read", kAborted, "", 1);
         return c->FTPSessionGetBuffered("big", "/l", kFalse, m, 100);
       },
       "Can't Get File [big] - FTP Read Error - {FTPSessionGetBuffered/12030}."},
      {"buffered put: missing local", [&](M& m) { return c->FTPSessionPutBuffered("/no", "r", kFalse, m, 100); },
       "Can't Put File [/no] - {File does not exist.}"},
      {"buffered put: empty local", [&](M& m) { return c->FTPSessionPutBuffered("/empty", "r", kFalse, m, 100); },
       "Can't Put File [/empty] - {File is empty.}"},
      {"buffered put: remote can't be opened",
       [&](M& m) { return c->FTPSessionPutBuffered("/l", "no/dir", kFalse, m, 100); },
       "Can't Put File [/l] - FTP Open Error - {FTPSessionPutBuffered/553 Could not create file.}"},
      {"buffered put: write fails",
       [&](M& m) {
         net->Fail("Write", kAborted, "", 1);
         return c->FTPSessionPutBuffered("/l", "r", kFalse, m, 100);
       },
       "Can't Put File [/l] - FTP Put Error - {FTPSessionPutBuffered/12030}."},
      {"head: read fails",
       [&](M& m) {
         net->Fail("Read", kAborted);
         return c->FTPSessionGetBuffer("big", 5, buffer, written, m);
       },
       "Can't Get File [big] - FTP Read Error - {FTPSessionGetBuffer/12030}."},
  });
}

TEST_F(Transfers, ALocalFileThatFailsMidTransferEndsIt) {
  OpenSession();
  std::string msg;
  // The local file goes away at the first read: its write fails, and nothing more is read.
  net->on_call = [&](const std::string& verb) {
    if (verb == "Read") files->nodes.erase("/gone");
  };
  EXPECT_EQ(Answer(c->FTPSessionGetBuffered("big", "/gone", kFalse, msg, 100), msg),
            "0 Can't Get File [big] - Path/File access error.");
  EXPECT_EQ(net->Count("Read"), 1);
  EXPECT_EQ(Events(), (std::vector<std::string>{"GetProgress big 0/300"}));
  // The local file of a buffered put goes away before it is opened.
  net->on_call = [&](const std::string& verb) {
    if (verb == "OpenFile") files->nodes.erase("/l");
  };
  EXPECT_EQ(Answer(c->FTPSessionPutBuffered("/l", "r", kFalse, msg, 100), msg),
            "0 Can't Get File [r] - File not found.");
  Long number = 0;  // the local fault stays behind as the pending error
  EXPECT_EQ(c->FTPExtendedError(number), "53");
  EXPECT_EQ(number, 53) << "written back";
  EXPECT_EQ(Answer(c->FTPSessionTest(msg), msg), "0 Handle is non-zero.");  // its remote handle stays open
  c->FTPSessionClose();
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
  ASSERT_EQ(c->FTPSessionGetAuto("bin.dat", "/bin.dat", msg), kTrue);
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");
  ASSERT_EQ(c->FTPSessionGetAuto("text.txt", "/text.txt", msg), kTrue);
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "True");
  EXPECT_EQ(net->Calls("GetFile"),
            "GetFile bin.dat /bin.dat 80000002;GetFile text.txt /text.txt 80000002;"
            "GetFile text.txt /text.txt 80000001;");
  // A failed second fetch leaves the last choice as it was.
  c->FTPSessionGetAuto("bin.dat", "/bin.dat", msg);
  net->Fail("GetFile", kTimeout, "", 1);
  EXPECT_EQ(Answer(c->FTPSessionGetAuto("text.txt", "/text.txt", msg), msg),
            "0 Can't Get File [text.txt] - Get Error - FTPSessionGet/12002.");
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");
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
  EXPECT_EQ(files->Contents("/dl/b"), std::string("\0", 1));
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
  host.events.clear();
  EXPECT_EQ(Answer(c->FTPSessionGetMask("sub*", "/dl", msg), msg), "-1 ") << "only directories: nothing to do";
  EXPECT_TRUE(Events().empty());

  // A listed name never becomes a path outside the chosen directory.
  net->listing.emplace();
  for (const std::string& name :
       std::vector<std::string>{"", ".", "..", "../evil", "a/b", "a\\b", std::string("n\0ul", 4), "ok"}) {
    platform::FindData d;
    d.attributes = platform::kFileAttributeNormal;
    d.name = name;
    net->listing->push_back(d);
  }
  net->Add("/ok", "fine\r\n");
  net->Add("/evil", "boom");
  net->log.clear();
  EXPECT_EQ(c->FTPSessionGetMask("*", "/dl", msg), kTrue);
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"Downloaded  0", "Downloaded . 0", "Downloaded .. 0", "Downloaded ../evil 0",
                                      "Downloaded a/b 0", "Downloaded a\\b 0", "Downloaded n 0", "Downloaded ok -1"}));
  EXPECT_EQ(net->Calls("GetFile"), "GetFile ok /dl\\ok 80000002;GetFile ok /dl\\ok 80000001;");
}

TEST_F(Transfers, MaskStops) {
  struct Row {
    std::string label, stop_at;
    int nth;
    Boolean result;
    std::vector<std::string> events;
  };
  const std::vector<Row> rows = {
      {"before the listing starts", "DoEvents", 3, kTrue, {}},  // two yields belong to the count
      {"from the download event", "Downloaded", 1, kFalse, {"Downloaded a -1"}},
  };
  for (const Row& r : rows) {
    net->nodes = {{"/", {true, ""}}};
    net->Add("/a", "1");
    net->Add("/b", "2");
    OpenSession();
    host.events.clear();
    StopAt(r.stop_at, r.nth);
    std::string msg;
    EXPECT_EQ(Answer(c->FTPSessionGetMask("*", "/", msg), msg),
              Answer(r.result, r.result ? "" : "Getting of Files [*] - Interrupted."))
        << r.label;
    EXPECT_EQ(c->FTPSessionStopped(), kTrue) << r.label;
    EXPECT_EQ(Events(), r.events) << r.label;
  }
}

TEST_F(Transfers, BufferedTransfersGoInBlocksWithProgress) {
  OpenSession();
  std::string msg;
  // Files that fit one buffer, or no buffer at all, go whole.
  struct Row {
    std::size_t size;
    Long buffer;
  };
  for (const Row& r : std::vector<Row>{{100, 100}, {5000, 0}, {5000, -1}, {10000, 10000}}) {
    net->Add("/f", Bytes(r.size));
    ASSERT_EQ(c->FTPSessionGetBuffered("f", "/f", kFalse, msg, r.buffer), kTrue) << r.buffer << msg;
    EXPECT_EQ(files->Contents("/f"), Bytes(r.size)) << r.buffer;
  }
  ASSERT_EQ(c->FTPSessionGetBuffered("f", "/g", kFalse, msg), kTrue) << "default BufferSize";
  files->AddFile("/small", "abc");
  ASSERT_EQ(c->FTPSessionPutBuffered("/small", "s", kTrue, msg, 100), kTrue);
  EXPECT_EQ(net->Count("GetFile"), 5);
  EXPECT_EQ(net->Count("PutFile"), 1);
  EXPECT_EQ(net->Count("OpenFile"), 0) << "small files go whole";
  EXPECT_TRUE(Events().empty()) << "no progress";

  net->Add("/two", Bytes(200));
  ASSERT_EQ(c->FTPSessionGetBuffered(" two ", "/two", kFalse, msg, 100), kTrue) << msg;
  EXPECT_EQ(files->Contents("/two"), Bytes(200));
  EXPECT_EQ(net->Count("Read"), 3);
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

TEST_F(Transfers, GetBufferReadsTheHeadInOneBinaryRead) {
  net->Add("/f", Bytes(50));
  OpenSession();
  struct Row {
    std::string remote;
    Long wanted;
    std::uint32_t read_limit;
    std::string buffer;
  };
  for (const Row& r : std::vector<Row>{{"f", 1000, 0, Bytes(50)},
                                       {" f ", 10, 0, Bytes(10)},
                                       {"f", 50, 7, Bytes(7)},  // a short read stays short
                                       {"f", 0, 0, ""}}) {
    net->read_limit = r.read_limit;
    std::string buffer = "old", msg = "keep";
    Long written = -5;
    EXPECT_EQ(Answer(c->FTPSessionGetBuffer(r.remote, r.wanted, buffer, written, msg), msg), "-1 keep") << r.wanted;
    EXPECT_EQ(buffer, r.buffer) << r.wanted;
    EXPECT_EQ(written, static_cast<Long>(r.buffer.size())) << r.wanted;
  }
  EXPECT_EQ(net->Calls("OpenFile"),
            "OpenFile f 80000000 80000002;OpenFile f 80000000 80000002;"
            "OpenFile f 80000000 80000002;OpenFile f 80000000 80000002;");
}

// A local file system whose opened files only count what is written to them.
class CountingSink : public fakes::FakeFileSystem {
 public:
  std::uint64_t written = 0;
  class SinkFile : public platform::File {
   public:
    explicit SinkFile(std::uint64_t& total) : total_(total) {}
    bool Read(void*, std::size_t, std::size_t&, platform::FileError&) override { return false; }
    bool Write(const void*, std::size_t n, platform::FileError&) override { return (total_ += n, true); }
    std::uint64_t Size() override { return total_; }
    bool Close(platform::FileError&) override { return true; }

   private:
    std::uint64_t& total_;
  };
  std::unique_ptr<platform::File> Open(const std::string&, platform::OpenMode, platform::FileError&) override {
    return std::make_unique<SinkFile>(written);
  }
};

TEST_F(Transfers, BeyondTwoGiBTheLoopCountsOnAndTheHostSeesAClampedFigure) {
  constexpr std::uint64_t kSize = (2ull << 30) + 100;  // one past what a Long holds, and more
  auto sink = std::make_shared<CountingSink>();
  Fresh(sink);
  net->Add("/huge", "");
  net->nodes["/huge"].zeros = kSize;
  OpenSession();
  host.events.reserve(50000);
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("huge", "/sink", kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(sink->written, kSize) << "every byte arrived";
  const std::vector<std::string> progress = Events("GetProgress");
  EXPECT_EQ(progress.size(), kSize / 100000 + 2);
  EXPECT_EQ(progress.back(), "GetProgress huge 2147483647/2147483647");
  for (const std::string& e : progress) ASSERT_EQ(e.find('-'), std::string::npos) << "wrapped: " << e;
}

}  // namespace
}  // namespace tolva::ftptest
