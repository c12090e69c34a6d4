// The path text helpers: pure text operations, no file-system access.
#include <cctype>
#include <string>

#include "component/component_state.h"
#include "paths/path_shortener.h"
#include "paths/path_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;

std::string Tolva2011Register::AddMissingBackslash(const std::string& InputString) noexcept {
  return Guarded(std::string(), [&] { return paths::AddMissingSeparator(InputString, '\\'); });
}

std::string Tolva2011Register::AddMissingSlash(const std::string& InputString) noexcept {
  return Guarded(std::string(), [&] { return paths::AddMissingSeparator(InputString, '/'); });
}

std::string Tolva2011Register::RemoveLastBackslash(const std::string& InputString) noexcept {
  return Guarded(std::string(), [&] { return paths::RemoveLastSeparator(InputString, '\\'); });
}

std::string Tolva2011Register::RemoveLastSlash(const std::string& InputString) noexcept {
  return Guarded(std::string(), [&] { return paths::RemoveLastSeparator(InputString, '/'); });
}

std::string Tolva2011Register::BuildPath(const std::string& Directory, const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    if (FilePath.empty()) return std::string();
    // A "\" anywhere makes it a full path; "/" deliberately does not count here.
    if (FilePath.find('\\') != std::string::npos) return FilePath;
    return paths::AddMissingSeparator(Directory, '\\') + FilePath;
  });
}

std::string Tolva2011Register::BuildPathRun(const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    if (FilePath.empty()) return std::string();
    if (FilePath.find('\\') == std::string::npos && !s_->props.directory_run.empty()) {
      return BuildPath(s_->props.directory_run, FilePath);
    }
    return FilePath;
  });
}

std::string Tolva2011Register::FileDirectory(const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    const std::size_t after = paths::AfterLastSeparator(FilePath);
    return after == std::string::npos ? std::string() : FilePath.substr(0, after);
  });
}

std::string Tolva2011Register::FileName(const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    const std::size_t after = paths::AfterLastSeparator(FilePath);
    return after == std::string::npos ? FilePath : FilePath.substr(after);
  });
}

std::string Tolva2011Register::FileNameOnly(const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    std::string name = FileName(FilePath);
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos) name.resize(dot);
    return name;
  });
}

std::string Tolva2011Register::FileExtension(const std::string& FilePath) noexcept {
  return Guarded(std::string(), [&] {
    if (paths::TrimBlanks(FilePath).empty()) return std::string();
    // Separators are deliberately not consulted: C:\v1.2\readme gives "2\readme".
    const std::size_t dot = FilePath.rfind('.');
    if (dot == std::string::npos) return std::string();
    return std::string(paths::TrimBlanks(std::string_view(FilePath).substr(dot + 1)));
  });
}

std::string Tolva2011Register::FilePathSimplify(const std::string& FilePath, const std::string& Directory) noexcept {
  return Guarded(std::string(), [&] {
    if (Directory.empty()) return FilePath;
    const std::string d = paths::AddMissingSeparator(Directory, '\\');
    if (d.size() >= FilePath.size()) return FilePath;
    for (std::size_t i = 0; i < d.size(); ++i) {
      if (std::toupper(static_cast<unsigned char>(d[i])) != std::toupper(static_cast<unsigned char>(FilePath[i]))) {
        return FilePath;
      }
    }
    return FilePath.substr(d.size());
  });
}

std::string Tolva2011Register::FilePathShorten(const std::string& FilePath, const std::string& Delimiter,
                                               Long MaxLength, Long StartKeep, Long SlashesStart,
                                               Long SlashesEnd) noexcept {
  return Guarded(std::string(), [&] {
    return paths::ShortenPath(FilePath, {Delimiter, MaxLength, StartKeep, SlashesStart, SlashesEnd});
  });
}

}  // namespace tolva
