// The texts the file members build around a platform failure.
#ifndef TOLVA_SRC_FILES_FILE_ERROR_TEXT_H_
#define TOLVA_SRC_FILES_FILE_ERROR_TEXT_H_

#include <string>

#include "tolva/platform/file_system.h"

namespace tolva::files {

// `text` followed by " - " and the platform's description of the failure,
// or by "." when the platform gave none.
inline std::string Compose(const std::string& text, const platform::FileError& error) {
  return error.description.empty() ? text + "." : text + " - " + error.description;
}

}  // namespace tolva::files

#endif  // TOLVA_SRC_FILES_FILE_ERROR_TEXT_H_
