// Comparing file dates the way FileTestIdentical does: in whole minutes.
#ifndef TOLVA_SRC_FILES_FILE_TIME_H_
#define TOLVA_SRC_FILES_FILE_TIME_H_

#include <cstdint>

#include "tolva/platform/file_system.h"

namespace tolva::files {

// Minutes since 1 January 1970 of the date and time, seconds ignored: two
// times differ when a minute boundary lies between them (10:00:59 and
// 10:01:00 differ, 10:00:00 and 10:00:59 do not).
inline std::int64_t MinuteNumber(const platform::FileTime& t) noexcept {
  // Days from the civil date (proleptic Gregorian calendar).
  const std::int64_t y = t.year - (t.month <= 2 ? 1 : 0);
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t yoe = y - era * 400;
  const std::int64_t mp = (t.month + 9) % 12;
  const std::int64_t doy = (153 * mp + 2) / 5 + t.day - 1;
  const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  const std::int64_t days = era * 146097 + doe - 719468;
  return days * 1440 + t.hour * 60 + t.minute;
}

}  // namespace tolva::files

#endif  // TOLVA_SRC_FILES_FILE_TIME_H_
