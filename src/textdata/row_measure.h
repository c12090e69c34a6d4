// Measuring a delimited text on two processors: the number of rows and the
// widest row, exactly as one walk from the top would find them.
#ifndef TOLVA_SRC_TEXTDATA_ROW_MEASURE_H_
#define TOLVA_SRC_TEXTDATA_ROW_MEASURE_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "textdata/delimiter_matcher.h"

namespace tolva::textdata {

// Below this size one walk is quicker than starting a thread.
constexpr std::size_t kParallelFrom = 8u << 20;

// Whether a text of `size` bytes is worth a second thread: it is large,
// and the machine has a second processor to run it on.
bool WorthASecondThread(std::size_t size) noexcept;

struct RowMeasure {
  std::int64_t rows = 0;     // rows that are not empty lines
  std::int64_t columns = 0;  // the widest of them past the first `test_rows`
};

// Measures `text` with a second thread walking its second half, when the
// text is large enough to gain from it. The second walk starts at a line
// start chosen near the middle and is kept only when the first walk, from
// the top, arrives at exactly that position between two rows (a quoted
// field running across the middle makes it arrive elsewhere; the first walk
// then goes on alone). Returns false, having done nothing, when the text is
// small, has no usable middle or no thread can be started: the caller then
// walks it itself. Raises no event and cannot be stopped, so callers use it
// only when nobody listens to their progress.
bool MeasureRowsInParallel(std::string_view text, const DelimiterMatcher& delimiter, std::int64_t test_rows,
                           RowMeasure& out) noexcept;

// A line start at or after byte `from` of `text` (by default its middle)
// that follows a line without a quote, as LineCursor would arrive at it;
// text.size() when there is none.
std::size_t MiddleLineStart(std::string_view text, std::size_t from) noexcept;
inline std::size_t MiddleLineStart(std::string_view text) noexcept {
  return MiddleLineStart(text, text.size() / 2);
}

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_ROW_MEASURE_H_
