// The Internet (FTP client) library the FTP members talk to: an FTP client
// session behind opaque 32-bit handles, with a per-thread last error number
// in the classic Windows numbering. Every call returns 0 / false on failure
// and then leaves the reason in LastError(); 12003 means the server answered
// with an error and LastResponseInfo() holds its full reply.
//
// Handles: Open() returns an Internet handle, Connect() a connection handle
// beneath it, FindFirstFile() a search handle and OpenFile() a file handle
// beneath a connection. All are non-zero and closed with CloseHandle().
// Closing a connection while a search or file is open under it closes them
// too. One connection runs one command at a time: while a search or file
// handle is open on it, other commands on that connection may fail with
// kErrorFtpTransferInProgress.
#ifndef TOLVA_PLATFORM_INTERNET_H_
#define TOLVA_PLATFORM_INTERNET_H_

#include <cstdint>
#include <string>

#include "tolva/export.h"

namespace tolva::platform {

using InternetHandle = std::uint32_t;

// Error numbers (Windows numbering, as hosts check them).
inline constexpr std::uint32_t kErrorNoMoreFiles = 18;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorInternetTimeout = 12002;
inline constexpr std::uint32_t kErrorInternetExtendedError = 12003;
inline constexpr std::uint32_t kErrorInternetInternalError = 12004;
inline constexpr std::uint32_t kErrorInternetNameNotResolved = 12007;
inline constexpr std::uint32_t kErrorInternetIncorrectHandleState = 12019;
inline constexpr std::uint32_t kErrorInternetLoginFailure = 12015;
inline constexpr std::uint32_t kErrorInternetCannotConnect = 12029;
inline constexpr std::uint32_t kErrorInternetConnectionAborted = 12030;
inline constexpr std::uint32_t kErrorInternetConnectionReset = 12031;
inline constexpr std::uint32_t kErrorFtpTransferInProgress = 12110;
inline constexpr std::uint32_t kErrorFtpDropped = 12111;
inline constexpr std::uint32_t kErrorDiskFull = 112;    // local file could not be written: disk full
inline constexpr std::uint32_t kErrorAccessDenied = 5;  // local file could not be opened
inline constexpr std::uint32_t kErrorFileNotFound = 2;  // local file missing (put)

// Flags and constants the FTP members pass.
inline constexpr std::uint32_t kInternetOpenTypeDirect = 1;
inline constexpr std::uint32_t kInternetServiceFtp = 1;
inline constexpr std::uint32_t kInternetFlagPassive = 0x08000000;
inline constexpr std::uint32_t kInternetFlagReload = 0x80000000;
inline constexpr std::uint32_t kFtpTransferTypeAscii = 1;
inline constexpr std::uint32_t kFtpTransferTypeBinary = 2;
inline constexpr std::uint32_t kGenericRead = 0x80000000;
inline constexpr std::uint32_t kGenericWrite = 0x40000000;
inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;
inline constexpr std::uint32_t kFileAttributeNormal = 0x80;
// Connected-state flags.
inline constexpr std::uint32_t kConnectionLan = 0x02;
inline constexpr std::uint32_t kConnectionConfigured = 0x40;

// Calendar fields of a listed last-write time, as the listing gave them
// (no time-zone conversion). A listing without a year gets the current year.
struct FindTime {
  bool valid = false;
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

// One directory entry of a search.
struct FindData {
  std::uint32_t attributes = 0;  // kFileAttributeDirectory for directories
  std::uint64_t size = 0;        // bytes; the FTP members keep the low 32 bits
  FindTime last_write;
  std::string name;  // as the server listed it; never a trusted path
};

class TOLVA_EXPORT InternetLibrary {
 public:
  virtual ~InternetLibrary() = default;

  // InternetOpen: a new Internet handle for `agent`, or 0.
  virtual InternetHandle Open(const std::string& agent, std::uint32_t access_type, std::uint32_t flags) = 0;
  // InternetConnect: logs in to an FTP server. `host` may carry a port
  // ("host:port", "[v6]:port"); `port` 0 and no port in `host` mean 21.
  // Returns a connection handle, or 0 with LastError() set (name not
  // resolved, cannot connect, time-out, or 12003 / login failure with the
  // server's reply in LastResponseInfo()).
  virtual InternetHandle Connect(InternetHandle internet, const std::string& host, std::uint16_t port,
                                 const std::string& user, const std::string& password, std::uint32_t service,
                                 std::uint32_t flags) = 0;
  // InternetCloseHandle: false (error kErrorInvalidHandle) for 0 or an unknown handle.
  virtual bool CloseHandle(InternetHandle handle) = 0;

  // The calling thread's last error number (0 after a success is not promised).
  virtual std::uint32_t LastError() const = 0;
  // InternetGetLastResponseInfo: the last reply text of the server on this
  // thread, multi-line replies joined with CR LF.
  virtual std::string LastResponseInfo() const = 0;
  // InternetGetConnectedState: true when any network interface is up
  // (loopback counts); `flags` gets kConnectionLan when a non-loopback one is.
  virtual bool GetConnectedState(std::uint32_t& flags) = 0;

  // Connect and read time-outs of connections opened from now on, in ms.
  virtual void SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) = 0;

  // FtpFindFirstFile: lists the current remote directory (MLSD where offered,
  // else LIST), keeps the entries whose names match `mask` (`*` and `?`,
  // matched here, never sent to the server; an empty mask or "*.*" matches
  // all) and returns a search handle with the first entry in `data`, or 0
  // with kErrorNoMoreFiles when nothing matched.
  virtual InternetHandle FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                                       std::uint32_t flags) = 0;
  // InternetFindNextFile: the next entry, or false with kErrorNoMoreFiles.
  virtual bool FindNextFile(InternetHandle find, FindData& data) = 0;

  // FtpGetCurrentDirectory: fails with kErrorInsufficientBuffer when the
  // directory and its terminator do not fit in `buffer_length` characters.
  virtual bool GetCurrentDirectory(InternetHandle connection, std::string& directory, std::uint32_t buffer_length) = 0;
  virtual bool SetCurrentDirectory(InternetHandle connection, const std::string& directory) = 0;
  virtual bool CreateDirectory(InternetHandle connection, const std::string& directory) = 0;
  virtual bool RemoveDirectory(InternetHandle connection, const std::string& directory) = 0;
  virtual bool DeleteFile(InternetHandle connection, const std::string& name) = 0;

  // FtpGetFile: remote file to local file, in one call. `flags` holds the
  // transfer type (ASCII: TYPE A on the wire, CR LF line ends locally).
  // `local` is a local path ("\" and "/" both separators). An existing local
  // file is replaced unless `fail_if_exists`; a failed get does not leave a
  // damaged copy of a file that existed before.
  virtual bool GetFile(InternetHandle connection, const std::string& remote, const std::string& local,
                       bool fail_if_exists, std::uint32_t attributes, std::uint32_t flags) = 0;
  // FtpPutFile: local file to remote file, in one call.
  virtual bool PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
                       std::uint32_t flags) = 0;

  // FtpOpenFile: opens a remote file for reading (kGenericRead) or writing
  // (kGenericWrite); returns a file handle or 0.
  virtual InternetHandle OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                                  std::uint32_t flags) = 0;
  // InternetReadFile: fills `buffer` with `to_read` bytes unless the data
  // ends first; `read` = 0 at the end of the file.
  virtual bool ReadFile(InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) = 0;
  // InternetWriteFile: sends all `to_write` bytes.
  virtual bool WriteFile(InternetHandle file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_INTERNET_H_
