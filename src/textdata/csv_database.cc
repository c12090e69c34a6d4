// A CSV file as a small database: the first non-empty line names the
// fields, each later one is a record; a range of records and fields is
// copied into the host's arrays.
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
#include "textdata/row_splitter.h"
#include "textdata/row_walk.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// Where one line's fields go: the header into the names, a record in the
// requested range into the values, each field in the requested field range
// at its place counted from the first field, without its blanks when `trim`.
class DatabaseRowSink {
 public:
  static constexpr bool kWantsValues = true;

  DatabaseRowSink(HostArray<std::string>& names, HostArray<std::string>& values, std::int64_t first_field,
                  std::int64_t last_field, std::string_view text, bool trim) noexcept
      : names_(names),
        values_(values),
        first_field_(first_field),
        last_field_(last_field),
        text_end_(text.data() + text.size()),
        trim_(trim) {}

  // `index` is 0 for the header, else the record's row in the values. The
  // line's cells are found once: a host array keeps a row's cells side by
  // side, so a field's cell is an offset from the first.
  void StartLine(std::int64_t index) noexcept {
    const bool header = index == 0;
    HostArray<std::string>& array = header ? names_ : values_;
    const int dim = header ? 1 : 2;
    first_column_ = array.LBound(dim);
    last_column_ = array.UBound(dim);
    if (header)
      line_cells_ = names_.At(static_cast<Long>(first_column_));
    else  // null: no such row, or not two dimensions
      line_cells_ = index <= std::numeric_limits<Long>::max()
                        ? values_.At(static_cast<Long>(index), static_cast<Long>(first_column_))
                        : nullptr;
  }

  void Field(std::int64_t field, std::string_view value, std::string* owned) {
    if (field < first_field_ || field > last_field_) return;
    const std::int64_t column = field - first_field_ + 1;
    if (!line_cells_ || column < first_column_ || column > last_column_) return;  // outside the host's array: dropped
    textdata::StoreCell(line_cells_[column - first_column_], value, owned, text_end_, trim_);
  }

  // After a record stored into the values, with its number of fields.
  void EndRecord(std::int64_t fields) noexcept {
    ++stored_;
    narrowest_ = std::min(narrowest_, std::min(fields, last_field_) - first_field_ + 1);
  }
  // Records stored into the values, rows 1 on.
  std::int64_t stored() const noexcept { return stored_; }
  // The fewest columns a stored record filled; the maximum when none was stored.
  std::int64_t narrowest() const noexcept { return narrowest_; }

 private:
  HostArray<std::string>& names_;
  HostArray<std::string>& values_;
  std::int64_t first_field_;
  std::int64_t last_field_;
  const char* text_end_;
  bool trim_;
  std::string* line_cells_ = nullptr;
  std::int64_t first_column_ = 0, last_column_ = -1;
  std::int64_t stored_ = 0;
  std::int64_t narrowest_ = std::numeric_limits<std::int64_t>::max();
};

// One line of the database: the header, a record in the range, or a
// record only split to find where it ends. Row 1 is the header, record 0.
// Kept to cache lines of its own, as two of them may work side by side.
struct alignas(64) DatabaseRows {
  DatabaseRowSink sink;
  std::int64_t first_record, last_record;
  bool operator()(textdata::RowWalk& walk, std::int64_t number) {
    const std::string_view line = walk.cursor.Next();
    if (line.empty()) return false;
    const std::int64_t record = number - 1;  // the header is record 0
    if (record == 0) {
      sink.StartLine(0);
      walk.splitter.Split(line, sink);
    } else if (record >= first_record && record <= last_record) {
      sink.StartLine(record - first_record + 1);
      sink.EndRecord(walk.splitter.Split(line, sink));
    } else {
      textdata::CountingSink counter;
      walk.splitter.Split(line, counter);
    }
    return true;
  }
};

}  // namespace

Boolean Tolva2011Register::ReadFileToCSVDatabase(const std::string& FilePath, HostArray<std::string>& FieldNames,
                                                 HostArray<std::string>& FieldValues, Long FirstRecord, Long LastRecord,
                                                 Long FirstField, Long LastField, Long& NumberRecords,
                                                 Long& NumberFields, std::string& ErrorMessage,
                                                 const std::string& Delimiter, Boolean TrimValues) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    textdata::ProgressPacer progress(*s_);
    textdata::DelimitedInput input;
    if (!input.Open(*this, *s_, progress, FilePath, Delimiter, "Reading File", ErrorMessage)) return kFalse;

    // The counts describe the ranges asked for, not what the file holds, and
    // are the plain differences of the arguments: a reversed range gives a
    // negative count (3 to 1 is -1) and stores nothing. Hosts size their
    // loops from these counts, so the classic arithmetic is kept.
    std::int64_t first_record = 1;
    std::int64_t last_record = 0;  // no record is stored
    std::int64_t records = 0;
    if (LastRecord > 0) {
      last_record = LastRecord;
      first_record = FirstRecord < 2 ? 1 : FirstRecord;
      records = last_record - first_record + 1;
    }
    const std::int64_t fields = std::int64_t{LastField} - FirstField + 1;
    const std::int64_t first_field = std::max<Long>(FirstField, 1);
    NumberRecords = textdata::ToLong(records);
    NumberFields = textdata::ToLong(fields);

    // The whole file is read even when the ranges end earlier. With no host
    // to report to or to stop the read, values are trimmed as they are
    // stored and a second thread may take the second half of a large text
    // (see ReadFileToArray).
    const bool unobserved = !s_->events && !s_->container;
    const bool trim_on_store = unobserved && IsTrue(TrimValues);
    const std::string_view text = input.cursor().Text();
    DatabaseRows visit{DatabaseRowSink(FieldNames, FieldValues, first_field, LastField, text, trim_on_store),
                       first_record, last_record};
    DatabaseRows second = visit;
    progress.ClearCancel();
    progress.Report("Extracting Values", 0);
    std::int64_t rows = 0;
    if (!unobserved || !textdata::VisitRowsInParallel(text, input.delimiter(), visit, second, rows)) {
      textdata::RowWalk walk(text, input.delimiter());
      while (!walk.cursor.AtEnd()) {
        if (!visit(walk, rows + 1)) continue;
        ++rows;
        if (progress.Step("Extracting Values", rows - 1)) {
          ErrorMessage = "Read Interrupted.";
          return kFalse;
        }
      }
    }
    const std::int64_t record = rows - 1;  // the last record's number; -1 without a header

    if (IsTrue(TrimValues)) {
      progress.Report("Triming Values", 0);
      // Only cells the host's arrays have can be trimmed; the walks stop at
      // their last index, so a huge range on a small array costs nothing.
      const std::int64_t last_name = std::min<std::int64_t>(fields, FieldNames.Rank() == 1 ? FieldNames.UBound(1) : 0);
      for (std::int64_t f = 1; f <= last_name; ++f)
        if (std::string* name = FieldNames.At(static_cast<Long>(f))) textdata::TrimBlanks(*name);
      const bool two_dim = FieldValues.Rank() == 2;
      const std::int64_t last_row = std::min<std::int64_t>(records, two_dim ? FieldValues.UBound(1) : 0);
      const std::int64_t last_column = std::min<std::int64_t>(fields, two_dim ? FieldValues.UBound(2) : 0);
      // Records the read stored (rows 1 on) were trimmed already; when they
      // filled every column the pass would trim, it starts after them.
      const bool stored_trimmed =
          trim_on_store && std::min(visit.sink.narrowest(), second.sink.narrowest()) >= last_column;
      for (std::int64_t r = stored_trimmed ? visit.sink.stored() + second.sink.stored() + 1 : 1; r <= last_row; ++r) {
        for (std::int64_t f = 1; f <= last_column; ++f)
          if (std::string* cell = FieldValues.At(static_cast<Long>(r), static_cast<Long>(f)))
            textdata::TrimBlanks(*cell);
        if (progress.Step("Triming Values", r)) {
          ErrorMessage = "Read Interrupted.";
          return kTrue;  // the values were read; a stopped trim still reports success
        }
      }
    }
    progress.Report("Read Complete", std::max<std::int64_t>(record, 0));
    return kTrue;
  });
}

}  // namespace tolva
