// The foundation part of the tour: properties and their persistence.
#include <cstdio>

#include "demo.h"

namespace {

int Foundation(const demo::Args&) {
  demo::ConsoleHost host;
  host.verbose = true;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  c.InitProperties();
  demo::Heading("Component properties");
  c.ProgramName("Tolva Demo");
  c.ProgramAuthor("The Tolva team");
  demo::Show("ProgramName", c.ProgramName());
  demo::Show("FormSizeRatio", std::to_string(c.FormSizeRatio()));
  tolva::MemoryPropertyBag bag;
  c.WriteProperties(bag);
  demo::Show("properties saved (only those that differ from the default)", std::to_string(bag.Size()));
  return 0;
}

TOLVA_DEMO_COMMAND("foundation", "", Foundation);

}  // namespace
