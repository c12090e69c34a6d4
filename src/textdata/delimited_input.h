// What every delimited reader starts from: the delimiter checked, the file's
// text loaded with ReadFileFull's checks and texts, a cursor over it and the
// one row splitter, with the two opening progress events between.
#ifndef TOLVA_SRC_TEXTDATA_DELIMITED_INPUT_H_
#define TOLVA_SRC_TEXTDATA_DELIMITED_INPUT_H_

#include <optional>
#include <string>

#include "component/component_state.h"
#include "textdata/delimiter_matcher.h"
#include "textdata/file_text.h"
#include "textdata/line_cursor.h"
#include "textdata/progress_pacer.h"
#include "textdata/row_splitter.h"
#include "tolva/tolva2011register.h"

namespace tolva::textdata {

class DelimitedInput {
 public:
  DelimitedInput() = default;
  DelimitedInput(const DelimitedInput&) = delete;
  DelimitedInput& operator=(const DelimitedInput&) = delete;

  // Raises `opening` + " - " + the file's name, loads the text and raises
  // `opening` + " Starting". False with `error` set when the delimiter is
  // empty (before any event: an empty delimiter would match everywhere
  // without moving on) or the file can't be read.
  bool Open(Tolva2011Register& component, detail::ComponentState& state, ProgressPacer& progress,
            const std::string& path, const std::string& delimiter, const std::string& opening, std::string& error) {
    if (delimiter.empty()) {
      error = component.ErrorMessageNotDefined("Delimiter");
      return false;
    }
    progress.Report(opening + " - " + component.FileName(path), 0);
    if (!text_.Load(component, state.services.files.get(), path, error)) return false;
    cursor_.emplace(text_.View());
    delimiter_.emplace(delimiter);
    splitter_.emplace(*cursor_, *delimiter_);
    progress.Report(opening + " Starting", 0);
    return true;
  }

  LineCursor& cursor() { return *cursor_; }
  RowSplitter& splitter() { return *splitter_; }
  const DelimiterMatcher& delimiter() const { return *delimiter_; }

 private:
  FileText text_;
  std::optional<LineCursor> cursor_;
  std::optional<DelimiterMatcher> delimiter_;
  std::optional<RowSplitter> splitter_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_DELIMITED_INPUT_H_
