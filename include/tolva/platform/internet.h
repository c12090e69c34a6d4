// The Internet (FTP client) library interface: InternetLibrary, its handles,
// error numbers and flags.
#ifndef TOLVA_PLATFORM_INTERNET_H_
#define TOLVA_PLATFORM_INTERNET_H_

#include <cstdint>
#include <string>

#include "tolva/export.h"

namespace tolva::platform {

/// An opaque handle of the Internet library; 0 is none.
using InternetHandle = std::uint32_t;

/// Error numbers, in the Windows numbering hosts check: 18, no more files (a search found nothing more).
inline constexpr std::uint32_t kErrorNoMoreFiles = 18;
/// 6: the handle is 0 or unknown.
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
/// 87: an argument is invalid.
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
/// 122: the result does not fit the buffer length given.
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
/// 12002: the connect or read time-out passed.
inline constexpr std::uint32_t kErrorInternetTimeout = 12002;
/// 12003: the server answered with an error; LastResponseInfo() holds its reply.
inline constexpr std::uint32_t kErrorInternetExtendedError = 12003;
/// 12004: an internal error of the library.
inline constexpr std::uint32_t kErrorInternetInternalError = 12004;
/// 12007: the host name could not be resolved.
inline constexpr std::uint32_t kErrorInternetNameNotResolved = 12007;
/// 12019: the handle is in the wrong state for the call.
inline constexpr std::uint32_t kErrorInternetIncorrectHandleState = 12019;
/// 12015: the server refused the user ID or password.
inline constexpr std::uint32_t kErrorInternetLoginFailure = 12015;
/// 12029: no connection to the server could be made.
inline constexpr std::uint32_t kErrorInternetCannotConnect = 12029;
/// 12030: the connection was aborted.
inline constexpr std::uint32_t kErrorInternetConnectionAborted = 12030;
/// 12031: the connection was reset.
inline constexpr std::uint32_t kErrorInternetConnectionReset = 12031;
/// 12110: a search or file is still open on the connection.
inline constexpr std::uint32_t kErrorFtpTransferInProgress = 12110;
/// 12111: the FTP connection was dropped.
inline constexpr std::uint32_t kErrorFtpDropped = 12111;
/// TLS: the server's certificate is out of its validity dates.
inline constexpr std::uint32_t kErrorInternetSecCertDateInvalid = 12037;
/// TLS: the server's certificate names another host.
inline constexpr std::uint32_t kErrorInternetSecCertCnInvalid = 12038;
/// TLS: the server's certificate comes from no trusted authority.
inline constexpr std::uint32_t kErrorInternetInvalidCa = 12045;
/// TLS: any other failure to secure the connection (the server refused TLS, the handshake broke).
inline constexpr std::uint32_t kErrorInternetSecurityChannelError = 12157;
inline constexpr std::uint32_t kErrorDiskFull = 112;    ///< local file could not be written: disk full
inline constexpr std::uint32_t kErrorAccessDenied = 5;  ///< local file could not be opened
inline constexpr std::uint32_t kErrorFileNotFound = 2;  ///< local file missing (put)

/// Flags and constants the FTP members pass. Open(): connect directly, no proxy.
inline constexpr std::uint32_t kInternetOpenTypeDirect = 1;
/// Connect(): the FTP service.
inline constexpr std::uint32_t kInternetServiceFtp = 1;
/// Connect(): passive mode.
inline constexpr std::uint32_t kInternetFlagPassive = 0x08000000;
/// Fetch from the server, never from a cache.
inline constexpr std::uint32_t kInternetFlagReload = 0x80000000;
/// Transfer as text: TYPE A on the wire, CR LF line ends locally.
inline constexpr std::uint32_t kFtpTransferTypeAscii = 1;
/// Transfer the bytes as they are.
inline constexpr std::uint32_t kFtpTransferTypeBinary = 2;
/// OpenFile(): open for reading.
inline constexpr std::uint32_t kGenericRead = 0x80000000;
/// OpenFile(): open for writing.
inline constexpr std::uint32_t kGenericWrite = 0x40000000;
/// FindData::attributes bit of a directory.
inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;
/// GetFile(): an ordinary local file.
inline constexpr std::uint32_t kFileAttributeNormal = 0x80;
/// Connected-state flag: a network interface other than loopback is up.
inline constexpr std::uint32_t kConnectionLan = 0x02;
/// Connected-state flag: a connection is configured.
inline constexpr std::uint32_t kConnectionConfigured = 0x40;

/// How connections opened from now on are secured.
enum class FtpSecurity : std::uint32_t {
  kPlain = 0,           ///< no TLS
  kTlsRequired = 1,     ///< AUTH TLS; a server that refuses it is not logged in to
  kTlsWhenOffered = 2,  ///< AUTH TLS, else plain
};

/// Calendar fields of a listed last-write time, as the listing gave them (no time-zone conversion).
/// A listing without a year gets the current year.
struct FindTime {
  /// Whether the listing gave a time at all.
  bool valid = false;
  /// @{
  /// The calendar fields: year, month (1-12), day (1-31), hour (0-23), minute and second.
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  /// @}
};

/// One directory entry of a search.
struct FindData {
  std::uint32_t attributes = 0;  ///< kFileAttributeDirectory for directories
  std::uint64_t size = 0;        ///< bytes; the FTP members keep the low 32 bits
  /// The last-write time.
  FindTime last_write;
  std::string name;  ///< as the server listed it; never a trusted path
};

/// The Internet (FTP client) library the FTP members talk to: an FTP client session behind opaque 32-bit
/// handles, with a per-thread last error number in the classic Windows numbering. Every call returns 0 / false
/// on failure and then leaves the reason in LastError(); 12003 means the server answered with an error and
/// LastResponseInfo() holds its full reply.
///
/// Handles: Open() returns an Internet handle, Connect() a connection handle beneath it, FindFirstFile() a
/// search handle and OpenFile() a file handle beneath a connection. All are non-zero and closed with
/// CloseHandle(). Closing a connection while a search or file is open under it closes them too. One
/// connection runs one command at a time: while a search or file handle is open on it, other commands on
/// that connection may fail with kErrorFtpTransferInProgress.
class TOLVA_EXPORT InternetLibrary {
 public:
  /// Destroys the library.
  virtual ~InternetLibrary() = default;

  /// InternetOpen: a new Internet handle for `agent` with `access_type` and `flags`, or 0.
  virtual InternetHandle Open(const std::string& agent, std::uint32_t access_type, std::uint32_t flags) = 0;
  /// InternetConnect: logs in to an FTP server under the Internet handle `internet`. `host` may carry a port
  /// ("host:port", "[v6]:port"); `port` 0 and no port in `host` mean 21. `user` and `password` log in;
  /// `service` is kInternetServiceFtp, `flags` kInternetFlagPassive. Returns a connection handle, or 0 with
  /// LastError() set (name not resolved, cannot connect, time-out, or 12003 / login failure with the server's
  /// reply in LastResponseInfo()).
  virtual InternetHandle Connect(InternetHandle internet, const std::string& host, std::uint16_t port,
                                 const std::string& user, const std::string& password, std::uint32_t service,
                                 std::uint32_t flags) = 0;
  /// InternetCloseHandle: closes `handle`; false (error kErrorInvalidHandle) for 0 or an unknown handle.
  virtual bool CloseHandle(InternetHandle handle) = 0;

  /// The calling thread's last error number (0 after a success is not promised).
  virtual std::uint32_t LastError() const = 0;
  /// InternetGetLastResponseInfo: the last reply text of the server on this thread, multi-line replies
  /// joined with CR LF.
  virtual std::string LastResponseInfo() const = 0;
  /// InternetGetConnectedState: true when any network interface is up (loopback counts); `flags` gets
  /// kConnectionLan when a non-loopback one is.
  virtual bool GetConnectedState(std::uint32_t& flags) = 0;

  /// Sets the connect (`connect_ms`) and read (`read_ms`) time-outs of connections opened from now on, in ms.
  virtual void SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) = 0;
  /// Security of connections opened from now on. With TLS the control
  /// connection is secured before USER is sent, and every data connection
  /// too (PBSZ 0, PROT P). The server's name is always checked against its certificate.
  /// @param security plain, TLS required, or TLS when the server offers it
  /// @param certificate_file a PEM file of authorities or of the server's own
  ///        certificate to trust; empty means the system's authorities
  virtual void SetSecurity(FtpSecurity security, const std::string& certificate_file) = 0;

  /// FtpFindFirstFile: lists the current remote directory of `connection` (MLSD where offered, else LIST),
  /// keeps the entries whose names match `mask` (`*` and `?`, matched here, never sent to the server; an empty
  /// mask or "*.*" matches all) and returns a search handle with the first entry in `data`, or 0 with
  /// kErrorNoMoreFiles when nothing matched. `flags` may hold kInternetFlagReload.
  virtual InternetHandle FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                                       std::uint32_t flags) = 0;
  /// InternetFindNextFile: the next entry of the search `find` in `data`, or false with kErrorNoMoreFiles.
  virtual bool FindNextFile(InternetHandle find, FindData& data) = 0;

  /// FtpGetCurrentDirectory: the current remote directory of `connection` into `directory`; fails with
  /// kErrorInsufficientBuffer when the directory and its terminator do not fit in `buffer_length` characters.
  virtual bool GetCurrentDirectory(InternetHandle connection, std::string& directory, std::uint32_t buffer_length) = 0;
  /// FtpSetCurrentDirectory: makes `directory` the current remote directory of `connection`.
  virtual bool SetCurrentDirectory(InternetHandle connection, const std::string& directory) = 0;
  /// FtpCreateDirectory: creates the remote directory `directory`.
  virtual bool CreateDirectory(InternetHandle connection, const std::string& directory) = 0;
  /// FtpRemoveDirectory: removes the remote directory `directory`.
  virtual bool RemoveDirectory(InternetHandle connection, const std::string& directory) = 0;
  /// FtpDeleteFile: deletes the remote file `name`.
  virtual bool DeleteFile(InternetHandle connection, const std::string& name) = 0;

  /// FtpGetFile: `remote` file to `local` file, in one call. `flags` holds the transfer type (ASCII: TYPE A on
  /// the wire, CR LF line ends locally) and may hold kInternetFlagReload; `attributes` is kFileAttributeNormal.
  /// `local` is a local path (`\` and `/` both separators). An existing local file is replaced unless
  /// `fail_if_exists`; a failed get does not leave a damaged copy of a file that existed before.
  virtual bool GetFile(InternetHandle connection, const std::string& remote, const std::string& local,
                       bool fail_if_exists, std::uint32_t attributes, std::uint32_t flags) = 0;
  /// FtpPutFile: `local` file to `remote` file, in one call, with the transfer type in `flags`.
  virtual bool PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
                       std::uint32_t flags) = 0;

  /// FtpOpenFile: opens the remote file `name` for reading (`access` kGenericRead) or writing (kGenericWrite)
  /// with the transfer type in `flags`; returns a file handle or 0.
  virtual InternetHandle OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                                  std::uint32_t flags) = 0;
  /// InternetReadFile: fills `buffer` with `to_read` bytes of `file` unless the data ends first; `read` gets
  /// the number read, 0 at the end of the file.
  virtual bool ReadFile(InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) = 0;
  /// InternetWriteFile: sends all `to_write` bytes of `buffer` to `file`; `written` gets the number sent.
  virtual bool WriteFile(InternetHandle file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_INTERNET_H_
