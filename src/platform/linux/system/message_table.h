// The system message table of this platform: one line of text for every
// error number the Linux services hand to a host. Hosts keep their classic
// checks, so the numbers keep the classic desktop numbering: the BASIC
// run-time numbers for local file errors (53 "File not found"), the system
// numbers for the settings store and the FTP layer (2, 5, 18, 259 ...) and
// the Internet numbers of the FTP client (12001-12031, 12110-12112).
#ifndef TOLVA_SRC_PLATFORM_LINUX_SYSTEM_MESSAGE_TABLE_H_
#define TOLVA_SRC_PLATFORM_LINUX_SYSTEM_MESSAGE_TABLE_H_

#include <cstdint>
#include <vector>

namespace tolva::platform::posix {

// The text for `number`, or nullptr when the table has none. The texts are
// static; the caller never frees them.
const char* MessageTableText(std::int32_t number) noexcept;

// Every number the table knows, in ascending order.
std::vector<std::int32_t> MessageTableNumbers();

struct ClassicRuntimeError {
  int number;        // 0 for errno 0
  const char* text;  // "" for errno 0
};

// The classic run-time error a host expects for `err` (an errno value),
// without knowing what the failing call was doing: ENOENT is "File not
// found", ENOSPC "Disk full", anything unexpected "Path/File access error".
ClassicRuntimeError ClassicRuntimeErrorFromErrno(int err) noexcept;

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_SYSTEM_MESSAGE_TABLE_H_
