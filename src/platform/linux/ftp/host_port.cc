#include "platform/linux/ftp/host_port.h"

namespace tolva::platform::posix::ftp {
namespace {

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

// Decimal port 0..65535; an empty text is "no port".
bool ParsePort(std::string_view s, std::uint16_t& port) {
  if (s.empty() || s.size() > 5) return false;
  std::uint32_t value = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + static_cast<std::uint32_t>(c - '0');
  }
  if (value > 65535) return false;
  port = static_cast<std::uint16_t>(value);
  return true;
}

}  // namespace

std::optional<HostPort> ParseHostPort(std::string_view text, std::uint16_t port) noexcept {
  try {
    text = TrimBlanks(text);
    std::string_view host = text;
    std::uint16_t written = 0;
    if (!text.empty() && text.front() == '[') {
      const auto close = text.find(']');
      if (close == std::string_view::npos) return std::nullopt;
      host = text.substr(1, close - 1);
      std::string_view rest = text.substr(close + 1);
      if (!rest.empty()) {
        if (rest.front() != ':' || !ParsePort(rest.substr(1), written)) return std::nullopt;
      }
    } else {
      const auto colon = text.find(':');
      if (colon != std::string_view::npos && text.find(':', colon + 1) == std::string_view::npos) {
        host = text.substr(0, colon);
        if (!ParsePort(text.substr(colon + 1), written)) return std::nullopt;
      }
    }
    if (host.empty() || host.find_first_of(" \t[]") != std::string_view::npos) return std::nullopt;
    HostPort result;
    result.host = std::string(host);
    result.port = written != 0 ? written : (port != 0 ? port : kDefaultFtpPort);
    return result;
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace tolva::platform::posix::ftp
