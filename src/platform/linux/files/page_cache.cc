#include "platform/linux/files/page_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tolva::platform::posix {

void ReleaseCachedPages(const std::string& path) noexcept {
  struct stat st {};
  if (::lstat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return;
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (fd < 0) return;
  ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
  ::close(fd);
}

}  // namespace tolva::platform::posix
