// The FTP session: opening, closing, testing and reconnecting it, its
// handles, and the error texts every FTP member shares.
#include <algorithm>
#include <cstdint>
#include <string>

#include "component/component_state.h"
#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/session_opener.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;
using detail::GuardedVoid;

Boolean Tolva2011Register::FTPSessionOpen(const std::string& Host, const std::string& UserID,
                                          const std::string& Password, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    // An open session is not closed first: the new handles simply replace the old ones.
    if (ftp::OpenHandles(*this, *s_, Host, UserID, Password, f.session_handle, f.connect_handle, ErrorMessage)) {
      f.host = ftp::Trim(Host);
      f.user_id = ftp::Trim(UserID);
      f.password = ftp::Trim(Password);
      return kTrue;
    }
    f.host.clear();
    f.user_id.clear();
    f.password.clear();
    return kFalse;
  });
}

void Tolva2011Register::FTPSessionClose() noexcept {
  GuardedVoid([&] {
    FTPCloseHandle(s_->ftp.connect_handle);
    FTPCloseHandle(s_->ftp.session_handle);
    // File and search handles, and the stored credentials, are left alone:
    // a reconnect needs the credentials.
    ftp::ClearErrors(s_->ftp);
  });
}

Boolean Tolva2011Register::FTPSessionReconnect(std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    auto report = [&](std::string text) { s_->Raise(&Tolva2011RegisterEvents::SystemMessage, text); };
    const std::string directory = FTPSessionDirectoryCurrent();
    report("CurrentDirectory=" + directory);
    FTPSessionClose();
    // The password is traced in clear on purpose, so a host can follow a reconnection.
    report("FTPSessionReconnect");
    report("Host=" + f.host);
    report("UserID=" + f.user_id);
    report("Password=" + f.password);
    // Copies: the opener must not see the stored credentials change under it.
    const std::string host = f.host, user = f.user_id, password = f.password;
    const bool ok =
        ftp::OpenHandles(*this, *s_, host, user, password, f.session_handle, f.connect_handle, ErrorMessage);
    report("Session=" + std::to_string(f.session_handle));
    report("Connect=" + std::to_string(f.connect_handle));
    if (ok && !directory.empty() && !IsTrue(FTPSessionDirectoryCurrentSet(directory))) {
      ErrorMessage = ftp::RecordError(f, "Can't Reset Current Directory [" + directory + "]", "");
      FTPSessionClose();
      return kFalse;
    }
    if (ok) report("CurrentDirectory=" + FTPSessionDirectoryCurrent());
    return ToBoolean(ok);
  });
}

Boolean Tolva2011Register::FTPSessionTest(std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    Long flags = 0;
    const char* problem = nullptr;
    if (IsConnected(flags).empty()) {
      problem = "Not connected to the Internet.";
    } else if (f.session_handle == 0) {
      problem = "Session is not opened.";
    } else if (f.connect_handle == 0) {
      problem = "Session is not connected.";
    } else if (f.file_handle != 0) {
      problem = "Handle is non-zero.";  // a buffered transfer owns the connection
    } else if (f.find_handle != 0) {
      problem = "Find Handle is non-zero.";  // a directory search owns the connection
    }
    if (!problem) return kTrue;
    ErrorMessage = ftp::RecordError(f, problem, "");
    return kFalse;
  });
}

Long Tolva2011Register::FTPSession() noexcept {
  ftp::ClearErrors(s_->ftp);
  return s_->ftp.session_handle;
}

Long Tolva2011Register::FTPConnect() noexcept {
  ftp::ClearErrors(s_->ftp);
  return s_->ftp.connect_handle;
}

void Tolva2011Register::FTPCloseHandle(Long& Handle) noexcept {
  GuardedVoid([&] {
    bool closed = false;
    try {
      closed = s_->services.internet && s_->services.internet->CloseHandle(ftp::ToHandle(Handle));
    } catch (...) {
      closed = false;
    }
    if (closed) {
      Handle = 0;
      return;
    }
    std::string text = "Error Closing Handle=" + std::to_string(Handle);
    s_->Raise(&Tolva2011RegisterEvents::SystemMessage, text);
  });
}

std::string Tolva2011Register::FTPLastError() noexcept {
  return Guarded(std::string(), [&] { return s_->ftp.last_error_text; });
}

std::string Tolva2011Register::FTPShortError() noexcept {
  return Guarded(std::string(), [&] { return s_->ftp.short_error_text; });
}

std::string Tolva2011Register::FTPExtendedError(Long& ErrorNumber) noexcept {
  return Guarded(std::string(), [&] {
    // No number given: the last failed internal operation speaks instead.
    if (ErrorNumber == 0) ErrorNumber = s_->last_runtime_error;
    if (ErrorNumber == static_cast<Long>(platform::kErrorInternetExtendedError)) {
      std::string reply;
      try {
        if (s_->services.internet) reply = s_->services.internet->LastResponseInfo();
      } catch (...) {
        reply.clear();
      }
      return TrimCrLf(reply);
    }
    if (ErrorNumber != 0) return std::to_string(ErrorNumber);
    return std::string();
  });
}

std::string Tolva2011Register::FTPSessionError(const std::string& Tag, Long& ErrorNumber) noexcept {
  return Guarded(std::string(), [&] {
    const std::string text = FTPExtendedError(ErrorNumber);
    return Tag.empty() ? text : Tag + "/" + text;
  });
}

std::string Tolva2011Register::IsConnected(Long& ConnectFlags) noexcept {
  return Guarded(std::string(), [&] {
    std::uint32_t flags = 0;
    bool connected = false;
    try {
      connected = s_->services.internet && s_->services.internet->GetConnectedState(flags);
    } catch (...) {
      connected = false;
    }
    ConnectFlags = static_cast<Long>(flags);
    return connected ? std::string("Connected") : std::string();
  });
}

namespace {

// Time-outs reach the library as unsigned milliseconds; a negative setting means none of its own.
std::uint32_t TimeoutMs(Long ms) noexcept {
  return static_cast<std::uint32_t>(std::max<Long>(ms, 0));
}

void ApplyTimeouts(detail::ComponentState& s) noexcept {
  try {
    if (s.services.internet) {
      s.services.internet->SetTimeouts(TimeoutMs(s.ftp.connect_timeout_ms), TimeoutMs(s.ftp.read_timeout_ms));
    }
  } catch (...) {
  }
}

}  // namespace

Long Tolva2011Register::FTPConnectTimeout() const noexcept {
  return s_->ftp.connect_timeout_ms;
}
void Tolva2011Register::FTPConnectTimeout(Long MilliSeconds) noexcept {
  s_->ftp.connect_timeout_ms = MilliSeconds;
  ApplyTimeouts(*s_);
  s_->NotifyChanged("FTPConnectTimeout");
}

Long Tolva2011Register::FTPReadTimeout() const noexcept {
  return s_->ftp.read_timeout_ms;
}
void Tolva2011Register::FTPReadTimeout(Long MilliSeconds) noexcept {
  s_->ftp.read_timeout_ms = MilliSeconds;
  ApplyTimeouts(*s_);
  s_->NotifyChanged("FTPReadTimeout");
}

}  // namespace tolva
