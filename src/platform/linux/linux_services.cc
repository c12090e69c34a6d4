// The real services of this platform, bundled for a component.
#include "platform/linux/linux_factories.h"
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
