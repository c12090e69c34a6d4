// The line cursor and the row splitter, on texts in memory.
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

std::vector<std::string> AllLines(const std::string& text) {
  LineCursor cursor(text);
  std::vector<std::string> lines;
  for (int guard = 0; !cursor.AtEnd() && guard < 1000; ++guard) lines.emplace_back(cursor.Next());
  return lines;
}

TEST(LineCursorTest, SplitsLinesAsHostsExpect) {
  struct Row {
    const char* label;
    std::string text;
    std::vector<std::string> lines;
  };
  const Row rows[] = {
      {"CR LF then a two-character last line", "a\r\nbc", {"a", "bc"}},
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
    EXPECT_EQ(AllLines(row.text), row.lines) << row.label;
    // The scanning cursor of the size test must cut the same lines.
    LineCursor cursor(row.text);
    std::vector<std::string> scanned;
    LineScan scan{};
    for (int guard = 0; !cursor.AtEnd() && guard < 1000; ++guard) scanned.emplace_back(cursor.Next(',', ',', scan));
    EXPECT_EQ(scanned, row.lines) << row.label << " (scanned)";
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
      // Mostly line content; a line end only now and then.
      for (char& c : text) c = alphabet[rng() % (rng() % 50 == 0 ? 8 : 5)];
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

TEST(LineCursorTest, StaysAtTheEndOnceThere) {
  LineCursor cursor("ab\r\ncd");
  cursor.Next();
  cursor.Next();
  ASSERT_TRUE(cursor.AtEnd());
  EXPECT_EQ(cursor.Next(), "");
  EXPECT_TRUE(cursor.AtEnd());
}

// Collects every row as its list of fields.
struct CollectingSink {
  static constexpr bool kWantsValues = true;
  std::vector<std::string> fields;
  void Field(std::int64_t column, std::string_view value, std::string*) {
    if (static_cast<std::size_t>(column) != fields.size() + 1) fields.push_back("<column out of order>");
    fields.emplace_back(value);
  }
};

std::vector<std::vector<std::string>> SplitAll(const std::string& text, const std::string& delimiter,
                                               bool& counts_agree) {
  std::vector<std::vector<std::string>> rows;
  counts_agree = true;
  for (int pass = 0; pass < 2; ++pass) {
    LineCursor cursor(text);
    DelimiterMatcher matcher(delimiter);
    RowSplitter splitter(cursor, matcher);
    std::size_t row = 0;
    LineScan scan{};
    while (!cursor.AtEnd()) {
      const std::string_view line =
          pass == 0 ? cursor.Next() : cursor.Next(matcher.FirstLower(), matcher.FirstUpper(), scan);
      if (line.empty()) continue;
      if (pass == 0) {
        CollectingSink sink;
        const std::int64_t n = splitter.Split(line, sink);
        if (n != static_cast<std::int64_t>(sink.fields.size())) counts_agree = false;
        rows.push_back(sink.fields);
      } else {
        // Measuring from the scan must find the same rows and widths as storing.
        if (row >= rows.size() || splitter.Count(line, scan) != static_cast<std::int64_t>(rows[row].size()))
          counts_agree = false;
      }
      ++row;
    }
    if (pass == 1 && row != rows.size()) counts_agree = false;
  }
  return rows;
}

// Measuring rows from the scan (masks for quoted rows) against splitting
// them, on random texts dense in quotes, delimiters and line ends, with
// lines long enough to cross many 64-byte windows.
TEST(RowSplitterTest, MeasuringAgreesWithSplittingOnRandomText) {
  std::mt19937 rng(11);
  const char alphabet[] = {'a', ',', '"', 'x', 'X', '\r', '\n', ' '};
  for (const char* delimiter : {",", "x", "\"", ",,"}) {
    for (int trial = 0; trial < 300; ++trial) {
      std::string text(rng() % 400, ' ');
      const unsigned line_ends = rng() % 3 == 0 ? 8 : 6;  // some texts are one long line
      for (char& c : text) c = alphabet[rng() % line_ends];
      if (trial % 2) {
        // Rows quoted as writers quote them (with now and then a quote out of
        // place), long enough to span several 64-byte windows.
        const std::string d = delimiter;
        text.clear();
        for (int row = static_cast<int>(rng() % 6); row >= 0; --row) {
          for (int field = static_cast<int>(rng() % 30); field >= 0; --field) {
            switch (rng() % 5) {
              case 0:
                text += "\"a" + d + "b\"\"c\"";
                break;
              case 1:
                text += "\"\"";
                break;
              case 2:
                text += "\"" + std::string(rng() % 90, 'q') + "\"";
                break;
              case 3:
                text += std::string(rng() % 70, 'a');
                break;
              default:
                text += rng() % 20 ? "" : "a\"b";
                break;
            }
            if (field) text += d;
          }
          if (rng() % 4 == 0) text += d;
          text += rng() % 10 ? "\r\n" : "";
        }
      }
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
          if (pass == 1 && std::string_view(delimiter).size() == 1) {
            // Both versions of the quoted-row count give the same answer.
            const char* end = text.data() + text.size();
            EXPECT_EQ(CountWellQuotedRow(line, end, matcher.FirstLower(), matcher.FirstUpper()),
                      CountWellQuotedRowBaseline(line, end, matcher.FirstLower(), matcher.FirstUpper()));
          }
          (pass == 0 ? split : measured)
              .push_back(pass == 0 ? splitter.Split(line, counter) : splitter.Count(line, scan));
        }
      }
      ASSERT_EQ(measured, split) << "delimiter " << delimiter << ", text: " << ::testing::PrintToString(text);
    }
  }
}

TEST(RowSplitterTest, PlainAndQuotedRows) {
  using Rows = std::vector<std::vector<std::string>>;
  struct Row {
    const char* label;
    std::string text;
    std::string delimiter;
    Rows expected;
  };
  const Row rows[] = {
      {"plain row keeps a trailing empty field", "a,b,\r\n", ",", {{"a", "b", ""}}},
      {"quoted row drops the trailing empty field", "\"a\",b,\r\n", ",", {{"a", "b"}}},
      {"quoted field holding the delimiter", "\"x,y\",z\r\n", ",", {{"x,y", "z"}}},
      {"doubled quote reads as one", "\"say \"\"hi\"\"\",2\r\n", ",", {{"say \"hi\"", "2"}}},
      {"empty quoted field", "\"\",x\r\n", ",", {{"", "x"}}},
      {"four quotes are one quote", "\"\"\"\"\r\n", ",", {{"\""}}},
      {"quote inside an unquoted field is literal", "a,b\"c,d\r\n", ",", {{"a", "b\"c", "d"}}},
      {"quote in an unquoted last field, trailing delimiter", "a,b\"c,\r\n", ",", {{"a", "b\"c"}}},
      {"character after a closing quote is skipped", "\"a\"b,c\r\n", ",", {{"a", "", "c"}}},
      {"field spans two lines, joined by CR LF", "\"one\r\ntwo\",3\r\nx,y\r\n", ",", {{"one\r\ntwo", "3"}, {"x", "y"}}},
      {"LF line break inside a field becomes CR LF", "\"one\ntwo\",3\nx,y\n", ",", {{"one\r\ntwo", "3"}, {"x", "y"}}},
      {"empty lines inside a field are kept", "\"a\r\n\r\nb\",c\r\n", ",", {{"a\r\n\r\nb", "c"}}},
      {"quote never closes: runs to the end of the text",
       "x,\"open\r\nmore\r\nrest",
       ",",
       {{"x", "open\r\nmore\r\nrest"}}},
      {"unclosed quote on the last line", "a,b\r\n\"tail", ",", {{"a", "b"}, {"tail"}}},
      {"opening quote at the end of the line", "a,\"\r\nbc\"\r\n", ",", {{"a", "\r\nbc"}}},
      {"empty lines are not rows", "a\r\n\r\n\r\nb,c\r\n", ",", {{"a"}, {"b", "c"}}},
      {"delimiter letters match in either case", "1x2X3\r\n", "x", {{"1", "2", "3"}}},
      {"upper-case delimiter letter", "1x2X3\r\n", "X", {{"1", "2", "3"}}},
      {"long delimiter: matched at its start, tail stays", "a;;b;;c\r\n", ";;", {{"a", ";b", ";c"}}},
      {"long delimiter in a quoted row", "\"q\";;b\r\n", ";;", {{"q", ";b"}}},
      {"tab delimiter", "a\tb\r\n", "\t", {{"a", "b"}}},
      {"only delimiters", ",,,\r\n", ",", {{"", "", "", ""}}},
      {"NUL bytes in values", std::string("a\0,b\r\n", 6), ",", {{std::string("a\0", 2), "b"}}},
      {"long delimiter that does not fit at the end", "ab;\r\n", ";;", {{"ab;"}}},
  };
  for (const Row& row : rows) {
    bool counts_agree = false;
    EXPECT_EQ(SplitAll(row.text, row.delimiter, counts_agree), row.expected) << row.label;
    EXPECT_TRUE(counts_agree) << row.label;
  }
}

TEST(DelimiterMatcherTest, FindsAndCounts) {
  struct Row {
    const char* label;
    std::string delimiter, line;
    std::size_t from, found;
    std::int64_t count;
  };
  constexpr std::size_t npos = DelimiterMatcher::npos;
  const Row rows[] = {
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
