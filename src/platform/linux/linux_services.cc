// The real services of this platform, bundled for a component.
#include "platform/linux/console/console_window_services.h"
#include "platform/linux/files/file_system_posix.h"
#include "platform/linux/ftp/poco_internet_library.h"
#include "platform/linux/processes/process_launcher.h"
#include "platform/linux/profiles/profile_store_posix.h"
#include "platform/linux/settings/settings_store_sqlite.h"
#include "platform/linux/system/system_info.h"
#include "tolva/platform/services.h"

namespace tolva::platform {

Services LinuxServices() noexcept {
  Services s;
  try {
    // Each family's service is made by its own factory; a service that
    // cannot be made stays null and its members fail quietly.
    s.files = posix::NewFileSystem();
    s.profiles = posix::NewProfileStore();
    s.settings = posix::NewSettingsStore();
    s.internet = posix::NewInternetLibrary();
    s.system = posix::NewSystemInfo();
    s.processes = posix::NewProcessLauncher();
    s.windows = posix::NewConsoleWindowServices();
  } catch (...) {
  }
  return s;
}

}  // namespace tolva::platform
