// The local file system interface: FileSystem, open files, listings and
// their error and attribute numbers.
#ifndef TOLVA_PLATFORM_FILE_SYSTEM_H_
#define TOLVA_PLATFORM_FILE_SYSTEM_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tolva/export.h"

namespace tolva::platform {

/// The outcome of a file operation: a classic run-time error number and its text.
struct FileError {
  int number = 0;           ///< classic run-time error number; 0 = no error
  std::string description;  ///< its text ("File not found"); may be empty
  /// True when an error occurred.
  explicit operator bool() const noexcept { return number != 0; }
};

/// Attribute bits of a listing, classic numbering: an ordinary file.
inline constexpr std::uint32_t kAttrNormal = 0;
/// A read-only file.
inline constexpr std::uint32_t kAttrReadOnly = 1;
/// A hidden entry (its name begins with ".").
inline constexpr std::uint32_t kAttrHidden = 2;
/// A system file; never set on this platform.
inline constexpr std::uint32_t kAttrSystem = 4;
/// A directory.
inline constexpr std::uint32_t kAttrDirectory = 16;

/// Local date and time of a file, to the second.
struct FileTime {
  /// @{
  /// The calendar fields: year, month (1-12), day (1-31), hour (0-23), minute and second.
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  /// @}
};

/// One entry of a directory listing.
struct DirEntry {
  std::string name;  ///< name only, no directory
  /// The kAttr bits of the entry.
  std::uint32_t attributes = 0;
  /// The length in bytes.
  std::uint64_t size = 0;
};

/// An open file. Closed by its destructor.
class TOLVA_EXPORT File {
 public:
  /// Closes the file, ignoring a late error; call Close() to learn of one.
  virtual ~File() = default;
  /// A file object; implementations open it.
  File() = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  /// Reads up to `n` bytes at the current position into `buffer`; `got` < `n` only at the end.
  /// False with `error` set on failure.
  virtual bool Read(void* buffer, std::size_t n, std::size_t& got, FileError& error) = 0;
  /// Writes all `n` bytes of `buffer` at the current position; false with `error` set on failure.
  virtual bool Write(const void* buffer, std::size_t n, FileError& error) = 0;
  /// The file's length in bytes.
  virtual std::uint64_t Size() = 0;
  /// Closes the file; false with `error` set when a late write error shows.
  virtual bool Close(FileError& error) = 0;
};

/// The bytes of a whole file, read only, valid for as long as the view lives.
class TOLVA_EXPORT FileView {
 public:
  /// Releases the bytes.
  virtual ~FileView() = default;
  /// A view; implementations fill it.
  FileView() = default;
  FileView(const FileView&) = delete;
  FileView& operator=(const FileView&) = delete;
  /// The file's bytes.
  virtual std::string_view Bytes() const noexcept = 0;
};

/// A view of bytes held in memory: what FileSystem::ViewAll gives by default.
class TOLVA_EXPORT OwnedFileView final : public FileView {
 public:
  /// A view owning `bytes`.
  explicit OwnedFileView(std::string bytes) noexcept : bytes_(std::move(bytes)) {}
  /// The bytes held.
  std::string_view Bytes() const noexcept override { return bytes_; }

 private:
  std::string bytes_;
};

/// How FileSystem::Open opens a file.
enum class OpenMode {
  kRead,          ///< existing file, read only
  kWriteReplace,  ///< create or truncate
  kWriteKeep,     ///< create when missing; an existing file is written from its first byte, not cut short
};

/// The local file system as the file, text and FTP members use it. Paths may use `\` or `/` as
/// separators; implementations turn `\` into `/`. Failures come back as a FileError holding the classic
/// run-time number and text (53 "File not found", 76 "Path not found", 70 "Permission denied", 75
/// "Path/File access error", 61 "Disk full", 57 "Device I/O error", ...).
class TOLVA_EXPORT FileSystem {
 public:
  /// Destroys the service.
  virtual ~FileSystem() = default;

  /// Puts the entries matching `pattern` (a path whose last segment may hold `*` and `?`) into `out`.
  /// With kAttrDirectory in `attributes` directories are listed too; hidden entries (leading ".") only with
  /// kAttrHidden. Ordinary files always. A last segment without wildcards names one entry, found whatever its
  /// name (hidden or not). A missing directory lists nothing and succeeds; false with `error` set on failure.
  virtual bool List(const std::string& pattern, std::uint32_t attributes, std::vector<DirEntry>& out,
                    FileError& error) = 0;
  /// Puts the current directory into `directory`; false with `error` set on failure.
  virtual bool CurrentDirectory(std::string& directory, FileError& error) = 0;
  /// Makes `directory` the current directory; false with `error` set on failure.
  virtual bool ChangeDirectory(const std::string& directory, FileError& error) = 0;
  /// Makes the one directory level `directory`; false with `error` set on failure.
  virtual bool MakeDirectory(const std::string& directory, FileError& error) = 0;
  /// Deletes the ordinary files matching `pattern`; false with `error` set (53 when none matches).
  virtual bool DeleteFiles(const std::string& pattern, FileError& error) = 0;
  /// Resets the attributes of `path` to normal (makes the file writable); false with `error` set on failure.
  virtual bool SetAttributesNormal(const std::string& path, FileError& error) = 0;
  /// Puts the length of the file `path` into `length`; false with `error` set on failure.
  virtual bool Length(const std::string& path, std::uint64_t& length, FileError& error) = 0;
  /// Puts the local last-write time of `path` into `time`; false with `error` set on failure.
  virtual bool LastWriteTime(const std::string& path, FileTime& time, FileError& error) = 0;
  /// Opens the file `path` in `mode`; null with `error` set on failure.
  virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode, FileError& error) = 0;

  /// Reads the whole file `path` into `out` (replacing its contents). A file larger than the machine's
  /// memory fails with 7 "Out of memory"; a directory with 75. False with `error` set on failure.
  virtual bool ReadAll(const std::string& path, std::string& out, FileError& error) = 0;
  /// The whole file `path` as a view for readers that parse it in place, or null with `error` set, with
  /// the failures of ReadAll. By default it is read into memory; an implementation may map the file instead
  /// of copying it.
  virtual std::unique_ptr<FileView> ViewAll(const std::string& path, FileError& error) {
    std::string bytes;
    if (!ReadAll(path, bytes, error)) return nullptr;
    return std::make_unique<OwnedFileView>(std::move(bytes));
  }
  /// Replaces the file `path` with `data`: written to a temporary file beside it and renamed over it (flushed
  /// first when an old file is replaced), keeping its permissions, so a failed write leaves the old file whole.
  /// Devices and pipes are written where they are; a link keeps its target. False with `error` set on failure.
  virtual bool WriteAll(const std::string& path, const std::string& data, FileError& error) = 0;

  /// The temporary directory, $TMPDIR, else /tmp/, with its trailing separator.
  virtual std::string TempPath() = 0;
  /// Creates a new empty file `prefix` + hex digits + ".tmp" in `directory` and puts its name into `name`;
  /// false with `error` set on failure.
  virtual bool TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                            FileError& error) = 0;
  /// This platform's stand-in for the Windows directory.
  virtual std::string WindowsDirectory() = 0;
  /// This platform's stand-in for the system directory.
  virtual std::string SystemDirectory() = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_FILE_SYSTEM_H_
