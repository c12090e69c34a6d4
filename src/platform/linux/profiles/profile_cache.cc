#include "platform/linux/profiles/profile_cache.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/files/file_system_errors.h"

namespace tolva::platform::posix {

FileIdentity FileIdentity::Of(const struct stat& st) noexcept {
  return {static_cast<std::uint64_t>(st.st_dev), static_cast<std::uint64_t>(st.st_ino),
          static_cast<std::uint64_t>(st.st_size), static_cast<std::int64_t>(st.st_mtim.tv_sec),
          static_cast<std::int64_t>(st.st_mtim.tv_nsec)};
}

std::shared_ptr<const platform::posix::ProfileFile> ProfileCache::Load(const std::string& path, FileIdentity& id,
                                                                       FileError& error) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    error = ClassicFileError(errno);
    return nullptr;
  }
  struct Closer {
    int fd;
    ~Closer() { ::close(fd); }
  } closer{fd};
  struct stat st {};
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    error = ClassicError(kErrPathFileAccess);
    return nullptr;
  }
  std::string bytes;
  bytes.resize(static_cast<std::size_t>(st.st_size));
  std::size_t got = 0;
  while (got < bytes.size()) {
    const ssize_t r = ::read(fd, bytes.data() + got, bytes.size() - got);
    if (r < 0 && errno == EINTR) continue;
    if (r < 0) {
      error = ClassicFileError(errno);
      return nullptr;
    }
    if (r == 0) break;
    got += static_cast<std::size_t>(r);
  }
  bytes.resize(got);
  id = FileIdentity::Of(st);
  return std::make_shared<const platform::posix::ProfileFile>(std::move(bytes));
}

std::shared_ptr<const platform::posix::ProfileFile> ProfileCache::Get(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return nullptr;
  const FileIdentity now = FileIdentity::Of(st);
  {
    std::lock_guard lock(mutex_);
    auto it = entries_.find(path);
    if (it != entries_.end() && it->second.id == now) {
      it->second.used = ++clock_;
      return it->second.file;
    }
  }
  FileIdentity id;
  FileError error;
  auto file = Load(path, id, error);
  if (!file) return nullptr;
  {
    std::lock_guard lock(mutex_);
    ++parses_;
  }
  Put(path, id, file);
  return file;
}

void ProfileCache::Put(const std::string& path, const FileIdentity& id,
                       std::shared_ptr<const platform::posix::ProfileFile> file) {
  std::lock_guard lock(mutex_);
  if (entries_.size() >= capacity_ && !entries_.count(path)) {
    auto oldest = entries_.begin();
    for (auto it = entries_.begin(); it != entries_.end(); ++it)
      if (it->second.used < oldest->second.used) oldest = it;
    entries_.erase(oldest);
  }
  entries_[path] = Entry{id, std::move(file), ++clock_};
}

}  // namespace tolva::platform::posix
