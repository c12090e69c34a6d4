#include "platform/linux/profiles/profile_store_posix.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>

#include "tolva/platform/file_patterns.h"
#include "platform/linux/files/file_system_posix.h"

namespace tolva::platform::posix {

namespace {

class Fd {
 public:
  explicit Fd(int fd) noexcept : fd_(fd) {}
  ~Fd() {
    if (fd_ >= 0) ::close(fd_);
  }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  int get() const noexcept { return fd_; }
  bool Close() noexcept {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0 || errno == EINTR;
  }

 private:
  int fd_;
};

bool HoldsLineBreakOrNul(const std::string& s) {
  return s.find_first_of(std::string("\r\n\0", 3)) != std::string::npos;
}

bool WriteFully(int fd, const std::string& data) {
  std::size_t done = 0;
  while (done < data.size()) {
    const ssize_t w = ::write(fd, data.data() + done, data.size() - done);
    if (w < 0 && errno == EINTR) continue;
    if (w <= 0) return false;
    done += static_cast<std::size_t>(w);
  }
  return true;
}

// Makes the directory and its missing parents (the Windows-directory
// stand-in may not exist yet on a fresh account).
void MakeDirectories(const std::string& dir) {
  for (std::size_t i = 1; i <= dir.size(); ++i)
    if (i == dir.size() || dir[i] == '/') ::mkdir(dir.substr(0, i).c_str(), 0777);
}

std::size_t Answer(std::string_view text, std::string& out, std::size_t buffer_size) {
  // At most buffer_size - 1 characters, as a C buffer with its NUL would hold.
  const std::size_t room = buffer_size ? buffer_size - 1 : 0;
  out.assign(text.substr(0, room));
  return out.size();
}

}  // namespace

std::string PosixProfileStore::Resolve(const std::string& file) {
  std::string p = platform::ToPlatformPath(file);
  if (!p.empty() && p.find('/') == std::string::npos) p = WindowsDirectoryStandIn() + "/" + p;
  return p;
}

std::string PosixProfileStore::SystemProfile() {
  return WindowsDirectoryStandIn() + "/win.ini";
}

std::size_t PosixProfileStore::GetString(const std::string& section, const std::string& key,
                                         const std::string& default_value, std::string& out, std::size_t buffer_size,
                                         const std::string& file) {
  const std::string path = Resolve(file);
  std::shared_ptr<const platform::posix::ProfileFile> parsed = path.empty() ? nullptr : cache_.Get(path);
  if (parsed) {
    if (auto value = parsed->Find(section, key)) return Answer(*value, out, buffer_size);
  }
  // The default is handed back trimmed, as the classic API copies it.
  return Answer(platform::posix::TrimProfileBlanks(default_value), out, buffer_size);
}

std::size_t PosixProfileStore::GetSystemString(const std::string& section, const std::string& key,
                                               const std::string& default_value, std::string& out,
                                               std::size_t buffer_size) {
  return GetString(section, key, default_value, out, buffer_size, SystemProfile());
}

bool PosixProfileStore::WriteString(const std::string& section, const std::string& key, const std::string* value,
                                    const std::string& file) {
  if (HoldsLineBreakOrNul(section) || HoldsLineBreakOrNul(key) || (value && HoldsLineBreakOrNul(*value))) return false;
  std::string path = Resolve(file);
  if (path.empty()) return false;
  std::string dir, name;
  platform::SplitLastSegment(path, dir, name);
  if (name.empty()) return false;
  if (platform::ToPlatformPath(file).find('/') == std::string::npos) MakeDirectories(dir);

  // One writer at a time, across processes: the lock lives in its own file
  // beside the profile because the profile itself is replaced by rename.
  Fd lock(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (lock.get() < 0) return false;
  while (::flock(lock.get(), LOCK_EX) != 0)
    if (errno != EINTR) return false;

  // Re-read under the lock: another process may have written since our last look.
  struct stat st {};
  const bool exists = ::stat(path.c_str(), &st) == 0;
  if (exists && !S_ISREG(st.st_mode)) return false;
  std::string bytes;
  if (exists) {
    FileIdentity id;
    FileError error;
    auto current = ProfileCache::Load(path, id, error);
    if (!current) return false;
    bytes = current->bytes();
  } else if (!value) {
    return true;  // deleting from a file that does not exist: nothing to do
  }
  bool changed = false;
  const std::string updated = platform::posix::ProfileFile(std::move(bytes)).WithValue(section, key, value, changed);
  if (!changed) return true;

  // The new file is written beside the old one, flushed to the device and
  // renamed over it: a crash leaves either the old file or the new one.
  std::string temp;
  int raw = -1;
  for (int attempt = 0; attempt < 100 && raw < 0; ++attempt) {
    char suffix[48];
    std::snprintf(suffix, sizeof suffix, ".%x.%llx.tmp", static_cast<unsigned>(::getpid()),
                  static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()) +
                      static_cast<unsigned long long>(attempt));
    temp = (dir.empty() ? "" : dir + "/") + "." + name + suffix;
    raw = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (raw < 0 && errno != EEXIST) return false;
  }
  if (raw < 0) return false;
  Fd out(raw);
  struct Unlinker {
    const std::string* path;
    ~Unlinker() {
      if (path) ::unlink(path->c_str());
    }
  } cleanup{&temp};
  if (exists) {
    (void)::fchmod(out.get(), st.st_mode & 07777);  // the profile keeps its permissions
    (void)::fchown(out.get(), st.st_uid, st.st_gid);
  }
  if (!WriteFully(out.get(), updated) || ::fsync(out.get()) != 0) return false;
  struct stat written {};
  const bool have_identity = ::fstat(out.get(), &written) == 0;
  if (!out.Close()) return false;
  if (::rename(temp.c_str(), path.c_str()) != 0) return false;
  cleanup.path = nullptr;
  // The rename itself must reach the device too, before the write counts as done.
  Fd directory(::open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() >= 0) (void)::fsync(directory.get());
  if (have_identity)
    cache_.Put(path, FileIdentity::Of(written), std::make_shared<const platform::posix::ProfileFile>(updated));
  return true;
}

std::shared_ptr<ProfileStore> NewProfileStore() {
  return std::make_shared<PosixProfileStore>();
}

}  // namespace tolva::platform::posix
