// The whole text of a file as the delimited readers parse it: held once, as
// the file service's view of it (a mapping of a large file on this
// platform), and split in place from there.
#ifndef TOLVA_SRC_TEXTDATA_FILE_TEXT_H_
#define TOLVA_SRC_TEXTDATA_FILE_TEXT_H_

#include <memory>
#include <string>
#include <string_view>

#include "tolva/platform/file_system.h"

namespace tolva {
class Tolva2011Register;
}  // namespace tolva

namespace tolva::textdata {

class FileText {
 public:
  FileText() = default;
  FileText(const FileText&) = delete;
  FileText& operator=(const FileText&) = delete;

  // Reads `FilePath` with the same checks, results and error texts as
  // ReadFileFull, through the view of the file service `files`. Returns
  // false with `error` set when the file cannot be read.
  bool Load(Tolva2011Register& component, platform::FileSystem* files, const std::string& FilePath,
            std::string& error) noexcept;

  std::string_view View() const noexcept { return view_; }

 private:
  std::string owned_;
  std::unique_ptr<platform::FileView> file_;
  std::string_view view_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_FILE_TEXT_H_
