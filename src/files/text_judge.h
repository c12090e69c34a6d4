// How FileTestAscii tells a text file from any other.
#ifndef TOLVA_SRC_FILES_TEXT_JUDGE_H_
#define TOLVA_SRC_FILES_TEXT_JUDGE_H_

#include <cstddef>
#include <string_view>

namespace tolva::files {

// Only the first bytes of a file are judged, whatever its size.
inline constexpr std::size_t kTextJudgeBytes = 2048;

// Text has a line end and no NUL: at least one CR, or failing that at least
// one LF. An empty sample, or one line without an end, is not text.
inline bool LooksLikeText(std::string_view sample) noexcept {
  std::size_t nul = 0, cr = 0, lf = 0;
  for (char c : sample) {
    nul += c == '\0';
    cr += c == '\r';
    lf += c == '\n';
  }
  if (nul > 0) return false;
  return cr > 0 || lf > 0;
}

// File extensions that count as text when the file itself is missing.
inline bool IsTextExtension(std::string_view lower_extension) noexcept {
  return lower_extension == "txt" || lower_extension == "csv" || lower_extension == "html" ||
         lower_extension == "htm" || lower_extension == "shtml";
}

}  // namespace tolva::files

#endif  // TOLVA_SRC_FILES_TEXT_JUDGE_H_
