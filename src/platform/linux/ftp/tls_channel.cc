#include "platform/linux/ftp/tls_channel.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <pthread.h>
#include <time.h>

#include <Poco/Exception.h>
#include <Poco/Net/NetException.h>
#include <Poco/Net/SSLException.h>

#include "platform/linux/ftp/ftp_reply.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {
namespace {

// The first certificate problem OpenSSL met in this thread's handshake. The
// handshake runs on the calling thread, so the callback can leave it here.
thread_local int t_verify_error = X509_V_OK;
thread_local SSL* t_handshaking = nullptr;

void NoteHandshake(const SSL* ssl, int where, int) {
  if (where & SSL_CB_HANDSHAKE_START) t_handshaking = const_cast<SSL*>(ssl);
}

int RecordVerifyError(int ok, X509_STORE_CTX* store) {
  if (!ok && t_verify_error == X509_V_OK) t_verify_error = X509_STORE_CTX_get_error(store);
  return ok;  // a failure aborts the handshake
}

std::uint32_t CertificateError(int verify_error) {
  switch (verify_error) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
    case X509_V_ERR_CERT_NOT_YET_VALID:
    case X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD:
    case X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD:
      return kErrorInternetSecCertDateInvalid;
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
      return kErrorInternetSecCertCnInvalid;
    default:
      return kErrorInternetInvalidCa;
  }
}

// Where a context finds its channel, for the new-session callback.
int ChannelIndex() {
  static const int index = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
  return index;
}

// POCO makes its sessions only from a socket; this one owns a session that
// OpenSSL handed to the callback.
class OwnedSession : public Poco::Net::Session {
 public:
  explicit OwnedSession(SSL_SESSION* session) : Poco::Net::Session(session) {}
};

bool IsAddress(const std::string& host) {
  unsigned char buffer[16];
  return ::inet_pton(AF_INET, host.c_str(), buffer) == 1 || ::inet_pton(AF_INET6, host.c_str(), buffer) == 1;
}

}  // namespace

TlsChannel::TlsChannel(const std::string& host, const std::string& trust_file) : host_(host) {
  try {
    Poco::Net::Context::Params params;
    params.caLocation = trust_file;
    params.loadDefaultCAs = trust_file.empty();
    params.verificationMode = Poco::Net::Context::VERIFY_RELAXED;
    params.cipherList = "DEFAULT";
    context_ = new Poco::Net::Context(Poco::Net::Context::TLS_CLIENT_USE, params);
    context_->requireMinimumProtocol(Poco::Net::Context::PROTO_TLSV1_2);
    // Clients cache their sessions so data connections can resume them.
    context_->enableSessionCache(true);
    // The name is checked by OpenSSL below, for names and addresses alike.
    context_->enableExtendedCertificateVerification(false);
  } catch (...) {
    throw FtpFailure(kErrorInternetInvalidCa);
  }
  SSL_CTX* ctx = context_->sslContext();
  // TLS 1.2 at most: a TLS 1.3 session ticket resumes one connection only
  // (vsftpd and proftpd keep them single-use), and a new one comes after
  // each handshake, where an upload never reads it; a TLS 1.2 session
  // resumes every data connection of the session.
  SSL_CTX_set_max_proto_version(ctx, TLS1_2_VERSION);
  SSL_CTX_set_session_cache_mode(ctx, SSL_SESS_CACHE_CLIENT | SSL_SESS_CACHE_NO_INTERNAL_STORE);
  if (SSL_CTX_set_ex_data(ctx, ChannelIndex(), this) != 1) throw FtpFailure(kErrorInternetSecurityChannelError);
  SSL_CTX_sess_set_new_cb(ctx, &TlsChannel::OnNewSession);
  SSL_CTX_set_info_callback(ctx, &NoteHandshake);
  // Our callback only records what went wrong; OpenSSL still fails the
  // handshake on it. POCO's own would consult a process-wide handler.
  SSL_CTX_set_verify(ctx, SSL_VERIFY_PEER, &RecordVerifyError);
  // A server that drops the data connection without a TLS close is common;
  // the transfer's final reply on the secured control connection still
  // tells a complete file from a cut one.
  SSL_CTX_set_options(ctx, SSL_OP_IGNORE_UNEXPECTED_EOF);
  X509_VERIFY_PARAM* param = SSL_CTX_get0_param(ctx);
  X509_VERIFY_PARAM_set_hostflags(param, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  const int named = IsAddress(host) ? X509_VERIFY_PARAM_set1_ip_asc(param, host.c_str())
                                    : X509_VERIFY_PARAM_set1_host(param, host.c_str(), host.size());
  if (named != 1) throw FtpFailure(kErrorInternetSecurityChannelError);
  // A certificate in the host's own file is trusted as it is, even when it
  // is a server certificate rather than an authority.
  if (!trust_file.empty()) X509_VERIFY_PARAM_set_flags(param, X509_V_FLAG_PARTIAL_CHAIN);
}

TlsChannel::~TlsChannel() {
  // A data socket may outlive the channel and still receive a ticket.
  SSL_CTX_set_ex_data(context_->sslContext(), ChannelIndex(), nullptr);
}

int TlsChannel::OnNewSession(SSL* ssl, SSL_SESSION* session) {
  auto* self = static_cast<TlsChannel*>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(ssl), ChannelIndex()));
  if (self == nullptr) return 0;
  try {
    std::lock_guard<std::mutex> lock(self->mutex_);
    // Under TLS 1.2 the control connection's session comes before its
    // handshake returns, so before control_ is known.
    if (self->control_ == nullptr) self->control_ = ssl;
    if (ssl != self->control_) return 0;
    self->latest_ = new OwnedSession(session);
    return 1;  // the reference is ours now
  } catch (...) {
    return 0;
  }
}

Poco::Net::Session::Ptr TlsChannel::LatestSession() {
  std::lock_guard<std::mutex> lock(mutex_);
  return latest_;
}

Poco::Net::SecureStreamSocket TlsChannel::Secure(const Poco::Net::StreamSocket& plain, Poco::Net::Session::Ptr resume) {
  t_verify_error = X509_V_OK;
  t_handshaking = nullptr;
  try {
    Poco::Net::SecureStreamSocket secured = resume
                                                ? Poco::Net::SecureStreamSocket::attach(plain, host_, context_, resume)
                                                : Poco::Net::SecureStreamSocket::attach(plain, host_, context_);
    std::lock_guard<std::mutex> lock(mutex_);
    if (control_ == nullptr) control_ = t_handshaking;
    return secured;
  } catch (const Poco::TimeoutException&) {
    throw FtpFailure(kErrorInternetTimeout);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    if (t_verify_error != X509_V_OK) throw FtpFailure(CertificateError(t_verify_error));
    throw FtpFailure(kErrorInternetSecurityChannelError);
  }
}

SSL* TlsChannel::LastSecured() {
  return t_handshaking;
}

void TlsChannel::CloseBothWays(SSL* ssl, Poco::Net::StreamSocket& socket) {
  constexpr std::size_t kMaxTrailer = 1 << 20;  // a peer that keeps talking is cut off
  try {
    if (SSL_shutdown(ssl) < 0) return;
    ::shutdown(socket.impl()->sockfd(), SHUT_WR);
    char buffer[16384];
    std::size_t total = 0;
    int n = 0;
    while (total < kMaxTrailer && (n = socket.receiveBytes(buffer, sizeof buffer)) > 0) {
      total += static_cast<std::size_t>(n);
    }
  } catch (...) {
    // The peer reset or timed out: the transfer's reply tells the rest.
  }
}

SigpipeGuard::SigpipeGuard() noexcept {
  sigset_t pipe, pending;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &pipe, &old_mask_);
  // One that was already waiting belongs to someone else: leave it be.
  sigemptyset(&pending);
  was_pending_ = sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

SigpipeGuard::~SigpipeGuard() {
  sigset_t pipe, pending;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  sigemptyset(&pending);
  if (!was_pending_ && sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1) {
    const timespec now{0, 0};
    sigtimedwait(&pipe, nullptr, &now);
  }
  pthread_sigmask(SIG_SETMASK, &old_mask_, nullptr);
}

}  // namespace tolva::platform::posix::ftp
