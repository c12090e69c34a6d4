// Looks up one remote name in the current directory of the session: the
// existence tests, and the size check in front of the buffered transfers,
// which need the size in full rather than as a Long.
#ifndef TOLVA_SRC_FTP_FILE_LOOKUP_H_
#define TOLVA_SRC_FTP_FILE_LOOKUP_H_

#include <string>

#include "component/component_state.h"
#include "ftp/entry_decoder.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

// True when the server lists `file_name` (a directory of that name counts
// too); then `entry`, when given, receives the decoded entry. Not found and
// no error: false with ErrorMessage emptied. A failure of the library is
// recorded with `tag`.
bool LookUpFile(Tolva2011Register& component, detail::ComponentState& state, const std::string& file_name,
                const char* tag, std::string& error_message, DecodedEntry* entry);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_FILE_LOOKUP_H_
