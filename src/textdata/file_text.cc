#include "textdata/file_text.h"

#include "tolva/tolva2011register.h"

namespace tolva::textdata {

bool FileText::Load(Tolva2011Register& component, platform::FileSystem* files, const std::string& FilePath,
                    std::string& error) noexcept {
  try {
    error.clear();
    if (files != nullptr && !FilePath.empty()) {
      // The checks ReadFileFull makes before it reads. Any file they would
      // refuse, an empty one, or one the view cannot give, is left to
      // ReadFileFull itself, so that every failure carries exactly its text.
      const bool has_directory = FilePath.find_first_of("\\/") != std::string::npos;
      const std::string path = has_directory ? FilePath : component.BuildPathRun(FilePath);
      const bool directory_ok = path.find_first_of("\\/") == std::string::npos ||
                                IsTrue(component.DirectoryExists(component.FileDirectory(path)));
      platform::FileError ignored;
      if (directory_ok && IsTrue(component.FileExists(path))) file_ = files->ViewAll(path, ignored);
      if (file_ && !file_->Bytes().empty()) {
        view_ = file_->Bytes();
        return true;
      }
      file_.reset();
    }
    owned_ = component.ReadFileFull(FilePath, error);
    view_ = owned_;
    return error.empty();
  } catch (...) {
    if (error.empty()) error = "File Read Error - Out of memory";
    return false;
  }
}

}  // namespace tolva::textdata
