// The text forms of typed settings: what is written, and how a stored text
// (perhaps edited by hand) reads back; and the command of a desktop entry.
#include <gtest/gtest.h>

#include <limits>

#include "settings/desktop_associations.h"
#include "settings/setting_text.h"

namespace tolva::settings {
namespace {

TEST(SettingTextTest, LeadingNumberTakesTheLongestNumericPrefix) {
  struct Row {
    const char* label;
    std::string text;
    double expected;
  } rows[] = {
      {"plain", "42", 42},
      {"trailing letters", "12abc", 12},
      {"no number", "x", 0},
      {"empty", "", 0},
      {"leading blanks and tab", "  \t7", 7},
      {"negative fraction", "-2.25", -2.25},
      {"fraction without leading zero", ".5", 0.5},
      {"second point ends it", "1.2.3", 1.2},
      {"exponent", "1E+20", 1e20},
      {"lower-case exponent", "2.5e3x", 2500},
      {"exponent without digits is not one", "2e", 2},
      {"exponent with sign only", "3e-", 3},
      {"classic D exponent", "1D2", 100},
      {"sign alone", "-", 0},
      {"point alone", ".", 0},
      {"hex is not a number here", "0x1A", 0},
      {"inf is not a number here", "inf", 0},
      {"nan is not a number here", "nan", 0},
      {"blank inside ends it", "1 2", 1},
      {"overflow reads as 0", "1e999", 0},
  };
  for (const auto& r : rows) EXPECT_DOUBLE_EQ(LeadingNumber(r.text), r.expected) << r.label;
}

TEST(SettingTextTest, RoundToLongHalvesToEvenAndClamps) {
  struct Row {
    const char* label;
    double value;
    Long expected;
  } rows[] = {
      {"2.5 to even below", 2.5, 2},
      {"3.5 to even above", 3.5, 4},
      {"-2.5 to even", -2.5, -2},
      {"0.5 to zero", 0.5, 0},
      {"just above a half", 2.5000001, 3},
      {"huge clamps high", 1e12, 2147483647},
      {"huge negative clamps low", -1e12, std::numeric_limits<Long>::min()},
      {"nan is 0", std::numeric_limits<double>::quiet_NaN(), 0},
  };
  for (const auto& r : rows) EXPECT_EQ(RoundToLong(r.value), r.expected) << r.label;
}

TEST(SettingTextTest, NumbersAreWrittenAsInvariantTextThatReadsBack) {
  struct Row {
    const char* label;
    double value;
    std::string text;
  } rows[] = {
      {"integer valued", 3, "3"}, {"fraction", 2.5, "2.5"},       {"negative", -0.125, "-0.125"},
      {"large", 1e20, "1E+20"},   {"fifteen digits", 0.1, "0.1"}, {"small", 1.5e-7, "1.5E-07"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(DoubleText(r.value), r.text) << r.label;
    EXPECT_DOUBLE_EQ(LeadingNumber(DoubleText(r.value)), r.value) << r.label;
  }
  EXPECT_EQ(LongText(-2147483647 - 1), "-2147483648");
}

TEST(SettingTextTest, BooleanTextsMatchTheTableInAnyCase) {
  struct Row {
    const char* label;
    std::string text;
    std::optional<Boolean> expected;
  } rows[] = {
      {"saved true", "True", kTrue}, {"saved false", "False", kFalse},
      {"upper yes", "YES", kTrue},   {"no", "no", kFalse},
      {"one", "1", kTrue},           {"minus one", "-1", kTrue},
      {"zero", "0", kFalse},         {"maybe", "maybe", std::nullopt},
      {"two", "2", std::nullopt},    {"blank around", " true", std::nullopt},
      {"empty", "", std::nullopt},
  };
  for (const auto& r : rows) EXPECT_EQ(BooleanFromText(r.text), r.expected) << r.label;
  EXPECT_STREQ(BooleanSaveText(kTrue), "True");
  EXPECT_STREQ(BooleanDefaultText(kFalse), "false");
}

TEST(DesktopExecTest, FieldCodesBecomeTheFilePlaceholderOrVanish) {
  struct Row {
    const char *exec, *command;
  } rows[] = {{"gedit %f", "gedit %1"},
              {"gimp %F", "gimp %1"},
              {"firefox %U", "firefox %1"},
              {"app %u %i %c", "app %1"},
              {"printf 100%% %f", "printf 100% %1"},
              {"xterm", "xterm"},
              {"odd %", "odd %"}};
  for (const auto& r : rows) EXPECT_EQ(DesktopAssociations::CommandFromExec(r.exec), r.command) << r.exec;
}

}  // namespace
}  // namespace tolva::settings
