// An in-memory system whose tick counter and clock move only when a wait (or
// the test) moves them, so a member that waits runs in no time; it has no
// message texts.
#ifndef TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_
#define TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tolva/platform/system_info.h"

namespace tolva::fakes {

class FakeSystemInfo : public platform::SystemInfo {
 public:
  FakeSystemInfo() { SetNow({2011, 6, 15, 12, 0, 0}); }

  std::uint32_t TickCount() override { return tick; }
  // Records the wait, then lets it pass, or only `input_after_ms` of it (input arrived early).
  void WaitForInput(std::uint32_t milliseconds) override {
    waits.push_back(milliseconds);
    Advance(std::min(milliseconds, input_after_ms));
  }
  platform::DateTime Now() override {
    const std::time_t t = static_cast<std::time_t>(clock_ms_ / 1000);
    std::tm c{};
    ::gmtime_r(&t, &c);
    return {c.tm_year + 1900, c.tm_mon + 1, c.tm_mday, c.tm_hour, c.tm_min, c.tm_sec};
  }
  bool ComputerName(std::string& name) override { return Answer(computer_name, name); }
  bool UserName(std::string& name) override { return Answer(user_name, name); }
  std::string MessageText(std::int32_t) override { return ""; }
  bool Environment(const std::string& name, std::string& value) override {
    return environment.count(name) && Answer(environment[name], value);
  }

  void SetNow(const platform::DateTime& d) {
    std::tm c{};
    c.tm_year = d.year - 1900, c.tm_mon = d.month - 1, c.tm_mday = d.day;
    c.tm_hour = d.hour, c.tm_min = d.minute, c.tm_sec = d.second;
    clock_ms_ = static_cast<std::int64_t>(::timegm(&c)) * 1000;
  }
  // Moves the tick counter (wrapping at 2^32, like the real one) and the clock forward.
  void Advance(std::uint32_t milliseconds) {
    tick += milliseconds;
    clock_ms_ += milliseconds;
  }

  std::uint32_t tick = 0;
  std::uint32_t input_after_ms = UINT32_MAX;
  std::vector<std::uint32_t> waits;                                    // every WaitForInput timeout
  std::optional<std::string> computer_name = std::string("FAKEHOST");  // nullopt: the call fails
  std::optional<std::string> user_name = std::string("fakeuser");
  std::map<std::string, std::string> environment;

 private:
  static bool Answer(const std::optional<std::string>& given, std::string& out) {
    if (given) out = *given;
    return given.has_value();
  }
  std::int64_t clock_ms_ = 0;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_SYSTEM_INFO_H_
