// The bundle of platform services a component works on. Any member may be
// null: the members that need a missing service fail quietly, as they do
// when the service itself fails.
#ifndef TOLVA_PLATFORM_SERVICES_H_
#define TOLVA_PLATFORM_SERVICES_H_

#include <memory>

#include "tolva/export.h"
#include "tolva/platform/file_system.h"
#include "tolva/platform/internet.h"
#include "tolva/platform/process_launcher.h"
#include "tolva/platform/profile_store.h"
#include "tolva/platform/settings_store.h"
#include "tolva/platform/system_info.h"
#include "tolva/platform/window_services.h"

namespace tolva::platform {

struct Services {
  std::shared_ptr<FileSystem> files;
  std::shared_ptr<ProfileStore> profiles;
  std::shared_ptr<SettingsStore> settings;
  std::shared_ptr<InternetLibrary> internet;
  std::shared_ptr<SystemInfo> system;
  std::shared_ptr<ProcessLauncher> processes;
  std::shared_ptr<WindowServices> windows;
};

// The real services of this platform: POSIX files, INI files, the SQLite
// settings database, the FTP client, system information, process start and
// a console stand-in for window services (message boxes on the terminal,
// no screen metrics). A toolkit binding replaces `windows`.
TOLVA_EXPORT Services LinuxServices() noexcept;

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_SERVICES_H_
