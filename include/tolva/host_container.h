// The host container: what the program that embeds the component provides
// to it. A console host can use the base class as it is (both do nothing).
#ifndef TOLVA_HOST_CONTAINER_H_
#define TOLVA_HOST_CONTAINER_H_

#include <string>

#include "tolva/export.h"

namespace tolva {

class TOLVA_EXPORT HostContainer {
 public:
  virtual ~HostContainer() = default;

  // A property of the component changed; `name` is the property's name
  // ("ProgramName", "ReadWriteIncrement", ...). Used for the host's
  // property persistence and design-time views.
  virtual void PropertyChanged(const std::string& /*name*/) {}

  // Process the host's pending events once. Long loops call it after each
  // unit of work, so the host's handlers (a Stop button, say) run inside it
  // and may call back into the component.
  virtual void DoEvents() {}
};

}  // namespace tolva

#endif  // TOLVA_HOST_CONTAINER_H_
