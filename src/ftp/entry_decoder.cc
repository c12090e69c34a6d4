#include "ftp/entry_decoder.h"

#include <cstdio>
#include <string>

namespace tolva::ftp {

namespace {

bool IsLeap(int y) {
  return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int DaysInMonth(int y, int m) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

struct Ymd {
  int y, m, d;
  long Key() const { return (static_cast<long>(y) * 100 + m) * 100 + d; }
};

// Forms the date (y, m, d) as the host's date builder does: a day beyond
// the month's end runs on into the next month, so 29 February of a common
// year becomes 1 March. Kept that way on purpose: it is what hosts get.
Ymd FormDate(int y, int m, int d) {
  while (d > DaysInMonth(y, m)) {
    d -= DaysInMonth(y, m);
    if (++m > 12) {
      m = 1;
      ++y;
    }
  }
  return {y, m, d};
}

std::string Format(const char* pattern, int a, int b, int c = 0) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, pattern, a, b, c);
  return buffer;
}

}  // namespace

std::string ListedName(const std::string& raw) {
  return raw.substr(0, raw.find('\0'));
}

std::string CorrectedDate(int year, int month, int day, const std::optional<platform::DateTime>& today) {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return std::string();
  Ymd date = FormDate(year, month, day);
  if (today) {
    const Ymd now{today->year, today->month, today->day};
    for (int y = year; y >= 1; --y) {
      date = FormDate(y, month, day);
      if (date.Key() <= now.Key()) break;
    }
  }
  return Format("%04d-%02d-%02d", date.y, date.m, date.d);
}

DecodedEntry DecodeEntry(const platform::FindData& data, const std::optional<platform::DateTime>& today) {
  DecodedEntry e;
  e.directory = (data.attributes & platform::kFileAttributeDirectory) != 0;
  e.name = ListedName(data.name);
  e.size = data.size;
  const platform::FindTime& t = data.last_write;
  if (t.valid && t.hour >= 0 && t.hour < 24 && t.minute >= 0 && t.minute < 60) {
    e.write_date = CorrectedDate(t.year, t.month, t.day, today);
    if (!e.write_date.empty()) {
      e.write_time = Format("%02d:%02d", t.hour, t.minute);
      if (e.write_time == "00:00") e.write_time.clear();
    }
  }
  return e;
}

}  // namespace tolva::ftp
