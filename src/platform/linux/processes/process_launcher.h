// Starting programs on Linux. The command line is split into words as a
// POSIX shell splits them (blanks, single and double quotes, backslashes)
// but no shell runs: nothing is expanded, redirected or piped. The program
// is looked up on $PATH unless its name holds a "/".
//
// The started program is detached: an intermediate child starts it and
// exits at once, so the program is never this process's child and never
// lingers as a zombie, whether or not anyone waits for it.
#ifndef TOLVA_SRC_PLATFORM_LINUX_PROCESSES_PROCESS_LAUNCHER_H_
#define TOLVA_SRC_PLATFORM_LINUX_PROCESSES_PROCESS_LAUNCHER_H_

#include <memory>
#include <string>
#include <vector>

#include "tolva/platform/process_launcher.h"

namespace tolva::platform::posix {

// Splits `command_line` into words; false (and `words` unspecified) when a
// quote is left open or a backslash ends the line.
bool SplitCommandLine(const std::string& command_line, std::vector<std::string>& words);

class LinuxProcessLauncher : public ProcessLauncher {
 public:
  LinuxProcessLauncher() = default;
  LinuxProcessLauncher(const LinuxProcessLauncher&) = delete;
  LinuxProcessLauncher& operator=(const LinuxProcessLauncher&) = delete;

  // False when the line is empty or malformed, or the program can't be
  // found or executed. The window style means nothing to a console program.
  bool Start(const std::string& command_line, int window_style, int& process_id) override;
  // There is no window manager call to make from here: always false.
  bool Activate(int process_id) override;
};

// The service of this folder, as linux_services.cc assembles it.
std::shared_ptr<ProcessLauncher> NewProcessLauncher();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_PROCESSES_PROCESS_LAUNCHER_H_
