#include "textdata/row_measure.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "textdata/byte_scan.h"
#include "textdata/line_cursor.h"
#include "textdata/row_walk.h"

namespace tolva::textdata {

namespace {

constexpr char kCR = '\r';
constexpr char kLF = '\n';
// The widths of the second half's first rows are kept until the first
// half's row count says which of them fall among the first TestRows; more
// than this many is not worth the memory, and the text is walked once.
constexpr std::int64_t kMostRememberedRows = 1 << 20;
// How many lines past the middle are tried for one that follows a line
// without a quote: a quoted field holding line ends always has a quote in
// its first line, so the middle is rarely inside one after such a line.
constexpr int kCandidateLines = 64;

bool IsLineEnd(char c) noexcept {
  return c == kCR || c == kLF;
}

// What the second thread found from its start to the end of the text.
struct alignas(64) Tail {
  std::int64_t rows = 0;
  std::int64_t widest = 0;          // of its rows past the first `test_rows`
  std::vector<std::int64_t> early;  // widths of its first `test_rows` rows
  bool failed = false;
};

void MeasureTail(RowWalk& walk, std::int64_t test_rows, const std::atomic<bool>& stop, Tail& tail) noexcept {
  try {
    for (std::int64_t width; (width = walk.NextRow()) >= 0;) {
      // A row's number in the whole text is at least its number here, so
      // a row past test_rows here is past it there too.
      if (++tail.rows > test_rows)
        tail.widest = std::max(tail.widest, width);
      else
        tail.early.push_back(width);
      if ((tail.rows & 4095) == 0 && stop.load(std::memory_order_relaxed)) return;
    }
  } catch (...) {  // no memory for the early widths
    tail.failed = true;
  }
}

}  // namespace

bool WorthASecondThread(std::size_t size) noexcept {
  static const bool two_processors = std::thread::hardware_concurrency() >= 2;
  return size >= kParallelFrom && two_processors;
}

std::size_t MiddleLineStart(std::string_view text, std::size_t from) noexcept {
  const std::size_t n = text.size();
  const char* p = text.data();
  std::size_t line_start = n;  // unknown until a line end has been passed
  std::size_t first = n;
  for (std::size_t at = from, tries = 0; tries <= kCandidateLines; ++tries) {
    // The next line end that follows a byte of text: the terminator the
    // cursor stops at, whatever line ends come after it.
    std::size_t brk = at;
    for (;;) {
      brk += FindEither(p + brk, n - brk, kCR, kLF);
      if (brk >= n) return first;
      if (brk > 0 && !IsLineEnd(p[brk - 1])) break;
      ++brk;
    }
    // Past it as LineCursor::Next goes past it: the other kind of line end
    // is skipped, and a position one short of the end is the end.
    std::size_t next = brk + 1;
    while (next + 1 < n && IsLineEnd(p[next]) && p[next] != p[brk]) ++next;
    if (next + 1 >= n) return first;
    if (first == n) first = next;
    if (line_start != n && !std::memchr(p + line_start, '"', brk - line_start)) return next;
    line_start = at = next;
  }
  return first;
}

bool MeasureRowsInParallel(std::string_view text, const DelimiterMatcher& delimiter, std::int64_t test_rows,
                           RowMeasure& out) noexcept {
  if (!WorthASecondThread(text.size()) || test_rows > kMostRememberedRows) return false;
  const std::size_t middle = MiddleLineStart(text);
  if (middle >= text.size()) return false;
  try {
    RowWalk head(text, delimiter, 0);
    RowWalk second(text, delimiter, middle);
    Tail tail;
    std::atomic<bool> stop{false};
    std::jthread helper([&] { MeasureTail(second, test_rows, stop, tail); });
    // Whatever way this scope is left, the second walk is told to stop
    // before the thread is joined.
    struct StopOnExit {
      std::atomic<bool>& stop;
      ~StopOnExit() { stop.store(true, std::memory_order_relaxed); }
    } stop_on_exit{stop};

    std::int64_t rows = 0, widest = 0;
    const auto walk_head = [&](std::size_t until) {
      while (head.cursor.Position() < until) {
        const std::int64_t width = head.NextRow();
        if (width < 0) break;
        if (++rows > test_rows) widest = std::max(widest, width);
      }
    };
    walk_head(middle);
    const bool met = head.cursor.Position() == middle && !head.cursor.AtEnd();
    if (!met) stop.store(true, std::memory_order_relaxed);
    helper.join();
    if (met && !tail.failed) {
      for (std::size_t k = 0; k < tail.early.size(); ++k)
        if (rows + static_cast<std::int64_t>(k) + 1 > test_rows) widest = std::max(widest, tail.early[k]);
      out = RowMeasure{rows + tail.rows, std::max(widest, tail.widest)};
      return true;
    }
    // The halves did not meet between two rows: the first walk goes on alone.
    walk_head(text.size());
    out = RowMeasure{rows, widest};
    return true;
  } catch (...) {  // no thread to be had: the caller walks the text
    return false;
  }
}

}  // namespace tolva::textdata
