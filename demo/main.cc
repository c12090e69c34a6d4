// tolva-demo COMMAND [ARGS...]: runs one command of the demo console host.
#include <cstring>
#include <iostream>

#include "demo.h"

namespace demo {
std::vector<Command>& Commands() {
  static std::vector<Command> commands;
  return commands;
}
}  // namespace demo

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: tolva-demo COMMAND [ARGS...]\ncommands:\n";
    for (const auto& c : demo::Commands()) std::cerr << "  " << c.name << " " << c.usage << "\n";
    return 2;
  }
  for (const auto& c : demo::Commands()) {
    if (std::strcmp(c.name, argv[1]) == 0) return c.run(demo::Args(argv + 2, argv + argc));
  }
  std::cerr << "tolva-demo: unknown command " << argv[1] << "\n";
  return 2;
}
