// Building the command line that opens one file from an "open" command.
#ifndef TOLVA_SRC_UTIL_PROGRAM_CALL_H_
#define TOLVA_SRC_UTIL_PROGRAM_CALL_H_

#include <string>

namespace tolva::util {

// `program_call` with its first "%1" replaced by the quoted `file_path`,
// or with the quoted path appended after a blank when it has no "%1".
std::string BuildProgramCall(const std::string& program_call, const std::string& file_path);

}  // namespace tolva::util

#endif  // TOLVA_SRC_UTIL_PROGRAM_CALL_H_
