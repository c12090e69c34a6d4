// Reading a whole text file, with or without checks, and writing one.
#include "textdata/text_file.h"

#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva {

std::string Tolva2011Register::ReadFile(const std::string& FilePath) noexcept {
  return detail::Guarded(std::string(), [&] {
    s_->text.last_read_error.clear();
    platform::FileSystem* fs = s_->services.files.get();
    platform::FileError error{75, "Path/File access error"};
    std::uint64_t length = 0;
    if (fs && fs->Length(FilePath, length, error)) {
      if (length == 0) return std::string();  // nothing to read; no file is opened
      std::string text;
      if (fs->ReadAll(FilePath, text, error)) return text;
    }
    s_->text.last_read_error = error.description;
    return std::string();
  });
}

std::string Tolva2011Register::ReadFileFull(const std::string& FilePath, std::string& ErrorMessage) noexcept {
  return detail::Guarded(std::string(), [&] {
    ErrorMessage.clear();
    if (FilePath.empty()) {
      ErrorMessage = ErrorMessageNotDefined("File Path");
      return std::string();
    }
    // Only a bare name is taken from the run directory: a "/" marks a path
    // on this platform just as a "\" does, so "/data/x.txt" stays as it is.
    const bool has_directory = FilePath.find_first_of("\\/") != std::string::npos;
    const std::string path = has_directory ? FilePath : BuildPathRun(FilePath);
    if (path.find_first_of("\\/") != std::string::npos) {
      const std::string directory = FileDirectory(path);
      if (!IsTrue(DirectoryExists(directory))) {
        ErrorMessage = ErrorMessageDoesNotExist("Directory", directory);
        return std::string();
      }
    }
    if (!IsTrue(FileExists(path))) {
      ErrorMessage = ErrorMessageDoesNotExist("File", path);
      return std::string();
    }
    std::uint64_t length = 0;
    platform::FileError error;
    if (s_->services.files->Length(path, length, error) && length == 0) {
      ErrorMessage = "File does not contain any data.";
      return std::string();
    }
    std::string text = ReadFile(path);
    if (!s_->text.last_read_error.empty()) {
      ErrorMessage = "File Read Error - " + s_->text.last_read_error;
      return std::string();
    }
    return text;
  });
}

Boolean Tolva2011Register::WriteFile(const std::string& FilePath, const std::string& Output,
                                     std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    platform::FileError error{75, "Path/File access error"};
    // The text is written as it stands, with no line end added. The file is
    // replaced whole: a write that fails leaves the old file as it was.
    if (s_->services.files && s_->services.files->WriteAll(FilePath, Output, error)) return kTrue;
    ErrorMessage = error.description;
    return kFalse;
  });
}

void Tolva2011Register::ReadWriteCancel() noexcept {
  s_->text.cancel = kTrue;
}

}  // namespace tolva
