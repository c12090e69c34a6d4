// The text forms of typed settings: how a stored text (perhaps edited by
// hand) reads back as a number or a boolean.
#include <gtest/gtest.h>

#include <cmath>

#include "settings/setting_text.h"

namespace tolva::settings {
namespace {

// The longest numeric prefix: no hex, inf or nan, an exponent only with
// digits after it, the classic D exponent too, and an overflow reads as 0.
TEST(SettingText, LeadingNumber) {
  const std::pair<const char*, double> rows[] = {
      {"12abc", 12}, {"x", 0},     {"  \t7", 7},  {"+.5", 0.5}, {"1.2.3", 1.2}, {"1E+20", 1e20}, {"2e", 2},
      {"3e-", 3},    {"1D2", 100}, {"1d-1", 0.1}, {".", 0},     {"0x1A", 0},    {"inf", 0},      {"1e999", 0}};
  for (auto [text, expected] : rows) EXPECT_DOUBLE_EQ(LeadingNumber(text), expected) << "[" << text << "]";
}

TEST(SettingText, RoundToLongHalvesToEvenAndClamps) {
  const std::pair<double, Long> rows[] = {
      {2.5, 2}, {3.5, 4}, {-2.5, -2}, {0.5, 0}, {2.5000001, 3}, {1e12, 2147483647}, {-1e12, -2147483647 - 1}, {NAN, 0}};
  for (auto [value, expected] : rows) EXPECT_EQ(RoundToLong(value), expected) << value;
}

TEST(SettingText, BooleanTextsMatchTheTableInAnyCase) {
  const std::pair<const char*, std::optional<Boolean>> rows[] = {
      {"True", kTrue}, {"YES", kTrue},      {"no", kFalse},         {"-1", kTrue},
      {"0", kFalse},   {"2", std::nullopt}, {" true", std::nullopt}};
  for (auto [text, expected] : rows) EXPECT_EQ(BooleanFromText(text), expected) << "[" << text << "]";
  EXPECT_STREQ(BooleanSaveText(kTrue), "True");
  EXPECT_STREQ(BooleanDefaultText(kFalse), "false");
}

}  // namespace
}  // namespace tolva::settings
