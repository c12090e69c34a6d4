// The Windows, system and temporary directories of this platform, and
// unique temporary file names.
#include <string>

#include "component/component_state.h"
#include "paths/path_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {
// The classic calls' buffers: longer names are cut as they were.
constexpr std::size_t kWindowsDirectoryRoom = 144;
constexpr std::size_t kTempPathRoom = 600;
}  // namespace

std::string Tolva2011Register::WinDirectory() noexcept {
  return detail::Guarded(std::string(), [&] {
    if (!s_->services.files) return std::string();
    const std::string d = s_->services.files->WindowsDirectory().substr(0, kWindowsDirectoryRoom);
    return AddMissingBackslash(std::string(paths::TrimBlanks(d)));
  });
}

std::string Tolva2011Register::WinSysDirectory() noexcept {
  return detail::Guarded(std::string(), [&] {
    if (!s_->services.files) return std::string();
    const std::string d = s_->services.files->SystemDirectory().substr(0, kWindowsDirectoryRoom);
    return AddMissingBackslash(std::string(paths::TrimBlanks(d)));
  });
}

std::string Tolva2011Register::WinTempPath() noexcept {
  return detail::Guarded(std::string(), [&] {
    if (!s_->services.files) return std::string();
    std::string t = s_->services.files->TempPath();
    if (t.size() >= kTempPathRoom) return std::string();  // the classic call fails when it does not fit
    if (const std::size_t nul = t.find('\0'); nul != std::string::npos) t.resize(nul);
    return t;
  });
}

std::string Tolva2011Register::WinTempFile(const std::string& TempTag, const std::string& DefaultFile) noexcept {
  return detail::Guarded(DefaultFile, [&] {
    std::string prefix = "tvq";
    if (TempTag.size() >= 3) {
      prefix = TempTag.substr(0, 3);
      for (char& c : prefix)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    platform::FileSystem* fs = s_->services.files.get();
    std::string name;
    platform::FileError error;
    // When no name can be made, the host's own choice stands in.
    if (!fs || !fs->TempFileName(WinTempPath(), prefix, name, error)) return DefaultFile;
    if (const std::size_t nul = name.find('\0'); nul != std::string::npos) name.resize(nul);
    // The classic call creates the file; only its name is wanted.
    std::string ignored;
    KillFile(name, ignored);
    return name;
  });
}

}  // namespace tolva
