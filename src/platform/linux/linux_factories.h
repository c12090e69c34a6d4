// Factories of the Linux services, one per service; each lives beside its
// implementation in this folder.
#ifndef TOLVA_SRC_PLATFORM_LINUX_LINUX_FACTORIES_H_
#define TOLVA_SRC_PLATFORM_LINUX_LINUX_FACTORIES_H_

#include <memory>
#include <string>

#include "tolva/platform/services.h"

namespace tolva::platform::posix {

std::shared_ptr<FileSystem> NewFileSystem();
std::shared_ptr<ProfileStore> NewProfileStore();
// The per-user settings database under $XDG_CONFIG_HOME (default ~/.config).
std::shared_ptr<SettingsStore> NewSettingsStore();
std::shared_ptr<InternetLibrary> NewInternetLibrary();
std::shared_ptr<SystemInfo> NewSystemInfo();
std::shared_ptr<ProcessLauncher> NewProcessLauncher();
// Message boxes on the terminal, no screen: what a console host gets.
std::shared_ptr<WindowServices> NewConsoleWindowServices();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_LINUX_FACTORIES_H_
