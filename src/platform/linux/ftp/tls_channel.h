// TLS for one FTP server: the client context that its control connection and
// every data connection share, so data connections resume the control
// connection's session (servers such as vsftpd refuse data connections that
// do not). The certificate chain and the server's name are checked by
// OpenSSL during the handshake; a failure aborts the handshake before any
// byte of ours is sent over the channel, and comes back as the matching
// Windows Internet error number.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_TLS_CHANNEL_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_TLS_CHANNEL_H_

#include <Poco/Net/Context.h>
#include <Poco/Net/SecureStreamSocket.h>
#include <Poco/Net/Session.h>
#include <Poco/Net/StreamSocket.h>
#include <signal.h>

#include <mutex>
#include <string>

namespace tolva::platform::posix::ftp {

class TlsChannel {
 public:
  // `host` is the name or address the user gave: the certificate must name
  // it. `trust_file` is a PEM file of authorities (or of the server's own
  // certificate) to trust; empty means the system's authorities. Throws
  // FtpFailure when the context cannot be made (an unreadable trust file).
  TlsChannel(const std::string& host, const std::string& trust_file);
  ~TlsChannel();
  TlsChannel(const TlsChannel&) = delete;
  TlsChannel& operator=(const TlsChannel&) = delete;

  // The newest session the server handed out on the first connection
  // secured, the control connection (TLS 1.3 sends its tickets after the
  // handshake, so this is only known once replies were read). Sessions of
  // data connections are not kept: servers such as proftpd accept only the
  // control connection's own.
  Poco::Net::Session::Ptr LatestSession();

  // Runs the client handshake over the connected `plain` socket, within
  // that socket's time-outs, resuming `resume` when given. Throws
  // FtpFailure: 12037 / 12038 / 12045 for a rejected certificate, 12002
  // when the server does not answer in time, 12157 for any other failure.
  Poco::Net::SecureStreamSocket Secure(const Poco::Net::StreamSocket& plain, Poco::Net::Session::Ptr resume);
  // The OpenSSL connection of the socket that Secure() returned last on
  // this thread (POCO does not hand it out); it lives as long as the socket.
  static SSL* LastSecured();

  // Ends a TLS connection we sent on in both directions: our close_notify
  // and FIN, then what the peer still sends is read until it closes.
  // Closing with bytes unread (TLS 1.3 session tickets) would reset the
  // connection, and a reset can make the server drop an upload's last bytes.
  static void CloseBothWays(SSL* ssl, Poco::Net::StreamSocket& socket);

 private:
  static int OnNewSession(SSL* ssl, SSL_SESSION* session);

  std::string host_;
  Poco::Net::Context::Ptr context_;
  std::mutex mutex_;
  Poco::Net::Session::Ptr latest_;
  const SSL* control_ = nullptr;
};

// OpenSSL writes to its sockets with plain write(), so a peer that already
// went away would raise SIGPIPE and end the host program. While a guard
// lives, SIGPIPE is blocked for the calling thread, and one raised meanwhile
// is taken off again before the old mask comes back.
class SigpipeGuard {
 public:
  SigpipeGuard() noexcept;
  ~SigpipeGuard();
  SigpipeGuard(const SigpipeGuard&) = delete;
  SigpipeGuard& operator=(const SigpipeGuard&) = delete;

 private:
  sigset_t old_mask_;
  bool was_pending_ = false;
};

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_TLS_CHANNEL_H_
