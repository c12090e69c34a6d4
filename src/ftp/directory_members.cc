// Remote directories of the open session: create, read and set the current
// one, delete, and test whether one exists.
#include <string>

#include "component/component_state.h"
#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;

namespace {

// FtpGetCurrentDirectory's buffer, terminator included.
constexpr std::uint32_t kCurrentDirectoryBuffer = 260;

}  // namespace

Boolean Tolva2011Register::FTPSessionDirectoryCreate(const std::string& Directory, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    const std::string d = ftp::Trim(Directory);
    if (d.empty()) {
      ErrorMessage = ftp::RecordError(f, ErrorMessageNotDefined("Directory"), "");
      return kFalse;
    }
    const std::string title = "Can't Create Directory [" + d + "]";
    std::string msg;
    if (!IsTrue(FTPSessionTest(msg))) {
      ErrorMessage = ftp::RecordError(f, title, msg);
      return kFalse;
    }
    if (s_->services.internet && s_->services.internet->CreateDirectory(ftp::ToHandle(f.connect_handle), d)) {
      return kTrue;
    }
    Long code = ftp::LastLibraryError(*s_);
    const std::string text = FTPSessionError("FTPSessionDirectoryCreate", code);
    // Without a text the title alone carries the name, closed by its own full stop.
    ErrorMessage = text.empty() ? ftp::RecordError(f, title + ".", "") : ftp::RecordError(f, title, "Error - " + text);
    return kFalse;
  });
}

std::string Tolva2011Register::FTPSessionDirectoryCurrent() noexcept {
  return Guarded(std::string(), [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    if (f.connect_handle == 0) return std::string();
    std::string directory;
    if (s_->services.internet && s_->services.internet->GetCurrentDirectory(ftp::ToHandle(f.connect_handle), directory,
                                                                            kCurrentDirectoryBuffer)) {
      return directory;
    }
    Long code = ftp::LastLibraryError(*s_);
    ftp::RecordError(f, FTPSessionError("FTPSessionDirectoryCurrent", code), "");
    return std::string();
  });
}

Boolean Tolva2011Register::FTPSessionDirectoryCurrentSet(const std::string& Directory) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    if (f.connect_handle == 0) return kFalse;
    // A name without a trailing slash is sent with one.
    const std::string d = AddMissingSlash(ftp::Trim(Directory));
    if (s_->services.internet && s_->services.internet->SetCurrentDirectory(ftp::ToHandle(f.connect_handle), d)) {
      return kTrue;
    }
    // The directory's name is not part of this text; the tag and the server's reply are.
    Long code = ftp::LastLibraryError(*s_);
    ftp::RecordError(f, FTPSessionError("FTPSessionDirectoryCurrentSet", code), "");
    return kFalse;
  });
}

Boolean Tolva2011Register::FTPSessionDirectoryDelete(const std::string& Directory) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    if (f.connect_handle == 0) return kFalse;
    const std::string d = ftp::Trim(RemoveLastSlash(Directory));
    if (s_->services.internet && s_->services.internet->RemoveDirectory(ftp::ToHandle(f.connect_handle), d)) {
      return kTrue;
    }
    Long code = ftp::LastLibraryError(*s_);
    ftp::RecordError(f, FTPSessionError("FTPSessionDirectoryDelete", code), "");
    return kFalse;
  });
}

Boolean Tolva2011Register::FTPSessionDirectoryExists(const std::string& Directory) noexcept {
  return Guarded(kFalse, [&] {
    const std::string d = ftp::Trim(RemoveLastSlash(Directory));
    if (s_->ftp.connect_handle == 0) return kFalse;
    const std::string current = FTPSessionDirectoryCurrent();
    // The current directory, or no name at all, exists without asking the server.
    if (RemoveLastSlash(d) == current || d.empty()) return kTrue;
    const Boolean found = FTPSessionDirectoryCurrentSet(d);
    // Whatever was found, a session left in the wrong directory is a failure.
    if (!IsTrue(FTPSessionDirectoryCurrentSet(current))) return kFalse;
    return found;
  });
}

}  // namespace tolva
