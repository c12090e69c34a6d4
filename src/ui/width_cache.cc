#include "ui/width_cache.h"

#include "ui/twips.h"

namespace tolva::ui {

Long WidthCache::Width(std::string_view text) {
  if (!measurer_) return 0;
  if (auto it = widths_.find(text); it != widths_.end()) return it->second;
  std::string key(text);
  const Long width = RoundToLong(measurer_->TextWidthTwips(key));
  if (widths_.size() < kMaxEntries) widths_.emplace(std::move(key), width);
  return width;
}

}  // namespace tolva::ui
