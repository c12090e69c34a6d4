// Whether a name a server listed may become part of a local path. The
// server is a stranger: "..", a name with a separator or a NUL in it would
// let it write outside the directory the host chose.
#ifndef TOLVA_SRC_FTP_LOCAL_NAME_GUARD_H_
#define TOLVA_SRC_FTP_LOCAL_NAME_GUARD_H_

#include <string_view>

namespace tolva::ftp {

inline bool IsSafeLocalName(std::string_view listed) noexcept {
  if (listed.empty() || listed == "." || listed == "..") return false;
  return listed.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
}

// The detail of the error a skipped name is reported with.
inline constexpr const char* kUnsafeNameDetail = "Name from the server is not a safe local file name.";

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_LOCAL_NAME_GUARD_H_
