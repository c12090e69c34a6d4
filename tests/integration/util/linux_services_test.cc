// The message table, process and console services of this platform, through
// the members.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/linux/files/file_system_errors.h"
#include "platform/linux/system/message_table.h"
#include "tolva/platform/internet.h"
#include "tolva/platform/settings_store.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

// Every number a Linux service can hand a host has a one-line text.
TEST(LinuxSystem, MessageTableCoversEveryServiceNumber) {
  using namespace platform;
  Tolva2011Register c;
  std::vector<std::int32_t> numbers = {kErrorNoMoreFiles, kErrorInsufficientBuffer, kSettingsNoMoreItems, 12110};
  for (std::int32_t n = 12001; n <= 12031; ++n) numbers.push_back(n);
  for (int err = 1; err < 134; ++err) {
    for (auto op : {posix::FileOp::kOpenFile, posix::FileOp::kDirectory, posix::FileOp::kDelete})
      numbers.push_back(posix::ClassicFileError(err, op).number);
    numbers.push_back(posix::ClassicRuntimeErrorFromErrno(err).number);
  }
  for (std::int32_t n : numbers) {
    const std::string text = c.FormatErrorMessage(n);
    EXPECT_TRUE(!text.empty() && text.find("Error Number") == std::string::npos) << n << " has no text";
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << n << " is one line";
  }
  EXPECT_EQ(c.FormatErrorMessage(53) + "|" + c.FormatErrorMessage(12002), "File not found|The operation timed out");
  EXPECT_EQ(c.FormatErrorMessage(999999), "Error Number = 999999");
}

TEST(ProgramExecute, StartsRealProgramsDetachedAndRefusesMissingOnes) {
  using namespace std::string_literals;
  Tolva2011Register c;
  const std::string dir = std::filesystem::current_path() / "programs";  // inside the test's home
  std::filesystem::create_directory(dir);
  std::ofstream(dir + "/not-executable") << "#!/bin/sh\n";
  for (const char* command : {"/bin/true", "true with 'some args'"}) EXPECT_EQ(c.ProgramExecute(command), kTrue);
  for (const std::string& command :
       {"/nonexistent/program"s, "no-such-program-tolva"s, dir + "/not-executable", dir, "   "s, "true 'unterminated"s})
    EXPECT_EQ(c.ProgramExecute(command), kFalse) << command;
  // The program gets its words unexpanded; the FIFO's open waits for it.
  const std::string fifo = dir + "/out";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  ASSERT_EQ(c.ProgramExecute("/bin/sh -c 'printf %s \"$1\" > \"$2\"' sh '$HOME a' " + fifo), kTrue);
  std::ifstream in(fifo);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "$HOME a");
  errno = 0;
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child of ours is left to reap, not even a zombie";
  EXPECT_EQ(errno, ECHILD);
  std::filesystem::remove_all(dir);
}

// The console box reads stdin; nothing is ever written to the pipe there, so a
// box that waited for an answer without a terminal would block forever.
TEST(ConsoleBox, WithoutATerminalAnswersTheDefaultAtOnce) {
  int in[2];
  ASSERT_EQ(::pipe(in), 0);
  const int saved = ::dup(0);
  ::dup2(in[0], 0);
  Tolva2011Register c;
  const Variant v = c.MessageQuery("Overwrite?", 4 + 0x100);
  ::dup2(saved, 0);
  ::close(saved);
  EXPECT_EQ(v, Variant::FromLong(7)) << "the default button, the second";
  for (int fd : {in[0], in[1]}) ::close(fd);
}

}  // namespace
}  // namespace tolva
