#include "util/program_call.h"

namespace tolva::util {

std::string BuildProgramCall(const std::string& program_call, const std::string& file_path) {
  const std::string quoted = "\"" + file_path + "\"";
  const std::size_t at = program_call.find("%1");
  if (at == std::string::npos) return program_call + " " + quoted;
  // The path is quoted even when the template quotes "%1" already, which
  // doubles the quotes; kept on purpose, hosts have always been handed it so.
  return program_call.substr(0, at) + quoted + program_call.substr(at + 2);
}

}  // namespace tolva::util
