// Delimited text into a host array: measuring a file and filling the array.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "component/component_state.h"
#include "textdata/blank_trim.h"
#include "textdata/cell_store.h"
#include "textdata/delimited_input.h"
#include "textdata/delimiter_matcher.h"
#include "textdata/line_cursor.h"
#include "textdata/parallel_rows.h"
#include "textdata/progress_pacer.h"
#include "textdata/row_measure.h"
#include "textdata/row_splitter.h"
#include "textdata/row_walk.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// Stores the fields of one row that fall inside the host's limits, without
// their blanks when `trim`, and tracks the widest and narrowest rows stored.
class ArrayRowSink {
 public:
  static constexpr bool kWantsValues = true;

  ArrayRowSink(HostArray<std::string>& array, std::int64_t max_columns, std::string_view text, bool trim) noexcept
      : array_(array), max_columns_(max_columns), text_end_(text.data() + text.size()), trim_(trim) {}

  std::int64_t widest() const noexcept { return widest_; }
  // The fewest columns any stored row filled; the maximum when none was stored.
  std::int64_t narrowest() const noexcept { return narrowest_; }

  // The row's cells are found once: a host array keeps each row's cells
  // side by side, so a field's cell is an offset from the row's first.
  void StartRow(Long row) noexcept {
    first_column_ = array_.LBound(2);
    last_column_ = array_.UBound(2);
    row_cells_ = array_.At(row, first_column_);  // null: no such row, or not two dimensions
  }

  void Field(std::int64_t column, std::string_view value, std::string* owned) {
    if (column > max_columns_) return;
    widest_ = std::max(widest_, column);
    if (!row_cells_ || column < first_column_ || column > last_column_) return;  // outside the host's array: dropped
    textdata::StoreCell(row_cells_[column - first_column_], value, owned, text_end_, trim_);
  }

  void EndRow(std::int64_t fields) noexcept { narrowest_ = std::min(narrowest_, std::min(fields, max_columns_)); }

 private:
  HostArray<std::string>& array_;
  std::int64_t max_columns_;
  const char* text_end_;
  bool trim_;
  std::int64_t widest_ = 0;  // widest row among the stored cells only
  std::int64_t narrowest_ = std::numeric_limits<std::int64_t>::max();
  std::string* row_cells_ = nullptr;
  std::int64_t first_column_ = 0, last_column_ = -1;
};

// One line of the array reader: stored when its row is within MaxRows,
// else only split to find where the row ends. Kept to cache lines of its
// own, as two of them may work side by side.
struct alignas(64) ArrayRows {
  ArrayRowSink sink;
  std::int64_t max_rows;
  bool operator()(textdata::RowWalk& walk, std::int64_t number) {
    const bool storing = number <= max_rows;
    const std::string_view line = storing ? walk.cursor.Next() : walk.NextLine();
    if (line.empty()) return false;
    if (storing) {
      sink.StartRow(static_cast<Long>(number));
      sink.EndRow(walk.splitter.Split(line, sink));
    } else {
      walk.splitter.Count(line, walk.scan);
    }
    return true;
  }
};

}  // namespace

Boolean Tolva2011Register::ReadFileToArrayGetSize(const std::string& FilePath, Long& ActualRows, Long& ActualColumns,
                                                  std::string& ErrorMessage, const std::string& Delimiter,
                                                  Long TestRows) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    textdata::ProgressPacer progress(*s_);
    textdata::DelimitedInput input;
    if (!input.Open(*this, *s_, progress, FilePath, Delimiter, "Testing File", ErrorMessage)) return kFalse;
    textdata::LineCursor& cursor = input.cursor();
    textdata::RowSplitter& splitter = input.splitter();
    const textdata::DelimiterMatcher& delimiter = input.delimiter();
    textdata::LineScan scan{};
    std::int64_t rows = 0;
    std::int64_t columns = 0;
    ActualRows = 0;
    ActualColumns = 0;
    progress.ClearCancel();
    progress.Report("Testing Values", 0);
    // With no host to report to or to stop the test, nothing can tell one
    // walk from two: the text is measured on two processors.
    if (!s_->events && !s_->container) {
      textdata::RowMeasure measure;
      if (textdata::MeasureRowsInParallel(cursor.Text(), delimiter, TestRows, measure)) {
        ActualRows = textdata::ToLong(measure.rows);
        ActualColumns = textdata::ToLong(measure.columns);
        return kTrue;
      }
    }
    while (!cursor.AtEnd()) {
      const std::string_view line = cursor.Next(delimiter.FirstLower(), delimiter.FirstUpper(), scan);
      if (line.empty()) continue;
      ++rows;
      // The first TestRows rows are passed over when measuring the width,
      // but a quoted row is still split: its fields may swallow lines.
      const std::int64_t width = splitter.Count(line, scan);
      if (TestRows <= 0 || rows > TestRows) columns = std::max(columns, width);
      if (progress.Step("Testing Values", rows)) {
        ActualRows = textdata::ToLong(rows);
        ActualColumns = textdata::ToLong(columns);
        ErrorMessage = "Test Interrupted.";
        return kFalse;
      }
    }
    ActualRows = textdata::ToLong(rows);
    ActualColumns = textdata::ToLong(columns);
    progress.Report("Test Complete", rows);
    return kTrue;
  });
}

Boolean Tolva2011Register::ReadFileToArray(const std::string& FilePath, HostArray<std::string>& InputArray,
                                           Long MaxRows, Long MaxColumns, Long& ReturnedRows, Long& ReturnedColumns,
                                           Long& ActualRows, Long& ActualColumns, std::string& ErrorMessage,
                                           const std::string& Delimiter, Boolean TrimValues) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    textdata::ProgressPacer progress(*s_);
    textdata::DelimitedInput input;
    if (!input.Open(*this, *s_, progress, FilePath, Delimiter, "Reading File", ErrorMessage)) return kFalse;
    const textdata::LineCursor& cursor = input.cursor();
    const std::int64_t max_rows = MaxRows;
    std::int64_t rows = 0;
    ActualRows = 0;
    ActualColumns = 0;
    // With no host to report to or to stop the read, no host code runs
    // until it returns, so nothing can tell in which order the values were
    // stored and trimmed: they are trimmed as they are stored, and a second
    // thread may fill the rows of the second half of a large text meanwhile.
    const bool unobserved = !s_->events && !s_->container;
    const bool trim_on_store = unobserved && IsTrue(TrimValues);
    ArrayRows visit{ArrayRowSink(InputArray, MaxColumns, cursor.Text(), trim_on_store), max_rows};
    ArrayRows second = visit;
    progress.ClearCancel();
    progress.Report("Extracting Values", 0);
    std::int64_t widest = 0;
    if (unobserved && textdata::VisitRowsInParallel(cursor.Text(), input.delimiter(), visit, second, rows)) {
      widest = std::max(visit.sink.widest(), second.sink.widest());
    } else {
      textdata::RowWalk walk(cursor.Text(), input.delimiter());
      while (!walk.cursor.AtEnd()) {
        if (!visit(walk, rows + 1)) continue;
        ++rows;
        if (progress.Step("Extracting Values", rows)) {
          ActualRows = textdata::ToLong(rows);
          ActualColumns = textdata::ToLong(visit.sink.widest());
          ErrorMessage = "Read Interrupted.";
          return kFalse;
        }
      }
      widest = visit.sink.widest();
    }
    ActualRows = textdata::ToLong(rows);
    ActualColumns = textdata::ToLong(widest);

    Boolean result = kFalse;
    if (rows < 1) {
      ReturnedRows = 0;  // ReturnedColumns is left as the host passed it
    } else {
      // Limits of 0 or below return no rows or columns rather than a negative count.
      ReturnedRows = textdata::ToLong(std::clamp<std::int64_t>(max_rows, 0, rows));
      ReturnedColumns = textdata::ToLong(std::clamp<std::int64_t>(MaxColumns, 0, widest));
      result = kTrue;
      // Cells the read stored were trimmed already; the pass is left out
      // when every row filled all the columns it would trim.
      const bool all_trimmed =
          trim_on_store && std::min(visit.sink.narrowest(), second.sink.narrowest()) >= ReturnedColumns;
      if (IsTrue(TrimValues) && !all_trimmed) {
        progress.Report("Triming Values", 0);
        for (std::int64_t r = 1; r <= ReturnedRows; ++r) {
          for (std::int64_t c = 1; c <= ReturnedColumns; ++c)
            if (std::string* cell = InputArray.At(static_cast<Long>(r), static_cast<Long>(c)))
              textdata::TrimBlanks(*cell);
          // The extraction text, on purpose, also while trimming: hosts match on it.
          if (progress.Step("Extracting Values", r)) {
            ErrorMessage = "Read Interrupted.";
            return result;  // the values were read; a stopped trim still reports success
          }
        }
      }
    }
    progress.Report("Read Complete", rows);
    return result;
  });
}

}  // namespace tolva
