#include "settings/environment_expander.h"

namespace tolva::settings {

std::string ExpandEnvironmentReferences(std::string_view text, const EnvironmentLookup& lookup) {
  std::string out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t open = text.find('%', i);
    if (open == std::string_view::npos) break;
    const std::size_t close = text.find('%', open + 1);
    if (close == std::string_view::npos) break;
    out.append(text.substr(i, open - i));
    const std::string name(text.substr(open + 1, close - open - 1));
    std::string value;
    if (!name.empty() && lookup && lookup(name, value)) {
      out += value;
    } else {
      out.append(text.substr(open, close - open + 1));
    }
    i = close + 1;
  }
  out.append(text.substr(i));
  return out;
}

}  // namespace tolva::settings
