#include "platform/linux/profiles/profile_store_posix.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <string_view>

#include "platform/linux/files/file_system_posix.h"
#include "tolva/platform/file_patterns.h"

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

// ".<profile>.<pid>.<n>.tmp": hidden, and recognisable as ours.
std::string TemporaryName(const std::string& profile, int attempt) {
  char suffix[48];
  std::snprintf(suffix, sizeof suffix, ".%x.%llx.tmp", static_cast<unsigned>(::getpid()),
                static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()) +
                    static_cast<unsigned long long>(attempt));
  return "." + profile + suffix;
}

// Removes the temporary files of writers of this profile that were killed
// between naming their file and renaming it. Called under the directory's
// lock, when no other writer of ours is at work.
void RemoveStaleTemporaries(int directory_fd, const std::string& profile) {
  const int fd = ::dup(directory_fd);
  if (fd < 0) return;
  DIR* dir = ::fdopendir(fd);
  if (!dir) {
    ::close(fd);
    return;
  }
  const std::string prefix = "." + profile + ".";
  while (const dirent* e = ::readdir(dir)) {
    const std::string_view n(e->d_name);
    if (n.size() > prefix.size() + 4 && n.substr(0, prefix.size()) == prefix && n.substr(n.size() - 4) == ".tmp" &&
        n.find_first_not_of("0123456789abcdef.", prefix.size()) == n.size() - 3) {
      (void)::unlinkat(directory_fd, e->d_name, 0);
    }
  }
  ::closedir(dir);
}

// Writes `bytes` to a new file in `folder` named after `profile`, flushed to
// the device, with the permissions of `keep` when given; `temp` receives its
// path and `written` its identity. An anonymous file (O_TMPFILE) gets its name
// only once it is complete, so a writer killed while writing leaves nothing
// behind; where the file system or /proc cannot do that, the caller asks
// again for a named one. A failed attempt leaves no file.
bool WriteTemporary(const std::string& folder, const std::string& profile, const std::string& bytes,
                    const struct stat* keep, bool anonymous, std::string& temp, struct stat& written) {
  int raw = -1;
  if (anonymous) {
    raw = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    temp = folder + "/" + TemporaryName(profile, 0);
  } else {
    for (int attempt = 0; attempt < 100 && raw < 0; ++attempt) {
      temp = folder + "/" + TemporaryName(profile, attempt);
      raw = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (raw < 0 && errno != EEXIST) return false;
    }
  }
  if (raw < 0) return false;
  Fd out(raw);
  bool named = !anonymous;
  auto fail = [&] {
    if (named) ::unlink(temp.c_str());
    return false;
  };
  if (keep) {
    (void)::fchmod(out.get(), keep->st_mode & 07777);  // the profile keeps its permissions
    (void)::fchown(out.get(), keep->st_uid, keep->st_gid);
  }
  if (!WriteFully(out.get(), bytes) || ::fsync(out.get()) != 0 || ::fstat(out.get(), &written) != 0) return fail();
  if (anonymous) {
    const std::string self = "/proc/self/fd/" + std::to_string(out.get());
    if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, temp.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
    named = true;
  }
  return out.Close() || fail();
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
  std::shared_ptr<const ProfileFile> parsed = path.empty() ? nullptr : cache_.Get(path);
  if (parsed) {
    if (auto value = parsed->Find(section, key)) return Answer(*value, out, buffer_size);
  }
  // The default is handed back trimmed, as the classic API copies it.
  return Answer(TrimProfileBlanks(default_value), out, buffer_size);
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

  // One writer at a time, across processes. The profile is replaced by
  // rename, so it cannot hold the lock; its directory can, and a lock there
  // leaves no file beside the profile for the user to find.
  Fd directory(::open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() < 0) return false;
  while (::flock(directory.get(), LOCK_EX) != 0)
    if (errno != EINTR) return false;
  RemoveStaleTemporaries(directory.get(), name);

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
  }
  bool changed = false;
  const std::string updated = ProfileFile(std::move(bytes)).WithValue(section, key, value, changed);
  // A deletion from a file that does not exist still makes the file, empty,
  // as the classic profile API does.
  if (!changed && exists) return true;

  // The new file is written beside the old one, flushed to the device and
  // renamed over it: a crash leaves either the old file or the new one.
  const std::string folder = dir.empty() ? "." : dir;
  std::string temp;
  struct stat written {};
  if (!WriteTemporary(folder, name, updated, exists ? &st : nullptr, /*anonymous=*/true, temp, written) &&
      !WriteTemporary(folder, name, updated, exists ? &st : nullptr, /*anonymous=*/false, temp, written))
    return false;
  struct Unlinker {
    const std::string* path;
    ~Unlinker() {
      if (path) ::unlink(path->c_str());
    }
  } cleanup{&temp};
  if (::rename(temp.c_str(), path.c_str()) != 0) return false;
  cleanup.path = nullptr;
  // The rename itself must reach the device too, before the write counts as done.
  (void)::fsync(directory.get());
  cache_.Put(path, FileIdentity::Of(written), std::make_shared<const ProfileFile>(updated));
  return true;
}

std::shared_ptr<ProfileStore> NewProfileStore() {
  return std::make_shared<PosixProfileStore>();
}

}  // namespace tolva::platform::posix
