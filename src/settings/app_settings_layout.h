// Where application settings live in the per-user root: one key per
// application under the classic settings key, one sub-key per section, one
// string value per key.
#ifndef TOLVA_SRC_SETTINGS_APP_SETTINGS_LAYOUT_H_
#define TOLVA_SRC_SETTINGS_APP_SETTINGS_LAYOUT_H_

#include <string>

namespace tolva::settings {

// Kept as the classic settings calls name it, so that settings written by
// older hosts are found.
inline constexpr const char* kAppSettingsKey = "Software\\VB and VBA Program Settings\\";

inline std::string ApplicationKeyPath(const std::string& app) {
  return kAppSettingsKey + app;
}
inline std::string SectionKeyPath(const std::string& app, const std::string& section) {
  return kAppSettingsKey + app + "\\" + section;
}

}  // namespace tolva::settings

#endif  // TOLVA_SRC_SETTINGS_APP_SETTINGS_LAYOUT_H_
