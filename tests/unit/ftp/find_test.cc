// Finding, counting, listing and deleting remote files.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Finding : public FtpTest {
 protected:
  void FiveFiles() {
    for (const char* n : {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt"}) net->AddFile(std::string("/") + n, n);
    net->AddDirectory("/dir.txt");
  }
};

// Every mask member, run with a mask; returns its result as a number.
struct MaskMember {
  std::string name;
  std::function<long(Tolva2011Register&, const std::string&, std::string&)> run;
  std::string title;  // of the session-test failure
};

std::vector<MaskMember> MaskMembers() {
  return {
      {"Find", [](auto& c, auto& m, auto& e) { return c.FTPSessionFileFind(m, e); }, "Can't Find Files"},
      {"FindCount",
       [](auto& c, auto& m, auto& e) {
         Long f = 9, d = 9;
         return c.FTPSessionFileFindCount(m, f, d, e) + 0L;
       },
       "Can't Find Files"},
      {"FindDirectories",
       [](auto& c, auto& m, auto& e) {
         auto a = HostArray<std::string>::OneDim(1, 5);
         return c.FTPSessionFileFindDirectories(m, a, 5, e) + 0L;
       },
       "Can't Find Files"},
      {"FindFiles",
       [](auto& c, auto& m, auto& e) {
         auto a = HostArray<std::string>::OneDim(1, 5);
         return c.FTPSessionFileFindFiles(m, a, 5, e) + 0L;
       },
       "Can't Find Files"},
      {"FindFilesFull",
       [](auto& c, auto& m, auto& e) {
         auto f = HostArray<std::string>::OneDim(1, 5);
         auto s = HostArray<Long>::OneDim(1, 5);
         auto d = HostArray<std::string>::OneDim(1, 5);
         auto t = HostArray<std::string>::OneDim(1, 5);
         return c.FTPSessionFileFindFilesFull(m, f, s, d, t, 5, e) + 0L;
       },
       "Can't Find Files"},
      {"DeleteMask", [](auto& c, auto& m, auto& e) { return c.FTPSessionFileDeleteMask(m, e) + 0L; },
       "Can't Delete Files"},
  };
}

TEST_F(Finding, EveryMaskMemberRefusesABlankMaskAndAClosedSession) {
  for (const MaskMember& m : MaskMembers()) {
    std::string msg;
    EXPECT_EQ(m.run(*c, "   ", msg), 0) << m.name;
    EXPECT_EQ(msg, "File Mask has not been defined.") << m.name;
    EXPECT_EQ(m.run(*c, " *.txt ", msg), 0) << m.name;
    EXPECT_EQ(msg, m.title + " [*.txt] - Session is not opened.") << m.name;
  }
  EXPECT_EQ(net->Count(Op::kFindFirst), 0);
  std::string msg;
  EXPECT_EQ(c->FTPSessionFileExists(" ", msg), kFalse);
  EXPECT_EQ(msg, "File Name has not been defined.");
  Long size = 5;
  std::string date = "d", time = "t";
  EXPECT_EQ(c->FTPSessionFileExistsFull("a", size, date, time, msg), kFalse);
  EXPECT_EQ(msg, "Can't Find File [a] - Session is not opened.");
  EXPECT_EQ(size, 5);
}

TEST_F(Finding, NothingMatchedIsNoError) {
  OpenSession();
  for (const MaskMember& m : MaskMembers()) {
    std::string msg = "stale";
    const long r = m.run(*c, "*.none", msg);
    EXPECT_EQ(msg, "") << m.name;
    EXPECT_EQ(c->FTPLastError(), "") << m.name;
    // Counting and deleting nothing succeed; the others find 0.
    EXPECT_EQ(r, m.name == "FindCount" || m.name == "DeleteMask" ? -1 : 0) << m.name;
  }
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Finding, FindReportsEachEntryDecoded) {
  net->AddFile("/a.txt", "12345", {true, 2026, 6, 1, 9, 5, 0});
  net->AddDirectory("/sub");
  OpenSession();
  std::string msg = "stale";
  EXPECT_EQ(c->FTPSessionFileFind("*", msg), 2);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"Found a.txt 0 5 2026-06-01 09:05", "Found sub -1 0 2011-01-02 03:04"}));
  EXPECT_EQ(net->OpenHandleCount(), 2) << "search closed";
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
}

TEST_F(Finding, ListedYearsAreCorrectedSoNothingLiesInTheFuture) {
  struct Row {
    std::string label;
    platform::FindTime listed;
    platform::DateTime today;
    std::string date, time;
  };
  const platform::DateTime june15{2026, 6, 15, 12, 0, 0};
  const std::vector<Row> rows = {
      {"a month ahead goes back a year", {true, 2026, 7, 15, 10, 30, 0}, june15, "2025-07-15", "10:30"},
      {"today stays", {true, 2026, 6, 15, 23, 59, 0}, june15, "2026-06-15", "23:59"},
      {"tomorrow goes back a year", {true, 2026, 6, 16, 1, 0, 0}, june15, "2025-06-16", "01:00"},
      {"an old year stays", {true, 2019, 12, 31, 8, 0, 0}, june15, "2019-12-31", "08:00"},
      {"midnight has no time", {true, 2026, 1, 1, 0, 0, 30}, june15, "2026-01-01", ""},
      {"29 February rolls on into March", {true, 2024, 2, 29, 12, 0, 0}, {2024, 2, 28, 0, 0, 0}, "2023-03-01", "12:00"},
      {"unknown time", {false, 0, 0, 0, 0, 0, 0}, june15, "", ""},
      {"nonsense fields", {true, 2026, 13, 40, 25, 0, 0}, june15, "", ""},
  };
  OpenSession();
  for (const Row& r : rows) {
    net->nodes.clear();
    net->AddFile("/f", "x", r.listed);
    clock->now = r.today;
    Long size = 0;
    std::string date = "old", time = "old", msg;
    ASSERT_EQ(c->FTPSessionFileExistsFull("f", size, date, time, msg), kTrue) << r.label;
    EXPECT_EQ(date, r.date) << r.label;
    EXPECT_EQ(time, r.time) << r.label;
  }
}

TEST_F(Finding, CancelAndStopEndTheFindAtTheRightEntry) {
  FiveFiles();
  OpenSession();
  struct Row {
    std::string label;
    std::function<void()> arm;
    Long count;
    Boolean stopped;
  };
  const std::vector<Row> rows = {
      {"cancel on the first entry counts it", [&] { host.on_found = [](auto&, Boolean& cancel) { cancel = kTrue; }; },
       1, kFalse},
      // Cancel is the host's Boolean variable: any non-zero value it holds is true.
      {"cancel with 1 cancels too", [&] { host.on_found = [](auto&, Boolean& cancel) { cancel = 1; }; }, 1, kFalse},
      {"stop before the first entry reports none", [&] { host.on_do_events = [&] { c->FTPSessionStop(); }; }, 0, kTrue},
      {"stop from the second entry",
       [&] {
         host.on_found = [&](const std::string& name, Boolean&) {
           if (name == "b.txt") c->FTPSessionStop();
         };
       },
       2, kTrue},
  };
  for (const Row& r : rows) {
    host = RecordingHost{};
    r.arm();
    std::string msg;
    EXPECT_EQ(c->FTPSessionFileFind("*", msg), r.count) << r.label;
    EXPECT_EQ(c->FTPSessionStopped(), r.stopped) << r.label;
    EXPECT_EQ(static_cast<Long>(Events("Found").size()), r.count) << r.label;
    EXPECT_EQ(net->OpenHandleCount(), 2) << r.label << ": the search is closed";
  }
}

TEST_F(Finding, CountAndListsKeepCountingPastTheArrays) {
  FiveFiles();
  OpenSession();
  std::string msg = "stale";
  Long files = 0, dirs = 0;
  EXPECT_EQ(c->FTPSessionFileFindCount("*.txt", files, dirs, msg), kTrue);
  EXPECT_EQ(files, 5);
  EXPECT_EQ(dirs, 1);
  EXPECT_EQ(msg, "");

  struct Row {
    std::string label;
    Long lower, upper, max;
    std::vector<std::string> expected;  // elements lower..upper afterwards
  };
  const std::vector<Row> rows = {
      {"max 2 of 5", 1, 5, 2, {"a.txt", "b.txt", "", "", ""}},
      {"bounds 0 to 1 take only element 1", 0, 1, 5, {"", "a.txt"}},
      {"max above the bounds", 1, 3, 99, {"a.txt", "b.txt", "c.txt"}},
      {"max 0 stores nothing", 1, 2, 0, {"", ""}},
  };
  for (const Row& r : rows) {
    auto a = HostArray<std::string>::OneDim(r.lower, r.upper);
    EXPECT_EQ(c->FTPSessionFileFindFiles("*.txt", a, r.max, msg), 5) << r.label;
    for (Long i = r.lower; i <= r.upper; ++i) EXPECT_EQ(*a.At(i), r.expected[i - r.lower]) << r.label << " " << i;
  }
  auto two = HostArray<std::string>::TwoDim(1, 5, 1, 5);
  EXPECT_EQ(c->FTPSessionFileFindFiles("*", two, 5, msg), 5) << "a two-dimensional array is left alone";
  EXPECT_EQ(*two.At(1, 1), "");

  auto d = HostArray<std::string>::OneDim(1, 3);
  EXPECT_EQ(c->FTPSessionFileFindDirectories("*", d, 3, msg), 1);
  EXPECT_EQ(*d.At(1), "dir.txt");
}

TEST_F(Finding, FullListingClampsSizesAHostCannotHold) {
  net->AddFile("/small", "abc", {true, 2020, 5, 6, 7, 8, 0});
  net->AddFile("/huge", "");
  net->nodes["/huge"].listed_size = 3ull << 30;  // 3 GiB: its low 32 bits would read negative
  net->AddFile("/wraps", "");
  net->nodes["/wraps"].listed_size = (4ull << 30) + 5;  // low 32 bits would read 5
  OpenSession();
  auto f = HostArray<std::string>::OneDim(1, 3);
  auto s = HostArray<Long>::OneDim(1, 3);
  auto d = HostArray<std::string>::OneDim(1, 3);
  auto t = HostArray<std::string>::OneDim(1, 3);
  std::string msg;
  ASSERT_EQ(c->FTPSessionFileFindFilesFull("*", f, s, d, t, 3, msg), 3);
  EXPECT_EQ(*f.At(1), "huge");
  EXPECT_EQ(*s.At(1), 2147483647);
  EXPECT_EQ(*s.At(2), 3);
  EXPECT_EQ(*d.At(2), "2020-05-06");
  EXPECT_EQ(*t.At(2), "07:08");
  EXPECT_EQ(*s.At(3), 2147483647);
  Long size = 0;
  std::string date, time;
  ASSERT_EQ(c->FTPSessionFileExistsFull("huge", size, date, time, msg), kTrue);
  EXPECT_EQ(size, 2147483647);
}

TEST_F(Finding, LibraryFailuresKeepWhatWasCounted) {
  FiveFiles();
  OpenSession();
  std::string msg;
  Long files = 0, dirs = 0;
  net->Fail(Op::kFindFirst, kExtended, "550 Permission denied.\r\n");
  EXPECT_EQ(c->FTPSessionFileFindCount("*", files, dirs, msg), kFalse);
  EXPECT_EQ(msg, "Error Finding Files - FTPSessionFileFindCount/550 Permission denied.");

  net->Fail(Op::kFindNext, platform::kErrorInternetConnectionAborted, "", 1);
  auto a = HostArray<std::string>::OneDim(1, 9);
  EXPECT_EQ(c->FTPSessionFileFindFiles("*", a, 9, msg), 2) << "two entries before the failure";
  EXPECT_EQ(msg, "Error Finding Files - FTPSessionFileFindCount/12030.");
  EXPECT_EQ(net->OpenHandleCount(), 2);

  net->Fail(Op::kFindFirst, platform::kErrorInternetTimeout);
  EXPECT_EQ(c->FTPSessionFileFind("*", msg), 0);
  EXPECT_EQ(msg, "Error Finding Files - FTPSessionFileFind/12002.");
  net->Fail(Op::kFindFirst, platform::kErrorInternetTimeout);
  EXPECT_EQ(c->FTPSessionFileExists("a.txt", msg), kFalse);
  EXPECT_EQ(msg, "Error Finding Files - FTPSessionFileExists/12002.");
}

TEST_F(Finding, ExistsFindsFilesAndDirectoriesAndLeavesOutputsWhenMissing) {
  FiveFiles();
  OpenSession();
  std::string msg = "stale";
  EXPECT_EQ(c->FTPSessionFileExists(" a.txt ", msg), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(c->FTPSessionFileExists("dir.txt", msg), kTrue);
  EXPECT_EQ(c->FTPSessionFileExists("none", msg), kFalse);
  EXPECT_EQ(msg + c->FTPLastError(), "");
  Long size = 42;
  std::string date = "d", time = "t";
  EXPECT_EQ(c->FTPSessionFileExistsFull("none", size, date, time, msg), kFalse);
  EXPECT_EQ(size, 42);
  EXPECT_EQ(date + time, "dt");
  EXPECT_EQ(c->FTPSessionFileExistsFull("b.txt", size, date, time, msg), kTrue);
  EXPECT_EQ(size, 5);
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Finding, DeleteSendsThePathAsGivenAndStoresTheBareError) {
  net->AddFile("/a.txt", "a");
  OpenSession();
  EXPECT_EQ(c->FTPSessionFileDelete("a.txt"), kTrue);
  EXPECT_EQ(c->FTPSessionFileDelete(" a.txt"), kFalse);
  EXPECT_EQ(net->log.back(), "Dele  a.txt");
  EXPECT_EQ(c->FTPLastError(), "FTPSessionFileDelete/550  a.txt: No such file or directory.");
  EXPECT_EQ(c->FTPShortError(), "");
  net->Fail(Op::kDeleteFile, platform::kErrorInternetTimeout);
  EXPECT_EQ(c->FTPSessionFileDelete("x"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "FTPSessionFileDelete/12002") << "no full stop added";
  EXPECT_EQ(Events(), (std::vector<std::string>{"Deleted a.txt -1", "Deleted  a.txt 0", "Deleted x 0"}));
}

TEST_F(Finding, DeleteMaskListsFirstThenDeletesAndReportsEach) {
  net->AddFile("/a.log", "");
  net->AddFile("/b.log", "");
  net->AddFile("/c.log", "");
  net->AddDirectory("/d.log");
  OpenSession();
  net->Fail(Op::kDeleteFile, kExtended, "550 Busy.", 1);  // the second file refuses
  std::string msg = "stale";
  EXPECT_EQ(c->FTPSessionFileDeleteMask("*.log", msg), kTrue);
  EXPECT_EQ(msg, "");
  EXPECT_EQ(Events(), (std::vector<std::string>{"Deleted a.log -1", "Deleted b.log 0", "Deleted c.log -1"}));
  EXPECT_TRUE(net->IsFile("/b.log"));
  EXPECT_TRUE(net->IsDirectory("/d.log")) << "directories are never deleted";
  // No deletion ran while a search was open.
  const auto first_delete = std::find(net->log.begin(), net->log.end(), "Dele a.log");
  EXPECT_EQ(std::count(first_delete, net->log.end(), "FindNext"), 0);
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Finding, DeleteMaskStops) {
  struct Row {
    std::string label;
    int stop_at_do_events;  // the n-th yield calls FTPSessionStop
    Boolean result;
    std::string message;
    int deleted;
  };
  // Yields: 1-2 after the two entries of the count, 3 before listing, 4 after the first
  // listed entry, 5 after the second, 6 before deleting, 7 after the first deletion.
  const std::vector<Row> rows = {
      {"before listing", 3, kTrue, "", 0},
      {"while listing", 4, kFalse, "Deletion of Files [*] - Interrupted.", 0},
      {"before deleting", 6, kFalse, "Deletion of Files [*] - Interrupted.", 0},
      {"after the first deletion", 7, kFalse, "Deletion of Files [*] - Interrupted.", 1},
  };
  for (const Row& r : rows) {
    net->nodes.clear();
    net->AddFile("/a", "");
    net->AddFile("/b", "");
    OpenSession();
    int yields = 0;
    host.on_do_events = [&] {
      if (++yields == r.stop_at_do_events) c->FTPSessionStop();
    };
    std::string msg;
    EXPECT_EQ(c->FTPSessionFileDeleteMask("*", msg), r.result) << r.label;
    EXPECT_EQ(msg, r.message) << r.label;
    EXPECT_EQ(c->FTPSessionStopped(), kTrue) << r.label;
    EXPECT_EQ(2 - static_cast<int>(net->IsFile("/a")) - static_cast<int>(net->IsFile("/b")), r.deleted) << r.label;
    host.on_do_events = nullptr;
    c->FTPSessionClose();
  }
}

}  // namespace
}  // namespace tolva::ftptest
