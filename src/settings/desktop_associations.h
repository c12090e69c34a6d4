// The desktop's own file associations: the shared MIME database's globs
// give an extension's type, mimeapps.list the type's default application,
// and that application's desktop entry its name and command line.
#ifndef TOLVA_SRC_SETTINGS_DESKTOP_ASSOCIATIONS_H_
#define TOLVA_SRC_SETTINGS_DESKTOP_ASSOCIATIONS_H_

#include <string>
#include <string_view>
#include <vector>

#include "tolva/platform/file_system.h"
#include "tolva/platform/system_info.h"

namespace tolva::settings {

class DesktopAssociations {
 public:
  // Reads files through `files`; takes HOME and the XDG variables from
  // `system` (null: the system-wide defaults only). Neither is owned.
  DesktopAssociations(platform::FileSystem& files, platform::SystemInfo* system) noexcept
      : files_(files), system_(system) {}

  // The program for files ending in "." + `extension` (no dot): its name
  // and its command line with "%1" in place of the file. False when the
  // desktop knows none.
  bool Find(const std::string& extension, std::string& name, std::string& command);

  // The MIME type of "*." + `extension`, "" when none: the heaviest glob
  // wins, the user's database before the system's on equal weight.
  std::string MimeType(const std::string& extension);

  // A desktop entry's command line with its file field code (%f %F %u %U)
  // turned into "%1", the other field codes dropped and "%%" made "%".
  static std::string CommandFromExec(std::string_view exec);

 private:
  std::string Env(const char* name, const std::string& fallback);
  std::vector<std::string> DataDirectories();    // user's first
  std::vector<std::string> ConfigDirectories();  // user's first
  bool Read(const std::string& path, std::string& text);
  // The desktop entry `id` in one of the applications directories.
  bool ReadDesktopEntry(const std::string& id, std::string& name, std::string& command);

  platform::FileSystem& files_;
  platform::SystemInfo* system_;
};

}  // namespace tolva::settings

#endif  // TOLVA_SRC_SETTINGS_DESKTOP_ASSOCIATIONS_H_
