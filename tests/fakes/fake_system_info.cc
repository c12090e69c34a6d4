#include "fakes/fake_system_info.h"

namespace tolva::fakes {

namespace {

// Days between 1970-01-01 and the given civil date (proleptic Gregorian).
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, int& year, int& month, int& day) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(static_cast<std::int64_t>(yoe) + era * 400 + (month <= 2));
}

}  // namespace

FakeSystemInfo::FakeSystemInfo() {
  SetNow({2011, 6, 15, 12, 0, 0});
}

std::uint32_t FakeSystemInfo::TickCount() {
  ++tick_reads;
  const std::uint32_t now = tick;
  tick += tick_step;
  return now;
}

void FakeSystemInfo::WaitForInput(std::uint32_t milliseconds) {
  waits.push_back(milliseconds);
  Advance(milliseconds < input_after_ms ? milliseconds : input_after_ms);
  if (on_wait) on_wait();
}

platform::DateTime FakeSystemInfo::Now() {
  ++now_reads;
  const std::int64_t seconds = (clock_ms_ >= 0 ? clock_ms_ : clock_ms_ - 999) / 1000;
  std::int64_t days = (seconds >= 0 ? seconds : seconds - 86399) / 86400;
  const std::int64_t in_day = seconds - days * 86400;
  platform::DateTime t;
  CivilFromDays(days, t.year, t.month, t.day);
  t.hour = static_cast<int>(in_day / 3600);
  t.minute = static_cast<int>(in_day / 60 % 60);
  t.second = static_cast<int>(in_day % 60);
  return t;
}

void FakeSystemInfo::SetNow(const platform::DateTime& now) {
  const std::int64_t days = DaysFromCivil(now.year, static_cast<unsigned>(now.month), static_cast<unsigned>(now.day));
  clock_ms_ = ((days * 24 + now.hour) * 60 + now.minute) * 60000 + now.second * 1000;
}

void FakeSystemInfo::Advance(std::uint32_t milliseconds) {
  tick += milliseconds;  // unsigned: wraps at 2^32 like the real counter
  clock_ms_ += milliseconds;
}

bool FakeSystemInfo::ComputerName(std::string& name) {
  if (!computer_name) return false;
  name = *computer_name;
  return true;
}

bool FakeSystemInfo::UserName(std::string& name) {
  if (!user_name) return false;
  name = *user_name;
  return true;
}

std::string FakeSystemInfo::MessageText(std::int32_t number) {
  auto it = messages.find(number);
  return it == messages.end() ? std::string() : it->second;
}

bool FakeSystemInfo::Environment(const std::string& name, std::string& value) {
  auto it = environment.find(name);
  if (it == environment.end()) return false;
  value = it->second;
  return true;
}

}  // namespace tolva::fakes
