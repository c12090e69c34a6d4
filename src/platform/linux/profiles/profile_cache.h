// Parsed profile files kept between look-ups. An entry is used only while
// the file on disk still has the same device, inode, size and modification
// time (to the nanosecond), so an unchanged file is never parsed twice and
// a changed one is never served stale.
#ifndef TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_CACHE_H_
#define TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_CACHE_H_

#include <sys/stat.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/profiles/profile_file.h"
#include "tolva/platform/file_system.h"

namespace tolva::platform::posix {

struct FileIdentity {
  std::uint64_t device = 0, inode = 0, size = 0;
  std::int64_t mtime_sec = 0, mtime_nsec = 0;
  static FileIdentity Of(const struct stat& st) noexcept;
  bool operator==(const FileIdentity&) const = default;
};

class ProfileCache {
 public:
  explicit ProfileCache(std::size_t capacity = 32) : capacity_(capacity) {}
  ProfileCache(const ProfileCache&) = delete;
  ProfileCache& operator=(const ProfileCache&) = delete;

  // The parsed file at `path`, or null when it is missing or unreadable.
  std::shared_ptr<const platform::posix::ProfileFile> Get(const std::string& path);
  // Remembers a file just written, so that the next look-up need not read it.
  void Put(const std::string& path, const FileIdentity& id, std::shared_ptr<const platform::posix::ProfileFile> file);

  // Number of parses so far: lets tests see that an unchanged file is not re-read.
  std::uint64_t parses() const noexcept { return parses_; }

  // Reads and parses `path` without the cache; `id` is that of the bytes read.
  static std::shared_ptr<const platform::posix::ProfileFile> Load(const std::string& path, FileIdentity& id,
                                                                  FileError& error);

 private:
  struct Entry {
    FileIdentity id;
    std::shared_ptr<const platform::posix::ProfileFile> file;
    std::uint64_t used = 0;
  };
  std::mutex mutex_;
  std::map<std::string, Entry> entries_;
  std::size_t capacity_;
  std::uint64_t clock_ = 0;
  std::uint64_t parses_ = 0;
};

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_CACHE_H_
