// Testing, changing and creating directories.
#include <string>
#include <vector>

#include "component/component_state.h"
#include "files/directory_walk.h"
#include "files/file_error_text.h"
#include "paths/path_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

Boolean Tolva2011Register::DirectoryExists(const std::string& Directory) noexcept {
  return detail::Guarded(kFalse, [&] {
    const std::string d = RemoveLastBackslash(Directory);
    if (d.empty() || !s_->services.files) return kFalse;
    std::vector<platform::DirEntry> found;
    platform::FileError error;
    // A listing with the directory attribute also finds an ordinary file of
    // that name: kept on purpose, hosts rely on the classic answer.
    if (!s_->services.files->List(d, platform::kAttrDirectory, found, error)) return kFalse;
    return ToBoolean(!found.empty());
  });
}

Boolean Tolva2011Register::DirectoryChange(const std::string& Directory, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    const std::string d = RemoveLastBackslash(Directory);
    // There are no drives here: the drive change that would come first does nothing.
    platform::FileError error{75, "Path/File access error"};
    if (s_->services.files && s_->services.files->ChangeDirectory(d, error)) return kTrue;
    ErrorMessage = files::Compose("Directory [" + d + "] can't be accessed", error);
    s_->last_runtime_error = 0;
    return kFalse;
  });
}

Boolean Tolva2011Register::DirectoryMake(const std::string& Directory, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    const std::string d = RemoveLastBackslash(std::string(paths::TrimBlanks(Directory)));
    if (IsTrue(DirectoryExists(d))) return kTrue;
    platform::FileSystem* fs = s_->services.files.get();
    platform::FileError error;
    std::string remembered;
    if (!fs || !fs->CurrentDirectory(remembered, error)) {
      ErrorMessage = files::Compose("Directory [" + Directory + "] can't be created", error);
      return kFalse;
    }
    const std::vector<std::string> prefixes = files::DirectoryPrefixes(d);
    for (std::size_t i = 0; i < prefixes.size(); ++i) {
      const std::string& prefix = prefixes[i];
      // The first segment is the drive: it is never created, only required
      // to exist, so a bare name with no separator fails as a missing drive
      // (kept on purpose, as hosts have always seen it).
      if (i > 0 && !IsTrue(DirectoryExists(prefix))) {
        if (!fs->MakeDirectory(RemoveLastBackslash(prefix), error)) {
          ErrorMessage = files::Compose("Directory [" + prefix + "] can't be created", error);
          s_->last_runtime_error = 0;
          return kFalse;
        }
      }
      // An absolute path's drive is the root.
      if (!(i == 0 && prefix.empty()) && !IsTrue(DirectoryExists(prefix + "\\"))) {
        ErrorMessage = ErrorMessageDoesNotExist("Drive", prefix + "\\");
        return kFalse;
      }
    }
    if (!IsTrue(DirectoryExists(d))) {
      ErrorMessage = "Directory [" + d + "] may have been created, but can't be found!";
      return kFalse;
    }
    std::string ignored;
    if (!IsTrue(DirectoryChange(remembered, ignored))) {
      ErrorMessage = "Old Directory [" + remembered + "] can't be reset.";
      return kFalse;
    }
    return kTrue;
  });
}

}  // namespace tolva
