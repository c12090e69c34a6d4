// Starting real programs, and message boxes on a console that may or may
// not have a terminal.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/console/console_window_services.h"
#include "platform/linux/processes/process_launcher.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using platform::posix::ConsoleWindowServices;

std::string MakeTempDir() {
  char tmpl[] = "/tmp/tolva-util-XXXXXX";
  const char* d = ::mkdtemp(tmpl);
  return d ? d : "";
}

TEST(CommandLine, SplitsAsAShellWould) {
  struct Row {
    const char* line;
    bool ok;
    std::vector<std::string> words;
  };
  const std::vector<Row> rows = {
      {"prog a b", true, {"prog", "a", "b"}},
      {"  prog \t a  ", true, {"prog", "a"}},
      {"prog 'a b' \"c d\"", true, {"prog", "a b", "c d"}},
      {"prog a\\ b", true, {"prog", "a b"}},
      {"prog \"a \\\"q\\\" \\n\"", true, {"prog", "a \"q\" \\n"}},
      {"prog 'it''s'", true, {"prog", "its"}},
      {"prog '\\'", true, {"prog", "\\"}},
      {"prog \"\" ''", true, {"prog", "", ""}},
      {"prog $HOME *.txt", true, {"prog", "$HOME", "*.txt"}},
      {"prog x\"y z\"w", true, {"prog", "xy zw"}},
      {"", true, {}},
      {"prog 'open", false, {}},
      {"prog \"open", false, {}},
      {"prog \\", false, {}},
  };
  for (const Row& r : rows) {
    std::vector<std::string> words;
    EXPECT_EQ(platform::posix::SplitCommandLine(r.line, words), r.ok) << r.line;
    if (r.ok) {
      EXPECT_EQ(words, r.words) << r.line;
    }
  }
}

TEST(ProgramExecute, StartsRealProgramsAndRefusesMissingOnes) {
  Tolva2011Register c;
  const std::string dir = MakeTempDir();
  ASSERT_FALSE(dir.empty());
  const std::string plain = dir + "/not-executable";
  std::ofstream(plain) << "#!/bin/sh\n";
  struct Row {
    std::string command;
    Boolean expected;
  };
  const std::vector<Row> rows = {
      {"/bin/true", kTrue},
      {"true", kTrue},
      {"true with 'some args'", kTrue},
      {"/nonexistent/program", kFalse},
      {"no-such-program-tolva-xyz", kFalse},
      {plain, kFalse},
      {dir, kFalse},
      {"", kFalse},
      {"   ", kFalse},
      {"true 'unterminated", kFalse},
  };
  for (const Row& r : rows) EXPECT_EQ(c.ProgramExecute(r.command), r.expected) << r.command;

  // The program got its words, unexpanded, and runs detached: no child of
  // ours is left to reap, not even a zombie.
  const std::string out = dir + "/out.txt";
  ASSERT_EQ(c.ProgramExecute("/bin/sh -c 'printf %s \"$1\" > \"$2\"' sh '$HOME a' " + out), kTrue);
  std::string got;
  for (int i = 0; i < 200 && got.empty(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream in(out);
    std::getline(in, got);
  }
  EXPECT_EQ(got, "$HOME a");
  errno = 0;
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);

  std::remove(out.c_str());
  std::remove(plain.c_str());
  ::rmdir(dir.c_str());
}

// A pipe stands in for the terminal: what the box wrote, and an input
// that the test controls.
class ConsoleBox : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::pipe(in_), 0);
    ASSERT_EQ(::pipe(out_), 0);
    ::fcntl(out_[0], F_SETFL, O_NONBLOCK);
  }
  void TearDown() override {
    for (int fd : {in_[0], in_[1], out_[0], out_[1]}) ::close(fd);
  }
  std::string Written() {
    std::string s;
    char buf[4096];
    ssize_t n;
    while ((n = ::read(out_[0], buf, sizeof buf)) > 0) s.append(buf, static_cast<std::size_t>(n));
    return s;
  }
  int in_[2];
  int out_[2];
};

TEST_F(ConsoleBox, WithoutATerminalAnswersTheDefaultAtOnce) {
  // Nothing is ever written to the input: a box that read it would block forever.
  ConsoleWindowServices w(in_[0], out_[1]);
  struct Row {
    std::uint32_t flags;
    int expected;
  };
  const std::vector<Row> rows = {
      {0x10, 1},  {0x24, 6},  {0x124, 7}, {0x224, 6}, {0x21, 1}, {0x121, 2}, {0x22, 3},
      {0x222, 5}, {0x123, 7}, {0x223, 2}, {0x125, 2}, {0x25, 4}, {0x2F, 1},
  };
  for (const Row& r : rows) EXPECT_EQ(w.MessageBox("Save changes?", "Tolva Query", r.flags), r.expected) << r.flags;
  const std::string text = Written();
  EXPECT_NE(text.find("[Tolva Query]\nSave changes?\n"), std::string::npos);
}

TEST_F(ConsoleBox, TheMemberWithoutATerminalDoesNotBlock) {
  // The real console service reads the process's stdin, which is not a
  // terminal under a test runner: swap in the idle pipe to be sure.
  const int saved = ::dup(0);
  ASSERT_GE(saved, 0);
  ::dup2(in_[0], 0);
  Tolva2011Register c;
  c.ProgramName("Demo");
  const Variant v = c.MessageQuery("Overwrite?", 4 + 0x100);
  ::dup2(saved, 0);
  ::close(saved);
  EXPECT_EQ(v, Variant::FromLong(7));
}

TEST_F(ConsoleBox, AsksOnATerminal) {
  ConsoleWindowServices w(in_[0], out_[1], ConsoleWindowServices::Ask::kAlways);
  struct Row {
    const char* typed;
    std::uint32_t flags;
    int expected;
  };
  const std::vector<Row> rows = {
      {"n\n", 4, 7},    {"YES\n", 4, 6},  {"2\n", 3, 7},
      {"\n", 0x103, 7}, {"x\nc\n", 3, 2}, {"i\n", 2, 5},
      {" r \n", 5, 4},  {"9\n\n", 4, 0},  {"?\n?\n?\n?\n?\n", 0x104, 7},
  };
  for (const Row& r : rows) {
    const std::string typed = r.typed;
    ASSERT_EQ(::write(in_[1], typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    const int got = w.MessageBox("Continue?", "Q", r.flags);
    if (r.expected) {
      EXPECT_EQ(got, r.expected) << r.typed;
    } else {
      EXPECT_EQ(got, platform::posix::MessageBoxDefault(r.flags)) << r.typed;
    }
    Written();
  }
  ::close(in_[1]);
  in_[1] = -1;
  EXPECT_EQ(w.MessageBox("Continue?", "Q", 0x104), 7) << "end of input gives the default";
}

}  // namespace
}  // namespace tolva
