// FTP over TLS as the host chooses it through FTPSecurity and
// FTPCertificateFile, and the texts of the failures it brings.
#ifndef TOLVA_SRC_FTP_SECURITY_H_
#define TOLVA_SRC_FTP_SECURITY_H_

#include <string>

#include "component/component_state.h"
#include "tolva/platform/internet.h"

namespace tolva::ftp {

// The FTPSecurity property as the library takes it; an unknown value asks
// for the strictest, so a host's mistake never sends a password in clear.
platform::FtpSecurity SecurityOf(Long mode) noexcept;

// Tells the library what the properties ask for, before a connection opens.
void ApplySecurity(detail::ComponentState& state);

// Why the certificate file the host named can't be used ("" when it can,
// or when none is named or TLS was not asked for), checked before any
// connection is made.
std::string UnreadableCertificateFile(const detail::ComponentState& state);

// The detail of a session that could not be opened because of TLS, for the
// error `code` and the server's last reply; empty when `code` is no TLS
// failure (or TLS was not asked for), so the classic text stands.
std::string SecurityFailureDetail(const detail::ComponentState& state, Long code, const std::string& reply);

// SecurityFailureDetail for the library's last error and reply; when there
// is one, the error number is also kept as the component's pending error,
// so FTPSessionError can name it.
std::string SecureFailure(detail::ComponentState& state);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_SECURITY_H_
