// The last FTP error of the session, kept as a full text and a short one.
#ifndef TOLVA_SRC_FTP_ERROR_RECORDER_H_
#define TOLVA_SRC_FTP_ERROR_RECORDER_H_

#include <string>

#include "ftp/ftp_state.h"

namespace tolva::ftp {

// Records a failure as `title` and `detail`: the full text is the title,
// " - " and the detail (when there is one), always ending in ".", "!" or
// "?"; the short text is the detail, or the title when there is no detail.
// Returns the full text, which callers hand back in their ErrorMessage.
std::string RecordError(SessionState& state, const std::string& title, const std::string& detail);

// Forgets the last error: both texts become empty.
void ClearErrors(SessionState& state) noexcept;

// Trims blanks from both ends, as the host's Trim does.
std::string Trim(const std::string& text);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_ERROR_RECORDER_H_
