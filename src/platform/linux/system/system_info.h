// System information on Linux: a monotonic tick counter, a sliced sleep in
// place of the input wait, the local clock, the host and user names, and
// the message table of this platform.
#ifndef TOLVA_SRC_PLATFORM_LINUX_SYSTEM_SYSTEM_INFO_H_
#define TOLVA_SRC_PLATFORM_LINUX_SYSTEM_SYSTEM_INFO_H_

#include <cstdint>
#include <memory>
#include <string>

#include "tolva/platform/system_info.h"

namespace tolva::platform::posix {

class LinuxSystemInfo : public SystemInfo {
 public:
  // A console host has no input queue to watch, so a wait sleeps at most
  // this long and then returns as if input had arrived: the waiting member
  // then lets the host process its events and waits again for the rest.
  static constexpr std::uint32_t kWaitSliceMs = 25;

  LinuxSystemInfo() = default;
  LinuxSystemInfo(const LinuxSystemInfo&) = delete;
  LinuxSystemInfo& operator=(const LinuxSystemInfo&) = delete;

  // CLOCK_MONOTONIC in milliseconds, cut to 32 bits (wraps after ~49.7 days).
  std::uint32_t TickCount() override;
  void WaitForInput(std::uint32_t milliseconds) override;
  DateTime Now() override;
  // The host name (gethostname, else uname).
  bool ComputerName(std::string& name) override;
  // The effective user's login name (password database, else $USER).
  bool UserName(std::string& name) override;
  std::string MessageText(std::int32_t number) override;
  bool Environment(const std::string& name, std::string& value) override;
};

// The service of this folder, as linux_services.cc assembles it.
std::shared_ptr<SystemInfo> NewSystemInfo();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_SYSTEM_SYSTEM_INFO_H_
