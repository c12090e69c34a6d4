// Buffered transfers with progress and stop; the head of a remote file.
#include <functional>
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

class Buffered : public FtpTest {
 protected:
  // The session is usable again: no file or search handle left behind.
  void ExpectIdle(const std::string& label) {
    std::string msg;
    EXPECT_EQ(c->FTPSessionTest(msg), kTrue) << label << ": " << msg;
    EXPECT_EQ(net->OpenHandleCount(), 2) << label;
  }
};

TEST_F(Buffered, GetFailureTexts) {
  net->AddFile("/big", Bytes(300));
  net->AddFile("/empty", "");
  struct Row {
    std::string label, remote, local;
    std::function<void()> setup;
    std::string message, short_text;
  };
  const std::vector<Row> rows = {
      {"no remote", " ", "/l", nullptr, "Can't Get File - Remote File has not been defined.",
       "Remote File has not been defined."},
      {"no local, with its full stop", "big", "", nullptr, "Can't Get File [big] - Local File has not been defined.",
       "Local File has not been defined."},
      {"missing", "nope", "/l", nullptr, "Can't Get File [nope] - File does not exist.", "File does not exist."},
      {"empty", "empty", "/l", nullptr, "Can't Get File [empty] - File is empty.", "File is empty."},
      {"local can't be opened", "big", "/locked",
       [&] { files->Fail(fakes::FakeFileSystem::Op::kOpen, "/locked", fakes::FakeFileSystem::PermissionDenied()); },
       "Can't Get File [big] - Permission denied.", "Permission denied"},
      {"remote can't be opened", "big", "/l", [&] { net->Fail(Op::kOpenFile, kExtended, "550 No access.\r\n"); },
       "Can't Open File [big] - FTP Open Error - FTPSessionGetBuffered/550 No access.",
       "FTPSessionGetBuffered/550 No access."},
      {"read fails", "big", "/l", [&] { net->Fail(Op::kReadFile, platform::kErrorInternetConnectionAborted, "", 1); },
       "Can't Get File [big] - FTP Read Error - FTPSessionGetBuffered/12030.", "FTPSessionGetBuffered/12030"},
      {"local file vanishes mid-transfer", "big", "/gone",
       [&] {
         net->on_call = [&](Op op) {
           if (op == Op::kReadFile) files->nodes.erase("/gone");
         };
       },
       "Can't Get File [big] - Path/File access error.", "Path/File access error"},
  };
  OpenSession();
  for (const Row& r : rows) {
    if (r.setup) r.setup();
    std::string msg;
    EXPECT_EQ(c->FTPSessionGetBuffered(r.remote, r.local, kFalse, msg, 100), kFalse) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPShortError(), r.short_text) << r.label;
    ExpectIdle(r.label);
    net->on_call = nullptr;
  }
}

TEST_F(Buffered, SmallFilesTakeTheWholeFileWay) {
  struct Row {
    std::string label;
    std::size_t size;
    Long buffer;
  };
  const std::vector<Row> rows = {
      {"exactly one buffer", 100, 100},
      {"buffer 0", 5000, 0},
      {"negative buffer", 5000, -1},
      {"default buffer", 10000, 10000},
  };
  OpenSession();
  for (const Row& r : rows) {
    net->AddFile("/f", Bytes(r.size));
    host.events.clear();
    const int opens = net->Count(Op::kOpenFile);
    std::string msg;
    ASSERT_EQ(c->FTPSessionGetBuffered("f", "/f", kFalse, msg, r.buffer), kTrue) << r.label << msg;
    EXPECT_EQ(net->Count(Op::kOpenFile), opens) << r.label;
    EXPECT_TRUE(Events().empty()) << r.label << ": no progress";
    EXPECT_EQ(files->Contents("/f"), Bytes(r.size)) << r.label;
  }
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("f", "/g", kFalse, msg), kTrue) << "default BufferSize";
  EXPECT_EQ(net->Count(Op::kOpenFile), 0);
}

TEST_F(Buffered, TwoBlocksReadThreeTimesAndReportFourTimes) {
  net->AddFile("/big", Bytes(200));
  OpenSession();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered(" big ", "/big", kFalse, msg, 100), kTrue) << msg;
  EXPECT_EQ(files->Contents("/big"), Bytes(200));
  EXPECT_EQ(net->Count(Op::kReadFile), 3);
  EXPECT_EQ(Events(), (std::vector<std::string>{"GetProgress big 0/200", "GetProgress big 100/200",
                                                "GetProgress big 200/200", "GetProgress big 200/200"}));
  EXPECT_EQ(net->last_open_access, platform::kGenericRead);
  EXPECT_EQ(net->last_open_flags, 0x80000002u);
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
  ExpectIdle("after the get");
}

TEST_F(Buffered, BlocksAreCappedAndTextModeAsked) {
  net->AddFile("/big", std::string(250001, 'x'));
  OpenSession();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("big", "/big", kTrue, msg, 250000), kTrue) << msg;
  EXPECT_EQ(net->last_open_flags, 0x80000001u);
  for (const std::string& line : net->log) {
    if (line.rfind("Read ", 0) == 0) {
      EXPECT_EQ(line, "Read 100000");
    }
  }
  EXPECT_EQ(files->Contents("/big").size(), 250001u);
}

TEST_F(Buffered, AStoppedGetSucceedsWithAPartialFileThatKeepsAnOldTail) {
  net->AddFile("/big", Bytes(300));
  files->AddFile("/big", std::string(500, 'O'));
  OpenSession();
  host.on_get_progress = [&](Long done, Long) {
    if (done == 100) c->FTPSessionStop();
  };
  std::string msg = "keep";
  EXPECT_EQ(c->FTPSessionGetBuffered("big", "/big", kFalse, msg, 100), kTrue);
  EXPECT_EQ(msg, "keep");
  EXPECT_EQ(c->FTPSessionStopped(), kTrue);
  EXPECT_EQ(files->Contents("/big"), Bytes(100) + std::string(400, 'O')) << "the stopped read is not written";
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"GetProgress big 0/300", "GetProgress big 100/300", "GetProgress big 100/300"}));
  ExpectIdle("after a stop");
  // The next transfer starts with fresh flags.
  host.on_get_progress = nullptr;
  ASSERT_EQ(c->FTPSessionGetBuffered("big", "/big2", kFalse, msg, 100), kTrue);
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
}

TEST_F(Buffered, AStopRequestedBetweenTransfersHasNoEffect) {
  net->AddFile("/big", Bytes(300));
  OpenSession();
  c->FTPSessionStop();
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("big", "/big", kFalse, msg, 100), kTrue);
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
  EXPECT_EQ(files->Contents("/big"), Bytes(300));
}

TEST_F(Buffered, PutFailureTexts) {
  files->AddFile("/l", Bytes(300));
  files->AddFile("/empty", "");
  struct Row {
    std::string label, local, remote;
    std::function<void()> setup;
    std::string message, short_text;
  };
  const std::vector<Row> rows = {
      {"no local", "", "r", nullptr, "Can't Put File - Local File has not been defined.",
       "Local File has not been defined."},
      {"missing local", "/none", "r", nullptr, "Can't Put File [/none] - File does not exist.", "File does not exist."},
      {"empty local", "/empty", "r", nullptr, "Can't Put File [/empty] - File is empty.", "File is empty."},
      {"remote can't be opened", "/l", "no/such/dir", nullptr,
       "Can't Put File [/l] - FTP Open Error - FTPSessionPutBuffered/553 Could not create file.",
       "FTPSessionPutBuffered/553 Could not create file."},
      {"write fails", "/l", "r", [&] { net->Fail(Op::kWriteFile, platform::kErrorInternetConnectionAborted, "", 1); },
       "Can't Put File [/l] - FTP Put Error - FTPSessionPutBuffered/12030.", "FTPSessionPutBuffered/12030"},
  };
  OpenSession();
  for (const Row& r : rows) {
    if (r.setup) r.setup();
    std::string msg;
    EXPECT_EQ(c->FTPSessionPutBuffered(r.local, r.remote, kFalse, msg, 100), kFalse) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPShortError(), r.short_text) << r.label;
    ExpectIdle(r.label);
  }
}

TEST_F(Buffered, PutLocalOpenFailureKeepsItsOldWordingAndHandle) {
  files->AddFile("/l", Bytes(300));
  OpenSession();
  // The local file goes away between the checks and its opening.
  net->on_call = [&](Op op) {
    if (op == Op::kOpenFile) files->nodes.erase("/l");
  };
  std::string msg;
  EXPECT_EQ(c->FTPSessionPutBuffered("/l", "r", kFalse, msg, 100), kFalse);
  EXPECT_EQ(msg, "Can't Get File [r] - File not found.");
  // The local fault stays behind as the pending error an empty number asks for.
  Long number = 0;
  EXPECT_EQ(c->FTPExtendedError(number), "53");
  EXPECT_EQ(number, 53) << "written back";
  EXPECT_EQ(c->FTPSessionTest(msg), kFalse);
  EXPECT_EQ(msg, "Handle is non-zero.");
}

TEST_F(Buffered, PutSendsBlocksAndReportsEach) {
  files->AddFile("/l", Bytes(250));
  OpenSession();
  // A handler that scribbles on its counters cannot derail the transfer.
  host.on_put_progress = [](Long& done, Long& total) {
    done = -1;
    total = -1;
  };
  std::string msg;
  ASSERT_EQ(c->FTPSessionPutBuffered(" /l ", "r", kFalse, msg, 100), kTrue) << msg;
  EXPECT_EQ(net->Contents("/r"), Bytes(250));
  EXPECT_EQ(Events(), (std::vector<std::string>{"PutProgress /l 0/250", "PutProgress /l 100/250",
                                                "PutProgress /l 200/250", "PutProgress /l 250/250"}));
  EXPECT_EQ(net->last_open_access, platform::kGenericWrite);
  EXPECT_EQ(net->last_open_flags, 2u) << "no reload flag on a put";
  ExpectIdle("after the put");

  files->AddFile("/small", "abc");
  ASSERT_EQ(c->FTPSessionPutBuffered("/small", "s", kTrue, msg, 100), kTrue);
  EXPECT_EQ(net->Count(Op::kPutFile), 1) << "small files go whole";
}

TEST_F(Buffered, AStoppedPutFails) {
  files->AddFile("/l", Bytes(300));
  OpenSession();
  host.on_put_progress = [&](Long done, Long) {
    if (done == 100) c->FTPSessionStop();
  };
  std::string msg;
  EXPECT_EQ(c->FTPSessionPutBuffered("/l", "r", kFalse, msg, 100), kFalse);
  EXPECT_EQ(msg, "Can't Put File [/l] - Interrupted.");
  EXPECT_EQ(c->FTPShortError(), "Interrupted.");
  EXPECT_EQ(c->FTPSessionStopped(), kTrue);
  ExpectIdle("after a stopped put");
}

TEST_F(Buffered, GetBufferReadsTheHeadInOneRead) {
  net->AddFile("/f", Bytes(50));
  net->AddFile("/empty", "");
  OpenSession();
  struct Row {
    std::string label, remote;
    Long wanted;
    std::uint32_t read_limit;
    Boolean result;
    std::string buffer, message;
  };
  const std::vector<Row> rows = {
      {"more than the file", "f", 1000, 0, kTrue, Bytes(50), ""},
      {"part of it", " f ", 10, 0, kTrue, Bytes(10), ""},
      {"a short read stays short", "f", 50, 7, kTrue, Bytes(7), ""},
      {"nothing asked", "f", 0, 0, kTrue, "", ""},
      {"no name", "", 5, 0, kFalse, "", "Can't Get File - Remote File has not been defined."},
      {"missing", "x", 5, 0, kFalse, "", "Can't Get File [x] - File does not exist."},
      {"empty", "empty", 5, 0, kFalse, "", "Can't Get File [empty] - File is empty."},
  };
  for (const Row& r : rows) {
    net->read_limit = r.read_limit;
    std::string buffer = "old", msg;
    Long written = -5;
    EXPECT_EQ(c->FTPSessionGetBuffer(r.remote, r.wanted, buffer, written, msg), r.result) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    if (r.result == kTrue) {
      EXPECT_EQ(buffer, r.buffer) << r.label;
      EXPECT_EQ(written, static_cast<Long>(r.buffer.size())) << r.label;
    }
    ExpectIdle(r.label);
  }
  net->read_limit = 0;
  net->Fail(Op::kReadFile, platform::kErrorInternetConnectionAborted);
  std::string buffer, msg;
  Long written = 0;
  EXPECT_EQ(c->FTPSessionGetBuffer("f", 5, buffer, written, msg), kFalse);
  EXPECT_EQ(msg, "Can't Get File [f] - FTP Read Error - FTPSessionGetBuffer/12030.");
  EXPECT_EQ(net->last_open_flags, 0x80000002u) << "always binary";
  ExpectIdle("after a failed read");
}

}  // namespace
}  // namespace tolva::ftptest

namespace tolva::ftptest {
namespace {

// A local file system that only counts what is written to it.
class CountingSink : public platform::FileSystem {
 public:
  std::uint64_t written = 0;
  class SinkFile : public platform::File {
   public:
    explicit SinkFile(std::uint64_t& total) : total_(total) {}
    bool Read(void*, std::size_t, std::size_t& got, platform::FileError&) override {
      got = 0;
      return true;
    }
    bool Write(const void*, std::size_t n, platform::FileError&) override {
      total_ += n;
      return true;
    }
    std::uint64_t Size() override { return total_; }
    bool Close(platform::FileError&) override { return true; }

   private:
    std::uint64_t& total_;
  };
  bool List(const std::string&, std::uint32_t, std::vector<platform::DirEntry>&, platform::FileError&) override {
    return false;
  }
  bool CurrentDirectory(std::string&, platform::FileError&) override { return false; }
  bool ChangeDirectory(const std::string&, platform::FileError&) override { return false; }
  bool MakeDirectory(const std::string&, platform::FileError&) override { return false; }
  bool DeleteFiles(const std::string&, platform::FileError&) override { return false; }
  bool SetAttributesNormal(const std::string&, platform::FileError&) override { return false; }
  bool Length(const std::string&, std::uint64_t&, platform::FileError&) override { return false; }
  bool LastWriteTime(const std::string&, platform::FileTime&, platform::FileError&) override { return false; }
  std::unique_ptr<platform::File> Open(const std::string&, platform::OpenMode, platform::FileError&) override {
    return std::make_unique<SinkFile>(written);
  }
  bool ReadAll(const std::string&, std::string&, platform::FileError&) override { return false; }
  bool WriteAll(const std::string&, const std::string&, platform::FileError&) override { return false; }
  std::string TempPath() override { return "/tmp/"; }
  bool TempFileName(const std::string&, const std::string&, std::string&, platform::FileError&) override {
    return false;
  }
  std::string WindowsDirectory() override { return ""; }
  std::string SystemDirectory() override { return ""; }
};

TEST_F(Buffered, BeyondTwoGiBTheLoopCountsOnAndTheHostSeesAClampedFigure) {
  constexpr std::uint64_t kSize = (2ull << 30) + 100;  // one past what a Long holds, and more
  auto sink = std::make_shared<CountingSink>();
  platform::Services s;
  s.files = sink;
  s.internet = net;
  c = std::make_unique<Tolva2011Register>(s, &host, &host);
  net->AddFile("/huge", "");
  net->nodes["/huge"].listed_size = kSize;
  net->nodes["/huge"].generated = true;
  OpenSession();
  Long last = -1;
  int reports = 0;
  bool monotonic = true;
  host.on_get_progress = [&](Long& done, Long& total) {
    monotonic = monotonic && done >= last && total == 2147483647;
    last = done;
    ++reports;
  };
  host.events.reserve(30000);
  std::string msg;
  ASSERT_EQ(c->FTPSessionGetBuffered("huge", "/sink", kFalse, msg, 100000), kTrue) << msg;
  EXPECT_EQ(sink->written, kSize) << "every byte arrived";
  EXPECT_TRUE(monotonic) << "progress never wrapped below what it showed before";
  EXPECT_EQ(last, 2147483647);
  EXPECT_EQ(reports, static_cast<int>(kSize / 100000) + 2);
}

}  // namespace
}  // namespace tolva::ftptest
