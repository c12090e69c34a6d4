// Clock-time texts: counts written as m:ss and h:mm:ss, and a lenient test
// of the shape of a clock time.
#ifndef TOLVA_SRC_UTIL_CLOCK_TEXTS_H_
#define TOLVA_SRC_UTIL_CLOCK_TEXTS_H_

#include <cstdint>
#include <string>

namespace tolva::util {

// 65 -> "1:05", 45 -> "0:45", 3600 -> "60:00" (never carried into hours).
std::string MinutesSecondsText(std::int32_t seconds);
// 3725 -> "1:02:05", 754 -> "12:34", 7 -> "0:07".
std::string HoursMinutesSecondsText(std::int32_t seconds);
// True when `input`, trimmed of blanks, holds the one-character `delimiter`
// but neither starts nor ends with it nor holds it twice in a row. The
// other characters are not looked at: "1a:30" passes.
bool LooksLikeTime(const std::string& input, const std::string& delimiter);

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_CLOCK_TEXTS_H_
