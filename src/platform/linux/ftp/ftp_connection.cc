#include "platform/linux/ftp/ftp_connection.h"

#include <Poco/Net/DialogSocket.h>
#include <Poco/Net/NetException.h>
#include <Poco/Net/SocketAddress.h>
#include <Poco/Timespan.h>

#include <cstdlib>
#include <exception>

#include "platform/linux/ftp/ftp_reply_reader.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {
namespace {

Poco::Timespan Millis(std::uint32_t ms) {
  return Poco::Timespan(static_cast<Poco::Timespan::TimeDiff>(ms) * 1000);
}

}  // namespace

[[noreturn]] void ThrowNetworkFailure() {
  try {
    throw;
  } catch (const FtpFailure&) {
    throw;
  } catch (const Poco::TimeoutException&) {
    throw FtpFailure(kErrorInternetTimeout);
  } catch (const Poco::Net::ConnectionRefusedException&) {
    throw FtpFailure(kErrorInternetCannotConnect);
  } catch (const Poco::Net::HostNotFoundException&) {
    throw FtpFailure(kErrorInternetNameNotResolved);
  } catch (const Poco::Net::NoAddressFoundException&) {
    throw FtpFailure(kErrorInternetNameNotResolved);
  } catch (const Poco::Net::DNSException&) {
    throw FtpFailure(kErrorInternetNameNotResolved);
  } catch (const Poco::Net::ConnectionResetException&) {
    throw FtpFailure(kErrorInternetConnectionReset);
  } catch (const Poco::Net::NetException&) {
    throw FtpFailure(kErrorInternetConnectionAborted);
  } catch (const Poco::IOException&) {
    throw FtpFailure(kErrorInternetConnectionAborted);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    throw FtpFailure(kErrorInternetInternalError);
  }
}

bool SafeArgument(const std::string& arg) {
  return arg.find_first_of(std::string("\r\n\0", 3)) == std::string::npos;
}

FtpConnection::FtpConnection(const Poco::Net::StreamSocket& socket, std::uint32_t connect_ms, std::uint32_t read_ms)
    : Poco::Net::FTPClientSession(socket, false),
      peer_(socket.peerAddress()),
      connect_ms_(connect_ms),
      read_ms_(read_ms) {}

FtpConnection::~FtpConnection() = default;

std::unique_ptr<FtpConnection> FtpConnection::Open(const HostPort& where, const std::string& user,
                                                   const std::string& password, std::uint32_t connect_ms,
                                                   std::uint32_t read_ms, const TlsPolicy& tls) {
  if (!SafeArgument(user) || !SafeArgument(password)) throw FtpFailure(kErrorInvalidParameter);
  std::unique_ptr<FtpConnection> connection;
  try {
    // Connect with our own time-out: the session's own connect has none.
    Poco::Net::StreamSocket socket;
    socket.connect(Poco::Net::SocketAddress(where.host, where.port), Millis(connect_ms));
    socket.setReceiveTimeout(Millis(read_ms));
    socket.setSendTimeout(Millis(read_ms));
    socket.setNoDelay(true);
    connection.reset(new FtpConnection(socket, connect_ms, read_ms));
    // The session is open now, so its time-out can be set (on a session
    // that is not open yet POCO throws).
    connection->setTimeout(Millis(read_ms));
  } catch (...) {
    ThrowNetworkFailure();
  }
  FtpReply greeting = connection->ReadReply();
  if (!greeting.Completion()) throw FtpFailure(kErrorInternetExtendedError, greeting.text);
  // The user name and password go out only after the handshake succeeded,
  // certificate and name checked, when TLS was asked for.
  const bool secured = tls.security != FtpSecurity::kPlain && connection->StartTls(where.host, tls);
  FtpReply reply = connection->Command("USER", user);
  if (reply.Intermediate()) reply = connection->Command("PASS", password);
  // A refused login reports the server's own words (530 ...) as 12003, so
  // the host can show them.
  if (!reply.Completion()) throw FtpFailure(kErrorInternetExtendedError, reply.text);
  if (secured) connection->ProtectData(tls);
  return connection;
}

bool FtpConnection::StartTls(const std::string& host, const TlsPolicy& tls) {
  const FtpReply reply = Command("AUTH", "TLS");
  if (!reply.Completion()) {
    if (tls.security == FtpSecurity::kTlsWhenOffered) return false;
    throw FtpFailure(kErrorInternetSecurityChannelError, reply.text);
  }
  tls_ = std::make_unique<TlsChannel>(host, tls.certificate_file);
  try {
    control_tls_.emplace(tls_->Secure(*_pControlSocket, nullptr));
    // From here on the session's replies and commands pass through TLS.
    *_pControlSocket = *control_tls_;
  } catch (...) {
    dead_ = true;
    throw;
  }
  return true;
}

void FtpConnection::ProtectData(const TlsPolicy& tls) {
  // A buffer size of 0 is the only one TLS allows; PROT P then secures
  // every data connection of the session.
  FtpReply reply = Command("PBSZ", "0");
  if (reply.Completion()) reply = Command("PROT", "P");
  if (reply.Completion()) {
    data_tls_ = true;
  } else if (tls.security == FtpSecurity::kTlsRequired) {
    throw FtpFailure(kErrorInternetSecurityChannelError, reply.text);
  }
}

void FtpConnection::Send(const std::string& verb, const std::string& arg) {
  if (dead_) throw FtpFailure(kErrorInternetConnectionAborted);
  if (!SafeArgument(arg)) throw FtpFailure(kErrorInvalidParameter);
  try {
    if (arg.empty())
      _pControlSocket->sendMessage(verb);
    else
      _pControlSocket->sendMessage(verb, arg);
  } catch (...) {
    dead_ = true;
    ThrowNetworkFailure();
  }
}

FtpReply FtpConnection::ReadReply() {
  if (dead_) throw FtpFailure(kErrorInternetConnectionAborted);
  try {
    return ReadFtpReply([this] { return _pControlSocket->get(); });
  } catch (...) {
    dead_ = true;
    ThrowNetworkFailure();
  }
}

FtpReply FtpConnection::ReadReply(std::uint32_t wait_ms) {
  try {
    _pControlSocket->setReceiveTimeout(Millis(wait_ms));
  } catch (...) {
    dead_ = true;
    ThrowNetworkFailure();
  }
  FtpReply reply;
  try {
    reply = ReadReply();
  } catch (...) {
    try {
      _pControlSocket->setReceiveTimeout(Millis(read_ms_));
    } catch (...) {
    }
    throw;
  }
  _pControlSocket->setReceiveTimeout(Millis(read_ms_));
  return reply;
}

FtpReply FtpConnection::Command(const std::string& verb, const std::string& arg) {
  Send(verb, arg);
  FtpReply reply = ReadReply();
  // A stray preliminary reply to a plain command: its final one follows.
  for (int i = 0; i < 4 && reply.Preliminary(); ++i) reply = ReadReply();
  return reply;
}

FtpReply FtpConnection::Expect2xx(const std::string& verb, const std::string& arg) {
  FtpReply reply = Command(verb, arg);
  if (!reply.Completion()) throw FtpFailure(kErrorInternetExtendedError, reply.text);
  return reply;
}

void FtpConnection::SetType(TransferType type) {
  if (type == type_) return;
  Expect2xx("TYPE", type == TransferType::kAscii ? "A" : "I");
  type_ = type;
}

bool FtpConnection::OffersMlsd() {
  if (mlsd_ < 0) {
    const FtpReply reply = Command("FEAT");
    mlsd_ = 0;
    if (reply.Completion()) {
      // Feature lines start with a blank: " MLST type*;size*;modify*;".
      std::size_t pos = 0;
      const std::string& t = reply.text;
      while (pos < t.size()) {
        std::size_t end = t.find("\r\n", pos);
        if (end == std::string::npos) end = t.size();
        std::string line = t.substr(pos, end - pos);
        while (!line.empty() && line.front() == ' ') line.erase(0, 1);
        if (line.size() >= 4 && (line.compare(0, 4, "MLST") == 0 || line.compare(0, 4, "mlst") == 0)) mlsd_ = 1;
        pos = end + 2;
      }
    }
  }
  return mlsd_ == 1;
}

Poco::Net::SocketAddress FtpConnection::PassiveAddress() {
  // The data connection always goes to the host the control connection
  // reached: an address in the PASV reply is never trusted (it could point
  // anywhere, or be a NAT-ed private address).
  if (epsv_) {
    FtpReply reply = Command("EPSV");
    if (reply.Completion()) {
      const auto open = reply.text.find('(');
      const auto close = open == std::string::npos ? std::string::npos : reply.text.find(')', open);
      if (open != std::string::npos && close != std::string::npos && close - open >= 5) {
        // (|||port|) with any delimiter character.
        std::string inner = reply.text.substr(open + 1, close - open - 1);
        const char d = inner[0];
        const auto last = inner.rfind(d);
        const auto before = inner.rfind(d, last - 1);
        if (last != std::string::npos && before != std::string::npos && last > before + 1) {
          const int port = std::atoi(inner.substr(before + 1, last - before - 1).c_str());
          if (port > 0 && port < 65536) return Poco::Net::SocketAddress(peer_.host(), static_cast<std::uint16_t>(port));
        }
      }
      throw FtpFailure(kErrorInternetExtendedError, reply.text);
    }
    epsv_ = false;  // refused: PASV from now on
  }
  FtpReply reply = Expect2xx("PASV");
  const auto open = reply.text.find_first_of("0123456789", 4);
  int n[6] = {};
  int count = 0;
  if (open != std::string::npos) {
    std::size_t i = open;
    while (count < 6 && i < reply.text.size()) {
      if (reply.text[i] < '0' || reply.text[i] > '9') break;
      int v = 0;
      while (i < reply.text.size() && reply.text[i] >= '0' && reply.text[i] <= '9' && v < 1000) {
        v = v * 10 + (reply.text[i] - '0');
        ++i;
      }
      n[count++] = v;
      if (i < reply.text.size() && reply.text[i] == ',')
        ++i;
      else
        break;
    }
  }
  const int port = n[4] * 256 + n[5];
  if (count != 6 || n[4] > 255 || n[5] > 255 || port == 0) throw FtpFailure(kErrorInternetExtendedError, reply.text);
  return Poco::Net::SocketAddress(peer_.host(), static_cast<std::uint16_t>(port));
}

Poco::Net::StreamSocket FtpConnection::OpenData(const std::string& verb, const std::string& arg) {
  if (!SafeArgument(arg)) throw FtpFailure(kErrorInvalidParameter);
  const Poco::Net::SocketAddress address = PassiveAddress();
  Poco::Net::StreamSocket data;
  try {
    data.connect(address, Millis(connect_ms_));
    data.setReceiveTimeout(Millis(read_ms_));
    data.setSendTimeout(Millis(read_ms_));
  } catch (...) {
    // The server waits for a connection that never came; it has not been
    // told to transfer anything, so the control connection is still in step.
    ThrowNetworkFailure();
  }
  Send(verb, arg);
  const FtpReply reply = ReadReply();
  // Both 125 ("already open") and 150 ("about to open") start a transfer.
  if (!reply.Preliminary()) throw FtpFailure(kErrorInternetExtendedError, reply.text);
  data_ssl_ = nullptr;
  if (!data_tls_) return data;
  // The server starts its side of the handshake once it has answered, so
  // ours comes after the reply; it resumes the control connection's session.
  try {
    Poco::Net::Session::Ptr session = tls_->LatestSession();
    Poco::Net::SecureStreamSocket secured = tls_->Secure(data, session ? session : control_tls_->currentSession());
    data_ssl_ = TlsChannel::LastSecured();
    return secured;
  } catch (...) {
    try {
      data.setLinger(true, 0);
      data.close();
    } catch (...) {
    }
    Abort();
    throw;
  }
}

void FtpConnection::CloseUpload(Poco::Net::StreamSocket& data) {
  if (data_ssl_ != nullptr) TlsChannel::CloseBothWays(data_ssl_, data);
  data_ssl_ = nullptr;
  try {
    data.close();
  } catch (...) {
  }
}

std::optional<FtpReply> FtpConnection::Abort() {
  if (dead_) return std::nullopt;
  try {
    // Most servers answer 426 (or 226 if everything was sent already) as
    // soon as they notice the closed data socket.
    const std::uint32_t wait = read_ms_ < 3000 ? read_ms_ : 3000;
    try {
      return ReadReply(wait);
    } catch (const FtpFailure& f) {
      if (f.error() != kErrorInternetTimeout) return std::nullopt;
      dead_ = false;  // nothing arrived yet: still in step, ask plainly
    }
    Send("ABOR", "");
    FtpReply reply = ReadReply();
    // The transfer's own reply (426/450/451) may come first, then ABOR's.
    if (reply.code == 426 || reply.code == 450 || reply.code == 451) {
      ReadReply(wait);
      return reply;
    }
    return std::nullopt;
  } catch (...) {
    dead_ = true;
    return std::nullopt;
  }
}

void FtpConnection::Quit() {
  if (dead_) return;
  try {
    Send("QUIT", "");
    ReadReply(read_ms_ < 1000 ? read_ms_ : 1000);
  } catch (...) {
  }
  dead_ = true;
}

}  // namespace tolva::platform::posix::ftp
