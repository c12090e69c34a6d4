// The line cursor the delimited readers step through: it walks a text held
// in memory and hands out one line at a time, without its terminator, as a
// view into the text (nothing is copied).
#ifndef TOLVA_SRC_TEXTDATA_LINE_CURSOR_H_
#define TOLVA_SRC_TEXTDATA_LINE_CURSOR_H_

#include <cstddef>
#include <string_view>

#include "textdata/byte_scan.h"

namespace tolva::textdata {

class LineCursor {
 public:
  explicit LineCursor(std::string_view text) noexcept : text_(text) {}
  LineCursor(const LineCursor&) = delete;
  LineCursor& operator=(const LineCursor&) = delete;

  // The next line. A line ends at the first CR or LF; the characters after
  // it that are the other kind of line end are skipped with it, so CR LF
  // (and LF CR) end one line, while CR LF CR LF leaves an empty line
  // between. Once the last line has been handed out AtEnd() is true, and
  // further calls return an empty line.
  //
  // Kept on purpose, because hosts rely on these readings of CR LF text:
  // the skip stops one character short of the end of the text, so a final
  // line of a single character after the last line end is never delivered,
  // and the line before it is the last.
  std::string_view Next() noexcept;

  // The same line, scanned on the way for the bytes `a` and `b` and for
  // quotes (see ScanLine), so a caller that only measures rows need not
  // read it a second time.
  std::string_view Next(char a, char b, LineScan& scan) noexcept;

  bool AtEnd() const noexcept { return end_; }

  // Where the next line starts. Seek() puts the cursor at a position that
  // an earlier walk of the same text reported, or at a line start found
  // the same way Next() finds them (see SplitPoint in row_measure.cc).
  std::size_t Position() const noexcept { return pos_; }
  void Seek(std::size_t pos) noexcept {
    pos_ = pos;
    end_ = false;
  }
  const std::string_view& Text() const noexcept { return text_; }

 private:
  // Hands out the line of `length` bytes at pos_ and moves past its end.
  std::string_view Take(std::size_t length) noexcept;

  std::string_view text_;
  std::size_t pos_ = 0;  // index of the next character to read
  bool end_ = false;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_LINE_CURSOR_H_
