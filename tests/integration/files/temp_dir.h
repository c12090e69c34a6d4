// A fresh directory under the system's temporary directory, removed with
// everything in it when the test ends.
#ifndef TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_
#define TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_

#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace tolva::testing_files {

class TempDir {
 public:
  TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string templ = std::string(base && *base ? base : "/tmp") + "/tolva-files-XXXXXX";
    if (::mkdtemp(templ.data())) path_ = templ;
  }
  ~TempDir() {
    if (path_.empty()) return;
    ::nftw(
        path_.c_str(),
        [](const char* p, const struct stat*, int, struct FTW*) {
          ::chmod(p, 0700);
          return ::remove(p) == 0 ? 0 : 0;
        },
        16, FTW_DEPTH | FTW_PHYS);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  static void Write(const std::string& path, const std::string& data) { std::ofstream(path, std::ios::binary) << data; }
  static std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
  }

 private:
  std::string path_;
};

}  // namespace tolva::testing_files

#endif  // TOLVA_TESTS_INTEGRATION_FILES_TEMP_DIR_H_
