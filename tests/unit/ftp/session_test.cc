// Opening, closing, testing and reconnecting the session; the error texts.
#include <functional>
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Session : public FtpTest {};

TEST_F(Session, OpenRefusesWithTheDocumentedTexts) {
  struct Row {
    std::string label, host, user;
    std::function<void(fakes::FakeInternet&)> setup;
    std::string message, short_text;
  };
  const std::vector<Row> rows = {
      {"empty host", "", "user", nullptr, "Can't Open Session - Host has not been defined.",
       "Host has not been defined."},
      {"blank host", "   ", "user", nullptr, "Can't Open Session - Host has not been defined.",
       "Host has not been defined."},
      {"offline", " server1 ", "user", [](auto& n) { n.connected = false; },
       "Can't Open Session [server1] - Not connected to the Internet.", "Not connected to the Internet."},
      {"no user, host trimmed in text", " server1 ", "  ", nullptr,
       "Can't Open Session [server1] - User ID has not been defined.", "User ID has not been defined."},
      {"open returns 0", "server1", "user", [](auto& n) { n.Fail(Op::kOpen, 12004); },
       "Can't Open Session [server1] - Session can't be opened.", "Session can't be opened."},
      {"open can't be called", "server1", "user", [](auto& n) { n.Throw(Op::kOpen); },
       "Can't Open Session [server1] - InternetOpen Error - entry point not found.", "entry point not found"},
      {"connect can't be called", "server1", "user", [](auto& n) { n.Throw(Op::kConnect); },
       "Can't Open Session [server1] - InternetConnect Error - entry point not found.", "entry point not found"},
      {"bad password", "server1", "user", [](auto& n) { n.users["user"] = "other"; },
       "Can't Open Session [server1] - Session can't be connected.", "Session can't be connected."},
      {"unknown host", "nowhere", "user", nullptr, "Can't Open Session [nowhere] - Session can't be connected.",
       "Session can't be connected."},
  };
  for (const Row& r : rows) {
    net = std::make_shared<fakes::FakeInternet>(files);
    platform::Services s;
    s.internet = net;
    s.files = files;
    c = std::make_unique<Tolva2011Register>(s, &host, &host);
    if (r.setup) r.setup(*net);
    std::string msg = "keep";
    EXPECT_EQ(c->FTPSessionOpen(r.host, r.user, "secret", msg), kFalse) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPLastError(), r.message) << r.label;
    EXPECT_EQ(c->FTPShortError(), r.short_text) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), 0) << r.label << ": a failed open leaves nothing open";
  }
}

TEST_F(Session, OpenWithoutALibraryFailsQuietly) {
  Tolva2011Register bare{platform::Services{}};
  std::string msg;
  EXPECT_EQ(bare.FTPSessionOpen("server1", "user", "secret", msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session [server1] - Not connected to the Internet.");
  Long flags = 7;
  EXPECT_EQ(bare.IsConnected(flags), "");
  EXPECT_EQ(flags, 0);
  bare.FTPSessionClose();  // no library: nothing to close, nothing thrown
}

TEST_F(Session, OpenPassesTrimmedCredentialsAndTheFixedCallShape) {
  std::string msg = "untouched";
  ASSERT_EQ(c->FTPSessionOpen("  server1 ", " user ", " secret  ", msg), kTrue);
  EXPECT_EQ(msg, "untouched");
  EXPECT_EQ(net->last_agent, "Tolva 2011 Register");
  EXPECT_EQ(net->last_host, "server1");
  EXPECT_EQ(net->last_port, 0);
  EXPECT_EQ(net->last_connect_flags, platform::kInternetFlagPassive);
  EXPECT_NE(c->FTPSession(), 0);
  EXPECT_NE(c->FTPConnect(), 0);
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Session, HandlesWithTheTopBitSetSurviveTheRoundTrip) {
  net->next_handle = 0x80000010u;
  OpenSession();
  EXPECT_LT(c->FTPSession(), 0);  // shown as a negative Long, as the host sees it
  c->FTPSessionClose();
  EXPECT_EQ(net->OpenHandleCount(), 0);
  EXPECT_EQ(c->FTPSession(), 0);
  EXPECT_TRUE(Events("System").empty());
}

TEST_F(Session, CloseReportsHandlesItCannotClose) {
  c->FTPSessionClose();
  EXPECT_EQ(Events("System"),
            (std::vector<std::string>{"System Error Closing Handle=0", "System Error Closing Handle=0"}));

  host.events.clear();
  OpenSession();
  const Long session = c->FTPSession();
  net->Fail(Op::kCloseHandle, platform::kErrorInvalidHandle, "", 1);  // the second close (session) fails
  c->FTPSessionClose();
  EXPECT_EQ(Events("System"), (std::vector<std::string>{"System Error Closing Handle=" + std::to_string(session)}));
  EXPECT_EQ(c->FTPConnect(), 0);
  EXPECT_EQ(c->FTPSession(), session);
  std::string msg;
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  EXPECT_EQ(msg, "Session is not connected.");
}

TEST_F(Session, CloseClearsTheErrorTextsButKeepsTheCredentials) {
  OpenSession();
  std::string msg;
  c->FTPSessionDirectoryCreate("", msg);
  ASSERT_FALSE(c->FTPLastError().empty());
  c->FTPSessionClose();
  EXPECT_EQ(c->FTPLastError(), "");
  EXPECT_EQ(c->FTPShortError(), "");
  EXPECT_EQ(c->FTPSessionReconnect(msg), kTrue) << msg;
}

TEST_F(Session, TestNamesTheFirstReasonTheSessionIsNotUsable) {
  std::string msg = "keep";
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  EXPECT_EQ(msg, "Session is not opened.");
  EXPECT_EQ(c->FTPLastError(), "Session is not opened.");
  EXPECT_EQ(c->FTPShortError(), "Session is not opened.");

  OpenSession();
  msg = "keep";
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue);
  EXPECT_EQ(msg, "keep");

  net->connected = false;
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  EXPECT_EQ(msg, "Not connected to the Internet.");
  net->connected = true;

  // While a search runs, its handle makes the session busy.
  net->AddFile("/a.txt", "a");
  std::string during;
  host.on_found = [&](const std::string&, Boolean&) { c->FTPSessionTest(during); };
  EXPECT_EQ(c->FTPSessionFileFind("*", msg), 1);
  EXPECT_EQ(during, "Find Handle is non-zero.");
  EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << "the search closed its handle";
}

TEST_F(Session, ReconnectTracesEachStepAndRestoresTheDirectory) {
  net->AddDirectory("/pub");
  OpenSession();
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("/pub"), kTrue);
  host.events.clear();
  std::string msg = "keep";
  ASSERT_EQ(c->FTPSessionReconnect(msg), kTrue);
  EXPECT_EQ(msg, "keep");
  const std::string s = std::to_string(c->FTPSession());
  const std::string k = std::to_string(c->FTPConnect());
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"System CurrentDirectory=/pub", "System FTPSessionReconnect",
                                      "System Host=server1", "System UserID=user", "System Password=secret",
                                      "System Session=" + s, "System Connect=" + k, "System CurrentDirectory=/pub"}));
  EXPECT_EQ(net->OpenHandleCount(), 2) << "the old handles were closed";
}

TEST_F(Session, ReconnectFailsAndClosesWhenTheDirectoryIsGone) {
  net->AddDirectory("/pub");
  OpenSession();
  ASSERT_EQ(c->FTPSessionDirectoryCurrentSet("/pub"), kTrue);
  net->nodes.erase("/pub");
  std::string msg;
  EXPECT_EQ(c->FTPSessionReconnect(msg), kFalse);
  EXPECT_EQ(msg, "Can't Reset Current Directory [/pub].");
  EXPECT_EQ(c->FTPSession(), 0);
  EXPECT_EQ(net->OpenHandleCount(), 0);
}

TEST_F(Session, ReconnectAfterAFailedOpenHasNoCredentials) {
  OpenSession();
  std::string msg;
  net->users.clear();
  EXPECT_EQ(c->FTPSessionOpen("server1", "user", "secret", msg), kFalse);
  EXPECT_EQ(c->FTPSessionReconnect(msg), kFalse);
  EXPECT_EQ(msg, "Can't Open Session - Host has not been defined.");
}

TEST_F(Session, ExtendedErrorTexts) {
  net->Fail(Op::kSetCurrentDirectory, kExtended, "\r\n550 No such directory.\r\n");
  OpenSession();
  c->FTPSessionDirectoryCurrentSet("x");  // leaves the server's reply behind
  struct Row {
    std::string label, tag;
    Long number;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {"nothing pending", "", 0, ""},
      {"plain number", "X", 12002, "X/12002"},
      {"untagged number", "", 18, "18"},
      {"server reply trimmed of line ends", "", 12003, "550 No such directory."},
      {"tagged reply", "T", 12003, "T/550 No such directory."},
      {"zero with a tag", "T", 0, "T/"},
  };
  for (const Row& r : rows) {
    Long n = r.number;
    EXPECT_EQ(c->FTPSessionError(r.tag, n), r.expected) << r.label;
    n = r.number;
    if (r.tag.empty()) {
      EXPECT_EQ(c->FTPExtendedError(n), r.expected) << r.label;
    }
  }
}

TEST_F(Session, FullTextAlwaysEndsWithAStopAndTheShortTextNever) {
  // The directory members put the library's text in the title: it shows the rule bare.
  struct Row {
    std::string label, reply, full;
  };
  const std::vector<Row> rows = {
      {"ends in a full stop", "550 Gone.", "FTPSessionDirectoryCurrentSet/550 Gone."},
      {"no stop gets one", "550 Gone", "FTPSessionDirectoryCurrentSet/550 Gone."},
      {"question mark kept", "550 Gone?", "FTPSessionDirectoryCurrentSet/550 Gone?"},
      {"exclamation kept", "550 Gone!", "FTPSessionDirectoryCurrentSet/550 Gone!"},
      {"empty reply", "", "FTPSessionDirectoryCurrentSet/."},
  };
  OpenSession();
  for (const Row& r : rows) {
    net->Fail(Op::kSetCurrentDirectory, kExtended, r.reply);
    EXPECT_EQ(c->FTPSessionDirectoryCurrentSet("x"), kFalse) << r.label;
    EXPECT_EQ(c->FTPLastError(), r.full) << r.label;
    EXPECT_EQ(c->FTPShortError(), "FTPSessionDirectoryCurrentSet/" + r.reply) << r.label;
  }
  // FTPSession and FTPConnect clear both texts.
  c->FTPSession();
  EXPECT_EQ(c->FTPLastError() + c->FTPShortError(), "");
  c->FTPSessionDirectoryCurrentSet("nowhere");
  c->FTPConnect();
  EXPECT_EQ(c->FTPLastError() + c->FTPShortError(), "");
}

TEST_F(Session, ConnectedStateAndTimeoutsReachTheLibrary) {
  Long flags = 0;
  EXPECT_EQ(c->IsConnected(flags), "Connected");
  EXPECT_EQ(flags, static_cast<Long>(platform::kConnectionLan));
  net->connected = false;
  EXPECT_EQ(c->IsConnected(flags), "");
  EXPECT_EQ(flags, 0);

  EXPECT_EQ(c->FTPConnectTimeout(), 60000);
  c->FTPConnectTimeout(1500);
  c->FTPReadTimeout(-5);
  EXPECT_EQ(net->connect_timeout_ms, 1500u);
  EXPECT_EQ(net->read_timeout_ms, 0u) << "a negative time-out is not passed on as a huge one";
  EXPECT_EQ(c->FTPReadTimeout(), -5) << "stored as given";
}

}  // namespace
}  // namespace tolva::ftptest
