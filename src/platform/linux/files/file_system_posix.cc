// POSIX implementation of the file-system service. Paths arrive in the
// host's form ("\" or "/") and are turned to "/" here; every failure comes
// back as the classic run-time number and text.
#include "platform/linux/files/file_system_posix.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <new>

#include "tolva/platform/file_patterns.h"
#include "platform/linux/files/file_system_errors.h"
#include "platform/linux/files/page_cache.h"
#include "platform/linux/files/whole_file_read.h"

namespace tolva::platform::posix {

namespace {

using platform::ToPlatformPath;

// Closes a descriptor on every path out of a scope.
class Fd {
 public:
  explicit Fd(int fd = -1) noexcept : fd_(fd) {}
  ~Fd() { Reset(); }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  int get() const noexcept { return fd_; }
  int Release() noexcept {
    int fd = fd_;
    fd_ = -1;
    return fd;
  }
  void Reset(int fd = -1) noexcept {
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }

 private:
  int fd_;
};

bool Fail(FileError& error, FileError e) {
  error = std::move(e);
  return false;
}

bool FailErrno(FileError& error, FileOp op = FileOp::kOpenFile) {
  const int err = errno;
  return Fail(error, ClassicFileError(err, op));
}

// ENOENT for a file whose directory is missing is "Path not found".
FileError MissingFileError(const std::string& path) {
  std::string dir, last;
  platform::SplitLastSegment(path, dir, last);
  struct stat st {};
  if (!dir.empty() && (::stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))) return ClassicError(kErrPathNotFound);
  return ClassicError(kErrFileNotFound);
}

bool FailOpen(FileError& error, const std::string& path) {
  const int err = errno;
  return Fail(error, err == ENOENT ? MissingFileError(path) : ClassicFileError(err));
}

// Writes all of `data`, resuming after signals and short writes.
bool WriteFully(int fd, const char* data, std::size_t n, FileError& error) {
  while (n > 0) {
    // Chunks keep one call from holding more than a slice of the cache at once.
    const std::size_t chunk = n < (std::size_t{1} << 30) ? n : (std::size_t{1} << 30);
    const ssize_t w = ::write(fd, data, chunk);
    if (w < 0) {
      if (errno == EINTR) continue;
      return FailErrno(error);
    }
    if (w == 0) return Fail(error, ClassicError(kErrDiskFull));
    data += w;
    n -= static_cast<std::size_t>(w);
  }
  return true;
}

// Reads until `n` bytes or the end; `got` tells how many arrived.
bool ReadFully(int fd, char* data, std::size_t n, std::size_t& got, FileError& error) {
  got = 0;
  while (got < n) {
    const ssize_t r = ::read(fd, data + got, n - got);
    if (r < 0) {
      if (errno == EINTR) continue;
      return FailErrno(error);
    }
    if (r == 0) break;
    got += static_cast<std::size_t>(r);
  }
  return true;
}

// The memory this machine has; a file larger than that cannot be held whole.
std::uint64_t PhysicalMemory() noexcept {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long size = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || size <= 0) return UINT64_MAX;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size);
}

// Smaller files are copied: that costs next to nothing, and they then never
// depend on a mapping.
constexpr std::uint64_t kMapFrom = std::uint64_t{1} << 20;

class MappedView final : public FileView {
 public:
  MappedView(void* mapping, std::size_t size) noexcept : mapping_(mapping), size_(size) {}
  ~MappedView() override { ::munmap(mapping_, size_); }
  std::string_view Bytes() const noexcept override { return {static_cast<const char*>(mapping_), size_}; }

 private:
  void* mapping_;
  std::size_t size_;
};

class PosixFile : public File {
 public:
  explicit PosixFile(int fd) : fd_(fd) {}
  bool Read(void* buffer, std::size_t n, std::size_t& got, FileError& error) override {
    return ReadFully(fd_.get(), static_cast<char*>(buffer), n, got, error);
  }
  bool Write(const void* buffer, std::size_t n, FileError& error) override {
    return WriteFully(fd_.get(), static_cast<const char*>(buffer), n, error);
  }
  std::uint64_t Size() override {
    struct stat st {};
    return ::fstat(fd_.get(), &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
  }
  bool Close(FileError& error) override {
    if (fd_.get() < 0) return true;
    const int fd = fd_.Release();
    if (::close(fd) != 0 && errno != EINTR) return FailErrno(error);
    return true;
  }

 private:
  Fd fd_;
};

std::uint32_t AttributesOf(const std::string& name, const struct stat& st, const std::string& full) {
  std::uint32_t a = kAttrNormal;
  if (S_ISDIR(st.st_mode)) a |= kAttrDirectory;
  if (!name.empty() && name[0] == '.') a |= kAttrHidden;
  if (!S_ISDIR(st.st_mode) && ::access(full.c_str(), W_OK) != 0) a |= kAttrReadOnly;
  return a;
}

std::string JoinPath(const std::string& dir, const std::string& name) {
  if (dir.empty()) return name;
  return dir.back() == '/' ? dir + name : dir + "/" + name;
}

class PosixFileSystem : public FileSystem {
 public:
  bool List(const std::string& pattern, std::uint32_t attributes, std::vector<DirEntry>& out,
            FileError& error) override {
    out.clear();
    const std::string path = ToPlatformPath(pattern);
    if (path.empty()) return true;
    std::string dir, last;
    platform::SplitLastSegment(path, dir, last);
    if (!platform::HasWildcard(last)) {
      // An exactly named entry is found whatever its name: only a pattern
      // leaves hidden names out, as a shell's "*" does.
      struct stat st {};
      if (::stat(path.c_str(), &st) != 0) return true;
      if (S_ISDIR(st.st_mode) && !(attributes & kAttrDirectory)) return true;
      std::string name = last;
      if (name.empty()) {
        const std::string parent = dir;
        platform::SplitLastSegment(parent, dir, name);
      }
      out.push_back({name, AttributesOf(name, st, path) & ~kAttrHidden, static_cast<std::uint64_t>(st.st_size)});
      return true;
    }
    DIR* d = ::opendir(dir.empty() ? "." : dir.c_str());
    if (!d) {
      if (errno == ENOENT || errno == ENOTDIR) return true;  // nothing matches in a missing directory
      return FailErrno(error, FileOp::kDirectory);
    }
    struct Closer {
      DIR* d;
      ~Closer() { ::closedir(d); }
    } closer{d};
    while (struct dirent* e = ::readdir(d)) {
      const std::string name = e->d_name;
      if (name == "." || name == "..") continue;
      if (name[0] == '.' && !(attributes & kAttrHidden)) continue;
      if (!platform::MatchWildcard(name, last)) continue;
      const std::string full = JoinPath(dir, name);
      struct stat st {};
      if (::stat(full.c_str(), &st) != 0) continue;  // vanished, or a dangling link
      if (S_ISDIR(st.st_mode) && !(attributes & kAttrDirectory)) continue;
      out.push_back({name, AttributesOf(name, st, full), static_cast<std::uint64_t>(st.st_size)});
    }
    return true;
  }

  bool CurrentDirectory(std::string& directory, FileError& error) override {
    std::string buf(256, '\0');
    for (;;) {
      if (::getcwd(buf.data(), buf.size())) {
        buf.resize(std::char_traits<char>::length(buf.c_str()));
        directory = std::move(buf);
        return true;
      }
      if (errno != ERANGE || buf.size() > (1u << 20)) return FailErrno(error, FileOp::kDirectory);
      buf.resize(buf.size() * 2);
    }
  }

  bool ChangeDirectory(const std::string& directory, FileError& error) override {
    const std::string path = ToPlatformPath(directory);
    if (path.empty()) return Fail(error, ClassicError(kErrPathNotFound));
    if (::chdir(path.c_str()) != 0) return FailErrno(error, FileOp::kDirectory);
    return true;
  }

  bool MakeDirectory(const std::string& directory, FileError& error) override {
    const std::string path = ToPlatformPath(directory);
    if (path.empty()) return Fail(error, ClassicError(kErrPathNotFound));
    if (::mkdir(path.c_str(), 0777) != 0) return FailErrno(error, FileOp::kDirectory);
    return true;
  }

  bool DeleteFiles(const std::string& pattern, FileError& error) override {
    const std::string path = ToPlatformPath(pattern);
    std::string dir, last;
    platform::SplitLastSegment(path, dir, last);
    std::vector<std::string> victims;
    if (!platform::HasWildcard(last)) {
      struct stat st {};
      if (path.empty() || last.empty() || ::lstat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode))
        return Fail(error, path.empty() ? ClassicError(kErrBadFileName) : MissingFileError(path));
      victims.push_back(path);
    } else {
      std::vector<DirEntry> found;
      if (!List(path, kAttrNormal, found, error)) return false;
      for (const auto& e : found) victims.push_back(JoinPath(dir, e.name));
    }
    if (victims.empty()) return Fail(error, ClassicError(kErrFileNotFound));
    // Every file that can go goes; the first failure is the one reported.
    bool ok = true;
    for (const auto& v : victims) {
      if (::unlink(v.c_str()) != 0 && errno != ENOENT && ok) ok = FailErrno(error, FileOp::kDelete);
    }
    return ok;
  }

  bool SetAttributesNormal(const std::string& path, FileError& error) override {
    const std::string p = ToPlatformPath(path);
    struct stat st {};
    if (::stat(p.c_str(), &st) != 0) return FailOpen(error, p);
    if (::chmod(p.c_str(), (st.st_mode & 07777) | S_IWUSR) != 0) return FailErrno(error);
    return true;
  }

  bool Length(const std::string& path, std::uint64_t& length, FileError& error) override {
    const std::string p = ToPlatformPath(path);
    struct stat st {};
    if (p.empty()) return Fail(error, ClassicError(kErrBadFileName));
    if (::stat(p.c_str(), &st) != 0) return FailOpen(error, p);
    if (S_ISDIR(st.st_mode)) return Fail(error, ClassicError(kErrPathFileAccess));
    length = static_cast<std::uint64_t>(st.st_size);
    return true;
  }

  bool LastWriteTime(const std::string& path, FileTime& time, FileError& error) override {
    const std::string p = ToPlatformPath(path);
    struct stat st {};
    if (::stat(p.c_str(), &st) != 0) return FailOpen(error, p);
    struct tm tm {};
    const time_t t = st.st_mtim.tv_sec;
    if (!::localtime_r(&t, &tm)) return Fail(error, ClassicError(kErrDeviceIo));
    time = {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
    return true;
  }

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, FileError& error) override {
    const std::string p = ToPlatformPath(path);
    if (p.empty()) {
      Fail(error, ClassicError(kErrBadFileName));
      return nullptr;
    }
    int flags = O_CLOEXEC;
    switch (mode) {
      case OpenMode::kRead:
        flags |= O_RDONLY;
        break;
      case OpenMode::kWriteReplace:
        flags |= O_WRONLY | O_CREAT | O_TRUNC;
        break;
      case OpenMode::kWriteKeep:
        flags |= O_WRONLY | O_CREAT;
        break;
    }
    Fd fd(::open(p.c_str(), flags, 0666));
    if (fd.get() < 0) {
      FailOpen(error, p);
      return nullptr;
    }
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0) {
      FailErrno(error);
      return nullptr;
    }
    // A directory opens for reading here, but it is not a file to the host.
    if (S_ISDIR(st.st_mode)) {
      Fail(error, ClassicError(kErrPathFileAccess));
      return nullptr;
    }
    auto file = std::make_unique<PosixFile>(fd.get());
    fd.Release();
    return file;
  }

  bool ReadAll(const std::string& path, std::string& out, FileError& error) override {
    out.clear();
    const std::string p = ToPlatformPath(path);
    if (p.empty()) return Fail(error, ClassicError(kErrBadFileName));
    Fd fd(::open(p.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) return FailOpen(error, p);
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0) return FailErrno(error);
    if (S_ISDIR(st.st_mode)) return Fail(error, ClassicError(kErrPathFileAccess));
    try {
      if (S_ISREG(st.st_mode) && st.st_size > 0) {
        const auto size = static_cast<std::uint64_t>(st.st_size);
        if (size >= out.max_size() || size > PhysicalMemory()) return Fail(error, ClassicError(kErrOutOfMemory));
        // Read straight into the string that is handed back, so the file is
        // copied once and memory peaks at its size.
        if (const int err = ReadRegularFile(fd.get(), size, out); err != 0) {
          errno = err;
          return FailErrno(error);
        }
        return true;
      }
      // Pipes and files that do not know their size: read until the end.
      char buf[64 * 1024];
      for (;;) {
        std::size_t got = 0;
        if (!ReadFully(fd.get(), buf, sizeof buf, got, error)) return false;
        out.append(buf, got);
        if (got < sizeof buf) return true;
      }
    } catch (const std::bad_alloc&) {
      out.clear();
      return Fail(error, ClassicError(kErrOutOfMemory));
    } catch (const std::length_error&) {
      out.clear();
      return Fail(error, ClassicError(kErrOutOfMemory));
    }
  }

  // Large regular files are mapped rather than copied: copying hundreds of
  // megabytes into fresh memory costs more than parsing them. Small ones,
  // and anything that cannot be mapped, are read as ReadAll reads them.
  std::unique_ptr<FileView> ViewAll(const std::string& path, FileError& error) override {
    const std::string p = ToPlatformPath(path);
    if (!p.empty()) {
      Fd fd(::open(p.c_str(), O_RDONLY | O_CLOEXEC));
      struct stat st {};
      if (fd.get() >= 0 && ::fstat(fd.get(), &st) == 0 && S_ISREG(st.st_mode) &&
          static_cast<std::uint64_t>(st.st_size) >= kMapFrom &&
          static_cast<std::uint64_t>(st.st_size) <= PhysicalMemory()) {
        const auto size = static_cast<std::size_t>(st.st_size);
        // Populated at once: one pass through the kernel instead of a page
        // fault every 4 KiB while parsing. The mapping outlives the descriptor.
        void* mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd.get(), 0);
        if (mapping != MAP_FAILED) return std::make_unique<MappedView>(mapping, size);
      }
    }
    return FileSystem::ViewAll(path, error);
  }

  bool WriteAll(const std::string& path, const std::string& data, FileError& error) override {
    std::string p = ToPlatformPath(path);
    if (p.empty()) return Fail(error, ClassicError(kErrBadFileName));
    struct stat st {};
    const bool exists = ::stat(p.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) return Fail(error, ClassicError(kErrPathFileAccess));
    // Devices, pipes and the like are written where they are: renaming a
    // file over them would replace them.
    if (exists && !S_ISREG(st.st_mode)) return WriteInPlace(p, data, true, error);
    if (exists) {
      struct stat lst {};
      if (::lstat(p.c_str(), &lst) == 0 && S_ISLNK(lst.st_mode)) {
        // Replace the file the link points to, and keep the link.
        if (char* real = ::realpath(p.c_str(), nullptr)) {
          p = real;
          std::free(real);
        }
      }
    }
    std::string dir, last;
    platform::SplitLastSegment(p, dir, last);
    if (last.empty()) return Fail(error, ClassicError(kErrBadFileName));
    // The new contents go to a temporary file beside the target and are
    // renamed over it, so a failed or interrupted write leaves the old file whole.
    if (exists) ReleaseCachedPages(p);
    std::string temp;
    Fd fd;
    for (int attempt = 0; attempt < 100 && fd.get() < 0; ++attempt) {
      char suffix[32];
      std::snprintf(suffix, sizeof suffix, ".%s.%x%x.tmp", "tolva", static_cast<unsigned>(::getpid()),
                    static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count() + attempt));
      temp = JoinPath(dir, "." + last + suffix);
      fd.Reset(::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (fd.get() < 0 && errno != EEXIST) break;
    }
    if (fd.get() < 0) {
      const int err = errno;
      // A directory that cannot take a new file may still hold a writable
      // file: then the file is written where it is, as a plain open would.
      if (exists && (err == EACCES || err == EPERM) && ::access(p.c_str(), W_OK) == 0)
        return WriteInPlace(p, data, false, error);
      return Fail(error, err == ENOENT ? ClassicError(kErrPathNotFound) : ClassicFileError(err));
    }
    struct Unlinker {
      const std::string* path;
      ~Unlinker() {
        if (path) ::unlink(path->c_str());
      }
    } cleanup{&temp};
    if (exists) {
      (void)::fchmod(fd.get(), st.st_mode & 07777);
      (void)::fchown(fd.get(), st.st_uid, st.st_gid);  // only root can; others keep their own files anyway
    }
    if (!WriteFully(fd.get(), data.data(), data.size(), error)) return false;
    // Replacing an existing file: its old contents must survive a crash
    // until the new ones are on the device.
    if (exists && ::fdatasync(fd.get()) != 0) return FailErrno(error);
    const int raw = fd.Release();
    if (::close(raw) != 0 && errno != EINTR) return FailErrno(error);
    if (::rename(temp.c_str(), p.c_str()) != 0) return FailErrno(error);
    cleanup.path = nullptr;
    return true;
  }

  std::string TempPath() override {
    const char* t = std::getenv("TMPDIR");
    std::string dir = t && *t ? t : "/tmp/";
    if (dir.back() != '/') dir += '/';
    return dir;
  }

  bool TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                    FileError& error) override {
    std::string dir = ToPlatformPath(directory);
    if (!dir.empty() && dir.back() != '/') dir += '/';
    const std::string pre = prefix.substr(0, 3);
    // Four hex digits as the classic names have, starting at a number that
    // differs per process and moment, trying each one at most once.
    unsigned start = static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
                     (static_cast<unsigned>(::getpid()) << 4);
    for (unsigned i = 0; i < 0x10000u; ++i) {
      const unsigned unique = ((start + i) & 0xFFFFu) ? ((start + i) & 0xFFFFu) : 1u;
      char hex[8];
      std::snprintf(hex, sizeof hex, "%X", unique);
      const std::string candidate = dir + pre + hex + ".tmp";
      Fd fd(::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (fd.get() >= 0) {
        name = candidate;
        return true;
      }
      if (errno != EEXIST) return FailOpen(error, candidate);
    }
    return Fail(error, ClassicError(kErrFileExists));
  }

  std::string WindowsDirectory() override { return WindowsDirectoryStandIn(); }
  std::string SystemDirectory() override { return SystemDirectoryStandIn(); }

 private:
  // Writes `data` over the file where it stands: used only where a rename
  // cannot be, so the file is cut to its new length only after the new
  // bytes are in.
  static bool WriteInPlace(const std::string& p, const std::string& data, bool special, FileError& error) {
    Fd fd(::open(p.c_str(), O_WRONLY | O_CLOEXEC | (special ? O_TRUNC : 0)));
    if (fd.get() < 0) return FailOpen(error, p);
    if (!WriteFully(fd.get(), data.data(), data.size(), error)) return false;
    if (!special && ::ftruncate(fd.get(), static_cast<off_t>(data.size())) != 0) return FailErrno(error);
    const int raw = fd.Release();
    if (::close(raw) != 0 && errno != EINTR) return FailErrno(error);
    return true;
  }
};

}  // namespace

std::string WindowsDirectoryStandIn() {
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  if (xdg && xdg[0] == '/') {
    std::string d = xdg;
    while (d.size() > 1 && d.back() == '/') d.pop_back();
    return d;
  }
  const char* home = std::getenv("HOME");
  std::string h = home && *home ? home : "";
  if (h.empty()) {
    if (const struct passwd* pw = ::getpwuid(::getuid()); pw && pw->pw_dir) h = pw->pw_dir;
  }
  if (h.empty()) h = "/tmp";
  while (h.size() > 1 && h.back() == '/') h.pop_back();
  return (h == "/" ? "" : h) + "/.config";
}

std::string SystemDirectoryStandIn() {
  return "/usr/lib";
}

std::shared_ptr<FileSystem> NewFileSystem() {
  return std::make_shared<PosixFileSystem>();
}

}  // namespace tolva::platform::posix
