// Names, message boxes and waits against a fake system whose
// clock moves only when the component waits.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fakes/fake_system_info.h"
#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using namespace std::string_literals;

struct Host : HostContainer {
  void DoEvents() override { ++events, on_events(); }
  int events = 0;
  std::function<void()> on_events = [] {};
};

class SystemMembers : public ::testing::Test {
 protected:
  platform::Services Services() {
    platform::Services s;
    s.system = sys, s.windows = windows;
    return s;
  }
  std::shared_ptr<fakes::FakeSystemInfo> sys = std::make_shared<fakes::FakeSystemInfo>();
  std::shared_ptr<fakes::FakeWindowServices> windows = std::make_shared<fakes::FakeWindowServices>();
  Host host;
  Tolva2011Register c{Services(), &host};
};

TEST_F(SystemMembers, NamesFitTheClassicBufferAndTheUserNameKeepsItsNul) {
  struct Row {
    std::optional<std::string> name;
    std::string computer, user;
  } rows[] = {{"build01"s, "build01", "build01\0"s},
              {std::nullopt, "", ""},
              {std::string(254, 'n'), std::string(254, 'n'), std::string(254, 'n') + '\0'},
              {std::string(255, 'n'), "", ""}};
  for (const auto& r : rows) {
    sys->computer_name = sys->user_name = r.name;
    EXPECT_EQ(c.ComputerName(), r.computer) << r.name.value_or("<fails>").size();
    EXPECT_EQ(c.UserName(), r.user) << r.name.value_or("<fails>").size();
  }
}

TEST_F(SystemMembers, MessageBoxesCarryTheProgramNameAndTheirIcon) {
  c.ProgramName("");
  c.MessageError("Disk \0full"s);
  c.ProgramName("Payroll");
  c.MessageInfo("i");
  c.MessageWarn("w");
  windows->answer = 7;
  EXPECT_EQ(c.MessageQuery("Save?", 4), Variant::FromLong(7));
  EXPECT_EQ(c.MessageQuery("Save?", 3 + 0x100), Variant::FromLong(7));
  EXPECT_EQ(c.MessageQuery("Save?", 2147483647 - 0x20), Variant::FromLong(7)) << "the largest that fits a Long";
  EXPECT_TRUE(c.MessageQuery("Save?", 2147483647 - 0x1f).IsEmpty()) << "the flags overflow a Long: no box";
  std::string shown;
  for (const auto& b : windows->boxes) shown += b.caption + "|" + b.text + "|" + std::to_string(b.flags) + ";";
  EXPECT_EQ(shown,
            " Error|Disk \0full|16;Payroll Information|i|64;Payroll Warning|w|48;Payroll Query|Save?|36;"
            "Payroll Query|Save?|291;Payroll Query|Save?|2147483647;"s);
  windows->answer = 0;
  EXPECT_TRUE(c.MessageQuery("Save?", 4).IsEmpty()) << "no box could be shown";
}

TEST_F(SystemMembers, WaitMilliSecondsWaitsTheRestAfterEachInputAndSurvivesTheWrap) {
  struct Row {
    const char* label;
    Long ms;
    std::uint32_t input_after, start_tick;
    std::vector<std::uint32_t> waits;  // the timeouts the platform was asked for
    int events;                        // times the host processed its events
  } rows[] = {{"a negative time waits no time", -5, UINT32_MAX, 100, {0}, 0},
              {"no input: one wait", 250, UINT32_MAX, 100, {250}, 0},
              {"input every 100 ms", 250, 100, 100, {250, 150, 50}, 2},
              {"a wrap restarts the whole remaining time", 100, 40, 0xFFFFFFF0u, {100, 100, 60, 20}, 2}};
  for (const auto& r : rows) {
    sys->waits.clear();
    sys->input_after_ms = r.input_after;
    sys->tick = r.start_tick;
    host.events = 0;
    c.WaitMilliSeconds(r.ms);
    EXPECT_EQ(sys->waits, r.waits) << r.label;
    EXPECT_EQ(host.events, r.events) << r.label;
  }
}

// One second from a whole second takes five steps, and one step when it starts
// 900 ms past it; a year's end is crossed like any other second.
TEST_F(SystemMembers, WaitSecondsCountsWholeSecondsOfTheClockIn200MsSteps) {
  for (auto [past_the_second, steps] : {std::pair{0u, 5u}, {900u, 1u}}) {
    sys->SetNow({2011, 12, 31, 23, 59, 59});
    sys->Advance(past_the_second);
    sys->waits.clear();
    c.WaitSeconds(1);
    EXPECT_EQ(sys->waits, std::vector<std::uint32_t>(steps, 200)) << past_the_second;
  }
  sys->waits.clear();
  c.WaitSeconds(-3);
  EXPECT_EQ(sys->waits.size(), 1u) << "no time still takes one step";
  // A clock the host sets back an hour during the wait still ends it.
  host.on_events = [&] { sys->SetNow({2011, 6, 15, 11, 0, 0}); };
  host.events = 0;
  c.WaitSeconds(5);
  EXPECT_EQ(host.events, 1);
}

// Without their platform services the members fail quietly and at once.
TEST(SystemMembersWithoutServices, FailQuietly) {
  Tolva2011Register c{platform::Services{}};
  c.WaitMilliSeconds(100000);
  c.WaitSeconds(100000);
  EXPECT_EQ(c.ComputerName() + c.UserName(), "");
  EXPECT_EQ(c.ProgramExecute("true"), kFalse);
  EXPECT_EQ(c.FormatErrorMessage(53), "Error Number = 53");
  c.MessageError("x");
  EXPECT_TRUE(c.MessageQuery("x", 4).IsEmpty());
}

}  // namespace
}  // namespace tolva
