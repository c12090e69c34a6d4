// The session, its error texts and remote directories.
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Session : public FtpTest {};

TEST_F(Session, OpenAndTheConnectionTestRefuse) {
  struct Row {
    std::string label, host, user;
    std::function<void(fakes::FakeInternet&)> setup;  // with one, FTPTest is tried too
    std::string detail;
  };
  const std::vector<Row> rows = {
      {"no user, host trimmed in text", " server1 ", "  ", nullptr, "User ID has not been defined."},
      {"offline", "server1", "user", [](auto& n) { n.connected = false; }, "Not connected to the Internet."},
      {"open returns 0", "server1", "user", [](auto& n) { n.Fail("Open", 12004); }, "Session can't be opened."},
      {"connect throws", "server1", "user", [](auto& n) { n.Fail("Connect", n.kThrow); },
       "InternetConnect Error - entry point not found."},
      {"bad password", "server1", "user", [](auto& n) { n.password = "other"; }, "Session can't be connected."},
  };
  for (const Row& r : rows) {
    for (const std::string title : {"Can't Open Session [server1] - ", "FTP Test Failure [server1] - "}) {
      const bool test = title[0] == 'F';
      if (test && !r.setup) continue;
      Fresh();
      if (r.setup) r.setup(*net);
      std::string msg;
      const Boolean result =
          test ? c->FTPTest(r.host, r.user, "secret", msg) : c->FTPSessionOpen(r.host, r.user, "secret", msg);
      EXPECT_EQ(Answer(result, msg), "0 " + title + r.detail) << r.label;
      EXPECT_EQ(c->FTPLastError(), msg) << r.label;
      EXPECT_EQ(net->OpenHandleCount(), 0) << r.label << ": a failed open leaves nothing open";
    }
  }
  Fresh();
  std::string msg;
  EXPECT_EQ(Answer(c->FTPSessionOpen("   ", "user", "", msg), msg),
            "0 Can't Open Session - Host has not been defined.");
  EXPECT_EQ(c->FTPShortError(), "Host has not been defined.");
}

TEST_F(Session, OpenTrimsAndKeepsHandlesWithTheTopBitSet) {
  net->next_handle = 0x80000010u;
  std::string msg = "untouched";
  ASSERT_EQ(Answer(c->FTPSessionOpen("  server1 ", " user ", " secret  ", msg), msg), "-1 untouched");
  EXPECT_EQ(net->log, (std::vector<std::string>{"Open Tolva 2011 Register", "Connect server1 user 0 8000000"}));
  EXPECT_LT(c->FTPSession(), 0);  // shown as a negative Long, as the host sees it
  c->FTPSessionClose();
  EXPECT_EQ(net->OpenHandleCount() + c->FTPSession(), 0);
}

TEST_F(Session, CloseReportsHandlesItCannotCloseAndKeepsTheCredentials) {
  OpenSession();
  const Long session = c->FTPSession();
  std::string msg;
  net->Fail("Close", platform::kErrorInvalidHandle, "", 1);  // the second close (the session's) fails
  c->FTPSessionClose();
  EXPECT_EQ(Events(), (std::vector<std::string>{"System Error Closing Handle=" + std::to_string(session)}));
  EXPECT_EQ(Answer(c->FTPSessionTest(msg), msg), "0 Session is not connected.");
  EXPECT_EQ(c->FTPSessionReconnect(msg), kTrue) << msg;
}

TEST_F(Session, TestNamesTheFirstReasonTheSessionIsNotUsable) {
  std::string msg;
  EXPECT_EQ(Answer(c->FTPSessionTest(msg), msg), "0 Session is not opened.");
  OpenSession();
  msg = "keep";
  EXPECT_EQ(Answer(c->FTPSessionTest(msg), msg), "-1 keep");
}

TEST_F(Session, ReconnectTracesEachStepAndRestoresTheDirectory) {
  net->Add("/pub");
  OpenSession();
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("/pub"), kTrue);
  std::string msg = "keep";
  ASSERT_EQ(Answer(c->FTPSessionReconnect(msg), msg), "-1 keep");
  const std::string s = std::to_string(c->FTPSession()), k = std::to_string(c->FTPConnect());
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"System CurrentDirectory=/pub", "System FTPSessionReconnect",
                                      "System Host=server1", "System UserID=user", "System Password=secret",
                                      "System Session=" + s, "System Connect=" + k, "System CurrentDirectory=/pub"}));
  EXPECT_EQ(net->OpenHandleCount(), 2) << "the old handles were closed";
}

TEST_F(Session, ErrorTexts) {
  net->Fail("Cwd", kExtended, "\r\n550 No such directory.\r\n");
  OpenSession();
  c->FTPSessionDirectoryCurrentSet("x");  // leaves the server's reply behind
  struct Row {
    std::string tag;
    Long number;
    std::string expected;
  };
  for (const Row& r : std::vector<Row>{
           {"", 0, ""}, {"X", 12002, "X/12002"}, {"T", 12003, "T/550 No such directory."}}) {  // trimmed of line ends
    Long n = r.number;
    EXPECT_EQ(c->FTPSessionError(r.tag, n), r.expected) << r.expected;
    n = r.number;
    // FTPExtendedError gives the same text without the tag ("X/" is two characters).
    EXPECT_EQ(c->FTPExtendedError(n), r.tag.empty() ? r.expected : r.expected.substr(2)) << r.expected;
  }
  // The full text always ends with a stop; the short one stays as the server said it.
  for (const std::string reply : {"550 Gone.", "550 Gone", "550 Gone?", "550 Gone!", ""}) {
    net->Fail("Cwd", kExtended, reply);
    EXPECT_EQ(c->FTPSessionDirectoryCurrentSet("x"), kFalse) << reply;
    const std::string stop = reply.empty() || reply.back() == 'e' ? "." : "";
    EXPECT_EQ(c->FTPLastError(), "FTPSessionDirectoryCurrentSet/" + reply + stop) << reply;
    EXPECT_EQ(c->FTPShortError(), "FTPSessionDirectoryCurrentSet/" + reply) << reply;
  }
}

TEST_F(Session, DirectoryMembers) {
  net->Add("/pub/sub");
  OpenSession();
  std::string msg = "keep";
  EXPECT_EQ(Answer(c->FTPSessionDirectoryCreate(" new ", msg), msg), "-1 keep");
  EXPECT_EQ(Answer(c->FTPSessionDirectoryCreate("new", msg), msg),
            "0 Can't Create Directory [new] - Error - FTPSessionDirectoryCreate/550 new: Can't create directory.");
  // Set sends a trailing slash; delete sends none, looking for it before trimming.
  EXPECT_EQ(c->FTPSessionDirectoryCurrentSet(" pub "), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryCurrent(), "/pub");
  EXPECT_EQ(c->FTPSessionDirectoryDelete("sub/"), kTrue);
  net->Add("/pub/sub");
  EXPECT_EQ(c->FTPSessionDirectoryDelete("sub/ "), kTrue);
  EXPECT_EQ(c->FTPSessionDirectoryCurrentSet("missing"), kFalse);
  EXPECT_EQ(net->Calls("Cwd") + net->Calls("Rmd"), "Cwd pub/;Cwd missing/;Rmd sub;Rmd sub/;");
}

TEST_F(Session, OneCallMembersOpenAndCloseTheirOwnConnection) {
  net->Add("/a.txt", "one");
  net->Add("/pub");
  files->AddFile("/l.txt", "up");
  std::string msg;
  EXPECT_EQ(c->FTPGetAsciiFile("server1", "user", "secret", "a.txt", "/g", msg), kTrue) << msg;
  EXPECT_EQ(c->FTPPutBinaryFile("server1", "user", "secret", "/l.txt", "p", msg), kTrue) << msg;
  EXPECT_EQ(Answer(c->FTPGetBinaryFile("server1", "user", "secret", "no", "/x", msg), msg),
            "0 Can't Get File [no] - FTP Get Error - 550 no: No such file or directory.");
  EXPECT_EQ(net->Calls("GetFile") + net->Calls("PutFile"),
            "GetFile a.txt /g 80000001;GetFile no /x 80000002;PutFile p /l.txt 2;");
  EXPECT_EQ(net->OpenHandleCount(), 0);
  // The directory test looks in the component's session, and without one finds nothing.
  EXPECT_EQ(Answer(c->FTPTestDirectory("server1", "user", "secret", "/pub", msg), msg),
            "0 Internet Directory [/pub] does not exist.");
  OpenSession();
  EXPECT_EQ(c->FTPTestDirectory("server1", "user", "secret", "/pub", msg), kTrue) << msg;
}

}  // namespace
}  // namespace tolva::ftptest
