// Waiting against a fake tick counter and clock: the waits asked of the
// platform, the events the host gets to process, and the wrap of the counter.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "fakes/fake_system_info.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

struct CountingHost : HostContainer {
  void DoEvents() override {
    ++events;
    if (on_events) on_events();
  }
  int events = 0;
  std::function<void()> on_events;
};

class TimingMembers : public ::testing::Test {
 protected:
  TimingMembers() {
    platform::Services s;
    s.system = sys;
    c = std::make_unique<Tolva2011Register>(s, &host);
  }
  std::shared_ptr<fakes::FakeSystemInfo> sys = std::make_shared<fakes::FakeSystemInfo>();
  CountingHost host;
  std::unique_ptr<Tolva2011Register> c;
};

TEST_F(TimingMembers, WaitMilliSeconds) {
  struct Row {
    const char* label;
    Long ms;
    std::uint32_t input_after;  // the platform wait returns early after this long
    std::uint32_t start_tick;
    std::vector<std::uint32_t> waits;  // the timeouts the platform was asked for
    int events;                        // times the host processed its events
  };
  const std::uint32_t never = 0xFFFFFFFFu;
  const std::vector<Row> rows = {
      {"zero: one wait of zero time", 0, never, 100, {0}, 0},
      {"a negative time waits no time", -5, never, 100, {0}, 0},
      {"no input: one wait", 250, never, 100, {250}, 0},
      {"input every 100 ms: the rest is waited", 250, 100, 100, {250, 150, 50}, 2},
      {"input every 1 ms", 3, 1, 0, {3, 2, 1}, 2},
      {"wrap during the wait restarts the whole remaining time", 100, 40, 0xFFFFFFF0u, {100, 100, 60, 20}, 2},
  };
  for (const Row& r : rows) {
    sys->waits.clear();
    sys->input_after_ms = r.input_after;
    sys->tick = r.start_tick;
    host.events = 0;
    c->WaitMilliSeconds(r.ms);
    EXPECT_EQ(sys->waits, r.waits) << r.label;
    EXPECT_EQ(host.events, r.events) << r.label;
  }
}

// A wait that spans the counter's wrap is never cut short: the time that
// passed counts as at least the time asked for.
TEST_F(TimingMembers, WaitAcrossTheWrapIsNotShort) {
  sys->tick = 0xFFFFFF00u;
  sys->input_after_ms = 10;
  std::uint64_t waited = 0;
  sys->on_wait = [&] { waited += 10; };
  c->WaitMilliSeconds(1000);
  EXPECT_GE(waited, 1000u);
  EXPECT_LT(sys->tick, 0x1000u) << "the counter wrapped";
}

TEST_F(TimingMembers, WaitSeconds) {
  struct Row {
    const char* label;
    Long seconds;
    platform::DateTime start;
    std::size_t waits;  // 200 ms steps
  };
  const std::vector<Row> rows = {
      {"zero: one step", 0, {2011, 6, 15, 12, 0, 0}, 1},
      {"negative: one step", -3, {2011, 6, 15, 12, 0, 0}, 1},
      {"two whole seconds from a whole second", 2, {2011, 6, 15, 12, 0, 0}, 10},
      {"across midnight and the new year", 1, {2011, 12, 31, 23, 59, 59}, 5},
  };
  for (const Row& r : rows) {
    sys->SetNow(r.start);
    sys->waits.clear();
    sys->input_after_ms = 0xFFFFFFFFu;
    c->WaitSeconds(r.seconds);
    EXPECT_EQ(sys->waits.size(), r.waits) << r.label;
    for (std::uint32_t w : sys->waits) EXPECT_EQ(w, 200u) << r.label;
  }
}

// Whole seconds of the clock: a wait that starts just before a second turns
// ends one whole-second tick later, as the clock measures it.
TEST_F(TimingMembers, WaitSecondsCountsClockSeconds) {
  sys->SetNow({2011, 6, 15, 12, 0, 0});
  sys->Advance(900);
  c->WaitSeconds(1);
  EXPECT_EQ(sys->waits.size(), 1u);
}

// A clock set back by the host during the wait still ends it.
TEST_F(TimingMembers, WaitSecondsWithTheClockSetBack) {
  sys->SetNow({2011, 6, 15, 12, 0, 0});
  host.on_events = [&] { sys->SetNow({2011, 6, 15, 11, 0, 0}); };
  c->WaitSeconds(5);
  EXPECT_EQ(host.events, 1);
}

TEST(TimingWithoutSystem, WaitsReturnAtOnce) {
  Tolva2011Register c{platform::Services{}};
  c.WaitMilliSeconds(100000);
  c.WaitSeconds(100000);
  SUCCEED();
}

}  // namespace
}  // namespace tolva
