#include "util/waiter.h"

#include "util/calendar.h"

namespace tolva::util {

void Waiter::Milliseconds(std::int32_t milliseconds) {
  std::int64_t remaining = milliseconds;
  std::int64_t start = system_.TickCount();
  for (;;) {
    // A negative time would be an endless wait to the platform; it waits no time instead.
    system_.WaitForInput(remaining > 0 ? static_cast<std::uint32_t>(remaining) : 0u);
    const std::int64_t now = system_.TickCount();
    const std::int64_t elapsed = now - start;
    if (elapsed >= remaining) return;
    if (now < start) {
      // The counter wrapped: start over from the new tick with the whole
      // remaining time. Kept as it always was; a wait that spans the wrap
      // runs a little long, never short.
      start = now;
      continue;
    }
    remaining -= elapsed;
    start = now;
    state_.DoEvents();
  }
}

void Waiter::Seconds(std::int32_t seconds) {
  const std::int64_t started = SecondsOf(system_.Now());
  for (;;) {
    Milliseconds(200);
    std::int64_t passed = SecondsOf(system_.Now()) - started;
    if (passed < 0) passed = -passed;  // a clock set back still ends the wait
    if (passed >= seconds) return;
    state_.DoEvents();
  }
}

}  // namespace tolva::util
