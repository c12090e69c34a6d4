// Handing back the cached pages of a file that is about to be replaced.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FILES_PAGE_CACHE_H_
#define TOLVA_SRC_PLATFORM_LINUX_FILES_PAGE_CACHE_H_

#include <string>

namespace tolva::platform::posix {

// A file replaced through a temporary file stays whole on disk until the new
// one is complete, but its cached pages are of no further use. Handing them
// back before the new contents are written lets the new file's pages be
// recycled from them instead of taken fresh, which on virtual machines costs
// far more. Only clean pages go and the contents are untouched; anything
// other than a regular file is left alone (opening a device may act on it).
void ReleaseCachedPages(const std::string& path) noexcept;

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_FILES_PAGE_CACHE_H_
