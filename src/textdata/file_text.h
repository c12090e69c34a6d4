// The whole text of a file as the delimited readers parse it: held once,
// either as a read-only mapping of the file or as the string the component's
// file service read, and split in place from there.
#ifndef TOLVA_SRC_TEXTDATA_FILE_TEXT_H_
#define TOLVA_SRC_TEXTDATA_FILE_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace tolva {
class Tolva2011Register;
namespace platform {
class FileSystem;
}
}  // namespace tolva

namespace tolva::textdata {

class FileText {
 public:
  FileText() = default;
  ~FileText();
  FileText(const FileText&) = delete;
  FileText& operator=(const FileText&) = delete;

  // Reads `FilePath` with the same checks, results and error texts as
  // ReadFileFull. A large regular file on this machine's own file system is
  // mapped instead of copied: copying hundreds of megabytes into fresh
  // memory costs more than parsing them. Returns false with `error` set
  // when the file cannot be read.
  bool Load(Tolva2011Register& component, platform::FileSystem* files, const std::string& FilePath,
            std::string& error) noexcept;

  std::string_view View() const noexcept { return view_; }

 private:
  bool Map(const std::string& path) noexcept;

  std::string owned_;
  void* mapping_ = nullptr;
  std::size_t mapping_size_ = 0;
  std::string_view view_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_FILE_TEXT_H_
