// Finding, counting, listing and deleting remote files.
#include <algorithm>
#include <string>
#include <vector>

#include "ftp_fixture.h"

namespace tolva::ftptest {
namespace {

class Finding : public FtpTest {
 protected:
  void FiveFiles() {
    for (const char* n : {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt"}) net->Add(std::string("/") + n, n);
    net->Add("/dir.txt");
  }
};

TEST_F(Finding, EveryMaskMemberRefusesABlankMaskAndAClosedSessionAndFindsNothingQuietly) {
  auto a = HostArray<std::string>::OneDim(1, 5);
  auto sizes = HostArray<Long>::OneDim(1, 5);
  Long files = 0, dirs = 0, size = 5;
  std::string date, time;
  struct Member {
    std::string blank, closed;  // what the blank argument is called; the closed-session title
    std::function<long(const std::string&, std::string&)> run;
    long nothing_found;
  };
  const std::vector<Member> members = {
      {"Mask", "Find Files", [&](auto& m, auto& e) { return c->FTPSessionFileFind(m, e); }, 0},
      {"Mask", "Find Files", [&](auto& m, auto& e) { return c->FTPSessionFileFindCount(m, files, dirs, e); }, -1},
      {"Mask", "Find Files", [&](auto& m, auto& e) { return c->FTPSessionFileFindDirectories(m, a, 5, e); }, 0},
      {"Mask", "Find Files", [&](auto& m, auto& e) { return c->FTPSessionFileFindFiles(m, a, 5, e); }, 0},
      {"Mask", "Find Files", [&](auto& m, auto& e) { return c->FTPSessionFileFindFilesFull(m, a, sizes, a, a, 5, e); },
       0},
      {"Mask", "Delete Files", [&](auto& m, auto& e) { return c->FTPSessionFileDeleteMask(m, e); }, -1},
      {"Mask", "Get Files", [&](auto& m, auto& e) { return c->FTPSessionGetMask(m, "/", e); }, -1},
      {"Name", "Find File", [&](auto& m, auto& e) { return c->FTPSessionFileExists(m, e); }, 0},
      {"Name", "Find File", [&](auto& m, auto& e) { return c->FTPSessionFileExistsFull(m, size, date, time, e); }, 0},
  };
  for (const Member& m : members) {
    std::string msg;
    EXPECT_EQ(Answer(m.run("   ", msg), msg), "0 File " + m.blank + " has not been defined.");
    EXPECT_EQ(Answer(m.run(" *.txt ", msg), msg), "0 Can't " + m.closed + " [*.txt] - Session is not opened.");
  }
  EXPECT_TRUE(net->log.empty());
  OpenSession();
  for (const Member& m : members) {
    std::string msg = "stale";
    EXPECT_EQ(Answer(m.run("*.none", msg), msg) + c->FTPLastError(), Answer(m.nothing_found, "")) << m.closed;
  }
  EXPECT_EQ(size, 5) << "not found leaves the outputs alone";
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Finding, FindReportsEachEntryDecoded) {
  net->Add("/a.txt", "12345", {true, 2026, 6, 1, 9, 5, 0});
  net->Add("/sub");
  OpenSession();
  std::string msg = "stale";
  EXPECT_EQ(Answer(c->FTPSessionFileFind("*", msg), msg), "2 ");
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"Found a.txt 0 5 2026-06-01 09:05", "Found sub -1 0 2011-01-02 03:04"}));
  EXPECT_EQ(net->OpenHandleCount(), 2) << "search closed";
  EXPECT_EQ(c->FTPSessionStopped(), kFalse);
  EXPECT_EQ(Answer(c->FTPSessionFileExists(" sub ", msg), msg), "-1 ") << "directories exist too";
}

TEST_F(Finding, ListedYearsAreCorrectedSoNothingLiesInTheFuture) {
  struct Row {
    std::string label;
    platform::FindTime listed;
    std::string expected;  // date and time as FTPSessionFileExistsFull gives them
    platform::DateTime today{2026, 6, 15, 12, 0, 0};
  };
  const std::vector<Row> rows = {
      {"a month ahead goes back a year", {true, 2026, 7, 15, 10, 30, 0}, "2025-07-15 10:30"},
      {"today stays", {true, 2026, 6, 15, 23, 59, 0}, "2026-06-15 23:59"},
      {"tomorrow goes back a year", {true, 2026, 6, 16, 1, 0, 0}, "2025-06-16 01:00"},
      {"midnight has no time", {true, 2026, 1, 1, 0, 0, 30}, "2026-01-01 "},
      {"29 February rolls on into March", {true, 2024, 2, 29, 12, 0, 0}, "2023-03-01 12:00", {2024, 2, 28, 0, 0, 0}},
      {"nonsense fields", {true, 2026, 13, 40, 25, 0, 0}, " "},
  };
  OpenSession();
  for (const Row& r : rows) {
    net->Add("/f", "x", r.listed);
    clock->SetNow(r.today);
    Long size = 0;
    std::string date = "old", time = "old", msg;
    ASSERT_EQ(c->FTPSessionFileExistsFull("f", size, date, time, msg), kTrue) << r.label;
    EXPECT_EQ(date + " " + time, r.expected) << r.label;
  }
}

TEST_F(Finding, CancelAndStopEndTheFindAtTheRightEntry) {
  FiveFiles();
  OpenSession();
  struct Row {
    std::string label;
    Boolean cancel;
    std::string stop_at;  // the event whose handler calls FTPSessionStop
    Long count;
    Boolean stopped;
  };
  const std::vector<Row> rows = {
      {"cancel on the first entry counts it", kTrue, "", 1, kFalse},
      {"cancel with any non-zero value", 1, "", 1, kFalse},
      {"stop from the second entry", kFalse, "Found b.txt", 2, kTrue},
  };
  for (const Row& r : rows) {
    host.events.clear();
    host.cancel = r.cancel;
    StopAt(r.stop_at.empty() ? "none" : r.stop_at);
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
  EXPECT_EQ(Answer(c->FTPSessionFileFindCount("*.txt", files, dirs, msg), msg), "-1 ");
  EXPECT_EQ(std::to_string(files) + " files, " + std::to_string(dirs) + " directories", "5 files, 1 directories");
  struct Row {
    std::string label;
    Long lower, upper, max;
    std::vector<std::string> expected;  // elements lower..upper afterwards
  };
  const std::vector<Row> rows = {
      {"max 2 of 5", 1, 5, 2, {"a.txt", "b.txt", "", "", ""}},
      {"bounds 0 to 1 take only element 1", 0, 1, 5, {"", "a.txt"}},
  };
  for (const Row& r : rows) {
    auto a = HostArray<std::string>::OneDim(r.lower, r.upper);
    EXPECT_EQ(c->FTPSessionFileFindFiles("*.txt", a, r.max, msg), 5) << r.label;
    for (Long i = r.lower; i <= r.upper; ++i) EXPECT_EQ(*a.At(i), r.expected[i - r.lower]) << r.label << " " << i;
  }
  net->Add("/dir2");
  auto d = HostArray<std::string>::OneDim(1, 1);
  EXPECT_EQ(c->FTPSessionFileFindDirectories("*", d, 1, msg), 2);
  EXPECT_EQ(*d.At(1), "dir.txt");
}

TEST_F(Finding, LibraryFailuresKeepWhatWasCounted) {
  FiveFiles();
  OpenSession();
  std::string msg;
  net->Fail("FindNext", kAborted, "", 1);
  auto a = HostArray<std::string>::OneDim(1, 9);
  EXPECT_EQ(Answer(c->FTPSessionFileFindFiles("*", a, 9, msg), msg),
            "2 Error Finding Files - FTPSessionFileFindCount/12030.")
      << "two entries before the failure";
  EXPECT_EQ(net->OpenHandleCount(), 2);
}

TEST_F(Finding, DeleteSendsThePathAsGivenAndStoresTheBareError) {
  net->Add("/a.txt", "a");
  OpenSession();
  EXPECT_EQ(c->FTPSessionFileDelete("a.txt"), kTrue);
  EXPECT_EQ(c->FTPSessionFileDelete(" a.txt"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "FTPSessionFileDelete/550  a.txt: No such file or directory.");
  EXPECT_EQ(c->FTPShortError(), "");
  net->Fail("Dele", kTimeout);
  EXPECT_EQ(c->FTPSessionFileDelete("x"), kFalse);
  EXPECT_EQ(c->FTPLastError(), "FTPSessionFileDelete/12002") << "no full stop added";
  EXPECT_EQ(Events(), (std::vector<std::string>{"Deleted a.txt -1", "Deleted  a.txt 0", "Deleted x 0"}));
}

TEST_F(Finding, DeleteMaskListsFirstThenDeletesAndReportsEach) {
  for (const char* n : {"/a.log", "/b.log", "/c.log"}) net->Add(n, "");
  net->Add("/d.log");
  OpenSession();
  net->Fail("Dele", kExtended, "550 Busy.", 1);  // the second file refuses
  std::string msg = "stale";
  EXPECT_EQ(Answer(c->FTPSessionFileDeleteMask("*.log", msg), msg), "-1 ");
  EXPECT_EQ(Events(), (std::vector<std::string>{"Deleted a.log -1", "Deleted b.log 0", "Deleted c.log -1"}));
  EXPECT_TRUE(net->nodes.count("/b.log"));
  EXPECT_TRUE(net->nodes.count("/d.log")) << "directories are never deleted";
  // No deletion ran while a search was open.
  const auto first_delete = std::find(net->log.begin(), net->log.end(), "Dele a.log");
  EXPECT_EQ(std::count(first_delete, net->log.end(), "FindNext "), 0);
}

}  // namespace
}  // namespace tolva::ftptest
