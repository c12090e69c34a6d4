// A process launcher that starts nothing: it records every command line and
// window style it is given and answers as scripted.
#ifndef TOLVA_TESTS_FAKES_FAKE_PROCESS_LAUNCHER_H_
#define TOLVA_TESTS_FAKES_FAKE_PROCESS_LAUNCHER_H_

#include <string>
#include <vector>

#include "tolva/platform/process_launcher.h"

namespace tolva::fakes {

class FakeProcessLauncher : public platform::ProcessLauncher {
 public:
  struct StartCall {
    std::string command_line;
    int window_style;
  };

  // Records the call; when `start_ok` hands out `next_pid` and increments it.
  bool Start(const std::string& command_line, int window_style, int& process_id) override;
  // Records the process id; answers `activate_ok`.
  bool Activate(int process_id) override;

  bool start_ok = true;
  bool activate_ok = true;
  int next_pid = 1000;
  std::vector<StartCall> starts;
  std::vector<int> activations;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_PROCESS_LAUNCHER_H_
