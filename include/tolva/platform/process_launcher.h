// Starting programs from a command line.
#ifndef TOLVA_PLATFORM_PROCESS_LAUNCHER_H_
#define TOLVA_PLATFORM_PROCESS_LAUNCHER_H_

#include <string>

#include "tolva/export.h"

namespace tolva::platform {

inline constexpr int kShowNoActivate = 4;  // normal window, does not take the focus

class TOLVA_EXPORT ProcessLauncher {
 public:
  virtual ~ProcessLauncher() = default;
  // Starts `command_line` (split into words as a shell would, no shell run)
  // as a new process; `process_id` receives its id. False when it can't start.
  virtual bool Start(const std::string& command_line, int window_style, int& process_id) = 0;
  // Brings the started program's main window to the front; best effort.
  virtual bool Activate(int process_id) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_PROCESS_LAUNCHER_H_
