#include "platform/linux/ftp/poco_internet_library.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/stat.h>
#include <unistd.h>

#include <Poco/Net/StreamSocket.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>
#include <mutex>
#include <new>
#include <optional>
#include <vector>

#include "platform/linux/ftp/download_target.h"
#include "platform/linux/ftp/ftp_connection.h"
#include "platform/linux/ftp/host_port.h"
#include "platform/linux/ftp/line_end_converter.h"
#include "platform/linux/ftp/listing_parser.h"
#include "platform/linux/ftp/mask_matcher.h"

namespace tolva::platform::posix {

std::shared_ptr<InternetLibrary> NewInternetLibrary() {
  try {
    return std::make_shared<ftp::PocoInternetLibrary>();
  } catch (...) {
    return nullptr;
  }
}

}  // namespace tolva::platform::posix

namespace tolva::platform::posix::ftp {
namespace {

constexpr std::uint32_t kErrorFileExists = 80;
constexpr std::uint32_t kDefaultTimeoutMs = 60000;
// One transfer buffer: large reads from the raw socket are what make
// transfers fast, and memory per transfer stays constant.
constexpr std::size_t kBlock = 1 << 20;
// A listing larger than this is not a directory listing.
constexpr std::size_t kMaxListingBytes = 64u << 20;

// The calling thread's last error, as the classic library keeps it.
struct ThreadError {
  std::uint32_t error = 0;
  std::string response;
};
thread_local ThreadError t_error;

void SetError(std::uint32_t error, const std::string& response = {}) {
  t_error.error = error;
  // A failed TLS set-up always replaces the reply: the server's refusal
  // when it said no, nothing when the handshake itself broke.
  if (!response.empty() || error == kErrorInternetSecurityChannelError) t_error.response = response;
}

// Runs one call: an FtpFailure becomes the thread's error and `fallback`.
template <class R, class F>
R Run(R fallback, F&& body) noexcept {
  const SigpipeGuard sigpipe;
  try {
    return body();
  } catch (const FtpFailure& f) {
    try {
      SetError(f.error(), f.response());
    } catch (...) {
      t_error.error = f.error();
    }
  } catch (const std::bad_alloc&) {
    t_error.error = kErrorInternetInternalError;
  } catch (...) {
    t_error.error = kErrorInternetInternalError;
  }
  return fallback;
}

bool IsAscii(std::uint32_t flags) {
  return (flags & 3u) == kFtpTransferTypeAscii;
}

class SessionObject : public HandleObject {};

class ConnectionObject : public HandleObject {
 public:
  void Close() override {
    std::lock_guard<std::mutex> lock(mutex);
    if (connection) connection->Quit();
    connection.reset();
  }
  std::mutex mutex;
  std::unique_ptr<FtpConnection> connection;
  bool busy = false;  // a file handle is transferring on it
};

// The connection of a call, locked for its duration.
class Lease {
 public:
  Lease(HandleTable& handles, InternetHandle handle) {
    object_ = handles.Find<ConnectionObject>(handle);
    if (!object_) throw FtpFailure(kErrorInvalidHandle);
    lock_ = std::unique_lock<std::mutex>(object_->mutex);
    if (!object_->connection || object_->connection->dead()) throw FtpFailure(kErrorInternetConnectionAborted);
    if (object_->busy) throw FtpFailure(kErrorFtpTransferInProgress);
  }
  FtpConnection& operator*() { return *object_->connection; }
  FtpConnection* operator->() { return object_->connection.get(); }
  std::shared_ptr<ConnectionObject> object() const { return object_; }

 private:
  std::shared_ptr<ConnectionObject> object_;
  std::unique_lock<std::mutex> lock_;
};

// Gives a transfer up unless it finished: resets the data socket (so the
// server sees an error, not a complete file) and brings the control
// connection back in step.
class TransferGuard {
 public:
  TransferGuard(FtpConnection& connection, Poco::Net::StreamSocket& data) : connection_(connection), data_(data) {}
  ~TransferGuard() {
    if (!done_) Abandon(connection_, data_);
  }
  TransferGuard(const TransferGuard&) = delete;
  TransferGuard& operator=(const TransferGuard&) = delete;
  void Done() { done_ = true; }

  static std::optional<FtpReply> Abandon(FtpConnection& connection, Poco::Net::StreamSocket& data) noexcept {
    try {
      data.setLinger(true, 0);
    } catch (...) {
    }
    try {
      data.close();
    } catch (...) {
    }
    return connection.Abort();
  }

  // Abandons the transfer after `failure`. A data connection the server
  // broke is better explained by the server's own reply (426 ...), when it
  // sent one.
  [[noreturn]] void FailWith(const FtpFailure& failure) {
    done_ = true;
    const auto reply = Abandon(connection_, data_);
    const bool network =
        failure.error() == kErrorInternetConnectionAborted || failure.error() == kErrorInternetConnectionReset;
    if (network && reply && !reply->Completion()) throw FtpFailure(kErrorInternetExtendedError, reply->text);
    throw failure;
  }

 private:
  FtpConnection& connection_;
  Poco::Net::StreamSocket& data_;
  bool done_ = false;
};

// Reads until `size` bytes arrived or the data ended; a short socket read
// is not the end of the data.
std::size_t ReceiveFull(Poco::Net::StreamSocket& data, char* buffer, std::size_t size) {
  std::size_t got = 0;
  try {
    while (got < size) {
      const int chunk = static_cast<int>(std::min<std::size_t>(size - got, INT_MAX));
      const int n = data.receiveBytes(buffer + got, chunk);
      if (n <= 0) break;
      got += static_cast<std::size_t>(n);
    }
  } catch (...) {
    ThrowNetworkFailure();
  }
  return got;
}

void SendAll(Poco::Net::StreamSocket& data, const char* buffer, std::size_t size) {
  try {
    while (size > 0) {
      const int chunk = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
      const int n = data.sendBytes(buffer, chunk);
      if (n <= 0) throw FtpFailure(kErrorInternetConnectionAborted);
      buffer += n;
      size -= static_cast<std::size_t>(n);
    }
  } catch (...) {
    ThrowNetworkFailure();
  }
}

// Closes the data socket of a transfer that ended and checks the server's
// final word on it.
void FinishTransfer(FtpConnection& connection, Poco::Net::StreamSocket& data, bool upload = false) {
  if (upload) {
    connection.CloseUpload(data);
  } else {
    try {
      data.close();
    } catch (...) {
    }
  }
  const FtpReply reply = connection.ReadReply();
  if (!reply.Completion()) throw FtpFailure(kErrorInternetExtendedError, reply.text);
}

class FindObject : public HandleObject {
 public:
  std::mutex mutex;
  std::vector<FindData> entries;
  std::size_t next = 0;
};

class FileObject : public HandleObject {
 public:
  // Closing a handle that is still transferring: an upload ends (the server
  // stores what was written), a download is abandoned cleanly.
  void Close() override {
    std::lock_guard<std::mutex> lock(owner->mutex);
    owner->busy = false;
    if (ended || !owner->connection) return;
    ended = true;
    FtpConnection& connection = *owner->connection;
    if (!write) {
      TransferGuard::Abandon(connection, data);
      return;
    }
    TransferGuard guard(connection, data);
    try {
      if (ascii) {
        std::string tail;
        converter.Finish(tail);
        SendAll(data, tail.data(), tail.size());
      }
    } catch (const FtpFailure& f) {
      guard.FailWith(f);
    }
    guard.Done();
    FinishTransfer(connection, data, write);
  }

  std::shared_ptr<ConnectionObject> owner;
  Poco::Net::StreamSocket data;
  bool write = false;
  bool ascii = false;
  bool ended = false;  // the final reply is read (or the transfer abandoned)
  LineEndConverter converter;
  std::string pending;  // converted bytes of an ASCII read not handed out yet
  std::size_t pending_pos = 0;
};

int CurrentYear() {
  const std::time_t now = std::time(nullptr);
  std::tm tm{};
  localtime_r(&now, &tm);
  return tm.tm_year + 1900;
}

// "257 "/dir" is the current directory": quotes inside are doubled.
bool ParseQuotedPath(const std::string& reply, std::string& path) {
  const auto open = reply.find('"');
  if (open == std::string::npos) return false;
  path.clear();
  for (std::size_t i = open + 1; i < reply.size(); ++i) {
    if (reply[i] == '"') {
      if (i + 1 < reply.size() && reply[i + 1] == '"') {
        path.push_back('"');
        ++i;
        continue;
      }
      return true;
    }
    path.push_back(reply[i]);
  }
  return false;
}

}  // namespace

PocoInternetLibrary::~PocoInternetLibrary() {
  // Connections still open close with the handle table, over TLS perhaps.
  const SigpipeGuard sigpipe;
  handles_.Clear();
}

InternetHandle PocoInternetLibrary::Open(const std::string&, std::uint32_t, std::uint32_t) {
  return Run<InternetHandle>(0, [&] {
    const InternetHandle h = handles_.Add(std::make_shared<SessionObject>());
    if (h == 0) throw FtpFailure(kErrorInternetInternalError);
    return h;
  });
}

InternetHandle PocoInternetLibrary::Connect(InternetHandle internet, const std::string& host, std::uint16_t port,
                                            const std::string& user, const std::string& password, std::uint32_t service,
                                            std::uint32_t) {
  return Run<InternetHandle>(0, [&] {
    if (!handles_.Find<SessionObject>(internet)) throw FtpFailure(kErrorInvalidHandle);
    if (service != kInternetServiceFtp) throw FtpFailure(kErrorInvalidParameter);
    const auto where = ParseHostPort(host, port);
    if (!where) throw FtpFailure(kErrorInternetNameNotResolved);
    auto object = std::make_shared<ConnectionObject>();
    TlsPolicy tls;
    {
      std::lock_guard<std::mutex> lock(security_mutex_);
      tls.security = security_;
      tls.certificate_file = certificate_file_;
    }
    object->connection = FtpConnection::Open(*where, user, password, connect_ms_.load(), read_ms_.load(), tls);
    object->parent = internet;
    const InternetHandle h = handles_.Add(object);
    if (h == 0) {
      object->Close();
      throw FtpFailure(kErrorInternetInternalError);
    }
    return h;
  });
}

bool PocoInternetLibrary::CloseHandle(InternetHandle handle) {
  return Run<bool>(false, [&] {
    auto removed = handles_.Remove(handle);
    if (removed.empty()) throw FtpFailure(kErrorInvalidHandle);
    // Children first; only the handle's own result is reported.
    bool ok = true;
    for (std::size_t i = 0; i < removed.size(); ++i) {
      try {
        removed[i]->Close();
      } catch (const FtpFailure& f) {
        if (i + 1 == removed.size()) {
          SetError(f.error(), f.response());
          ok = false;
        }
      } catch (...) {
        if (i + 1 == removed.size()) {
          t_error.error = kErrorInternetInternalError;
          ok = false;
        }
      }
    }
    return ok;
  });
}

std::uint32_t PocoInternetLibrary::LastError() const {
  return t_error.error;
}

std::string PocoInternetLibrary::LastResponseInfo() const {
  return Run<std::string>(std::string(), [&] { return t_error.response; });
}

bool PocoInternetLibrary::GetConnectedState(std::uint32_t& flags) {
  flags = 0;
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) != 0) return false;
  bool any = false, lan = false;
  for (ifaddrs* i = list; i != nullptr; i = i->ifa_next) {
    if (i->ifa_addr == nullptr || (i->ifa_flags & IFF_UP) == 0) continue;
    any = true;
    if ((i->ifa_flags & IFF_LOOPBACK) == 0) lan = true;
  }
  ::freeifaddrs(list);
  if (lan) flags |= kConnectionLan;
  return any;
}

void PocoInternetLibrary::SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) {
  // 0 would mean "wait forever" to the sockets: a dead server would freeze the host.
  connect_ms_ = connect_ms == 0 ? kDefaultTimeoutMs : connect_ms;
  read_ms_ = read_ms == 0 ? kDefaultTimeoutMs : read_ms;
}

void PocoInternetLibrary::SetSecurity(FtpSecurity security, const std::string& certificate_file) {
  Run<bool>(false, [&] {
    std::string file = LocalPath(certificate_file);
    std::lock_guard<std::mutex> lock(security_mutex_);
    security_ = security;
    certificate_file_ = std::move(file);
    return true;
  });
}

InternetHandle PocoInternetLibrary::FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                                                  std::uint32_t) {
  return Run<InternetHandle>(0, [&] {
    Lease c(handles_, connection);
    // "dir/*.txt" lists dir and matches the last part.
    const auto slash = mask.rfind('/');
    const std::string dir = slash == std::string::npos ? "" : (slash == 0 ? "/" : mask.substr(0, slash));
    const std::string pattern = slash == std::string::npos ? mask : mask.substr(slash + 1);
    const bool mlsd = c->OffersMlsd();
    Poco::Net::StreamSocket socket = c->OpenData(mlsd ? "MLSD" : "LIST", dir);
    std::string text;
    {
      TransferGuard guard(*c, socket);
      std::vector<char> block(64 * 1024);
      try {
        for (;;) {
          const std::size_t n = ReceiveFull(socket, block.data(), block.size());
          text.append(block.data(), n);
          if (text.size() > kMaxListingBytes) throw FtpFailure(kErrorInternetInternalError);
          if (n < block.size()) break;
        }
      } catch (const FtpFailure& f) {
        guard.FailWith(f);
      }
      guard.Done();
    }
    FinishTransfer(*c, socket);
    auto object = std::make_shared<FindObject>();
    for (auto& entry : ListingParser(CurrentYear()).ParseListing(text, mlsd)) {
      if (MaskMatches(pattern, entry.name)) object->entries.push_back(std::move(entry));
    }
    if (object->entries.empty()) throw FtpFailure(kErrorNoMoreFiles);
    object->parent = connection;
    object->next = 1;
    FindData first = object->entries.front();
    const InternetHandle h = handles_.Add(object);
    if (h == 0) throw FtpFailure(kErrorInternetInternalError);
    data = std::move(first);
    return h;
  });
}

bool PocoInternetLibrary::FindNextFile(InternetHandle find, FindData& data) {
  return Run<bool>(false, [&] {
    auto object = handles_.Find<FindObject>(find);
    if (!object) throw FtpFailure(kErrorInvalidHandle);
    std::lock_guard<std::mutex> lock(object->mutex);
    if (object->next >= object->entries.size()) throw FtpFailure(kErrorNoMoreFiles);
    data = object->entries[object->next++];
    return true;
  });
}

bool PocoInternetLibrary::GetCurrentDirectory(InternetHandle connection, std::string& directory,
                                              std::uint32_t buffer_length) {
  return Run<bool>(false, [&] {
    Lease c(handles_, connection);
    const FtpReply reply = c->Expect2xx("PWD");
    std::string path;
    if (!ParseQuotedPath(reply.text, path)) throw FtpFailure(kErrorInternetExtendedError, reply.text);
    if (path.size() + 1 > buffer_length) throw FtpFailure(kErrorInsufficientBuffer);
    directory = std::move(path);
    return true;
  });
}

bool PocoInternetLibrary::SimpleCommand(InternetHandle connection, const char* verb, const std::string& arg) {
  return Run<bool>(false, [&] {
    Lease c(handles_, connection);
    if (arg.empty()) throw FtpFailure(kErrorInvalidParameter);
    c->Expect2xx(verb, arg);
    return true;
  });
}

bool PocoInternetLibrary::SetCurrentDirectory(InternetHandle connection, const std::string& directory) {
  return SimpleCommand(connection, "CWD", directory);
}

bool PocoInternetLibrary::CreateDirectory(InternetHandle connection, const std::string& directory) {
  return SimpleCommand(connection, "MKD", directory);
}

bool PocoInternetLibrary::RemoveDirectory(InternetHandle connection, const std::string& directory) {
  return SimpleCommand(connection, "RMD", directory);
}

bool PocoInternetLibrary::DeleteFile(InternetHandle connection, const std::string& name) {
  return SimpleCommand(connection, "DELE", name);
}

bool PocoInternetLibrary::GetFile(InternetHandle connection, const std::string& remote, const std::string& local,
                                  bool fail_if_exists, std::uint32_t, std::uint32_t flags) {
  return Run<bool>(false, [&] {
    Lease c(handles_, connection);
    if (remote.empty() || local.empty()) throw FtpFailure(kErrorInvalidParameter);
    const std::string path = LocalPath(local);
    if (fail_if_exists && ::access(path.c_str(), F_OK) == 0) throw FtpFailure(kErrorFileExists);
    DownloadTarget target(path);
    if (const auto e = target.Open()) throw FtpFailure(e);
    const bool ascii = IsAscii(flags);
    c->SetType(ascii ? TransferType::kAscii : TransferType::kBinary);
    Poco::Net::StreamSocket socket = c->OpenData("RETR", remote);
    std::vector<char> block(kBlock);
    LineEndConverter converter;
    std::string converted;
    {
      TransferGuard guard(*c, socket);
      try {
        for (;;) {
          const std::size_t n = ReceiveFull(socket, block.data(), block.size());
          std::uint32_t e = 0;
          if (ascii) {
            converted.clear();
            converter.Convert(block.data(), n, converted);
            if (n < block.size()) converter.Finish(converted);
            e = target.Write(converted.data(), converted.size());
          } else {
            e = target.Write(block.data(), n);
          }
          if (e != 0) throw FtpFailure(e);
          if (n < block.size()) break;
        }
      } catch (const FtpFailure& f) {
        guard.FailWith(f);
      }
      guard.Done();
    }
    FinishTransfer(*c, socket);
    if (const auto e = target.Commit()) throw FtpFailure(e);
    return true;
  });
}

bool PocoInternetLibrary::PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
                                  std::uint32_t flags) {
  return Run<bool>(false, [&] {
    Lease c(handles_, connection);
    if (remote.empty() || local.empty()) throw FtpFailure(kErrorInvalidParameter);
    const std::string path = LocalPath(local);
    struct Fd {
      int fd;
      ~Fd() {
        if (fd >= 0) ::close(fd);
      }
    } file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0) throw FtpFailure(LocalError(errno));
    struct stat st {};
    if (::fstat(file.fd, &st) != 0 || !S_ISREG(st.st_mode)) throw FtpFailure(kErrorAccessDenied);
    const bool ascii = IsAscii(flags);
    c->SetType(ascii ? TransferType::kAscii : TransferType::kBinary);
    Poco::Net::StreamSocket socket = c->OpenData("STOR", remote);
    std::vector<char> block(kBlock);
    LineEndConverter converter;
    std::string converted;
    {
      TransferGuard guard(*c, socket);
      try {
        for (;;) {
          const ssize_t n = ::read(file.fd, block.data(), block.size());
          if (n < 0) {
            if (errno == EINTR) continue;
            throw FtpFailure(kErrorAccessDenied);
          }
          if (ascii) {
            converted.clear();
            converter.Convert(block.data(), static_cast<std::size_t>(n), converted);
            if (n == 0) converter.Finish(converted);
            SendAll(socket, converted.data(), converted.size());
          } else {
            SendAll(socket, block.data(), static_cast<std::size_t>(n));
          }
          if (n == 0) break;
        }
      } catch (const FtpFailure& f) {
        guard.FailWith(f);
      }
      guard.Done();
    }
    FinishTransfer(*c, socket, true);
    return true;
  });
}

InternetHandle PocoInternetLibrary::OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                                             std::uint32_t flags) {
  return Run<InternetHandle>(0, [&] {
    Lease c(handles_, connection);
    if (name.empty() || (access != kGenericRead && access != kGenericWrite)) throw FtpFailure(kErrorInvalidParameter);
    auto file = std::make_shared<FileObject>();
    file->owner = c.object();
    file->write = access == kGenericWrite;
    file->ascii = IsAscii(flags);
    file->parent = connection;
    c->SetType(file->ascii ? TransferType::kAscii : TransferType::kBinary);
    file->data = c->OpenData(file->write ? "STOR" : "RETR", name);
    const InternetHandle h = handles_.Add(file);
    if (h == 0) {
      TransferGuard::Abandon(*c, file->data);
      throw FtpFailure(kErrorInternetInternalError);
    }
    file->owner->busy = true;
    return h;
  });
}

bool PocoInternetLibrary::ReadFile(InternetHandle handle, void* buffer, std::uint32_t to_read, std::uint32_t& read) {
  read = 0;
  return Run<bool>(false, [&] {
    auto file = handles_.Find<FileObject>(handle);
    if (!file) throw FtpFailure(kErrorInvalidHandle);
    if (file->write) throw FtpFailure(kErrorInternetIncorrectHandleState);
    if (buffer == nullptr && to_read != 0) throw FtpFailure(kErrorInvalidParameter);
    std::lock_guard<std::mutex> lock(file->owner->mutex);
    if (!file->owner->connection) throw FtpFailure(kErrorInternetConnectionAborted);
    FtpConnection& connection = *file->owner->connection;
    char* out = static_cast<char*>(buffer);
    if (file->ended) {
      // Only converted bytes of an ASCII read can be left after the end.
      const std::size_t n = std::min<std::size_t>(to_read, file->pending.size() - file->pending_pos);
      std::copy_n(file->pending.data() + file->pending_pos, n, out);
      file->pending_pos += n;
      read = static_cast<std::uint32_t>(n);
      return true;
    }
    TransferGuard guard(connection, file->data);
    bool at_end = false;
    std::size_t got = 0;
    try {
      if (!file->ascii) {
        got = ReceiveFull(file->data, out, to_read);
        at_end = got < to_read;
      } else {
        std::vector<char> block(std::min<std::size_t>(kBlock, std::max<std::size_t>(to_read, 4096)));
        while (file->pending.size() - file->pending_pos < to_read && !at_end) {
          if (file->pending_pos > 0) {
            file->pending.erase(0, file->pending_pos);
            file->pending_pos = 0;
          }
          const std::size_t n = ReceiveFull(file->data, block.data(), block.size());
          file->converter.Convert(block.data(), n, file->pending);
          at_end = n < block.size();
          if (at_end) file->converter.Finish(file->pending);
        }
        got = std::min<std::size_t>(to_read, file->pending.size() - file->pending_pos);
        std::copy_n(file->pending.data() + file->pending_pos, got, out);
        file->pending_pos += got;
      }
    } catch (const FtpFailure& f) {
      file->ended = true;  // abandoned: the handle now only closes
      guard.FailWith(f);
    }
    guard.Done();
    if (at_end) {
      file->ended = true;
      FinishTransfer(connection, file->data);
    }
    read = static_cast<std::uint32_t>(got);
    return true;
  });
}

bool PocoInternetLibrary::WriteFile(InternetHandle handle, const void* buffer, std::uint32_t to_write,
                                    std::uint32_t& written) {
  written = 0;
  return Run<bool>(false, [&] {
    auto file = handles_.Find<FileObject>(handle);
    if (!file) throw FtpFailure(kErrorInvalidHandle);
    if (!file->write || file->ended) throw FtpFailure(kErrorInternetIncorrectHandleState);
    if (buffer == nullptr && to_write != 0) throw FtpFailure(kErrorInvalidParameter);
    std::lock_guard<std::mutex> lock(file->owner->mutex);
    if (!file->owner->connection) throw FtpFailure(kErrorInternetConnectionAborted);
    FtpConnection& connection = *file->owner->connection;
    const char* in = static_cast<const char*>(buffer);
    {
      // A failed write abandons the upload; the handle then only closes.
      struct EndOnFailure {
        FileObject& f;
        bool ok = false;
        ~EndOnFailure() {
          if (!ok) f.ended = true;
        }
      } end_on_failure{*file};
      TransferGuard guard(connection, file->data);
      try {
        if (file->ascii) {
          std::string converted;
          file->converter.Convert(in, to_write, converted);
          SendAll(file->data, converted.data(), converted.size());
        } else {
          SendAll(file->data, in, to_write);
        }
      } catch (const FtpFailure& f) {
        guard.FailWith(f);
      }
      guard.Done();
      end_on_failure.ok = true;
    }
    written = to_write;
    return true;
  });
}

}  // namespace tolva::platform::posix::ftp
