// Copying a field's value into a host's cell. Nearly every cell of a
// delimited file is short, and the cells are written by the million, so a
// short value is copied as one fixed block of 16 bytes into the cell's own
// buffer: a general assign costs about three times as much per cell, which
// made it the largest part of reading a wide file.
#ifndef TOLVA_SRC_TEXTDATA_CELL_STORE_H_
#define TOLVA_SRC_TEXTDATA_CELL_STORE_H_

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "textdata/blank_trim.h"

namespace tolva::textdata {

// Puts `value` into `cell`, without its blanks when `trim`: moved from
// `owned` when the splitter built it, else copied from the text, which is
// readable up to `text_end`.
inline void StoreCell(std::string& cell, std::string_view value, std::string* owned, const char* text_end, bool trim) {
  if (owned) {
    cell = std::move(*owned);
    if (trim) TrimBlanks(cell);
    return;
  }
  if (trim) value = WithoutBlanks(value);
#if defined(__cpp_lib_string_resize_and_overwrite)
  // The block may run past the value, never past the text; the cell is
  // asked for room for 15 characters, which a short string has without
  // allocating, and keeps the value's length.
  constexpr std::size_t kBlock = 16;
  if (value.size() < kBlock && static_cast<std::size_t>(text_end - value.data()) >= kBlock) {
    cell.resize_and_overwrite(kBlock - 1, [&](char* p, std::size_t) noexcept {
      std::memcpy(p, value.data(), kBlock);
      return value.size();
    });
    return;
  }
#else
  (void)text_end;
#endif
  cell.assign(value);
}

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_CELL_STORE_H_
