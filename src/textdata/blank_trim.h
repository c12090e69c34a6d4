// Strips the blanks (spaces) that the readers' TrimValues option removes
// from both ends of a value. Tabs and other white space stay, as they do
// in the classic trim.
#ifndef TOLVA_SRC_TEXTDATA_BLANK_TRIM_H_
#define TOLVA_SRC_TEXTDATA_BLANK_TRIM_H_

#include <string>

namespace tolva::textdata {

inline void TrimBlanks(std::string& value) noexcept {
  std::size_t end = value.size();
  while (end > 0 && value[end - 1] == ' ') --end;
  std::size_t begin = 0;
  while (begin < end && value[begin] == ' ') ++begin;
  if (begin == 0 && end == value.size()) return;
  value.erase(end);  // erasing never allocates
  value.erase(0, begin);
}

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_BLANK_TRIM_H_
