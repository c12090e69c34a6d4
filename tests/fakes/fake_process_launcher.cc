#include "fakes/fake_process_launcher.h"

namespace tolva::fakes {

bool FakeProcessLauncher::Start(const std::string& command_line, int window_style, int& process_id) {
  starts.push_back({command_line, window_style});
  if (!start_ok) return false;
  process_id = next_pid++;
  return true;
}

bool FakeProcessLauncher::Activate(int process_id) {
  activations.push_back(process_id);
  return activate_ok;
}

}  // namespace tolva::fakes
