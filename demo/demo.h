// The demo console host: a host program that embeds the component and
// shows what each family does. Each family registers its commands from its
// own file with TOLVA_DEMO_COMMAND.
#ifndef TOLVA_DEMO_DEMO_H_
#define TOLVA_DEMO_DEMO_H_

#include <iostream>
#include <string>
#include <vector>

#include "tolva/tolva2011register.h"

namespace demo {

// The console host's container and event sink: prints what the component reports.
class ConsoleHost : public tolva::HostContainer, public tolva::Tolva2011RegisterEvents {
 public:
  void PropertyChanged(const std::string& name) override {
    if (verbose) std::cout << "  (property changed: " << name << ")\n";
  }
  void SystemMessage(std::string& message) override { std::cout << "  [system] " << message << "\n"; }
  bool verbose = false;
};

using Args = std::vector<std::string>;
using CommandFn = int (*)(const Args& args);

struct Command {
  const char* name;
  const char* usage;
  CommandFn run;
};

std::vector<Command>& Commands();

struct Registrar {
  Registrar(const char* name, const char* usage, CommandFn run) { Commands().push_back({name, usage, run}); }
};

// Prints a heading for a part of the tour.
inline void Heading(const std::string& title) {
  std::cout << "\n== " << title << " ==\n";
}
// Prints "  label: value".
inline void Show(const std::string& label, const std::string& value) {
  std::cout << "  " << label << ": " << value << "\n";
}

}  // namespace demo

#define TOLVA_DEMO_CONCAT2(a, b) a##b
#define TOLVA_DEMO_CONCAT(a, b) TOLVA_DEMO_CONCAT2(a, b)
// TOLVA_DEMO_COMMAND("name", "usage", function)
#define TOLVA_DEMO_COMMAND(name, usage, fn) \
  static ::demo::Registrar TOLVA_DEMO_CONCAT(demo_registrar_, __LINE__)(name, usage, fn)

#endif  // TOLVA_DEMO_DEMO_H_
