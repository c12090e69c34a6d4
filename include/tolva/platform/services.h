// The platform services bundle: Services, and this platform's LinuxServices().
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

/// The narrow interfaces through which the component reaches the operating system, and this
/// platform's implementations of them. Tests hand the component fakes of the same interfaces.
namespace tolva::platform {

/// The bundle of platform services a component works on. Any member may be null: the members that need a
/// missing service fail quietly, as they do when the service itself fails.
struct Services {
  /// Files and directories.
  std::shared_ptr<FileSystem> files;
  /// Profile (INI) files.
  std::shared_ptr<ProfileStore> profiles;
  /// The settings store.
  std::shared_ptr<SettingsStore> settings;
  /// The FTP client.
  std::shared_ptr<InternetLibrary> internet;
  /// Clock, names and system texts.
  std::shared_ptr<SystemInfo> system;
  /// Starting programs.
  std::shared_ptr<ProcessLauncher> processes;
  /// Screen, message boxes and dialogs.
  std::shared_ptr<WindowServices> windows;
};

/// The real services of this platform: POSIX files, INI files, the SQLite settings database, the FTP client,
/// system information, process start and a console stand-in for window services (message boxes on the
/// terminal, no screen metrics). A toolkit binding replaces `windows`.
TOLVA_EXPORT Services LinuxServices() noexcept;

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_SERVICES_H_
