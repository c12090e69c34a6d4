// One logged-in control connection to an FTP server, on POCO's client
// session, passive mode only, in the clear or secured with TLS (explicit:
// AUTH TLS before the login, then PBSZ 0 and PROT P so that data connections
// are secured too). It reads replies itself (bounded in size, with
// the read time-out), remembers the transfer type and whether the server
// takes EPSV and offers MLSD, so no command is sent twice needlessly.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_CONNECTION_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_CONNECTION_H_

#include <Poco/Net/FTPClientSession.h>
#include <Poco/Net/StreamSocket.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/ftp/ftp_reply.h"
#include "platform/linux/ftp/host_port.h"
#include "platform/linux/ftp/tls_channel.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

enum class TransferType { kUnknown, kAscii, kBinary };

// What the host asked for: see InternetLibrary::SetSecurity.
struct TlsPolicy {
  FtpSecurity security = FtpSecurity::kPlain;
  std::string certificate_file;
};

class FtpConnection : private Poco::Net::FTPClientSession {
 public:
  // Connects within `connect_ms`, reads the greeting, secures the
  // connection as `tls` asks and logs in; every later read (the TLS
  // handshakes too) waits at most `read_ms`. Throws FtpFailure.
  static std::unique_ptr<FtpConnection> Open(const HostPort& where, const std::string& user,
                                             const std::string& password, std::uint32_t connect_ms,
                                             std::uint32_t read_ms, const TlsPolicy& tls = {});
  ~FtpConnection() override;
  FtpConnection(const FtpConnection&) = delete;
  FtpConnection& operator=(const FtpConnection&) = delete;

  // Sends one command and reads its final reply (never a 1xx). Throws
  // FtpFailure for network failures, not for error replies.
  FtpReply Command(const std::string& verb, const std::string& arg = {});
  // As Command, but an answer other than 2xx throws FtpFailure 12003.
  FtpReply Expect2xx(const std::string& verb, const std::string& arg = {});

  // TYPE A / TYPE I unless that type is already set.
  void SetType(TransferType type);
  bool OffersMlsd();
  // EPSV (PASV if the server refused it), connects the data socket, sends
  // `verb arg`, waits for 125/150 and, under PROT P, runs the data
  // connection's TLS handshake. Throws FtpFailure.
  Poco::Net::StreamSocket OpenData(const std::string& verb, const std::string& arg);
  // Reads the final reply of a transfer whose data socket is closed.
  FtpReply ReadReply();
  FtpReply ReadReply(std::uint32_t wait_ms);
  // Gives up a transfer: the data socket is already closed; reads its final
  // reply, else sends ABOR and reads what that brings. Returns the
  // transfer's final reply when one came. If the control connection could
  // not be brought back in step, it is dead() afterwards.
  std::optional<FtpReply> Abort();

  std::uint32_t read_ms() const { return read_ms_; }
  std::uint32_t connect_ms() const { return connect_ms_; }
  // Whether the control connection and the data connections run over TLS.
  bool secured() const { return tls_ != nullptr; }
  bool data_secured() const { return data_tls_; }
  // Ends the upload on `data`, the last data connection opened: under TLS
  // both ways (see TlsChannel::CloseBothWays), then the socket is closed.
  void CloseUpload(Poco::Net::StreamSocket& data);
  // After a failure that left the control connection out of step.
  bool dead() const { return dead_; }
  void MarkDead() { dead_ = true; }
  // Sends QUIT and closes, waiting briefly for the answer.
  void Quit();

 private:
  FtpConnection(const Poco::Net::StreamSocket& socket, std::uint32_t connect_ms, std::uint32_t read_ms);
  void Send(const std::string& verb, const std::string& arg);
  // AUTH TLS and the handshake; false when the server refused and `tls`
  // lets the session go on in the clear.
  bool StartTls(const std::string& host, const TlsPolicy& tls);
  // PBSZ 0 and PROT P after the login.
  void ProtectData(const TlsPolicy& tls);
  Poco::Net::SocketAddress PassiveAddress();

  Poco::Net::SocketAddress peer_;
  std::uint32_t connect_ms_;
  std::uint32_t read_ms_;
  TransferType type_ = TransferType::kUnknown;
  int mlsd_ = -1;  // -1: not asked yet
  bool epsv_ = true;
  bool dead_ = false;
  std::unique_ptr<TlsChannel> tls_;
  // The control socket again, for its session. (An empty SecureStreamSocket
  // would be made on POCO's process-wide default context.)
  std::optional<Poco::Net::SecureStreamSocket> control_tls_;
  bool data_tls_ = false;
  SSL* data_ssl_ = nullptr;  // of the last data connection, owned by its socket
};

// Rethrows the exception being handled (POCO's network and time-out
// exceptions) as an FtpFailure with the matching error number.
[[noreturn]] void ThrowNetworkFailure();

// Any argument with CR, LF or NUL would smuggle a second command onto the
// control connection.
bool SafeArgument(const std::string& arg);

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_CONNECTION_H_
