// Key paths of the settings store: levels separated by "\", compared
// without regard to the case of ASCII letters.
#ifndef TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_KEY_PATH_H_
#define TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_KEY_PATH_H_

#include <string>
#include <string_view>
#include <vector>

namespace tolva::platform::posix {

// The levels of `path`; empty levels (leading, trailing or doubled "\") are
// dropped so that "App\", "\App" and "App" name the same key.
inline std::vector<std::string_view> KeyLevels(std::string_view path) {
  std::vector<std::string_view> levels;
  std::size_t start = 0;
  while (start <= path.size()) {
    std::size_t end = path.find('\\', start);
    if (end == std::string_view::npos) end = path.size();
    if (end > start) levels.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return levels;
}

// The stored form of a path: its levels joined by single "\"; "" is the root.
inline std::string NormalKeyPath(std::string_view path) {
  std::string out;
  out.reserve(path.size());
  for (std::string_view level : KeyLevels(path)) {
    if (!out.empty()) out += '\\';
    out += level;
  }
  return out;
}

// `base` + "\" + `sub`, both already normal.
inline std::string JoinKeyPath(const std::string& base, const std::string& sub) {
  if (base.empty()) return sub;
  if (sub.empty()) return base;
  return base + '\\' + sub;
}

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_SETTINGS_SETTINGS_KEY_PATH_H_
