// Expands %NAME% references in an expandable string value, as the system's
// own expansion does: a defined name is replaced by its value, anything else
// (an undefined name, a lone "%") is copied as it stands.
#ifndef TOLVA_SRC_SETTINGS_ENVIRONMENT_EXPANDER_H_
#define TOLVA_SRC_SETTINGS_ENVIRONMENT_EXPANDER_H_

#include <functional>
#include <string>
#include <string_view>

namespace tolva::settings {

// `lookup(name, value)` answers whether `name` is defined and its value.
using EnvironmentLookup = std::function<bool(const std::string& name, std::string& value)>;

std::string ExpandEnvironmentReferences(std::string_view text, const EnvironmentLookup& lookup);

}  // namespace tolva::settings

#endif  // TOLVA_SRC_SETTINGS_ENVIRONMENT_EXPANDER_H_
