// The timing, name and message members on the real Linux services.
#include <gtest/gtest.h>
#include <pwd.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/linux/files/file_system_errors.h"
#include "platform/linux/system/message_table.h"
#include "tolva/platform/internet.h"
#include "tolva/platform/settings_store.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

TEST(LinuxSystem, NamesAreTheMachinesOwn) {
  Tolva2011Register c;
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(c.ComputerName(), host);
  const passwd* pw = ::getpwuid(::geteuid());
  ASSERT_NE(pw, nullptr);
  EXPECT_EQ(c.UserName(), std::string(pw->pw_name) + '\0') << "the name keeps its terminating NUL";
}

struct CountingHost : HostContainer {
  void DoEvents() override { ++events; }
  int events = 0;
};

// The real wait is a sleep cut into slices with the host's events between
// them; the tick counter moves forward with it at the monotonic clock's pace.
TEST(LinuxSystem, TickCounterAndWait) {
  auto system = platform::LinuxServices().system;
  ASSERT_NE(system, nullptr);
  CountingHost host;
  platform::Services s;
  s.system = system;
  Tolva2011Register c(s, &host);
  timespec before{}, after{};
  ::clock_gettime(CLOCK_MONOTONIC, &before);
  const std::uint32_t t0 = system->TickCount();
  c.WaitMilliSeconds(120);
  const std::uint32_t t1 = system->TickCount();
  ::clock_gettime(CLOCK_MONOTONIC, &after);
  const long long wall = (after.tv_sec - before.tv_sec) * 1000LL + (after.tv_nsec - before.tv_nsec) / 1000000;
  EXPECT_GE(static_cast<std::uint32_t>(t1 - t0), 120u);
  EXPECT_GE(wall, 119);
  EXPECT_LE(static_cast<long long>(static_cast<std::uint32_t>(t1 - t0)), wall + 2);
  EXPECT_GE(host.events, 2) << "the host ran between slices of the wait";

  std::uint32_t last = system->TickCount();
  for (int i = 0; i < 1000; ++i) {
    const std::uint32_t now = system->TickCount();
    EXPECT_LE(static_cast<std::uint32_t>(now - last), 1000u) << "never steps backwards";
    last = now;
  }
}

TEST(LinuxSystem, NowIsTheLocalClock) {
  auto system = platform::LinuxServices().system;
  const time_t t = ::time(nullptr);
  tm local{};
  ::localtime_r(&t, &local);
  const platform::DateTime now = system->Now();
  EXPECT_EQ(now.year, local.tm_year + 1900);
  EXPECT_GE(now.month, 1);
  EXPECT_LE(now.month, 12);
}

// Every number a Linux service can hand a host has a text in the table.
TEST(LinuxSystem, MessageTableCoversEveryServiceNumber) {
  Tolva2011Register c;
  std::vector<std::int32_t> numbers = {
      // FTP client
      platform::kErrorNoMoreFiles, platform::kErrorInvalidHandle, platform::kErrorInvalidParameter,
      platform::kErrorInsufficientBuffer, platform::kErrorDiskFull, platform::kErrorAccessDenied,
      platform::kErrorFileNotFound,
      // settings store
      platform::kSettingsNotFound, platform::kSettingsAccessDenied, platform::kSettingsNoMoreItems};
  for (std::int32_t n = 12001; n <= 12031; ++n) numbers.push_back(n);
  numbers.push_back(12110);
  numbers.push_back(12111);
  // Local files: whatever errno the file service meets, in every kind of call.
  for (int err = 1; err < 134; ++err) {
    for (auto op :
         {platform::posix::FileOp::kOpenFile, platform::posix::FileOp::kDirectory, platform::posix::FileOp::kDelete}) {
      numbers.push_back(platform::posix::ClassicFileError(err, op).number);
    }
    const auto classic = platform::posix::ClassicRuntimeErrorFromErrno(err);
    numbers.push_back(classic.number);
    EXPECT_STRNE(classic.text, "") << "errno " << err;
  }
  for (std::int32_t n : numbers) {
    const std::string text = c.FormatErrorMessage(n);
    EXPECT_FALSE(text.empty()) << n;
    EXPECT_EQ(text.find("Error Number"), std::string::npos) << n << " has no text";
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << n << " is one line";
  }
  EXPECT_EQ(c.FormatErrorMessage(53), "File not found");
  EXPECT_EQ(c.FormatErrorMessage(12002), "The operation timed out");
  EXPECT_EQ(c.FormatErrorMessage(999999), "Error Number = 999999");
  const auto all = platform::posix::MessageTableNumbers();
  for (std::size_t i = 1; i < all.size(); ++i) EXPECT_LT(all[i - 1], all[i]) << "sorted, no duplicates";
}

TEST(LinuxSystem, ErrnoMapsToClassicNumbers) {
  struct Row {
    int err;
    int number;
    const char* text;
  };
  const std::vector<Row> rows = {
      {0, 0, ""},
      {ENOENT, 53, "File not found"},
      {ENOTDIR, 76, "Path not found"},
      {EACCES, 70, "Permission denied"},
      {ENOSPC, 61, "Disk full"},
      {EIO, 57, "Device I/O error"},
      {EEXIST, 58, "File already exists"},
      {EMFILE, 67, "Too many files"},
      {EXDEV, 74, "Can't rename with different drive"},
      {EISDIR, 75, "Path/File access error"},
      {ENAMETOOLONG, 52, "Bad file name or number"},
  };
  for (const Row& r : rows) {
    const auto e = platform::posix::ClassicRuntimeErrorFromErrno(r.err);
    EXPECT_EQ(e.number, r.number) << r.err;
    EXPECT_STREQ(e.text, r.text) << r.err;
  }
}

}  // namespace
}  // namespace tolva
