// An in-memory file system for unit tests, with failures injectable per
// operation and path. Paths may use "\" or "/"; relative ones resolve against
// `cwd`. Names beginning with "." are hidden, as on the real service.
#ifndef TOLVA_TESTS_FAKES_FAKE_FILE_SYSTEM_H_
#define TOLVA_TESTS_FAKES_FAKE_FILE_SYSTEM_H_

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tolva/platform/file_system.h"

namespace tolva::fakes {

class FakeFileSystem : public platform::FileSystem {
 public:
  struct Node {
    bool directory = false;
    std::string data;
    platform::FileTime time{2011, 1, 1, 12, 0, 0};
    bool read_only = false;
  };
  // Operations whose failure a test can inject (kWrite covers temporary names too).
  enum class Op { kOpen, kWrite };

  FakeFileSystem();

  // Adds a file (and its missing parent directories).
  void AddFile(const std::string& path, const std::string& data, platform::FileTime time = {2011, 1, 1, 12, 0, 0});
  void AddDirectory(const std::string& path);
  bool IsFile(const std::string& path) const { return At(path) && !At(path)->directory; }
  bool IsDirectory(const std::string& path) const { return At(path) && At(path)->directory; }
  // The file's contents; "" when it is missing.
  std::string Contents(const std::string& path) const { return At(path) ? At(path)->data : std::string(); }
  // Makes `op` on `path` fail with `error`.
  void Fail(Op op, const std::string& path, platform::FileError error);
  // The absolute, "/"-separated form of a path, as keys are stored.
  std::string Normalize(const std::string& path) const;

  std::map<std::string, Node> nodes;  // keyed by normalised path
  std::string cwd = "/";
  std::string temp_path = "/tmp/";
  std::string windows_directory = "/windows";
  std::string system_directory = "/windows/system";
  std::uint64_t bytes_read = 0;    // every byte handed out by File::Read and ReadAll
  std::vector<std::string> calls;  // "mkdir path" and "cd path", in order

  bool List(const std::string& pattern, std::uint32_t attributes, std::vector<platform::DirEntry>& out,
            platform::FileError& error) override;
  bool CurrentDirectory(std::string& directory, platform::FileError& error) override;
  bool ChangeDirectory(const std::string& directory, platform::FileError& error) override;
  bool MakeDirectory(const std::string& directory, platform::FileError& error) override;
  bool DeleteFiles(const std::string& pattern, platform::FileError& error) override;
  bool SetAttributesNormal(const std::string& path, platform::FileError& error) override;
  bool Length(const std::string& path, std::uint64_t& length, platform::FileError& error) override;
  bool LastWriteTime(const std::string& path, platform::FileTime& time, platform::FileError& error) override;
  std::unique_ptr<platform::File> Open(const std::string& path, platform::OpenMode mode,
                                       platform::FileError& error) override;
  bool ReadAll(const std::string& path, std::string& out, platform::FileError& error) override;
  bool WriteAll(const std::string& path, const std::string& data, platform::FileError& error) override;
  std::string TempPath() override { return temp_path; }
  bool TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                    platform::FileError& error) override;
  std::string WindowsDirectory() override { return windows_directory; }
  std::string SystemDirectory() override { return system_directory; }

  // Classic errors the fake reports.
  static platform::FileError FileNotFound() { return {53, "File not found"}; }
  static platform::FileError PathNotFound() { return {76, "Path not found"}; }
  static platform::FileError AccessError() { return {75, "Path/File access error"}; }
  static platform::FileError PermissionDenied() { return {70, "Permission denied"}; }

 private:
  const Node* At(const std::string& path) const;  // nullptr when there is no such node
  bool Injected(Op op, const std::string& normalized, platform::FileError& error) const;
  bool ParentIsDirectory(const std::string& normalized) const;
  std::map<std::pair<Op, std::string>, platform::FileError> failures_;
  int temp_counter_ = 0;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_FILE_SYSTEM_H_
