// Counting occurrences of a set of characters in a text.
#ifndef TOLVA_SRC_UTIL_CHARACTER_COUNTER_H_
#define TOLVA_SRC_UTIL_CHARACTER_COUNTER_H_

#include <cstdint>
#include <string>

namespace tolva::util {

// How often the characters of `characters` occur in `input`. A character
// listed twice counts twice (the list is a multiset, not a set). With
// `ignore_case`, ASCII letters match in either case. With `repeat_as_one`,
// a run of the same character counts once. One pass over `input`.
std::int64_t CountCharacters(const std::string& input, const std::string& characters, bool ignore_case,
                             bool repeat_as_one) noexcept;

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_CHARACTER_COUNTER_H_
