#include "ftp/session_opener.h"

#include <exception>
#include <optional>
#include <string>

#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/security.h"

namespace tolva::ftp {

std::string DescribeFailedCall(const std::exception_ptr& failure) {
  try {
    if (failure) std::rethrow_exception(failure);
  } catch (const std::exception& e) {
    if (*e.what()) return e.what();
  } catch (...) {
  }
  return "FTP library call failed";
}

bool OpenHandles(Tolva2011Register& component, detail::ComponentState& state, const std::string& host_in,
                 const std::string& user_in, const std::string& password_in, Long& session, Long& connect,
                 std::string& error_message) {
  SessionState& ftp = state.ftp;
  ClearErrors(ftp);
  const std::string host = Trim(host_in);
  const std::string user = Trim(user_in);
  const std::string password = Trim(password_in);
  const std::string title = "Can't Open Session [" + host + "]";
  auto fail = [&](const std::string& t, const std::string& detail) {
    error_message = RecordError(ftp, t, detail);
    return false;
  };

  if (host.empty()) return fail("Can't Open Session", "Host has not been defined.");
  Long flags = 0;
  if (component.IsConnected(flags).empty()) return fail(title, "Not connected to the Internet.");
  // An empty password is allowed: anonymous servers take any.
  if (user.empty()) return fail(title, "User ID has not been defined.");
  if (const std::string why_not = UnreadableCertificateFile(state); !why_not.empty()) return fail(title, why_not);

  std::string why;
  const auto opened = TryCall(state, why, [&](platform::InternetLibrary& lib) {
    return lib.Open(kSessionAgent, platform::kInternetOpenTypeDirect, 0);
  });
  if (!opened) return fail(title + " - InternetOpen Error", why);
  session = ToLong(*opened);
  if (session == 0) return fail(title, "Session can't be opened.");

  const auto connected = TryCall(state, why, [&](platform::InternetLibrary& lib) {
    ApplySecurity(state);
    return lib.Connect(ToHandle(session), host, 0, user, password, platform::kInternetServiceFtp,
                       platform::kInternetFlagPassive);
  });
  if (!connected) {
    fail(title + " - InternetConnect Error", why);
    component.FTPCloseHandle(session);
    return false;
  }
  connect = ToLong(*connected);
  if (connect == 0) {
    // A TLS failure says what went wrong and keeps its number for
    // FTPSessionError; any other failure reads as it always did.
    const std::string secure = SecureFailure(state);
    fail(title, secure.empty() ? "Session can't be connected." : secure);
    component.FTPCloseHandle(session);
    return false;
  }
  return true;
}

}  // namespace tolva::ftp
