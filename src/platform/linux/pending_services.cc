// Services whose Linux implementation has not landed yet. Each family
// removes its factory from here when it adds the real one.
#include "platform/linux/linux_factories.h"

namespace tolva::platform::posix {}  // namespace tolva::platform::posix
