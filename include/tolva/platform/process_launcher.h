// The process start interface: ProcessLauncher.
#ifndef TOLVA_PLATFORM_PROCESS_LAUNCHER_H_
#define TOLVA_PLATFORM_PROCESS_LAUNCHER_H_

#include <string>

#include "tolva/export.h"

namespace tolva::platform {

inline constexpr int kShowNoActivate = 4;  ///< normal window, does not take the focus

/// Starts programs from a command line.
class TOLVA_EXPORT ProcessLauncher {
 public:
  /// Destroys the service; started programs run on.
  virtual ~ProcessLauncher() = default;
  /// Starts `command_line` (split into words as a shell would, no shell run) as a new process with the
  /// window style `window_style`; `process_id` receives its id. False when it can't start.
  virtual bool Start(const std::string& command_line, int window_style, int& process_id) = 0;
  /// Brings the main window of the program `process_id` to the front; best effort, false when it can't.
  virtual bool Activate(int process_id) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_PROCESS_LAUNCHER_H_
