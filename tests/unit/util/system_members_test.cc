// Names, program start, system error texts and message boxes against fakes.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_process_launcher.h"
#include "fakes/fake_system_info.h"
#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using namespace std::string_literals;

class SystemMembers : public ::testing::Test {
 protected:
  SystemMembers() {
    platform::Services s;
    s.system = sys;
    s.processes = launcher;
    s.windows = windows;
    c = std::make_unique<Tolva2011Register>(s);
  }
  std::shared_ptr<fakes::FakeSystemInfo> sys = std::make_shared<fakes::FakeSystemInfo>();
  std::shared_ptr<fakes::FakeProcessLauncher> launcher = std::make_shared<fakes::FakeProcessLauncher>();
  std::shared_ptr<fakes::FakeWindowServices> windows = std::make_shared<fakes::FakeWindowServices>();
  std::unique_ptr<Tolva2011Register> c;
};

TEST_F(SystemMembers, Names) {
  struct Row {
    const char* label;
    std::optional<std::string> platform_name;
    std::string computer, user;  // what the members return for it
  };
  const std::vector<Row> rows = {
      {"ordinary: the user name keeps its NUL", "build01"s, "build01", "build01\0"s},
      {"the call fails", std::nullopt, "", ""},
      {"empty name", ""s, "", "\0"s},
      {"254 characters still fit the buffer", std::string(254, 'n'), std::string(254, 'n'),
       std::string(254, 'n') + '\0'},
      {"255 characters do not", std::string(255, 'n'), "", ""},
  };
  for (const Row& r : rows) {
    sys->computer_name = r.platform_name;
    sys->user_name = r.platform_name;
    EXPECT_EQ(c->ComputerName(), r.computer) << r.label;
    EXPECT_EQ(c->UserName(), r.user) << r.label;
  }
}

TEST_F(SystemMembers, ProgramExecute) {
  struct Row {
    const char* label;
    bool start_ok, activate_ok;
    Boolean expected;
    std::size_t activations;
  };
  const std::vector<Row> rows = {
      {"started and activated", true, true, kTrue, 1},
      {"activation failure ignored", true, false, kTrue, 1},
      {"not started: no activation", false, true, kFalse, 0},
  };
  for (const Row& r : rows) {
    launcher->start_ok = r.start_ok;
    launcher->activate_ok = r.activate_ok;
    launcher->starts.clear();
    launcher->activations.clear();
    const int pid = launcher->next_pid;
    EXPECT_EQ(c->ProgramExecute("editor \"a b.txt\""), r.expected) << r.label;
    ASSERT_EQ(launcher->starts.size(), 1u) << r.label;
    EXPECT_EQ(launcher->starts[0].command_line, "editor \"a b.txt\"") << r.label;
    EXPECT_EQ(launcher->starts[0].window_style, 4) << r.label << ": normal window, no focus";
    ASSERT_EQ(launcher->activations.size(), r.activations) << r.label;
    if (r.activations) {
      EXPECT_EQ(launcher->activations[0], pid) << r.label << ": activates the started one";
    }
  }
}

TEST_F(SystemMembers, FormatErrorMessage) {
  sys->messages = {{2, "The system cannot find the file specified. "},
                   {12002, "The operation timed out"},
                   {7, std::string(600, 'x')}};
  struct Row {
    Long number;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {0, ""},
      {2, "The system cannot find the file specified. "},  // the table's own trailing blank stays
      {12002, "The operation timed out"},
      {424242, "Error Number = 424242"},
      {-5, "Error Number = -5"},
      {-2147483647 - 1, "Error Number = -2147483648"},
      {7, "Error Number = 7"},  // longer than the buffer offered
  };
  for (const Row& r : rows) EXPECT_EQ(c->FormatErrorMessage(r.number), r.expected) << r.number;
}

TEST_F(SystemMembers, MessageBoxes) {
  struct Row {
    const char* label;
    std::string program_name;
    void (*show)(Tolva2011Register&, const std::string&);
    std::string caption;
    std::uint32_t flags;
  };
  const std::vector<Row> rows = {
      {"error", "Tolva", [](Tolva2011Register& t, const std::string& m) { t.MessageError(m); }, "Tolva Error", 0x10},
      {"info", "Payroll", [](Tolva2011Register& t, const std::string& m) { t.MessageInfo(m); }, "Payroll Information",
       0x40},
      {"warn", "Payroll", [](Tolva2011Register& t, const std::string& m) { t.MessageWarn(m); }, "Payroll Warning",
       0x30},
      {"empty name keeps the blank", "", [](Tolva2011Register& t, const std::string& m) { t.MessageError(m); },
       " Error", 0x10},
  };
  for (const Row& r : rows) {
    windows->boxes.clear();
    c->ProgramName(r.program_name);
    r.show(*c, "Disk \0full"s);
    ASSERT_EQ(windows->boxes.size(), 1u) << r.label;
    EXPECT_EQ(windows->boxes[0].caption, r.caption) << r.label;
    EXPECT_EQ(windows->boxes[0].text, "Disk \0full"s) << r.label;
    EXPECT_EQ(windows->boxes[0].flags, r.flags) << r.label;
  }
}

TEST_F(SystemMembers, MessageQuery) {
  struct Row {
    const char* label;
    Long buttons;
    int answer;
    std::uint32_t flags;
    Variant expected;
  };
  const std::vector<Row> rows = {
      {"Yes/No answered No", 4, 7, 36, Variant::FromLong(7)},
      {"Yes/No/Cancel, second default", 3 + 0x100, 2, 0x123, Variant::FromLong(2)},
      {"OK", 0, 1, 32, Variant::FromLong(1)},
      {"no box shown", 4, 0, 36, Variant()},
  };
  c->ProgramName("Tolva");
  for (const Row& r : rows) {
    windows->boxes.clear();
    windows->answer = r.answer;
    EXPECT_EQ(c->MessageQuery("Save?", r.buttons), r.expected) << r.label;
    ASSERT_EQ(windows->boxes.size(), 1u) << r.label;
    EXPECT_EQ(windows->boxes[0].caption, "Tolva Query") << r.label;
    EXPECT_EQ(windows->boxes[0].flags, r.flags) << r.label;
  }
  windows->boxes.clear();
  EXPECT_TRUE(c->MessageQuery("Save?", 2147483647).IsEmpty()) << "the flags overflow a Long";
  EXPECT_TRUE(windows->boxes.empty());
}

// Every member fails quietly when its platform service is missing.
TEST(SystemMembersWithoutServices, FailQuietly) {
  Tolva2011Register c{platform::Services{}};
  EXPECT_EQ(c.ComputerName(), "");
  EXPECT_EQ(c.UserName(), "");
  EXPECT_EQ(c.ProgramExecute("true"), kFalse);
  EXPECT_EQ(c.FormatErrorMessage(53), "Error Number = 53");
  c.MessageError("x");
  EXPECT_TRUE(c.MessageQuery("x", 4).IsEmpty());
}

}  // namespace
}  // namespace tolva
