// The path and pattern rules of the FileSystem contract: "\" and "/" both
// separate directories, and the last segment of a pattern may hold "*" and
// "?". Every implementation (this platform's, a test's in-memory one, a
// host's own) applies them through these helpers.
#ifndef TOLVA_PLATFORM_FILE_PATTERNS_H_
#define TOLVA_PLATFORM_FILE_PATTERNS_H_

#include <string>
#include <string_view>

namespace tolva::platform {

/// True when `s` holds a "*" or a "?".
inline bool HasWildcard(std::string_view s) noexcept {
  return s.find_first_of("*?") != std::string_view::npos;
}

/// True when `name` matches `pattern`: "*" stands for any run of characters, "?" for exactly one.
/// Names compare exactly, as this platform's names do. "*.*" matches every name, also one without a dot,
/// as hosts expect.
inline bool MatchWildcard(std::string_view name, std::string_view pattern) noexcept {
  if (pattern == "*.*") pattern = "*";
  // Iterative matcher with one backtrack point: linear in practice and never
  // exponential on hostile patterns such as "*a*a*a*a*b".
  std::size_t n = 0, p = 0, star = std::string_view::npos, mark = 0;
  while (n < name.size()) {
    // A "*" in the pattern is always a wildcard, even against a name that
    // holds a "*" of its own.
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      mark = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++n;
      ++p;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

/// `path` with the host's `\` separators turned into this platform's `/`.
inline std::string ToPlatformPath(std::string_view path) {
  std::string out(path);
  for (char& c : out)
    if (c == '\\') c = '/';
  return out;
}

/// Splits the platform path `path` into its `directory` ("" when none, `/` for the root) and its `last`
/// segment.
inline void SplitLastSegment(const std::string& path, std::string& directory, std::string& last) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    directory.clear();
    last = path;
  } else {
    directory = slash == 0 ? "/" : path.substr(0, slash);
    last = path.substr(slash + 1);
  }
}

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_FILE_PATTERNS_H_
