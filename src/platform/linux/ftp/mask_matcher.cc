#include "platform/linux/ftp/mask_matcher.h"

#include <cstddef>

namespace tolva::platform::posix::ftp {

bool MaskMatches(std::string_view mask, std::string_view name) noexcept {
  if (mask.empty() || mask == "*" || mask == "*.*") return true;
  // Greedy match with a single backtrack point: linear for the usual masks,
  // never exponential for hostile ones.
  std::size_t m = 0, n = 0;
  std::size_t star = std::string_view::npos, resume = 0;
  while (n < name.size()) {
    if (m < mask.size() && mask[m] == '*') {
      star = m++;
      resume = n;
    } else if (m < mask.size() && (mask[m] == '?' || mask[m] == name[n])) {
      ++m;
      ++n;
    } else if (star != std::string_view::npos) {
      m = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == '*') ++m;
  return m == mask.size();
}

}  // namespace tolva::platform::posix::ftp
