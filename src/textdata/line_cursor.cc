#include "textdata/line_cursor.h"

#include "textdata/byte_scan.h"

namespace tolva::textdata {

namespace {
constexpr char kCR = '\r';
constexpr char kLF = '\n';
}  // namespace

std::string_view LineCursor::Next() noexcept {
  if (end_) return {};
  const std::size_t n = text_.size();
  if (pos_ >= n) {
    end_ = true;
    return {};
  }
  // The first line end of either kind. Text with only LF (or only CR) line
  // ends is split at them too, so Unix and old Mac files are read line by
  // line instead of never reaching their end.
  return Take(FindEither(text_.data() + pos_, n - pos_, kCR, kLF));
}

std::string_view LineCursor::Next(char a, char b, LineScan& scan) noexcept {
  scan = LineScan{0, 0, false};
  if (end_) return {};
  if (pos_ >= text_.size()) {
    end_ = true;
    return {};
  }
  ScanLine(text_.data() + pos_, text_.size() - pos_, a, b, scan);
  return Take(scan.length);
}

std::string_view LineCursor::Take(std::size_t found) noexcept {
  const std::size_t n = text_.size();
  const std::size_t rest = n - pos_;
  if (found == rest) {
    end_ = true;
    return text_.substr(pos_);
  }
  const std::size_t brk = pos_ + found;
  const std::string_view line = text_.substr(pos_, found);
  const char terminator = text_[brk];
  for (std::size_t i = brk + 1;; ++i) {
    // Stops one short of the end of the text: see the header.
    if (i + 1 >= n) {
      pos_ = i;
      end_ = true;
      return line;
    }
    const char c = text_[i];
    if ((c != kCR && c != kLF) || c == terminator) {
      pos_ = i;
      return line;
    }
  }
}

}  // namespace tolva::textdata
