#include "ftp/security.h"

#include <string>

#include "ftp/library_error.h"
#include "tolva/platform/file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace ftp {

platform::FtpSecurity SecurityOf(Long mode) noexcept {
  switch (mode) {
    case 0:
      return platform::FtpSecurity::kPlain;
    case 2:
      return platform::FtpSecurity::kTlsWhenOffered;
    default:
      return platform::FtpSecurity::kTlsRequired;
  }
}

void ApplySecurity(detail::ComponentState& state) {
  if (state.services.internet) {
    state.services.internet->SetSecurity(SecurityOf(state.props.ftp_security), state.props.ftp_certificate_file);
  }
}

std::string UnreadableCertificateFile(const detail::ComponentState& state) {
  const std::string& path = state.props.ftp_certificate_file;
  if (path.empty() || SecurityOf(state.props.ftp_security) == platform::FtpSecurity::kPlain) return {};
  if (!state.services.files) return {};
  platform::FileError error;
  auto file = state.services.files->Open(path, platform::OpenMode::kRead, error);
  if (file) {
    platform::FileError closing;
    file->Close(closing);
    return {};
  }
  return "Certificate file [" + path + "] can't be read" + (error.description.empty() ? "" : ": " + error.description) +
         ".";
}

std::string SecurityFailureDetail(const detail::ComponentState& state, Long code, const std::string& reply) {
  if (SecurityOf(state.props.ftp_security) == platform::FtpSecurity::kPlain) return {};
  switch (static_cast<std::uint32_t>(code)) {
    case platform::kErrorInternetSecurityChannelError:
      // The library keeps the server's answer when it was the server that
      // said no (to AUTH TLS, PBSZ or PROT); a broken handshake leaves none.
      return reply.empty() ? "The TLS handshake with the server failed (12157)."
                           : "TLS refused by the server (12157): " + reply;
    case platform::kErrorInternetInvalidCa:
      return "The server's certificate is not signed by a trusted authority (12045).";
    case platform::kErrorInternetSecCertDateInvalid:
      return "The server's certificate has expired or is not yet valid (12037).";
    case platform::kErrorInternetSecCertCnInvalid:
      return "The server's certificate does not name this host (12038).";
    case platform::kErrorInternetTimeout:
      return "The server did not answer in time, during the connection or its TLS handshake (12002).";
    default:
      return {};
  }
}

std::string SecureFailure(detail::ComponentState& state) {
  const Long code = LastLibraryError(state);
  std::string reply;
  try {
    if (state.services.internet) reply = state.services.internet->LastResponseInfo();
  } catch (...) {
  }
  std::string detail = SecurityFailureDetail(state, code, reply);
  if (!detail.empty()) state.last_runtime_error = code;
  return detail;
}

}  // namespace ftp

Long Tolva2011Register::FTPSecurity() const noexcept {
  return s_->props.ftp_security;
}
void Tolva2011Register::FTPSecurity(Long Mode) noexcept {
  s_->props.ftp_security = Mode;
  s_->NotifyChanged("FTPSecurity");
}

std::string Tolva2011Register::FTPCertificateFile() const noexcept {
  return detail::Guarded(std::string(), [&] { return s_->props.ftp_certificate_file; });
}
void Tolva2011Register::FTPCertificateFile(const std::string& Path) noexcept {
  detail::GuardedVoid([&] { s_->props.ftp_certificate_file = Path; });
  s_->NotifyChanged("FTPCertificateFile");
}

}  // namespace tolva
