// Tab stops and scroll extent of a multi-column list box.
#include <memory>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"
#include "ui/tab_stop_layout.h"

namespace tolva {

namespace {
// More columns than any list box can draw: taken as a bad argument rather
// than a reason to allocate and loop for billions of columns.
constexpr Long kMaxColumns = 1 << 16;
}  // namespace

void Tolva2011Register::ListBoxTabPositionsSet(ListBox& ListObject, Long Columns, HostArray<Long>& ColumnWidths,
                                               Boolean CalculateWidths, Long ColumnSpace) noexcept {
  detail::GuardedVoid([&] {
    if (Columns < 1 || Columns > kMaxColumns) return;
    // One measuring surface for the whole call, in the list box's font.
    std::unique_ptr<platform::TextMeasurer> measurer;
    double twips_per_pixel = 0;
    if (platform::WindowServices* windows = s_->services.windows.get()) {
      measurer = windows->NewTextMeasurer(ListObject.Font());
      twips_per_pixel = windows->TwipsPerPixelX();
    }
    ui::TabStopLayout layout(measurer.get(), twips_per_pixel);
    if (IsTrue(CalculateWidths)) {
      // An empty list changes nothing, not even the stops.
      if (ListObject.ListCount() <= 0) return;
      layout.MeasureColumns(ListObject, Columns, ColumnWidths);
    }
    const ui::TabStops result = layout.Compute(Columns, ColumnWidths, ColumnSpace);
    ListObject.SetTabStops(result.stops);
    ListObject.SetHorizontalExtent(result.horizontal_extent);
  });
}

}  // namespace tolva
