// A fresh directory in the test home's temporary directory, removed with all in it at the end.
#ifndef TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_
#define TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tolva::testing_files {

class TempDir {
 public:
  TempDir() : path_((std::filesystem::temp_directory_path() / "tolva-files-XXXXXX").string()) {
    if (!::mkdtemp(path_.data())) path_.clear();
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  static void Write(const std::string& path, const std::string& data) { std::ofstream(path, std::ios::binary) << data; }
  static std::string Read(const std::string& path) {
    std::ostringstream s;
    s << std::ifstream(path, std::ios::binary).rdbuf();
    return s.str();
  }

 private:
  std::string path_;
};

}  // namespace tolva::testing_files

#endif  // TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_
