// Trimming blanks and control characters from the ends of a text.
#ifndef TOLVA_SRC_UTIL_TRIM_H_
#define TOLVA_SRC_UTIL_TRIM_H_

#include <string>

namespace tolva::util {

// `input` without the characters of code 0 to 32 (blanks, CR, LF, tabs,
// NUL and the other control characters) at either end; inner ones stay.
std::string TrimControlEnds(const std::string& input);

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_TRIM_H_
