// One walk through the rows of a delimited text: a cursor and a splitter of
// its own, so that two threads can walk the same text at once.
#ifndef TOLVA_SRC_TEXTDATA_ROW_WALK_H_
#define TOLVA_SRC_TEXTDATA_ROW_WALK_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "textdata/byte_scan.h"
#include "textdata/delimiter_matcher.h"
#include "textdata/line_cursor.h"
#include "textdata/row_splitter.h"

namespace tolva::textdata {

// Each walk keeps to cache lines of its own: two threads update theirs at
// every row, and sharing a line would have them wait on each other.
struct alignas(64) RowWalk {
  RowWalk(std::string_view text, const DelimiterMatcher& d, std::size_t from = 0) noexcept
      : cursor(text), splitter(cursor, d), delimiter(d) {
    cursor.Seek(from);
  }
  RowWalk(const RowWalk&) = delete;
  RowWalk& operator=(const RowWalk&) = delete;

  // The width of the next row, or -1 at the end of the text.
  std::int64_t NextRow() {
    while (!cursor.AtEnd()) {
      const std::string_view line = NextLine();
      if (!line.empty()) return splitter.Count(line, scan);
    }
    return -1;
  }
  // The next line, scanned for what Count needs.
  std::string_view NextLine() noexcept { return cursor.Next(delimiter.FirstLower(), delimiter.FirstUpper(), scan); }

  LineCursor cursor;
  RowSplitter splitter;
  const DelimiterMatcher& delimiter;
  LineScan scan{};
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_ROW_WALK_H_
