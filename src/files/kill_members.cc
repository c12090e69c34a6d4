// Deleting files: one, by pattern, and this program's temporary files.
#include <string>
#include <vector>

#include "component/component_state.h"
#include "files/file_error_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

Boolean Tolva2011Register::KillFile(const std::string& FilePath, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    if (FilePath.empty()) {
      ErrorMessage = ErrorMessageNotDefined("File Path");
      return kFalse;
    }
    if (!IsTrue(FileExists(FilePath))) {
      ErrorMessage = ErrorMessageDoesNotExist("File", FilePath);
      return kFalse;
    }
    platform::FileError error;
    if (s_->services.files->DeleteFiles(FilePath, error)) return kTrue;
    ErrorMessage = files::Compose("File [" + FilePath + "] can't be deleted", error);
    return kFalse;
  });
}

Boolean Tolva2011Register::KillFiles(const std::string& FilePath, std::string& ErrorMessage, Boolean NotExistError,
                                     Boolean ClearAttributes) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    if (FilePath.empty()) {
      ErrorMessage = ErrorMessageNotDefined("File Path");
      return kFalse;
    }
    platform::FileSystem* fs = s_->services.files.get();
    if (!fs) return kFalse;
    platform::FileError error;
    std::vector<platform::DirEntry> found;
    if (!fs->List(FilePath, platform::kAttrNormal, found, error) || found.empty()) {
      if (!IsTrue(NotExistError)) return kTrue;
      ErrorMessage = "Files [" + FilePath + "] do not exist.";
      return kFalse;
    }
    if (fs->DeleteFiles(FilePath, error)) return kTrue;
    constexpr int kPathFileAccessError = 75;
    if (error.number == kPathFileAccessError && IsTrue(ClearAttributes)) {
      // Protected files are made writable and the deletion tried once more.
      const std::string directory = FileDirectory(FilePath);
      std::vector<platform::DirEntry> listed;
      platform::FileError ignored;
      if (fs->List(FilePath, platform::kAttrNormal, listed, ignored)) {
        for (const auto& entry : listed) fs->SetAttributesNormal(BuildPath(directory, entry.name), ignored);
      }
      error = {};
      if (fs->DeleteFiles(FilePath, error)) return kTrue;
    }
    ErrorMessage = "Files [" + FilePath + "] can't be deleted - " + error.description;
    return kFalse;
  });
}

Boolean Tolva2011Register::KillTempFiles(const std::string& TempTag, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    const std::string pattern = AddMissingBackslash(WinTempPath()) + TempTag + "*.tmp";
    return KillFiles(pattern, ErrorMessage, kTrue, kTrue);
  });
}

}  // namespace tolva
