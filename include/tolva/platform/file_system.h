// The local file system as the file, text and FTP members use it. Paths may
// use "\" or "/" as separators; implementations turn "\" into "/". Failures
// come back as a FileError holding the classic run-time number and text
// (53 "File not found", 76 "Path not found", 70 "Permission denied", 75
// "Path/File access error", 61 "Disk full", 57 "Device I/O error", ...).
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

struct FileError {
  int number = 0;           // classic run-time error number; 0 = no error
  std::string description;  // its text ("File not found"); may be empty
  explicit operator bool() const noexcept { return number != 0; }
};

// Attribute bits of a listing, classic numbering.
inline constexpr std::uint32_t kAttrNormal = 0;
inline constexpr std::uint32_t kAttrReadOnly = 1;
inline constexpr std::uint32_t kAttrHidden = 2;
inline constexpr std::uint32_t kAttrSystem = 4;
inline constexpr std::uint32_t kAttrDirectory = 16;

// Local date and time of a file, to the second.
struct FileTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

struct DirEntry {
  std::string name;  // name only, no directory
  std::uint32_t attributes = 0;
  std::uint64_t size = 0;
};

// An open file. Closed by its destructor.
class TOLVA_EXPORT File {
 public:
  virtual ~File() = default;
  File() = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  // Reads up to `n` bytes at the current position; `got` < n only at the end.
  virtual bool Read(void* buffer, std::size_t n, std::size_t& got, FileError& error) = 0;
  // Writes all `n` bytes at the current position.
  virtual bool Write(const void* buffer, std::size_t n, FileError& error) = 0;
  virtual std::uint64_t Size() = 0;
  // Closes; reports a late write error.
  virtual bool Close(FileError& error) = 0;
};

// The bytes of a whole file, read only, valid for as long as the view lives.
class TOLVA_EXPORT FileView {
 public:
  virtual ~FileView() = default;
  FileView() = default;
  FileView(const FileView&) = delete;
  FileView& operator=(const FileView&) = delete;
  virtual std::string_view Bytes() const noexcept = 0;
};

// A view of bytes held in memory: what FileSystem::ViewAll gives by default.
class TOLVA_EXPORT OwnedFileView final : public FileView {
 public:
  explicit OwnedFileView(std::string bytes) noexcept : bytes_(std::move(bytes)) {}
  std::string_view Bytes() const noexcept override { return bytes_; }

 private:
  std::string bytes_;
};

enum class OpenMode {
  kRead,          // existing file, read only
  kWriteReplace,  // create or truncate
  kWriteKeep,     // create when missing; an existing file is written from its first byte, not cut short
};

class TOLVA_EXPORT FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Entries matching `pattern` (a path whose last segment may hold `*` and
  // `?`). With kAttrDirectory in `attributes` directories are listed too;
  // hidden entries (leading ".") only with kAttrHidden. Ordinary files always.
  // A last segment without wildcards names one entry, found whatever its
  // name (hidden or not). A missing directory lists nothing and succeeds.
  virtual bool List(const std::string& pattern, std::uint32_t attributes, std::vector<DirEntry>& out,
                    FileError& error) = 0;
  virtual bool CurrentDirectory(std::string& directory, FileError& error) = 0;
  virtual bool ChangeDirectory(const std::string& directory, FileError& error) = 0;
  // Makes one directory level.
  virtual bool MakeDirectory(const std::string& directory, FileError& error) = 0;
  // Deletes the ordinary files matching `pattern` (53 when none matches).
  virtual bool DeleteFiles(const std::string& pattern, FileError& error) = 0;
  // Resets attributes to normal (makes the file writable).
  virtual bool SetAttributesNormal(const std::string& path, FileError& error) = 0;
  virtual bool Length(const std::string& path, std::uint64_t& length, FileError& error) = 0;
  virtual bool LastWriteTime(const std::string& path, FileTime& time, FileError& error) = 0;
  virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode, FileError& error) = 0;

  // Reads the whole file into `out` (replacing its contents). A file larger
  // than the machine's memory fails with 7 "Out of memory"; a directory with 75.
  virtual bool ReadAll(const std::string& path, std::string& out, FileError& error) = 0;
  // The whole file as a view for readers that parse it in place, or null
  // with `error` set, with the failures of ReadAll. By default it is read
  // into memory; an implementation may map the file instead of copying it.
  virtual std::unique_ptr<FileView> ViewAll(const std::string& path, FileError& error) {
    std::string bytes;
    if (!ReadAll(path, bytes, error)) return nullptr;
    return std::make_unique<OwnedFileView>(std::move(bytes));
  }
  // Replaces the file with `data`: written to a temporary file beside it and
  // renamed over it (flushed first when an old file is replaced), keeping its
  // permissions, so a failed write leaves the old file whole. Devices and
  // pipes are written where they are; a link keeps its target.
  virtual bool WriteAll(const std::string& path, const std::string& data, FileError& error) = 0;

  // $TMPDIR, else /tmp/, with its trailing separator.
  virtual std::string TempPath() = 0;
  // Creates a new empty file "<dir>/<prefix><hex>.tmp" and returns its name.
  virtual bool TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                            FileError& error) = 0;
  // This platform's stand-ins for the Windows and system directories.
  virtual std::string WindowsDirectory() = 0;
  virtual std::string SystemDirectory() = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_FILE_SYSTEM_H_
