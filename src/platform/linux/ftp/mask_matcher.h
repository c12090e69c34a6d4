// Matches listed remote names against a host's mask. Masks never go to the
// server: servers disagree on globbing, and some treat a mask as a path.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_MASK_MATCHER_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_MASK_MATCHER_H_

#include <string_view>

namespace tolva::platform::posix::ftp {

// `*` matches any run of bytes, `?` exactly one byte, everything else itself
// (case-sensitive: the servers' file systems are). An empty mask, "*" and
// "*.*" match every name, "*.*" included names without a dot, as hosts
// expect from the classic masks.
bool MaskMatches(std::string_view mask, std::string_view name) noexcept;

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_MASK_MATCHER_H_
