// Conversions between the component's Long handles and sizes and the FTP
// library's unsigned 32-bit handles and 64-bit sizes.
#ifndef TOLVA_SRC_FTP_HANDLE_CONVERT_H_
#define TOLVA_SRC_FTP_HANDLE_CONVERT_H_

#include <cstdint>
#include <limits>

#include "tolva/host_types.h"
#include "tolva/platform/internet.h"

namespace tolva::ftp {

// Handles keep their 32 bits unchanged both ways, so a library handle with
// its top bit set shows as a negative Long and converts back to itself.
inline Long ToLong(platform::InternetHandle h) noexcept {
  return static_cast<Long>(h);
}
inline platform::InternetHandle ToHandle(Long h) noexcept {
  return static_cast<platform::InternetHandle>(h);
}

// A size or count the host receives as a Long. Anything from 2 GiB up is
// shown as 2147483647 rather than wrapping into a negative number that
// would break a host's loop; the transfers themselves count in 64 bits.
inline Long ClampToLong(std::uint64_t v) noexcept {
  constexpr std::uint64_t kMax = static_cast<std::uint64_t>(std::numeric_limits<Long>::max());
  return static_cast<Long>(v > kMax ? kMax : v);
}

// The library's last error number as the host sees it.
inline Long ErrorNumber(std::uint32_t code) noexcept {
  return static_cast<Long>(code);
}

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_HANDLE_CONVERT_H_
