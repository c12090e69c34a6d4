// One-call transfers and connection tests: each makes a short-lived
// connection of its own and never touches the session's handles.
#include <exception>
#include <optional>
#include <string>

#include "component/component_state.h"
#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/security.h"
#include "ftp/session_opener.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;

namespace {

// The connection tests announce themselves under a name of their own.
constexpr const char* kTestAgent = "Tolva 2011 Register FTP Test";

enum class Direction { kGet, kPut };

}  // namespace

namespace ftp {

// The get and put shared by the four one-call transfer members.
class OneCallTransfer {
 public:
  OneCallTransfer(Tolva2011Register& component, detail::ComponentState& state) noexcept
      : component_(component), state_(state) {}

  Boolean Run(Direction direction, const std::string& host, const std::string& user, const std::string& password,
              const std::string& first_file, const std::string& second_file, std::uint32_t type,
              std::string& error_message) {
    SessionState& f = state_.ftp;
    ClearErrors(f);
    Long internet = 0;
    Long connection = 0;
    if (!OpenHandles(component_, state_, host, user, password, internet, connection, error_message)) return kFalse;
    const bool get = direction == Direction::kGet;
    // Get: remote then local; put: local then remote.
    const std::string first = Trim(first_file);
    const std::string second = Trim(second_file);
    const std::string verb = get ? "Can't Get File" : "Can't Put File";
    const char* first_missing = get ? "Remote File has not been defined." : "Local File has not been defined.";
    const char* second_missing = get ? "Local File has not been defined." : "Remote File has not been defined.";
    auto fail = [&](const std::string& title, const std::string& detail) {
      error_message = RecordError(f, title, detail);
      return kFalse;
    };
    // On the two empty-name paths the handles stay open, kept as it always was.
    if (first.empty()) return fail(verb, first_missing);
    const std::string title = verb + " [" + first + "]";
    if (second.empty()) return fail(title, second_missing);

    auto close_both = [&] {
      component_.FTPCloseHandle(connection);
      component_.FTPCloseHandle(internet);
    };
    std::string why;
    const auto result = TryCall(state_, why, [&](platform::InternetLibrary& lib) -> platform::InternetHandle {
      return get ? lib.GetFile(ToHandle(connection), first, second, false, 0, type | platform::kInternetFlagReload)
                 : lib.PutFile(ToHandle(connection), first, second, type);
    });
    if (!result) {
      fail(title, std::string(get ? "FtpGetFile Error - " : "FtpPutFile Error - ") + why);
      close_both();
      return kFalse;
    }
    if (*result) {
      close_both();
      return kTrue;
    }
    Long code = LastLibraryError(state_);
    const std::string text = component_.FTPExtendedError(code);
    if (get) {
      fail(title, text.empty() ? std::string("FTP Get Error") : "FTP Get Error - " + text);
    } else {
      fail(title, text.empty() ? std::string("FTP Put Error.") : "FTP Put Error - " + text);
    }
    close_both();
    return kFalse;
  }

  // The connection test; the handles stay open for the caller when it passes.
  bool Connect(const std::string& host, const std::string& user, const std::string& password, Long& internet,
               Long& connection, std::string& error_message) {
    SessionState& f = state_.ftp;
    ClearErrors(f);
    // Used exactly as given: no trimming, no check for emptiness.
    const std::string title = "FTP Test Failure [" + host + "]";
    auto fail = [&](const std::string& detail) {
      error_message = RecordError(f, title, detail);
      return false;
    };
    Long flags = 0;
    if (component_.IsConnected(flags).empty()) return fail("Not connected to the Internet.");
    std::string why;
    const auto opened = TryCall(state_, why, [&](platform::InternetLibrary& lib) {
      return lib.Open(kTestAgent, platform::kInternetOpenTypeDirect, 0);
    });
    if (!opened) return fail("InternetOpen Error - " + why);
    internet = ToLong(*opened);
    if (internet == 0) return fail("Session can't be opened.");
    if (const std::string why_not = UnreadableCertificateFile(state_); !why_not.empty()) {
      fail(why_not);
      component_.FTPCloseHandle(internet);
      return false;
    }
    const auto connected = TryCall(state_, why, [&](platform::InternetLibrary& lib) {
      ApplySecurity(state_);
      return lib.Connect(ToHandle(internet), host, 0, user, password, platform::kInternetServiceFtp,
                         platform::kInternetFlagPassive);
    });
    if (!connected) {
      fail("InternetConnect Error - " + why);
      component_.FTPCloseHandle(internet);
      return false;
    }
    connection = ToLong(*connected);
    if (connection == 0) {
      const std::string secure = SecureFailure(state_);
      fail(secure.empty() ? "Session can't be connected." : secure);
      component_.FTPCloseHandle(internet);
      return false;
    }
    return true;
  }

 private:
  Tolva2011Register& component_;
  detail::ComponentState& state_;
};

}  // namespace ftp

Boolean Tolva2011Register::FTPGetAsciiFile(const std::string& Host, const std::string& UserID,
                                           const std::string& Password, const std::string& RemoteFile,
                                           const std::string& LocalFile, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::OneCallTransfer(*this, *s_)
        .Run(Direction::kGet, Host, UserID, Password, RemoteFile, LocalFile, platform::kFtpTransferTypeAscii,
             ErrorMessage);
  });
}

Boolean Tolva2011Register::FTPGetBinaryFile(const std::string& Host, const std::string& UserID,
                                            const std::string& Password, const std::string& RemoteFile,
                                            const std::string& LocalFile, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::OneCallTransfer(*this, *s_)
        .Run(Direction::kGet, Host, UserID, Password, RemoteFile, LocalFile, platform::kFtpTransferTypeBinary,
             ErrorMessage);
  });
}

Boolean Tolva2011Register::FTPPutAsciiFile(const std::string& Host, const std::string& UserID,
                                           const std::string& Password, const std::string& LocalFile,
                                           const std::string& RemoteFile, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::OneCallTransfer(*this, *s_)
        .Run(Direction::kPut, Host, UserID, Password, LocalFile, RemoteFile, platform::kFtpTransferTypeAscii,
             ErrorMessage);
  });
}

Boolean Tolva2011Register::FTPPutBinaryFile(const std::string& Host, const std::string& UserID,
                                            const std::string& Password, const std::string& LocalFile,
                                            const std::string& RemoteFile, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::OneCallTransfer(*this, *s_)
        .Run(Direction::kPut, Host, UserID, Password, LocalFile, RemoteFile, platform::kFtpTransferTypeBinary,
             ErrorMessage);
  });
}

Boolean Tolva2011Register::FTPTest(const std::string& Host, const std::string& UserID, const std::string& Password,
                                   std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    Long internet = 0;
    Long connection = 0;
    if (!ftp::OneCallTransfer(*this, *s_).Connect(Host, UserID, Password, internet, connection, ErrorMessage)) {
      return kFalse;
    }
    // Nothing is transferred and no directory is read: the login is the test.
    FTPCloseHandle(connection);
    FTPCloseHandle(internet);
    return kTrue;
  });
}

Boolean Tolva2011Register::FTPTestDirectory(const std::string& Host, const std::string& UserID,
                                            const std::string& Password, const std::string& Directory,
                                            std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    Long internet = 0;
    Long connection = 0;
    if (!ftp::OneCallTransfer(*this, *s_).Connect(Host, UserID, Password, internet, connection, ErrorMessage)) {
      return kFalse;
    }
    // Kept as it always was: the directory is looked for in the component's
    // own session; the test connection only proves the credentials.
    if (IsTrue(FTPSessionDirectoryExists(Directory))) {
      FTPCloseHandle(connection);
      FTPCloseHandle(internet);
      return kTrue;
    }
    // Handed straight to the caller, so the FTP error texts stay empty; only
    // the Internet handle is closed, which takes its connection with it.
    ErrorMessage = ErrorMessageDoesNotExist("Internet Directory", Directory);
    FTPCloseHandle(internet);
    return kFalse;
  });
}

}  // namespace tolva
