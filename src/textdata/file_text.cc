#include "textdata/file_text.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <typeinfo>

#include "platform/linux/linux_factories.h"
#include "tolva/tolva2011register.h"

namespace tolva::textdata {

namespace {

// Smaller files are read through the file service: a copy of them costs
// next to nothing, and they then never depend on a mapping.
constexpr std::uint64_t kMapFrom = std::uint64_t{1} << 20;

// Mapping reads the disk directly, so it may only stand in for the file
// service when the service is this platform's own; a test's in-memory
// file system, or a host's own service, is always read through its interface.
bool IsPlatformFileSystem(platform::FileSystem* files) {
  static const std::type_info& platform_type = []() -> const std::type_info& {
    const std::shared_ptr<platform::FileSystem> probe = platform::posix::NewFileSystem();
    return typeid(*probe);
  }();
  return files != nullptr && typeid(*files) == platform_type;
}

std::string ToPlatformPath(std::string path) {
  for (char& c : path)
    if (c == '\\') c = '/';
  return path;
}

std::uint64_t PhysicalMemory() noexcept {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long size = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || size <= 0) return UINT64_MAX;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size);
}

}  // namespace

FileText::~FileText() {
  if (mapping_) ::munmap(mapping_, mapping_size_);
}

bool FileText::Load(Tolva2011Register& component, platform::FileSystem* files, const std::string& FilePath,
                    std::string& error) noexcept {
  try {
    error.clear();
    if (IsPlatformFileSystem(files) && !FilePath.empty()) {
      // The checks ReadFileFull makes before it reads; any file they would
      // refuse, or that cannot be mapped, is left to ReadFileFull itself, so
      // every failure carries exactly its text.
      const std::string path = component.BuildPathRun(FilePath);
      const bool directory_ok = path.find_first_of("\\/") == std::string::npos ||
                                IsTrue(component.DirectoryExists(component.FileDirectory(path)));
      if (directory_ok && IsTrue(component.FileExists(path)) && Map(ToPlatformPath(path))) return true;
    }
    owned_ = component.ReadFileFull(FilePath, error);
    view_ = owned_;
    return error.empty();
  } catch (...) {
    if (error.empty()) error = "File Read Error - Out of memory";
    return false;
  }
}

bool FileText::Map(const std::string& path) noexcept {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat st {};
  void* mapping = MAP_FAILED;
  std::size_t size = 0;
  if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && static_cast<std::uint64_t>(st.st_size) >= kMapFrom &&
      static_cast<std::uint64_t>(st.st_size) <= PhysicalMemory()) {
    size = static_cast<std::size_t>(st.st_size);
    // Populated at once: one pass through the kernel instead of a page
    // fault every 4 KiB while parsing.
    mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
  }
  ::close(fd);  // the mapping keeps the file's contents reachable
  if (mapping == MAP_FAILED) return false;
  mapping_ = mapping;
  mapping_size_ = size;
  view_ = std::string_view(static_cast<const char*>(mapping), size);
  return true;
}

}  // namespace tolva::textdata
