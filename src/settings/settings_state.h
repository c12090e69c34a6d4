// State of the settings family: the normal placement of the last form
// positioned by RegistryGetPosition (one per component, not per section).
#ifndef TOLVA_SRC_SETTINGS_SETTINGS_STATE_H_
#define TOLVA_SRC_SETTINGS_SETTINGS_STATE_H_

#include "tolva/host_types.h"

namespace tolva::settings {

struct SettingsState {
  Long placement_left = 0;
  Long placement_top = 0;
  Long placement_width = 0;
  Long placement_height = 0;
};

}  // namespace tolva::settings

#endif  // TOLVA_SRC_SETTINGS_SETTINGS_STATE_H_
