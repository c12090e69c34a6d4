#include "platform/linux/files/file_system_errors.h"

#include <cerrno>

#include "platform/linux/system/message_table.h"

namespace tolva::platform::posix {

FileError ClassicError(int number) noexcept {
  // The texts are the message table's, so a host sees one text per number
  // wherever it comes from; the list below is only a fallback.
  const char* text = "Path/File access error";
  switch (number) {
    case kErrOutOfMemory:
      text = "Out of memory";
      break;
    case kErrBadFileName:
      text = "Bad file name or number";
      break;
    case kErrFileNotFound:
      text = "File not found";
      break;
    case kErrDeviceIo:
      text = "Device I/O error";
      break;
    case kErrFileExists:
      text = "File already exists";
      break;
    case kErrDiskFull:
      text = "Disk full";
      break;
    case kErrTooManyFiles:
      text = "Too many files";
      break;
    case kErrPermissionDenied:
      text = "Permission denied";
      break;
    case kErrRenameAcrossDrives:
      text = "Can't rename with different drive";
      break;
    case kErrPathNotFound:
      text = "Path not found";
      break;
    default:
      if (!MessageTableText(number)) number = kErrPathFileAccess;
      break;
  }
  if (const char* table = MessageTableText(number)) text = table;
  try {
    return FileError{number, text};
  } catch (...) {
    return FileError{number, {}};
  }
}

FileError ClassicFileError(int err, FileOp op) noexcept {
  switch (err) {
    case 0:
      return FileError{};
    case ENOENT:
      return ClassicError(op == FileOp::kDirectory ? kErrPathNotFound : kErrFileNotFound);
    case ENOTDIR:
    case ELOOP:
      return ClassicError(kErrPathNotFound);
    case EACCES:
    case EPERM:
      // Deleting a protected file is the classic "access error"; opening one is "permission denied".
      return ClassicError(op == FileOp::kDelete ? kErrPathFileAccess : kErrPermissionDenied);
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:
      return ClassicError(kErrPermissionDenied);
    case EEXIST:
      return ClassicError(op == FileOp::kDirectory ? kErrPathFileAccess : kErrFileExists);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return ClassicError(kErrDiskFull);
    case EIO:
      return ClassicError(kErrDeviceIo);
    case EMFILE:
    case ENFILE:
      return ClassicError(kErrTooManyFiles);
    case ENAMETOOLONG:
    case EINVAL:
      return ClassicError(kErrBadFileName);
    case ENOMEM:
      return ClassicError(kErrOutOfMemory);
    case EXDEV:
      return ClassicError(kErrRenameAcrossDrives);
    default:
      return ClassicError(ClassicRuntimeErrorFromErrno(err).number);  // EISDIR, EROFS and the rest
  }
}

}  // namespace tolva::platform::posix
