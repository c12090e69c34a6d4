#include "ui/tab_stop_layout.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "ui/twips.h"

namespace tolva::ui {

namespace {
Long ValueOr0(const HostArray<Long>& a, Long i) {
  const Long* p = a.At(i);
  return p ? *p : 0;
}
}  // namespace

void TabStopLayout::MeasureColumns(const ListBox& list, Long columns, HostArray<Long>& column_widths) {
  for (Long c = 1; c <= columns; ++c) column_widths.Store(c, 0);
  const Long rows = list.ListCount();
  for (Long row = 0; row < rows; ++row) {
    const std::string text = list.List(row);
    std::string_view rest(text);
    for (Long c = 1; c <= columns; ++c) {
      const std::size_t tab = rest.find('\t');
      const std::string_view part = tab == std::string_view::npos ? rest : rest.substr(0, tab);
      if (!part.empty()) {
        const Long width = widths_.Width(part);
        if (width > ValueOr0(column_widths, c)) column_widths.Store(c, width);
      }
      if (tab == std::string_view::npos) break;
      rest.remove_prefix(tab + 1);
    }
  }
}

TabStops TabStopLayout::Compute(Long columns, const HostArray<Long>& column_widths, Long column_space) {
  TabStops out;
  out.stops.assign(static_cast<std::size_t>(columns) + 1, 0);
  // Each step below that cannot be worked out (no resolution, no measure)
  // leaves its value 0 and the layout carries on, as the host's list boxes
  // always have.
  const bool have_factor = twips_per_pixel_ > 0;
  float average_char = 0;  // pixels; single precision, as the host keeps it
  if (have_factor) average_char = static_cast<float>(widths_.Width(kMeasuringAlphabet) / 52.0 / twips_per_pixel_);
  const float space = average_char * static_cast<float>(column_space);
  const Long minimum = widths_.Width(kMinimumColumnSample);

  std::vector<Long> dialog_width(static_cast<std::size_t>(columns) + 1, 0);
  for (Long c = 1; c <= columns; ++c) {
    const Long width = std::max(minimum, ValueOr0(column_widths, c));
    Long units = 0;
    if (have_factor && IntegerDivide(RoundToLong(width / twips_per_pixel_ + space), average_char, units))
      dialog_width[c] = units * 4;
    if (c > 1) out.stops[c - 1] = out.stops[c - 2] + dialog_width[c - 1];
  }
  const Long total = out.stops[columns - 1] + dialog_width[columns];
  out.stops.resize(static_cast<std::size_t>(columns));
  out.horizontal_extent = RoundToLong(static_cast<double>(average_char) * (total / 4));
  return out;
}

}  // namespace tolva::ui
