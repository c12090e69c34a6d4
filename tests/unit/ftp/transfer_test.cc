// Whole-file transfers: get, put, the automatic type and mask downloads.
#include <functional>
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Transfers : public FtpTest {};

TEST_F(Transfers, GetAndPutFailureTexts) {
  net->AddFile("/a.txt", "a");
  files->AddFile("/l.txt", "local");
  struct Row {
    std::string label;
    bool open;
    std::function<Boolean(std::string&)> run;
    std::string message, short_text;
  };
  Tolva2011Register& k = *c;
  const std::vector<Row> rows = {
      {"get: both names empty, remote named", false, [&](auto& m) { return k.FTPSessionGet(" ", "", kFalse, m); },
       "Can't Get File - Remote File has not been defined.", "Remote File has not been defined."},
      {"get: local empty keeps its stop out of the short text", false,
       [&](auto& m) { return k.FTPSessionGet(" a.txt ", " ", kFalse, m); },
       "Can't Get File [a.txt] - Local File has not been defined.", "Local File has not been defined"},
      {"get: no session", false, [&](auto& m) { return k.FTPSessionGet("a.txt", "/x", kFalse, m); },
       "Can't Get File [a.txt] - Session is not opened.", "Session is not opened."},
      {"get: missing remote", true, [&](auto& m) { return k.FTPSessionGet("nope", "/x", kFalse, m); },
       "Can't Get File [nope] - Get Error - FTPSessionGet/550 nope: No such file or directory.",
       "FTPSessionGet/550 nope: No such file or directory."},
      {"get: time-out", true,
       [&](auto& m) {
         net->Fail(Op::kGetFile, platform::kErrorInternetTimeout);
         return k.FTPSessionGet("a.txt", "/x", kFalse, m);
       },
       "Can't Get File [a.txt] - Get Error - FTPSessionGet/12002.", "FTPSessionGet/12002"},
      {"put: local empty", false, [&](auto& m) { return k.FTPSessionPut("  ", "r", kFalse, m); },
       "Can't Put File - Local File has not been defined.", "Local File has not been defined."},
      {"put: no session", false, [&](auto& m) { return k.FTPSessionPut("/l.txt", "r", kFalse, m); },
       "Can't Put File [/l.txt] - Session is not opened.", "Session is not opened."},
      {"put: empty remote goes to the server", true, [&](auto& m) { return k.FTPSessionPut("/l.txt", " ", kFalse, m); },
       "Can't Put File [/l.txt] - FTP Put Error - FTPSessionPut/553 Could not create file.",
       "FTPSessionPut/553 Could not create file."},
      {"put: missing local", true, [&](auto& m) { return k.FTPSessionPut("/none", "r", kFalse, m); },
       "Can't Put File [/none] - FTP Put Error - FTPSessionPut/2.", "FTPSessionPut/2"},
  };
  for (const Row& r : rows) {
    if (r.open && c->FTPSession() == 0) OpenSession();
    if (!r.open) c->FTPSessionClose();
    std::string msg = "stale";
    EXPECT_EQ(r.run(msg), kFalse) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPLastError(), r.message) << r.label;
    EXPECT_EQ(c->FTPShortError(), r.short_text) << r.label;
  }
}

TEST_F(Transfers, OnlyExactTrueMeansText) {
  net->AddFile("/a.txt", "one\ntwo\n");
  files->AddFile("/l.txt", "x\r\ny\r\n");
  OpenSession();
  struct Row {
    Boolean ascii;
    std::uint32_t get_flags, put_flags;
    std::string local;
  };
  const std::vector<Row> rows = {
      {kTrue, 0x80000001u, 1, "one\r\ntwo\r\n"},
      {1, 0x80000002u, 2, "one\ntwo\n"},
      {kFalse, 0x80000002u, 2, "one\ntwo\n"},
  };
  for (const Row& r : rows) {
    std::string msg = "keep";
    ASSERT_EQ(c->FTPSessionGet("a.txt", "/got.txt", r.ascii, msg), kTrue) << r.ascii;
    EXPECT_EQ(msg, "keep");
    EXPECT_EQ(net->last_transfer_flags, r.get_flags) << r.ascii;
    EXPECT_EQ(files->Contents("/got.txt"), r.local) << r.ascii;
    ASSERT_EQ(c->FTPSessionPut("/l.txt", "up.txt", r.ascii, msg), kTrue) << r.ascii;
    EXPECT_EQ(net->last_transfer_flags, r.put_flags) << r.ascii;
  }
}

TEST_F(Transfers, AutoFetchesBinaryFirstAndTextAgain) {
  net->AddFile("/text.txt", "line\n");
  net->AddFile("/bin.dat", std::string("\x01\x00\xff", 3));
  OpenSession();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetAuto("bin.dat", "/bin.dat", msg), kTrue);
  EXPECT_EQ(net->Count(Op::kGetFile), 1);
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");

  ASSERT_EQ(c->FTPSessionGetAuto("text.txt", "/text.txt", msg), kTrue);
  EXPECT_EQ(net->Count(Op::kGetFile), 3);
  EXPECT_EQ(files->Contents("/text.txt"), "line\r\n") << "the text-mode copy is what stays";
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "True");

  // A failed second fetch leaves the last choice as it was.
  net->Fail(Op::kGetFile, platform::kErrorInternetTimeout, "", 1);
  c->FTPSessionGetAuto("bin.dat", "/bin.dat", msg);  // binary: one fetch, skipped failure queue
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");
  net->Fail(Op::kGetFile, platform::kErrorInternetTimeout, "", 1);
  EXPECT_EQ(c->FTPSessionGetAuto("text.txt", "/text.txt", msg), kFalse);
  EXPECT_EQ(msg, "Can't Get File [text.txt] - Get Error - FTPSessionGet/12002.");
  EXPECT_EQ(c->FTPSessionGetAutoAscii(), "False");
}

TEST_F(Transfers, MaskDownloadsEachFileAndReportsIt) {
  net->AddFile("/a.txt", "a\n");
  net->AddFile("/b.bin", std::string("\0", 1));
  net->AddFile("/c.txt", "c\n");
  net->AddDirectory("/sub.txt");
  files->AddDirectory("/dl");
  OpenSession();
  std::string msg = "stale";
  ASSERT_EQ(c->FTPSessionGetMask("*", "/dl", msg), kTrue);
  EXPECT_EQ(msg, "") << "the count inside empties it";
  EXPECT_EQ(Events(), (std::vector<std::string>{"Downloaded a.txt -1", "Downloaded b.bin -1", "Downloaded c.txt -1"}));
  EXPECT_EQ(files->Contents("/dl/a.txt"), "a\r\n");
  EXPECT_EQ(files->Contents("/dl/b.bin"), std::string("\0", 1));
  EXPECT_EQ(net->OpenHandleCount(), 2);
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);

  host.events.clear();
  EXPECT_EQ(c->FTPSessionGetMask("sub*", "/dl", msg), kTrue) << "only directories: nothing to do";
  EXPECT_TRUE(Events().empty());

  EXPECT_EQ(c->FTPSessionGetMask(" ", "/dl", msg), kFalse);
  EXPECT_EQ(msg, "File Mask has not been defined.");
  c->FTPSessionClose();
  EXPECT_EQ(c->FTPSessionGetMask("*", "/dl", msg), kFalse);
  EXPECT_EQ(msg, "Can't Get Files [*] - Session is not opened.");
}

TEST_F(Transfers, MaskDownloadNeverTrustsAListedName) {
  std::vector<platform::FindData> listing;
  for (const std::string& name :
       {std::string(""), std::string("."), std::string(".."), std::string("../evil"), std::string("a/b"),
        std::string("a\\b"), std::string("n\0ul", 4), std::string("ok.txt")}) {
    platform::FindData d;
    d.attributes = platform::kFileAttributeNormal;
    d.name = name;
    listing.push_back(d);
  }
  net->SetListing(listing);
  net->AddFile("/ok.txt", "fine\n");
  net->AddFile("/evil", "boom");
  files->AddDirectory("/dl");
  OpenSession();
  std::string msg;
  EXPECT_EQ(c->FTPSessionGetMask("*", "/dl", msg), kTrue);
  EXPECT_EQ(Events(), (std::vector<std::string>{"Downloaded  0", "Downloaded . 0", "Downloaded .. 0",
                                                "Downloaded ../evil 0", "Downloaded a/b 0", "Downloaded a\\b 0",
                                                "Downloaded n 0", "Downloaded ok.txt -1"}));
  for (const std::string& line : net->log) {
    if (line.rfind("GetFile", 0) == 0) {
      EXPECT_EQ(line.rfind("GetFile ok.txt /dl\\ok.txt", 0), 0u) << line;
    }
  }
  EXPECT_EQ(net->Count(Op::kGetFile), 2) << "only the safe name was fetched (binary, then as text)";
  for (const auto& [path, node] : files->nodes) {
    EXPECT_TRUE(path == "/" || path == "/tmp" || path.rfind("/dl", 0) == 0 || path.rfind("/windows", 0) == 0)
        << "written outside the chosen directory: " << path;
  }
  EXPECT_EQ(files->Contents("/dl/ok.txt"), "fine\r\n");
}

TEST_F(Transfers, AFailedFileDoesNotEndTheMask) {
  net->AddFile("/a", "1");
  net->AddFile("/b", "2");
  OpenSession();
  net->Fail(Op::kGetFile, platform::kErrorInternetTimeout);
  std::string msg;
  EXPECT_EQ(c->FTPSessionGetMask("*", "/", msg), kTrue);
  EXPECT_EQ(Events(), (std::vector<std::string>{"Downloaded a 0", "Downloaded b -1"}));
  EXPECT_EQ(msg, "Can't Get File [a] - Get Error - FTPSessionGet/12002.") << "the last failure's text";
}

TEST_F(Transfers, MaskStops) {
  struct Row {
    std::string label;
    std::function<void()> arm;
    Boolean result;
    std::string message;
    std::vector<std::string> events;
  };
  const std::vector<Row> rows = {
      {"stop before the listing starts",
       [&] {
         int n = 0;
         host.on_do_events = [&, n]() mutable {
           if (++n == 3) c->FTPSessionStop();  // two yields belong to the count
         };
       },
       kTrue,
       "",
       {}},
      {"stop from the download event",
       [&] { host.on_downloaded = [&](const std::string&) { c->FTPSessionStop(); }; },
       kFalse,
       "Getting of Files [*] - Interrupted.",
       {"Downloaded a -1"}},
  };
  for (const Row& r : rows) {
    net->nodes.clear();
    net->AddFile("/a", "1");
    net->AddFile("/b", "2");
    c->FTPSessionClose();
    OpenSession();
    host = RecordingHost{};
    r.arm();
    std::string msg;
    EXPECT_EQ(c->FTPSessionGetMask("*", "/", msg), r.result) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPSessionStopped(), kTrue) << r.label;
    EXPECT_EQ(Events(), r.events) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), 2) << r.label;
  }
}

}  // namespace
}  // namespace tolva::ftptest
