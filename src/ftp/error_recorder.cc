#include "ftp/error_recorder.h"

#include <string>

#include "paths/path_text.h"

namespace tolva::ftp {

std::string RecordError(SessionState& state, const std::string& title, const std::string& detail) {
  state.last_error_text = title;
  state.short_error_text = detail;
  if (!detail.empty()) {
    state.last_error_text = title + " - " + detail;
  } else {
    state.short_error_text = title;
  }
  // Only the full text gets the closing full stop; the short one stays as given.
  const std::string& full = state.last_error_text;
  if (!full.empty()) {
    const char last = full.back();
    if (last != '.' && last != '!' && last != '?') state.last_error_text += '.';
  }
  return state.last_error_text;
}

void ClearErrors(SessionState& state) noexcept {
  state.last_error_text.clear();
  state.short_error_text.clear();
}

std::string Trim(const std::string& text) {
  return std::string(paths::TrimBlanks(text));
}

}  // namespace tolva::ftp
