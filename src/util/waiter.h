// Waiting without freezing the host: the wait is cut into pieces, and the
// host processes its pending events between them.
#ifndef TOLVA_SRC_UTIL_WAITER_H_
#define TOLVA_SRC_UTIL_WAITER_H_

#include <cstdint>

#include "component/component_state.h"
#include "tolva/platform/system_info.h"

namespace tolva::util {

class Waiter {
 public:
  // Works on `system` and lets the host of `state` process its events.
  // Neither is owned.
  Waiter(platform::SystemInfo& system, detail::ComponentState& state) : system_(system), state_(state) {}
  Waiter(const Waiter&) = delete;
  Waiter& operator=(const Waiter&) = delete;

  // Waits `milliseconds` on the tick counter.
  void Milliseconds(std::int32_t milliseconds);
  // Waits until the clock has moved `seconds` whole seconds, in 200 ms steps.
  void Seconds(std::int32_t seconds);

 private:
  platform::SystemInfo& system_;
  detail::ComponentState& state_;
};

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_WAITER_H_
