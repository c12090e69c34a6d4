// Strips the blanks (spaces) that the readers' TrimValues option removes
// from both ends of a value. Tabs and other white space stay, as they do
// in the classic trim.
#ifndef TOLVA_SRC_TEXTDATA_BLANK_TRIM_H_
#define TOLVA_SRC_TEXTDATA_BLANK_TRIM_H_

#include <string>
#include <string_view>

namespace tolva::textdata {

// The same for a value not yet stored: the view without its blanks.
inline std::string_view WithoutBlanks(std::string_view value) noexcept {
  while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
  while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
  return value;
}

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
