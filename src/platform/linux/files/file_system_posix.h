// The file-system service of this platform, on POSIX calls.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_POSIX_H_
#define TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_POSIX_H_

#include <memory>
#include <string>

#include "tolva/platform/file_system.h"

namespace tolva::platform::posix {

// The stand-in for the Windows directory: the per-user configuration
// directory ($XDG_CONFIG_HOME, else $HOME/.config), without a trailing
// separator. Bare profile names and the system profile live here.
std::string WindowsDirectoryStandIn();

// The stand-in for the system directory: "/usr/lib".
std::string SystemDirectoryStandIn();

// The service of this folder, as linux_services.cc assembles it.
std::shared_ptr<FileSystem> NewFileSystem();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_FILES_FILE_SYSTEM_POSIX_H_
