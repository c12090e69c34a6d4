// Whether a file exists, whether it holds text, whether two files are the same.
#include <string>
#include <vector>

#include "component/component_state.h"
#include "files/file_time.h"
#include "files/text_judge.h"
#include "tolva/platform/file_patterns.h"
#include "tolva/tolva2011register.h"

namespace tolva {

Boolean Tolva2011Register::FileExists(const std::string& FilePath) noexcept {
  return detail::Guarded(kFalse, [&] {
    platform::FileSystem* fs = s_->services.files.get();
    if (FilePath.empty() || !fs) return kFalse;
    platform::FileError error;
    if (!platform::HasWildcard(FilePath)) {
      // The file must open for reading: one that exists but cannot be read
      // counts as missing, as it always has for hosts.
      auto file = fs->Open(FilePath, platform::OpenMode::kRead, error);
      if (!file) return kFalse;
      file->Close(error);
      return kTrue;
    }
    std::vector<platform::DirEntry> found;
    if (!fs->List(FilePath, platform::kAttrNormal, found, error)) return kFalse;
    return ToBoolean(!found.empty());
  });
}

Boolean Tolva2011Register::FileTestAscii(const std::string& FilePath) noexcept {
  return detail::Guarded(kFalse, [&] {
    if (IsTrue(FileExists(FilePath))) {
      platform::FileError error;
      auto file = s_->services.files->Open(FilePath, platform::OpenMode::kRead, error);
      if (!file) return kFalse;
      char sample[files::kTextJudgeBytes];
      std::size_t got = 0;
      const bool read = file->Read(sample, sizeof sample, got, error);
      file->Close(error);
      return ToBoolean(read && files::LooksLikeText(std::string_view(sample, got)));
    }
    std::string ext = FileExtension(FilePath);
    for (char& c : ext)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return ToBoolean(files::IsTextExtension(ext));
  });
}

Boolean Tolva2011Register::FileTestIdentical(const std::string& FilePath1, const std::string& FilePath2,
                                             Boolean TestDates, Boolean TestSizes, Boolean TestData,
                                             Long TestDataBytes) noexcept {
  return detail::Guarded(kFalse, [&] {
    const bool exists1 = IsTrue(FileExists(FilePath1));
    const bool exists2 = IsTrue(FileExists(FilePath2));
    // Two missing files count as identical: kept on purpose.
    if (!exists1 && !exists2) return kTrue;
    if (exists1 != exists2) return kFalse;
    platform::FileSystem* fs = s_->services.files.get();
    platform::FileError error;
    if (IsTrue(TestDates)) {
      platform::FileTime t1, t2;
      if (!fs->LastWriteTime(FilePath1, t1, error) || !fs->LastWriteTime(FilePath2, t2, error)) return kFalse;
      if (files::MinuteNumber(t1) != files::MinuteNumber(t2)) return kFalse;
    }
    std::uint64_t length1 = 0, length2 = 0;
    const bool have_lengths = fs->Length(FilePath1, length1, error) && fs->Length(FilePath2, length2, error);
    if (IsTrue(TestSizes) && (!have_lengths || length1 != length2)) return kFalse;
    // Contents are compared only for a first file of at most TestDataBytes.
    if (IsTrue(TestData)) {
      if (!have_lengths) return kFalse;
      if (static_cast<std::int64_t>(length1) <= TestDataBytes && ReadFile(FilePath1) != ReadFile(FilePath2))
        return kFalse;
    }
    return kTrue;
  });
}

}  // namespace tolva
