// errno values turned into the classic run-time numbers and texts that
// hosts test for (53 "File not found", 70 "Permission denied", ...).
#ifndef TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_ERRORS_H_
#define TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_ERRORS_H_

#include "tolva/platform/file_system.h"

namespace tolva::platform::posix {

// What the failing call was doing: the same errno means different things
// to a host depending on it (ENOENT is "Path not found" for a directory).
enum class FileOp { kOpenFile, kDirectory, kDelete };

FileError ClassicFileError(int err, FileOp op = FileOp::kOpenFile) noexcept;

// The classic error with its number and text, for failures found without errno.
FileError ClassicError(int number) noexcept;

inline constexpr int kErrOutOfMemory = 7;
inline constexpr int kErrBadFileName = 52;
inline constexpr int kErrFileNotFound = 53;
inline constexpr int kErrDeviceIo = 57;
inline constexpr int kErrFileExists = 58;
inline constexpr int kErrDiskFull = 61;
inline constexpr int kErrTooManyFiles = 67;
inline constexpr int kErrPermissionDenied = 70;
inline constexpr int kErrRenameAcrossDrives = 74;
inline constexpr int kErrPathFileAccess = 75;
inline constexpr int kErrPathNotFound = 76;

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_ERRORS_H_
