#include "util/clock_texts.h"

namespace tolva::util {

namespace {

// The tail both formats share: "0:0s" / "0:ss" under a minute, else
// "m:0s" / "m:ss". Negative counts are not guarded on purpose: hosts pass
// zero or more, and a negative one gives texts such as "0:0-5" as it always has.
void AppendMinutesSeconds(std::string& out, std::int64_t minutes, std::int64_t seconds) {
  if (minutes < 1) {
    out += seconds <= 9 ? "0:0" : "0:";
  } else {
    out += std::to_string(minutes);
    out += seconds <= 9 ? ":0" : ":";
  }
  out += std::to_string(seconds);
}

}  // namespace

std::string MinutesSecondsText(std::int32_t seconds) {
  if (seconds == 0) return "0:00";
  const std::int64_t q = seconds / 60;  // C++ division drops the fraction toward zero
  const std::int64_t r = seconds - 60 * q;
  std::string out;
  AppendMinutesSeconds(out, q, r);
  return out;
}

std::string HoursMinutesSecondsText(std::int32_t seconds) {
  if (seconds == 0) return "0:00";
  std::int64_t m = seconds / 60;
  const std::int64_t s = seconds - 60 * m;
  const std::int64_t h = m / 60;
  m -= 60 * h;
  std::string out;
  if (h > 0) {
    out += std::to_string(h);
    out += ':';
    if (m <= 9) out += '0';
  }
  AppendMinutesSeconds(out, m, s);
  return out;
}

bool LooksLikeTime(const std::string& input, const std::string& delimiter) {
  std::size_t begin = 0, end = input.size();
  while (begin < end && input[begin] == ' ') ++begin;
  while (end > begin && input[end - 1] == ' ') --end;
  if (begin == end) return false;
  // A character can only equal a one-character delimiter, and a digit is
  // never taken for one: any other delimiter is never found, so no text
  // passes with it.
  if (delimiter.size() != 1) return false;
  const char d = delimiter[0];
  if (d >= '0' && d <= '9') return false;
  if (input[begin] == d || input[end - 1] == d) return false;
  bool found = false;
  for (std::size_t i = begin; i < end; ++i) {
    if (input[i] != d) continue;
    if (i > begin && input[i - 1] == d) return false;
    found = true;
  }
  return found;
}

}  // namespace tolva::util
