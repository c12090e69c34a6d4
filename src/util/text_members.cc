// The counting, trimming, clock-text and calendar members.
#include <limits>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"
#include "util/calendar.h"
#include "util/character_counter.h"
#include "util/clock_texts.h"
#include "util/trim.h"

namespace tolva {

Long Tolva2011Register::StringCountCharacters(const std::string& InputString, const std::string& CountCharacters,
                                              Boolean IgnoreCase, Boolean RepeatAsOne) noexcept {
  // IgnoreCase counts only when exactly true, RepeatAsOne whenever non-zero:
  // the two options have always been read differently, kept on purpose.
  const std::int64_t n = util::CountCharacters(InputString, CountCharacters, IsTrue(IgnoreCase), RepeatAsOne != 0);
  // A count past the Long range stops where a Long stops.
  return n > std::numeric_limits<Long>::max() ? std::numeric_limits<Long>::max() : static_cast<Long>(n);
}

std::string Tolva2011Register::TrimCrLf(const std::string& InputString) noexcept {
  return detail::Guarded(std::string(), [&] { return util::TrimControlEnds(InputString); });
}

Date Tolva2011Register::LastDateInMonth(Long Month, Long Year) noexcept {
  return util::LastDayOfMonth(Month, Year);
}

std::string Tolva2011Register::MinutesSeconds(Long Seconds) noexcept {
  return detail::Guarded(std::string(), [&] { return util::MinutesSecondsText(Seconds); });
}

std::string Tolva2011Register::HoursMinutes(Long Minutes) noexcept {
  // The same digits, read as hours and minutes.
  return MinutesSeconds(Minutes);
}

std::string Tolva2011Register::HoursMinutesSeconds(Long Seconds) noexcept {
  return detail::Guarded(std::string(), [&] { return util::HoursMinutesSecondsText(Seconds); });
}

Boolean Tolva2011Register::IsTime(const std::string& InputString, const std::string& TimeDelimiter) noexcept {
  return ToBoolean(util::LooksLikeTime(InputString, TimeDelimiter));
}

}  // namespace tolva
