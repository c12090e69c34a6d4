// The host container interface: HostContainer.
#ifndef TOLVA_HOST_CONTAINER_H_
#define TOLVA_HOST_CONTAINER_H_

#include <string>

#include "tolva/export.h"

namespace tolva {

/// What the program that embeds the component provides to it. A console host can use this base class as it is
/// (both members do nothing).
class TOLVA_EXPORT HostContainer {
 public:
  /// Destroys the container.
  virtual ~HostContainer() = default;

  /// Told that a property of the component changed; `name` is the property's name ("ProgramName",
  /// "ReadWriteIncrement", ...). Used for the host's property persistence and design-time views.
  virtual void PropertyChanged(const std::string& /*name*/) {}

  /// Processes the host's pending events once. Long loops call it after each unit of work, so the host's
  /// handlers (a Stop button, say) run inside it and may call back into the component.
  virtual void DoEvents() {}
};

}  // namespace tolva

#endif  // TOLVA_HOST_CONTAINER_H_
