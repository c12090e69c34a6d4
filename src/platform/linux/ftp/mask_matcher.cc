#include "platform/linux/ftp/mask_matcher.h"

#include "tolva/platform/file_patterns.h"

namespace tolva::platform::posix::ftp {

// The rules of local patterns, with one addition: an empty mask lists all.
bool MaskMatches(std::string_view mask, std::string_view name) noexcept {
  return mask.empty() || MatchWildcard(name, mask);
}

}  // namespace tolva::platform::posix::ftp
