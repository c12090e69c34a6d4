#include "platform/linux/ftp/download_target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/linux/files/page_cache.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

std::string LocalPath(const std::string& path) {
  std::string p = path;
  for (char& c : p) {
    if (c == '\\') c = '/';
  }
  return p;
}

std::uint32_t LocalError(int err) {
  switch (err) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kErrorDiskFull;
    case ENOENT:
      return kErrorFileNotFound;
    default:
      return kErrorAccessDenied;
  }
}

DownloadTarget::~DownloadTarget() {
  if (fd_ >= 0) ::close(fd_);
  if (!committed_ && !temp_.empty()) ::unlink(temp_.c_str());
}

std::uint32_t DownloadTarget::Open() {
  ReleaseCachedPages(destination_);
  const auto slash = destination_.rfind('/');
  const std::string dir = slash == std::string::npos ? "." : destination_.substr(0, slash + 1);
  temp_ = (slash == std::string::npos ? "./" : dir) + ".tolva-get-XXXXXX";
  fd_ = ::mkostemp(temp_.data(), O_CLOEXEC);
  if (fd_ < 0) {
    const int err = errno;
    temp_.clear();
    return LocalError(err == ENOENT ? EACCES : err);
  }
  ::fchmod(fd_, 0644);
  return 0;
}

std::uint32_t DownloadTarget::Write(const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd_, data, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return LocalError(errno);
    }
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return 0;
}

std::uint32_t DownloadTarget::Commit() {
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) return LocalError(errno);  // delayed write errors (NFS, quota) show here
  if (::rename(temp_.c_str(), destination_.c_str()) != 0) return LocalError(errno);
  committed_ = true;
  return 0;
}

}  // namespace tolva::platform::posix::ftp
