// Text widths in whole twips, measured once per distinct text: the rows of a
// multi-column list repeat many of their values (codes, dates, names).
#ifndef TOLVA_SRC_UI_WIDTH_CACHE_H_
#define TOLVA_SRC_UI_WIDTH_CACHE_H_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tolva/host_types.h"
#include "tolva/platform/window_services.h"

namespace tolva::ui {

class WidthCache {
 public:
  // `measurer` may be null: every width is then 0. Not owned.
  explicit WidthCache(platform::TextMeasurer* measurer) noexcept : measurer_(measurer) {}

  // Width of `text` in twips, rounded to a whole number.
  Long Width(std::string_view text);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
  };
  // Past this many entries new texts are measured but not kept, so a list of
  // all-distinct values cannot make the cache grow without bound.
  static constexpr std::size_t kMaxEntries = 1 << 16;

  platform::TextMeasurer* measurer_;
  std::unordered_map<std::string, Long, Hash, std::equal_to<>> widths_;
};

}  // namespace tolva::ui

#endif  // TOLVA_SRC_UI_WIDTH_CACHE_H_
