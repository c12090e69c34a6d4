// Finds a field delimiter in a line. Letters match in either case, as a
// text comparison does; a delimiter of several characters is found where
// it starts, and the search after a match resumes one character later, so
// such a delimiter leaves its tail in the next field (hosts pass one
// character; longer ones are read this way on purpose).
#ifndef TOLVA_SRC_TEXTDATA_DELIMITER_MATCHER_H_
#define TOLVA_SRC_TEXTDATA_DELIMITER_MATCHER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tolva::textdata {

class DelimiterMatcher {
 public:
  static constexpr std::size_t npos = std::string_view::npos;

  // `delimiter` must not be empty.
  explicit DelimiterMatcher(std::string_view delimiter);

  // Index of the first match at or after `from` in `line`; npos when none.
  std::size_t Find(std::string_view line, std::size_t from) const noexcept;

  // Number of matches in `line`, each search resuming one character after
  // the start of the previous match.
  std::int64_t Count(std::string_view line) const noexcept;

  // A delimiter of one byte is found as either of two bytes (its lower
  // and upper case), which a scan can count on its own.
  bool SingleByte() const noexcept { return lower_.size() == 1; }
  char FirstLower() const noexcept { return first_lower_; }
  char FirstUpper() const noexcept { return first_upper_; }

 private:
  bool RestMatches(const char* at) const noexcept;

  std::string lower_;  // the delimiter with ASCII letters folded to lower case
  char first_lower_;
  char first_upper_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_DELIMITER_MATCHER_H_
