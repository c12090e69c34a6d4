#include "textdata/delimiter_matcher.h"

#include "textdata/byte_scan.h"

namespace tolva::textdata {

namespace {
char ToLower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char ToUpper(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
}  // namespace

DelimiterMatcher::DelimiterMatcher(std::string_view delimiter) : lower_(delimiter) {
  for (char& c : lower_) c = ToLower(c);
  first_lower_ = lower_.empty() ? '\0' : lower_[0];
  first_upper_ = ToUpper(first_lower_);
}

bool DelimiterMatcher::RestMatches(const char* at) const noexcept {
  for (std::size_t k = 1; k < lower_.size(); ++k)
    if (ToLower(at[k]) != lower_[k]) return false;
  return true;
}

std::size_t DelimiterMatcher::Find(std::string_view line, std::size_t from) const noexcept {
  const std::size_t width = lower_.size();
  if (width == 0 || from > line.size() || line.size() - from < width) return npos;
  // Only a start position that leaves room for the whole delimiter counts.
  const std::size_t last_start = line.size() - width;
  std::size_t i = from;
  while (i <= last_start) {
    const std::size_t k = FindEither(line.data() + i, last_start + 1 - i, first_lower_, first_upper_);
    if (k == last_start + 1 - i) return npos;
    i += k;
    if (width == 1 || RestMatches(line.data() + i)) return i;
    ++i;
  }
  return npos;
}

std::int64_t DelimiterMatcher::Count(std::string_view line) const noexcept {
  if (lower_.size() == 1) {
    // A line holds no line end, so the scan runs over all of it.
    LineScan scan;
    ScanLine(line.data(), line.size(), first_lower_, first_upper_, scan);
    return static_cast<std::int64_t>(scan.matches);
  }
  std::int64_t count = 0;
  for (std::size_t at = Find(line, 0); at != npos; at = Find(line, at + 1)) ++count;
  return count;
}

}  // namespace tolva::textdata
