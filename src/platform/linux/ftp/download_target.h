// The local file a get writes: a temporary file in the destination's own
// directory, renamed over the destination only when the whole transfer
// succeeded, so a failed get never damages a file that was there before.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_DOWNLOAD_TARGET_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_DOWNLOAD_TARGET_H_

#include <cstddef>
#include <cstdint>
#include <string>

namespace tolva::platform::posix::ftp {

class DownloadTarget {
 public:
  explicit DownloadTarget(std::string destination) : destination_(std::move(destination)) {}
  ~DownloadTarget();  // removes the temporary file unless committed
  DownloadTarget(const DownloadTarget&) = delete;
  DownloadTarget& operator=(const DownloadTarget&) = delete;

  // 0 or the error number (access denied, disk full) for each step.
  std::uint32_t Open();
  std::uint32_t Write(const char* data, std::size_t size);
  std::uint32_t Commit();

 private:
  std::string destination_;
  std::string temp_;
  int fd_ = -1;
  bool committed_ = false;
};

// Local paths from hosts may use "\" as well as "/".
std::string LocalPath(const std::string& path);
// errno of a failed local write or open, as the layer's error number.
std::uint32_t LocalError(int err);

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_DOWNLOAD_TARGET_H_
