// The waiting members.
#include "component/component_state.h"
#include "tolva/tolva2011register.h"
#include "util/waiter.h"

namespace tolva {

void Tolva2011Register::WaitMilliSeconds(Long MilliSeconds) noexcept {
  detail::GuardedVoid([&] {
    if (!s_->services.system) return;
    util::Waiter(*s_->services.system, *s_).Milliseconds(MilliSeconds);
  });
}

void Tolva2011Register::WaitSeconds(Long Seconds) noexcept {
  detail::GuardedVoid([&] {
    if (!s_->services.system) return;
    util::Waiter(*s_->services.system, *s_).Seconds(Seconds);
  });
}

}  // namespace tolva
