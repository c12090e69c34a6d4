// Reading the rows of a large delimited text on two processors, for the
// readers that store them: the first thread takes the rows from the top,
// the second first counts its way to a row start near the middle (counting
// is several times quicker than storing) and takes the rows from there.
// Both walks find the same rows, so they meet exactly where the second
// started, and every row is handed over once, with its number.
#ifndef TOLVA_SRC_TEXTDATA_PARALLEL_ROWS_H_
#define TOLVA_SRC_TEXTDATA_PARALLEL_ROWS_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <thread>

#include "textdata/delimiter_matcher.h"
#include "textdata/row_measure.h"
#include "textdata/row_walk.h"

namespace tolva::textdata {

// Hands every line of `text` to a visitor: `visit(walk, number)` takes the
// next line from walk.cursor, handles it as row `number` when it is not
// empty, and returns whether it was a row. Rows from the top go to `head`
// on the calling thread, the rest to `tail` on a second thread, so each
// visitor must keep its own state and write only to the places of its own
// rows. No host code may run meanwhile: callers use this only when nobody
// listens to their progress. `rows` receives the number of rows. Returns
// false, having handed over nothing, when the text is small, the machine
// has one processor, or no thread can be started; once it has started it
// always finishes the text (the first thread takes over the rest if the
// second fails).
template <class Visit>
bool VisitRowsInParallel(std::string_view text, const DelimiterMatcher& delimiter, Visit& head, Visit& tail,
                         std::int64_t& rows) {
  constexpr std::size_t kUnknown = std::numeric_limits<std::size_t>::max();
  if (!WorthASecondThread(text.size())) return false;
  // The second thread counts its way to its first row before it stores
  // any, so it is given a little less than half to store.
  const std::size_t middle = MiddleLineStart(text, text.size() / 32 * 17);
  if (middle >= text.size()) return false;

  std::atomic<std::size_t> meet{kUnknown};  // where the second thread's rows start
  std::atomic<bool> stop{false};
  struct alignas(64) Tally {
    std::int64_t rows = 0;
    bool done = false;
  } tally;
  RowWalk second(text, delimiter);
  std::jthread helper;
  try {
    helper = std::jthread([&] {
      try {
        std::int64_t number = 0;
        while (second.cursor.Position() < middle && second.NextRow() >= 0) ++number;
        const std::size_t at = second.cursor.AtEnd() ? text.size() : second.cursor.Position();
        meet.store(at, std::memory_order_release);
        meet.notify_one();
        const std::int64_t base = number;
        while (!second.cursor.AtEnd()) {
          if (tail(second, number + 1) && (++number & 4095) == 0 && stop.load(std::memory_order_relaxed)) return;
        }
        tally.rows = number - base;
        tally.done = true;
      } catch (...) {  // out of memory: the first thread reads on alone
        std::size_t unknown = kUnknown;
        if (meet.compare_exchange_strong(unknown, text.size())) meet.notify_one();
      }
    });
  } catch (...) {  // no thread to be had
    return false;
  }
  // However this scope is left, the second thread is told to stop before
  // the jthread joins it.
  struct StopOnExit {
    std::atomic<bool>& stop;
    ~StopOnExit() { stop.store(true, std::memory_order_relaxed); }
  } stop_on_exit{stop};

  RowWalk first(text, delimiter);
  std::int64_t number = 0;
  std::size_t until = kUnknown;
  while (!first.cursor.AtEnd()) {
    const std::size_t at = first.cursor.Position();
    if (at >= middle && until == kUnknown) {
      meet.wait(kUnknown, std::memory_order_acquire);
      until = meet.load(std::memory_order_acquire);
    }
    if (at >= until) {
      if (at > until) {  // the walks disagree, which they never should: this one reads on alone
        stop.store(true, std::memory_order_relaxed);
        helper.join();
        tally.done = false;
      }
      break;
    }
    if (head(first, number + 1)) ++number;
  }
  if (helper.joinable()) helper.join();
  if (!first.cursor.AtEnd() && !tally.done) {
    // The second thread gave up: its rows are read again from here.
    while (!first.cursor.AtEnd())
      if (head(first, number + 1)) ++number;
  }
  rows = number + (tally.done ? tally.rows : 0);
  return true;
}

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_PARALLEL_ROWS_H_
