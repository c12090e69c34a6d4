// Counting, trimming, clock texts, time shapes, month ends and command
// lines, through the public members.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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
  };
  const std::vector<Row> rows = {
      {"a run of slashes counts once", "a/b//c", "/", kTrue, kTrue, 2},
      {"without RepeatAsOne every slash counts", "a/b//c", "/", kFalse, kFalse, 3},
      {"a listed character counted twice", "aaa", "aa", kFalse, kFalse, 6},
      {"IgnoreCase of 1 is not true", "AbA", "a", 1, kFalse, 0},
      {"IgnoreCase true matches either case", "AbA", "a", kTrue, kFalse, 2},
      {"IgnoreCase upper-cases the list too", "abc", "B", kTrue, kFalse, 1},
      {"any non-zero RepeatAsOne merges runs", "xx-xx-x", "x", kFalse, 1, 3},
      {"a run of one character among others", "abab", "ab", kFalse, kTrue, 4},
      {"duplicates and runs together", "aab", "aa", kFalse, kTrue, 2},
      {"empty input", "", "a", kFalse, kFalse, 0},
      {"empty list", "abc", "", kFalse, kFalse, 0},
      {"several characters", "C:\\a\\b/c", "\\/", kFalse, kFalse, 3},
      {"NUL is a character like any other", "a\0\0b\0"s, "\0"s, kFalse, kFalse, 3},
      {"NUL runs merge", "a\0\0b\0"s, "\0"s, kFalse, kTrue, 2},
      {"bytes above 127 are not folded", "\xe9\xc9", "\xe9", kTrue, kFalse, 1},
  };
  for (const Row& r : rows) {
    EXPECT_EQ(c.StringCountCharacters(r.input, r.chars, r.ignore_case, r.repeat_as_one), r.expected) << r.label;
  }
}

TEST_F(TextMembers, TrimCrLf) {
  struct Row {
    const char* label;
    std::string input, expected;
  };
  const std::vector<Row> rows = {
      {"only blanks, returns and tabs", " \r\n\t \r\n", ""},
      {"inner blank stays", "\r\nA B\r\n", "A B"},
      {"empty", "", ""},
      {"nothing to trim", "abc", "abc"},
      {"NUL and other controls at the ends", "\0\x01\x1f abc\x7f\0 "s, "abc\x7f"},
      {"code 33 is kept", "!x!", "!x!"},
      {"inner controls stay", "\ta\r\nb\t", "a\r\nb"},
      {"bytes above 127 are not controls", "\xa0x\xff", "\xa0x\xff"},
      {"uneven ends", "\n\n\n\nx ", "x"},
  };
  for (const Row& r : rows) EXPECT_EQ(c.TrimCrLf(r.input), r.expected) << r.label;
}

TEST_F(TextMembers, ClockTexts) {
  struct Row {
    Long count;
    const char* minutes_seconds;
    const char* hours_minutes_seconds;
  };
  const std::vector<Row> rows = {
      {0, "0:00", "0:00"},        {5, "0:05", "0:05"},           {7, "0:07", "0:07"},
      {45, "0:45", "0:45"},       {60, "1:00", "1:00"},          {65, "1:05", "1:05"},
      {754, "12:34", "12:34"},    {3600, "60:00", "1:00:00"},    {3605, "60:05", "1:00:05"},
      {3725, "62:05", "1:02:05"}, {36000, "600:00", "10:00:00"}, {86399, "1439:59", "23:59:59"},
      {-5, "0:0-5", "0:0-5"},     {-65, "0:0-5", "0:0-5"},       {2147483647, "35791394:07", "596523:14:07"},
  };
  for (const Row& r : rows) {
    EXPECT_EQ(c.MinutesSeconds(r.count), r.minutes_seconds) << r.count;
    EXPECT_EQ(c.HoursMinutesSeconds(r.count), r.hours_minutes_seconds) << r.count;
    EXPECT_EQ(c.HoursMinutes(r.count), r.minutes_seconds) << r.count;
  }
  EXPECT_EQ(c.HoursMinutes(90), "1:30");
}

TEST_F(TextMembers, IsTime) {
  struct Row {
    std::string input, delimiter;
    Boolean expected;
  };
  const std::vector<Row> rows = {
      {"12:30", ":", kTrue},     {"1:2:3", ":", kTrue},   {"99:99", ":", kTrue},  {"1a:30", ":", kTrue},
      {"  12:30  ", ":", kTrue}, {"1230", ":", kFalse},   {":30", ":", kFalse},   {"12:", ":", kFalse},
      {"12::30", ":", kFalse},   {"", ":", kFalse},       {"   ", ":", kFalse},   {":", ":", kFalse},
      {"12.30", ".", kTrue},     {"12.30", ":", kFalse},  {"12:30", "", kFalse},  {"12::30", "::", kFalse},
      {"12130", "1", kFalse},    {"\t12:30", ":", kTrue}, {"1\0:3"s, ":", kTrue}, {" :30", ":", kFalse},
  };
  for (const Row& r : rows) EXPECT_EQ(c.IsTime(r.input, r.delimiter), r.expected) << "[" << r.input << "]";
  EXPECT_EQ(c.IsTime("12:30"), kTrue) << "default delimiter";
}

TEST_F(TextMembers, LastDateInMonth) {
  struct Row {
    Long month, year;
    Date expected;
  };
  const std::vector<Row> rows = {
      {2, 2012, {2012, 2, 29}},
      {2, 2011, {2011, 2, 28}},
      {2, 1900, {1900, 2, 28}},
      {2, 2000, {2000, 2, 29}},
      {12, 2010, {2010, 12, 31}},
      {1, 2010, {2010, 1, 31}},
      {4, 2010, {2010, 4, 30}},
      {13, 2010, {2011, 1, 31}},
      {0, 2010, {2009, 12, 31}},
      {14, 2010, {2011, 2, 28}},
      {-1, 2010, {2009, 11, 30}},
      {12, 9999, {9999, 12, 31}},
      {12, 10000, {}},
      {1, 0, {}},
      {2147483647, 2147483647, {}},
      {-2147483647 - 1, 2010, {}},
  };
  for (const Row& r : rows) {
    const Date d = c.LastDateInMonth(r.month, r.year);
    EXPECT_EQ(d, r.expected) << r.month << "/" << r.year << " gave " << d.Year << "-" << d.Month << "-" << d.Day;
  }
}

TEST_F(TextMembers, ProgramCallSetup) {
  struct Row {
    const char* label;
    std::string call, path, expected;
  };
  const std::vector<Row> rows = {
      {"no %1: appended after a blank", "editor", "/tmp/a b.txt", "editor \"/tmp/a b.txt\""},
      {"%1 replaced", "editor %1 -n", "x.txt", "editor \"x.txt\" -n"},
      {"%1 at the end", "editor %1", "x.txt", "editor \"x.txt\""},
      {"only the first %1", "cmp %1 %1", "x", "cmp \"x\" %1"},
      {"a quoted %1 gets doubled quotes", "editor \"%1\"", "x", "editor \"\"x\"\""},
      {"empty template", "", "x", " \"x\""},
      {"empty path", "editor %1", "", "editor \"\""},
      {"a lone % is not %1", "editor %2 %", "x", "editor %2 % \"x\""},
  };
  for (const Row& r : rows) EXPECT_EQ(c.ProgramCallSetup(r.call, r.path), r.expected) << r.label;
}

// Huge and NUL-filled texts go through every text member whole and in time
// linear in their length (a quadratic member would not finish here).
TEST_F(TextMembers, LargeAndNulTexts) {
  const std::size_t n = 10u << 20;
  std::string big(n, 'x');
  big[0] = '\0';
  big[n / 2] = ':';
  big[n - 1] = '\n';
  EXPECT_EQ(c.StringCountCharacters(big, "x"), static_cast<Long>(n - 3));
  EXPECT_EQ(c.StringCountCharacters(big, "xX", kTrue, kTrue), 4);
  EXPECT_EQ(c.StringCountCharacters(big, "\0"s), 1);
  const std::string trimmed = c.TrimCrLf(big);
  EXPECT_EQ(trimmed.size(), n - 2);
  EXPECT_EQ(trimmed[0], 'x');
  EXPECT_EQ(c.IsTime(big), kTrue);
  EXPECT_EQ(c.IsTime(std::string(n, ':')), kFalse);
  const std::string call = c.ProgramCallSetup(big, big);
  EXPECT_EQ(call.size(), 2 * n + 3);

  // A count that overflows a Long stops at the largest Long.
  const std::string many(300, 'a');
  EXPECT_EQ(c.StringCountCharacters(big, std::string(300, 'x')), 2147483647);
  EXPECT_EQ(c.StringCountCharacters(many, many), 90000);

  const std::string nuls(1u << 20, '\0');
  EXPECT_EQ(c.TrimCrLf(nuls), "");
  EXPECT_EQ(c.TrimCrLf("\0a\0b\0"s), "a\0b"s);
}

}  // namespace
}  // namespace tolva
