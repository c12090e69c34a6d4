// An in-memory system: a tick counter and a clock that only move when a
// test (or a wait) moves them, scripted computer and user names, a message
// table and an environment. A wait advances both the tick counter and the
// clock, so a member that waits can be run in no time and its waits
// counted; a test can start the counter just below 2^32 to make it wrap.
#ifndef TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_
#define TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tolva/platform/system_info.h"

namespace tolva::fakes {

class FakeSystemInfo : public platform::SystemInfo {
 public:
  FakeSystemInfo();

  // Returns `tick`, then adds `tick_step` to it (0: the counter only moves
  // with waits and Advance()).
  std::uint32_t TickCount() override;
  // Records the wait, then advances time by `milliseconds`, or by
  // `input_after_ms` when that is shorter (input arrived early).
  void WaitForInput(std::uint32_t milliseconds) override;
  platform::DateTime Now() override;
  bool ComputerName(std::string& name) override;
  bool UserName(std::string& name) override;
  std::string MessageText(std::int32_t number) override;
  bool Environment(const std::string& name, std::string& value) override;

  // Sets the clock (the tick counter is left alone).
  void SetNow(const platform::DateTime& now);
  // Moves the tick counter (wrapping at 2^32) and the clock forward.
  void Advance(std::uint32_t milliseconds);

  std::uint32_t tick = 0;
  std::uint32_t tick_step = 0;
  std::uint32_t input_after_ms = std::numeric_limits<std::uint32_t>::max();
  std::vector<std::uint32_t> waits;  // the timeout of every WaitForInput call
  int tick_reads = 0;
  int now_reads = 0;
  // Called after every wait has advanced time (a test can change the state mid-wait).
  std::function<void()> on_wait;

  std::optional<std::string> computer_name = std::string("FAKEHOST");  // nullopt: the call fails
  std::optional<std::string> user_name = std::string("fakeuser");      // nullopt: the call fails
  std::map<std::int32_t, std::string> messages;                        // number -> text
  std::map<std::string, std::string> environment;

 private:
  // The clock as milliseconds since 1970-01-01 00:00:00 local time.
  std::int64_t clock_ms_ = 0;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_
