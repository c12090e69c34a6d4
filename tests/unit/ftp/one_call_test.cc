// One-call transfers and connection tests, each on its own short connection.
#include <functional>
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class OneCall : public FtpTest {};

TEST_F(OneCall, TransferTexts) {
  net->AddFile("/a.txt", "a\n");
  files->AddFile("/l.txt", "l\r\n");
  struct Row {
    std::string label;
    std::function<Boolean(std::string&)> run;
    std::string message;
    int left_open;  // handles the call leaves behind
  };
  const std::vector<Row> rows = {
      {"bad login comes first", [&](auto& m) { return c->FTPGetBinaryFile("server1", "user", "bad", "", "", m); },
       "Can't Open Session [server1] - Session can't be connected.", 0},
      {"get: no remote, after connecting",
       [&](auto& m) { return c->FTPGetBinaryFile("server1", "user", "secret", " ", "/x", m); },
       "Can't Get File - Remote File has not been defined.", 2},
      {"get: no local", [&](auto& m) { return c->FTPGetAsciiFile("server1", "user", "secret", "a.txt", "", m); },
       "Can't Get File [a.txt] - Local File has not been defined.", 2},
      {"get: missing remote",
       [&](auto& m) { return c->FTPGetBinaryFile("server1", "user", "secret", "nope", "/x", m); },
       "Can't Get File [nope] - FTP Get Error - 550 nope: No such file or directory.", 0},
      {"get: time-out",
       [&](auto& m) {
         net->Fail(Op::kGetFile, platform::kErrorInternetTimeout);
         return c->FTPGetBinaryFile("server1", "user", "secret", "a.txt", "/x", m);
       },
       "Can't Get File [a.txt] - FTP Get Error - 12002.", 0},
      {"get: library call impossible",
       [&](auto& m) {
         net->Throw(Op::kGetFile);
         return c->FTPGetBinaryFile("server1", "user", "secret", "a.txt", "/x", m);
       },
       "Can't Get File [a.txt] - FtpGetFile Error - entry point not found.", 0},
      {"put: no local", [&](auto& m) { return c->FTPPutBinaryFile("server1", "user", "secret", "", "r", m); },
       "Can't Put File - Local File has not been defined.", 2},
      {"put: no remote is checked here",
       [&](auto& m) { return c->FTPPutAsciiFile("server1", "user", "secret", "/l.txt", " ", m); },
       "Can't Put File [/l.txt] - Remote File has not been defined.", 2},
      {"put: server refuses",
       [&](auto& m) { return c->FTPPutBinaryFile("server1", "user", "secret", "/l.txt", "no/dir/r", m); },
       "Can't Put File [/l.txt] - FTP Put Error - 553 Could not create file.", 0},
      {"put: library call impossible",
       [&](auto& m) {
         net->Throw(Op::kPutFile);
         return c->FTPPutBinaryFile("server1", "user", "secret", "/l.txt", "r", m);
       },
       "Can't Put File [/l.txt] - FtpPutFile Error - entry point not found.", 0},
  };
  for (const Row& r : rows) {
    net = std::make_shared<fakes::FakeInternet>(files);
    net->AddFile("/a.txt", "a\n");
    platform::Services s;
    s.internet = net;
    s.files = files;
    c = std::make_unique<Tolva2011Register>(s, &host, &host);
    std::string msg;
    EXPECT_EQ(r.run(msg), kFalse) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPLastError(), r.message) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), r.left_open) << r.label;
    EXPECT_EQ(c->FTPSession(), 0) << r.label << ": the session is never touched";
  }
}

TEST_F(OneCall, TransfersMoveTheFileAndCloseEverything) {
  net->AddFile("/a.txt", "one\n");
  files->AddFile("/l.txt", "up\r\n");
  struct Row {
    std::string label;
    std::function<Boolean(std::string&)> run;
    std::uint32_t flags;
  };
  const std::vector<Row> rows = {
      {"ascii get", [&](auto& m) { return c->FTPGetAsciiFile("server1", "user", "secret", "a.txt", "/g1", m); },
       0x80000001u},
      {"binary get", [&](auto& m) { return c->FTPGetBinaryFile("server1", "user", "secret", "a.txt", "/g2", m); },
       0x80000002u},
      {"ascii put", [&](auto& m) { return c->FTPPutAsciiFile("server1", "user", "secret", "/l.txt", "p1", m); }, 1},
      {"binary put", [&](auto& m) { return c->FTPPutBinaryFile("server1", "user", "secret", "/l.txt", "p2", m); }, 2},
  };
  for (const Row& r : rows) {
    std::string msg = "keep";
    EXPECT_EQ(r.run(msg), kTrue) << r.label;
    EXPECT_EQ(msg, "keep") << r.label;
    EXPECT_EQ(net->last_transfer_flags, r.flags) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), 0) << r.label;
  }
  EXPECT_EQ(files->Contents("/g1"), "one\r\n");
  EXPECT_EQ(files->Contents("/g2"), "one\n");
  EXPECT_EQ(net->Contents("/p1"), "up\n");
  EXPECT_EQ(net->Contents("/p2"), "up\r\n");
}

TEST_F(OneCall, ConnectionTestTexts) {
  struct Row {
    std::string label, host;
    std::function<void()> setup;
    Boolean result;
    std::string message;
  };
  const std::vector<Row> rows = {
      {"good", "server1", nullptr, kTrue, ""},
      {"blanks go to the library as they are", " server1 ", nullptr, kFalse,
       "FTP Test Failure [ server1 ] - Session can't be connected."},
      {"offline", "server1", [&] { net->connected = false; }, kFalse,
       "FTP Test Failure [server1] - Not connected to the Internet."},
      {"open returns 0", "server1", [&] { net->Fail(Op::kOpen, 12004); }, kFalse,
       "FTP Test Failure [server1] - Session can't be opened."},
      {"open impossible", "server1", [&] { net->Throw(Op::kOpen); }, kFalse,
       "FTP Test Failure [server1] - InternetOpen Error - entry point not found."},
      {"connect impossible", "server1", [&] { net->Throw(Op::kConnect); }, kFalse,
       "FTP Test Failure [server1] - InternetConnect Error - entry point not found."},
  };
  for (const Row& r : rows) {
    net = std::make_shared<fakes::FakeInternet>(files);
    platform::Services s;
    s.internet = net;
    c = std::make_unique<Tolva2011Register>(s, &host, &host);
    if (r.setup) r.setup();
    std::string msg;
    EXPECT_EQ(c->FTPTest(r.host, "user", "secret", msg), r.result) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), 0) << r.label;
  }
  EXPECT_NE(net->last_agent, "Tolva 2011 Register") << "the test names itself differently";
}

TEST_F(OneCall, DirectoryTestLooksInTheComponentsOwnSession) {
  net->AddDirectory("/pub");
  std::string msg;
  EXPECT_EQ(c->FTPTestDirectory("server1", "user", "secret", "/pub", msg), kFalse) << "no session of its own";
  EXPECT_EQ(msg, "Internet Directory [/pub] does not exist.");
  EXPECT_EQ(c->FTPLastError(), "");
  EXPECT_EQ(net->OpenHandleCount(), 0);

  OpenSession();
  msg = "keep";
  EXPECT_EQ(c->FTPTestDirectory("server1", "user", "secret", "/pub", msg), kTrue);
  EXPECT_EQ(msg, "keep");
  EXPECT_EQ(net->OpenHandleCount(), 2) << "only the session's handles remain";
  EXPECT_EQ(c->FTPTestDirectory("server1", "user", "bad", "/pub", msg), kFalse);
  EXPECT_EQ(msg, "FTP Test Failure [server1] - Session can't be connected.");
}

}  // namespace
}  // namespace tolva::ftptest
