// Counting, trimming, clock texts, time shapes, month ends and command
// lines, through the public members.
#include <gtest/gtest.h>

#include <string>

#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using namespace std::string_literals;

class TextMembers : public ::testing::Test {
 protected:
  Tolva2011Register c{platform::Services{}};
};

TEST_F(TextMembers, StringCountCharacters) {
  struct Row {
    const char* label;
    std::string input, chars;
    Boolean ignore_case, repeat_as_one;
    Long expected;
  } rows[] = {{"a run of slashes counts once", "a/b//c", "/", kTrue, kTrue, 2},
              {"a listed character counted twice", "aaa", "aa", kFalse, kFalse, 6},
              {"IgnoreCase of 1 is not true", "AbA", "a", 1, kFalse, 0},
              {"any non-zero RepeatAsOne merges runs", "xx-xx-x", "x", kFalse, 1, 3},
              {"a run of one character among others", "abab", "ab", kFalse, kTrue, 4},
              {"bytes above 127 are not folded", "\xe9\xc9", "\xe9", kTrue, kFalse, 1},
              {"z folds, { does not", "zZ{[", "z{", kTrue, kFalse, 3}};
  for (const auto& r : rows)
    EXPECT_EQ(c.StringCountCharacters(r.input, r.chars, r.ignore_case, r.repeat_as_one), r.expected) << r.label;
  // A count past the Long range stops where a Long stops.
  const std::string big(10u << 20, 'x');
  EXPECT_EQ(c.StringCountCharacters(big, std::string(300, 'x')), 2147483647);
}

TEST_F(TextMembers, TrimCrLfDropsControlsAndBlanksAtBothEnds) {
  struct Row {
    std::string input, expected;
  } rows[] = {{" \r\n\t \r\n", ""},
              {"\0\x01\x1f abc\x7f\0 "s, "abc\x7f"},
              {"!x!", "!x!"},
              {"\ta\r\nb\t", "a\r\nb"},
              {"\xa0x\xff", "\xa0x\xff"}};
  for (const auto& r : rows) EXPECT_EQ(c.TrimCrLf(r.input), r.expected) << "[" << r.input << "]";
}

TEST_F(TextMembers, ClockTexts) {
  struct Row {
    Long count;
    const char *minutes_seconds, *hours_minutes_seconds;
  } rows[] = {{9, "0:09", "0:09"},        {69, "1:09", "1:09"},    {3600, "60:00", "1:00:00"},
              {3725, "62:05", "1:02:05"}, {-65, "0:0-5", "0:0-5"}, {2147483647, "35791394:07", "596523:14:07"}};
  for (const auto& r : rows) {
    EXPECT_EQ(c.MinutesSeconds(r.count), r.minutes_seconds) << r.count;
    EXPECT_EQ(c.HoursMinutesSeconds(r.count), r.hours_minutes_seconds) << r.count;
    EXPECT_EQ(c.HoursMinutes(r.count), r.minutes_seconds) << r.count;
  }
}

TEST_F(TextMembers, IsTime) {
  struct Row {
    std::string input, delimiter;
    Boolean expected;
  } rows[] = {{"1a:30", ":", kTrue}, {"  12:30  ", ":", kTrue}, {"1230", ":", kFalse},  {":30", ":", kFalse},
              {"12:", ":", kFalse},  {"12::30", ":", kFalse},   {"", ":", kFalse},      {" :30", ":", kFalse},
              {"12.30", ".", kTrue}, {"12:30", "", kFalse},     {"12130", "1", kFalse}, {"1\0:3"s, ":", kTrue}};
  for (const auto& r : rows) EXPECT_EQ(c.IsTime(r.input, r.delimiter), r.expected) << "[" << r.input << "]";
  EXPECT_EQ(c.IsTime("12:30"), kTrue) << "default delimiter";
}

TEST_F(TextMembers, LastDateInMonthRollsMonthsIntoYearsWithinYearsOneTo9999) {
  struct Row {
    Long month, year;
    Date expected;
  } rows[] = {{2, 2012, {2012, 2, 29}},    {2, 1900, {1900, 2, 28}},   {2, 2000, {2000, 2, 29}},
              {11, 2010, {2010, 11, 30}},  {13, 2010, {2011, 1, 31}},  {0, 2010, {2009, 12, 31}},
              {-12, 2010, {2008, 12, 31}}, {12, 9999, {9999, 12, 31}}, {12, 10000, {}},
              {2147483647, 2147483647, {}}};
  for (const auto& r : rows) {
    const Date d = c.LastDateInMonth(r.month, r.year);
    EXPECT_EQ(d, r.expected) << r.month << "/" << r.year << " gave " << d.Year << "-" << d.Month << "-" << d.Day;
  }
}

TEST_F(TextMembers, ProgramCallSetupQuotesThePathIntoTheFirstPercentOne) {
  struct Row {
    std::string call, path, expected;
  } rows[] = {{"editor", "/tmp/a b.txt", "editor \"/tmp/a b.txt\""},
              {"editor %1 -n", "x.txt", "editor \"x.txt\" -n"},
              {"editor \"%1\"", "x", "editor \"\"x\"\""},  // quotes doubled, as hosts have always had them
              {"editor %2 %", "x", "editor %2 % \"x\""}};
  for (const auto& r : rows) EXPECT_EQ(c.ProgramCallSetup(r.call, r.path), r.expected) << r.call;
}

}  // namespace
}  // namespace tolva
