#include "util/calendar.h"

namespace tolva::util {

namespace {

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

void CivilFromDays(std::int64_t z, std::int64_t& year, std::int64_t& month, std::int64_t& day) {
  z += 719468;
  const std::int64_t era = FloorDiv(z, 146097);
  const std::int64_t doe = z - era * 146097;
  const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const std::int64_t mp = (5 * doy + 2) / 153;
  day = doy - (153 * mp + 2) / 5 + 1;
  month = mp < 10 ? mp + 3 : mp - 9;
  year = yoe + era * 400 + (month <= 2);
}

}  // namespace

std::int64_t DaysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) noexcept {
  // Roll the month into 1..12 first; month 0 is December of the year before.
  year += FloorDiv(month - 1, 12);
  month = month - 1 - 12 * FloorDiv(month - 1, 12) + 1;
  year -= month <= 2;
  const std::int64_t era = FloorDiv(year, 400);
  const std::int64_t yoe = year - era * 400;
  const std::int64_t doy = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

std::int64_t SecondsOf(const platform::DateTime& t) noexcept {
  return ((DaysFromCivil(t.year, t.month, t.day) * 24 + t.hour) * 60 + t.minute) * 60 + t.second;
}

Date LastDayOfMonth(std::int64_t month, std::int64_t year) noexcept {
  // The day before the first of the following month.
  const std::int64_t days = DaysFromCivil(year, month + 1, 1) - 1;
  std::int64_t y, m, d;
  CivilFromDays(days, y, m, d);
  if (y < 1 || y > 9999) return Date{};
  return Date{static_cast<Integer>(y), static_cast<Integer>(m), static_cast<Integer>(d)};
}

}  // namespace tolva::util
