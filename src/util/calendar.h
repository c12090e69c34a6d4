// Calendar arithmetic on the proleptic Gregorian calendar.
#ifndef TOLVA_SRC_UTIL_CALENDAR_H_
#define TOLVA_SRC_UTIL_CALENDAR_H_

#include <cstdint>

#include "tolva/host_types.h"
#include "tolva/platform/system_info.h"

namespace tolva::util {

// Days from 1970-01-01 to the given date; months outside 1..12 roll into
// the neighbouring years (month 13 is January of the next year).
std::int64_t DaysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) noexcept;
// Seconds from 1970-01-01 00:00:00 to `t`, all fields as given (no time zone).
std::int64_t SecondsOf(const platform::DateTime& t) noexcept;
// The last day of `month` of `year` (months roll as above); an empty Date
// when that day lies outside the years 1 to 9999.
Date LastDayOfMonth(std::int64_t month, std::int64_t year) noexcept;

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_CALENDAR_H_
