// A remote file opened through the session for a buffered transfer, and the
// pieces the buffered transfers share: block sizes, the local file's error
// texts, progress counters the host can hold.
#ifndef TOLVA_SRC_FTP_REMOTE_FILE_H_
#define TOLVA_SRC_FTP_REMOTE_FILE_H_

#include <cstdint>
#include <string>

#include "component/component_state.h"
#include "tolva/platform/file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

// Blocks are the caller's BufferSize, but never above this, so memory stays
// bounded whatever a host asks for.
inline constexpr Long kLargestBlock = 100000;

inline std::uint32_t BlockSize(Long buffer_size) noexcept {
  return static_cast<std::uint32_t>(buffer_size > kLargestBlock ? kLargestBlock : buffer_size);
}

// Opens `name` for reading into the session's FileHandle. On failure the
// error is recorded with `tag`, copied into `error_message`, and false
// comes back.
bool OpenRemoteForReading(Tolva2011Register& component, detail::ComponentState& state, const std::string& name,
                          std::uint32_t transfer_type, const char* tag, std::string& error_message);

// The description of a local file fault, as the host reads it.
std::string Describe(const platform::FileError& error);

// Describe(), also keeping the fault's number as the component's pending
// run-time error, so FTPExtendedError(0) can name it afterwards.
std::string LocalFault(detail::ComponentState& state, const platform::FileError& error);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_REMOTE_FILE_H_
