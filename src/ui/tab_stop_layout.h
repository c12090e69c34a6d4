// Column widths of a list box of tab-separated rows, turned into tab stops
// in dialog units (4 to an average character) and a scroll extent in pixels.
#ifndef TOLVA_SRC_UI_TAB_STOP_LAYOUT_H_
#define TOLVA_SRC_UI_TAB_STOP_LAYOUT_H_

#include <vector>

#include "tolva/host_types.h"
#include "tolva/platform/window_services.h"
#include "ui/width_cache.h"

namespace tolva::ui {

inline constexpr const char* kMeasuringAlphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
inline constexpr const char* kMinimumColumnSample = "XX";

struct TabStops {
  std::vector<Long> stops;     // one per column: 0, then where each later column starts
  Long horizontal_extent = 0;  // pixels
};

class TabStopLayout {
 public:
  // `measurer` may be null (no display): widths then stay 0. Not owned.
  TabStopLayout(platform::TextMeasurer* measurer, double twips_per_pixel) noexcept
      : widths_(measurer), twips_per_pixel_(twips_per_pixel) {}

  // Sets ColumnWidths(1..columns) to the widest text of each column, in
  // twips. Only the first `columns` tab-separated parts of a row count; a
  // row with fewer parts widens only the columns it has.
  void MeasureColumns(const ListBox& list, Long columns, HostArray<Long>& column_widths);

  // The stops and extent for `columns` columns of the given widths (twips),
  // each with `column_space` average characters of room added.
  TabStops Compute(Long columns, const HostArray<Long>& column_widths, Long column_space);

 private:
  WidthCache widths_;
  double twips_per_pixel_;
};

}  // namespace tolva::ui

#endif  // TOLVA_SRC_UI_TAB_STOP_LAYOUT_H_
