// The opening checks of every member that searches the remote directory
// with a mask or a name: reset what must be reset, refuse an empty mask and
// a session that is not ready.
#ifndef TOLVA_SRC_FTP_SEARCH_PREAMBLE_H_
#define TOLVA_SRC_FTP_SEARCH_PREAMBLE_H_

#include <optional>
#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

struct PreambleTexts {
  const char* what;             // "File Mask" or "File Name", for the not-defined text
  const char* title;            // "Can't Find Files", "Can't Delete Files", ...
  bool resets_stop;             // mask members start with fresh stop flags
  bool clears_message_on_pass;  // finding members empty ErrorMessage when the checks pass
};

// Returns the trimmed mask, or nothing when a check failed (the error is
// recorded and in `error_message`).
std::optional<std::string> RunPreamble(Tolva2011Register& component, detail::ComponentState& state,
                                       const std::string& mask, const PreambleTexts& texts, std::string& error_message);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_SEARCH_PREAMBLE_H_
