// One profile (INI) file held in memory: its bytes and, for each line, where
// it lies and what it is. Look-ups and edits behave as the classic profile
// API does on the same bytes:
//   - lines end at CR LF, a lone LF or a lone CR;
//   - a line whose first non-blank character is ";" is a comment ("#" is not);
//   - "[" name "]" after optional blanks opens a section; text before the
//     first section belongs to none and is never found;
//   - a line with "=" is a key; any other line is kept and never matches;
//   - names match case-insensitively, blanks around them ignored; the first
//     matching section and, inside it, the first matching key win;
//   - a value is the text after the first "=", blanks trimmed, and one
//     matching pair of enclosing quotes (" or ') removed.
// An edit rewrites only the line it changes and keeps every other byte.
#ifndef TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_FILE_H_
#define TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_FILE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tolva::platform::posix {

class ProfileFile {
 public:
  explicit ProfileFile(std::string bytes);
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  const std::string& bytes() const noexcept { return bytes_; }

  // The value of `key` in `section`, or nothing when either is absent. A
  // key with an empty value is found and empty.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  // The file's bytes after setting `key` in `section` to `*value`, or after
  // deleting the key when `value` is null. `changed` is false when the
  // bytes would stay the same (deleting what is not there).
  std::string WithValue(std::string_view section, std::string_view key, const std::string* value, bool& changed) const;

 private:
  enum class Kind { kBlank, kComment, kSection, kKey, kOther };
  struct Line {
    std::size_t begin = 0;  // first byte
    std::size_t end = 0;    // one past the last byte before the line end
    std::size_t next = 0;   // one past the line end
    Kind kind = Kind::kOther;
    std::size_t name_begin = 0, name_end = 0;    // section or key name, trimmed
    std::size_t value_begin = 0, value_end = 0;  // key value, trimmed, quotes removed
  };
  struct Section {
    std::size_t header = 0;                             // index of its header line
    std::size_t end = 0;                                // index one past its last line
    std::unordered_map<std::string, std::size_t> keys;  // folded name -> first line
  };

  void Parse();
  std::string_view Text(std::size_t b, std::size_t e) const { return std::string_view(bytes_).substr(b, e - b); }
  const Section* FindSection(std::string_view section) const;

  std::string bytes_;
  std::vector<Line> lines_;
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> section_index_;  // folded name -> first section
};

// ASCII case folding used for section and key names.
std::string FoldName(std::string_view name);
// Blanks (spaces and tabs) removed from both ends.
std::string_view TrimProfileBlanks(std::string_view s) noexcept;

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_FILE_H_
