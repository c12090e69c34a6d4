// The row measurer against splitting, on random texts in memory.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "textdata/delimiter_matcher.h"
#include "textdata/line_cursor.h"
#include "textdata/quoted_row_count.h"
#include "textdata/row_splitter.h"

namespace tolva::textdata {
namespace {

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

// Measuring rows from the scan must give the widths splitting gives, and both quoted-row counts must agree.
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

}  // namespace
}  // namespace tolva::textdata
