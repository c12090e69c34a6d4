// Starting programs.
#include "component/component_state.h"
#include "tolva/platform/process_launcher.h"
#include "tolva/tolva2011register.h"
#include "util/program_call.h"

namespace tolva {

std::string Tolva2011Register::ProgramCallSetup(const std::string& ProgramCall, const std::string& FilePath) noexcept {
  return detail::Guarded(std::string(), [&] { return util::BuildProgramCall(ProgramCall, FilePath); });
}

Boolean Tolva2011Register::ProgramExecute(const std::string& ProgramCommand) noexcept {
  return detail::Guarded(kFalse, [&] {
    platform::ProcessLauncher* launcher = s_->services.processes.get();
    if (!launcher) return kFalse;
    int pid = 0;
    if (!launcher->Start(ProgramCommand, platform::kShowNoActivate, pid)) return kFalse;
    // Bringing the window forward is a courtesy: the program runs either way.
    launcher->Activate(pid);
    return kTrue;
  });
}

}  // namespace tolva
