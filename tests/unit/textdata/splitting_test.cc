// The line cursor, the byte scanners and the row measurer against plain
// byte-by-byte answers, on texts in memory.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "textdata/byte_scan.h"
#include "textdata/delimiter_matcher.h"
#include "textdata/line_cursor.h"
#include "textdata/quoted_row_count.h"
#include "textdata/row_splitter.h"

namespace tolva::textdata {
namespace {

TEST(LineCursorTest, SplitsLinesAsHostsExpectWithOrWithoutScanning) {
  struct Row {
    const char* label;
    std::string text;
    std::vector<std::string> lines;
  } rows[] = {
      {"a one-character last line after CR LF is not delivered", "a\r\nb", {"a"}},
      {"CR LF CR LF leaves an empty line", "a\r\n\r\nbc", {"a", "", "bc"}},
      {"trailing CR LF", "ab\r\ncd\r\n", {"ab", "cd"}},
      {"LF-only text is split at LF", "ab\ncd\n", {"ab", "cd"}},
      {"CR-only text is split at CR", "ab\rcd\r", {"ab", "cd"}},
      {"LF text with an empty line", "ab\n\ncd", {"ab", "", "cd"}},
      {"LF CR counts as one line end", "ab\n\rcd", {"ab", "cd"}},
      {"mixed: LF first, CR LF later", "a\nbb\r\ncd", {"a", "bb", "cd"}},
      {"lone CR before a later LF", "ab\rcd\nef", {"ab", "cd", "ef"}},
      {"CR CR is two line ends", "a\r\rbc", {"a", "", "bc"}},
      {"one character, no line end", "x", {"x"}},
      {"only CR LF", "\r\n", {""}},
      {"leading empty line", "\r\nab", {"", "ab"}},
      {"NUL bytes are ordinary characters", std::string("a\0b\r\ncd", 7), {std::string("a\0b", 3), "cd"}},
  };
  for (const Row& row : rows) {
    for (bool scanning : {false, true}) {
      LineCursor cursor(row.text);
      std::vector<std::string> lines;
      LineScan scan{};
      for (int guard = 0; !cursor.AtEnd() && guard < 100; ++guard)
        lines.emplace_back(scanning ? cursor.Next(',', ',', scan) : cursor.Next());
      EXPECT_EQ(lines, row.lines) << row.label << (scanning ? " (scanning)" : "");
      EXPECT_EQ(cursor.Next(), "") << row.label << ": stays at the end";
      EXPECT_TRUE(cursor.AtEnd()) << row.label;
    }
  }
}

// Both scanners against a byte-by-byte count, on random lines of every
// length around the vector widths and long enough to fill the baseline's
// byte-wide counters many times over.
TEST(ScanLineTest, AgreesWithAPlainCount) {
  std::mt19937 rng(7);
  const char alphabet[] = {'a', 'A', ',', '"', 'x', '\r', '\n', ';'};
  for (std::size_t length : {0, 1, 15, 16, 17, 31, 32, 33, 100, 4079, 4080, 4081, 20000}) {
    for (int trial = 0; trial < 20; ++trial) {
      std::string text(length, 'x');
      for (char& c : text) c = alphabet[rng() % (rng() % 50 == 0 ? 8 : 5)];  // a line end only now and then
      std::size_t end = 0, matches = 0;
      bool quote = false;
      for (; end < text.size() && text[end] != '\r' && text[end] != '\n'; ++end) {
        matches += (text[end] == 'a' || text[end] == 'A') ? 1 : 0;
        quote = quote || text[end] == '"';
      }
      LineScan fast{}, baseline{};
      ScanLine(text.data(), text.size(), 'a', 'A', fast);
      ScanLineBaseline(text.data(), text.size(), 'a', 'A', baseline);
      for (const LineScan& scan : {fast, baseline}) {
        EXPECT_EQ(scan.length, end) << length;
        EXPECT_EQ(scan.matches, matches) << length;
        EXPECT_EQ(scan.quote, quote) << length;
      }
    }
  }
}

// A random text dense in quotes, delimiters and line ends; every other one
// is rows quoted as writers quote them (with now and then a quote out of
// place), with lines long enough to cross many 64-byte windows.
std::string RandomRows(std::mt19937& rng, const std::string& d, bool quoted) {
  const char alphabet[] = {'a', ',', '"', 'x', 'X', '\r', '\n', ' '};
  std::string text(rng() % 400, ' ');
  const unsigned line_ends = rng() % 3 == 0 ? 8 : 6;  // some texts are one long line
  for (char& c : text) c = alphabet[rng() % line_ends];
  if (!quoted) return text;
  text.clear();
  for (int row = static_cast<int>(rng() % 6); row >= 0; --row) {
    for (int field = static_cast<int>(rng() % 30); field >= 0; --field) {
      const std::string pieces[] = {"\"a" + d + "b\"\"c\"", "\"\"", "\"" + std::string(rng() % 90, 'q') + "\"",
                                    std::string(rng() % 70, 'a'), rng() % 20 ? "" : "a\"b"};
      text += pieces[rng() % 5] + (field ? d : "");
    }
    if (rng() % 4 == 0) text += d;
    text += rng() % 10 ? "\r\n" : "";
  }
  return text;
}

// Measuring rows from the scan (masks for quoted rows) must give the widths
// that splitting them gives, and both quoted-row counts must agree.
TEST(RowSplitterTest, MeasuringAgreesWithSplittingOnRandomText) {
  std::mt19937 rng(11);
  for (const std::string delimiter : {",", "x", "\"", ",,"}) {
    for (int trial = 0; trial < 300; ++trial) {
      const std::string text = RandomRows(rng, delimiter, trial % 2);
      std::vector<std::int64_t> split, measured;
      for (int pass = 0; pass < 2; ++pass) {
        LineCursor cursor(text);
        DelimiterMatcher matcher(delimiter);
        RowSplitter splitter(cursor, matcher);
        LineScan scan{};
        CountingSink counter;
        while (!cursor.AtEnd()) {
          const std::string_view line =
              pass == 0 ? cursor.Next() : cursor.Next(matcher.FirstLower(), matcher.FirstUpper(), scan);
          if (line.empty()) continue;
          if (pass == 0) {
            split.push_back(splitter.Split(line, counter));
            continue;
          }
          measured.push_back(splitter.Count(line, scan));
          if (delimiter.size() == 1) {
            const char* end = text.data() + text.size();
            EXPECT_EQ(CountWellQuotedRow(line, end, matcher.FirstLower(), matcher.FirstUpper()),
                      CountWellQuotedRowBaseline(line, end, matcher.FirstLower(), matcher.FirstUpper()));
          }
        }
      }
      ASSERT_EQ(measured, split) << "delimiter " << delimiter << ", text: " << ::testing::PrintToString(text);
    }
  }
}

TEST(DelimiterMatcherTest, FindsAndCounts) {
  constexpr std::size_t npos = DelimiterMatcher::npos;
  struct Row {
    const char* label;
    std::string delimiter, line;
    std::size_t from, found;
    std::int64_t count;
  } rows[] = {
      {"single character", ",", "a,b,c", 0, 1, 2},
      {"search from after the first", ",", "a,b,c", 2, 3, 2},
      {"none", ",", "abc", 0, npos, 0},
      {"from past the end", ",", "a,", 3, npos, 1},
      {"overlapping long delimiter counts twice", "aa", "aaa", 0, 0, 2},
      {"letters in either case", "aB", "xAbyab", 0, 1, 2},
      {"long line, match near the end", ";", std::string(100, 'x') + ";", 0, 100, 1},
  };
  for (const Row& row : rows) {
    DelimiterMatcher m(row.delimiter);
    EXPECT_EQ(m.Find(row.line, row.from), row.found) << row.label;
    EXPECT_EQ(m.Count(row.line), row.count) << row.label;
  }
}

}  // namespace
}  // namespace tolva::textdata
