// Opening an Internet handle and an FTP connection for given credentials:
// shared by the session and by the one-call transfers, which keep the
// handles in variables of their own.
#ifndef TOLVA_SRC_FTP_SESSION_OPENER_H_
#define TOLVA_SRC_FTP_SESSION_OPENER_H_

#include <exception>
#include <optional>
#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

// The agent name the session announces to the FTP library.
inline constexpr const char* kSessionAgent = "Tolva 2011 Register";
// What a failed call reports when the FTP library is missing altogether.
inline constexpr const char* kLibraryMissing = "FTP library is not available";

// Checks the arguments and opens both handles into `session` and `connect`
// (written as they come back, so a failed connect leaves `session` closed
// and 0, or as it was if it could not be closed). On failure records the
// error and copies it into `error_message`, which is left untouched on
// success.
bool OpenHandles(Tolva2011Register& component, detail::ComponentState& state, const std::string& host,
                 const std::string& user_id, const std::string& password, Long& session, Long& connect,
                 std::string& error_message);

// The text of an exception that stopped a library call, for the "call
// could not be made" paths.
std::string DescribeFailedCall(const std::exception_ptr& failure);

// Runs one library call. Empty when the call could not be made at all (no
// library, or the library threw); `why` then says why.
template <class F>
std::optional<platform::InternetHandle> TryCall(detail::ComponentState& state, std::string& why, F&& call) {
  if (!state.services.internet) {
    why = kLibraryMissing;
    return std::nullopt;
  }
  try {
    return call(*state.services.internet);
  } catch (...) {
    why = DescribeFailedCall(std::current_exception());
    return std::nullopt;
  }
}

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_SESSION_OPENER_H_
