// Small text operations on paths shared by the path members and others.
#ifndef TOLVA_SRC_PATHS_PATH_TEXT_H_
#define TOLVA_SRC_PATHS_PATH_TEXT_H_

#include <string>
#include <string_view>

namespace tolva::paths {

// Removes blanks (spaces) from both ends, as the host's Trim does.
inline std::string_view TrimBlanks(std::string_view s) noexcept {
  std::size_t b = 0;
  std::size_t e = s.size();
  while (b < e && s[b] == ' ') ++b;
  while (e > b && s[e - 1] == ' ') --e;
  return s.substr(b, e - b);
}

// Ensures one trailing `sep`; the empty text stays empty.
inline std::string AddMissingSeparator(std::string_view s, char sep) {
  std::string out(s);
  if (!out.empty() && out.back() != sep) out += sep;
  return out;
}

// Removes one trailing `sep`, only one.
inline std::string RemoveLastSeparator(std::string_view s, char sep) {
  if (!s.empty() && s.back() == sep) s.remove_suffix(1);
  return std::string(s);
}

// Position just after the last "\" or "/", or npos when there is none.
inline std::size_t AfterLastSeparator(std::string_view s) noexcept {
  const std::size_t p = s.find_last_of("\\/");
  return p == std::string_view::npos ? p : p + 1;
}

}  // namespace tolva::paths

#endif  // TOLVA_SRC_PATHS_PATH_TEXT_H_
