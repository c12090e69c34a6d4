// Splits the host text a host passes to Connect into a host and a port.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_HOST_PORT_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_HOST_PORT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolva::platform::posix::ftp {

inline constexpr std::uint16_t kDefaultFtpPort = 21;

struct HostPort {
  std::string host;  // without brackets for IPv6 literals
  std::uint16_t port = kDefaultFtpPort;
};

// "host", "host:port", "[v6]", "[v6]:port" or a bare IPv6 literal (more than
// one colon, no brackets: all of it is the host). A port written in the text
// wins over `port`; port 0 or no port at all means 21. Nothing (no value) for
// an empty host, a bad port or unbalanced brackets.
std::optional<HostPort> ParseHostPort(std::string_view text, std::uint16_t port) noexcept;

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_HOST_PORT_H_
