// The window layout members: frame measures, margins, the work area, and
// placing and sizing forms and labels.
#include "component/component_state.h"
#include "tolva/tolva2011register.h"
#include "ui/form_layout.h"
#include "ui/layout_metrics.h"

namespace tolva {

namespace {
ui::LayoutMetrics MetricsOf(detail::ComponentState& s) {
  return ui::LayoutMetrics(s.services.windows.get());
}
}  // namespace

Long Tolva2011Register::CaptionHeight() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).CaptionHeight(); });
}
Long Tolva2011Register::MenuHeight() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).MenuHeight(); });
}
Long Tolva2011Register::DialogWidth() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).DialogWidth(); });
}
Long Tolva2011Register::SizableWidth() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).SizableWidth(); });
}
Long Tolva2011Register::FormMarginX() noexcept {
  return ui::kFormMarginX;
}
Long Tolva2011Register::FormMarginY() noexcept {
  return detail::Guarded<Long>(ui::kFormMarginY, [&] { return MetricsOf(*s_).FormMarginY(); });
}
Long Tolva2011Register::ScreenLeft() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).ScreenLeft(); });
}
Long Tolva2011Register::ScreenTop() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).ScreenTop(); });
}
Long Tolva2011Register::ScreenWidth() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).ScreenWidth(); });
}
Long Tolva2011Register::ScreenHeight() noexcept {
  return detail::Guarded<Long>(0, [&] { return MetricsOf(*s_).ScreenHeight(); });
}

void Tolva2011Register::AdjustFormPosition(Form& FormToAdjust) noexcept {
  detail::GuardedVoid([&] {
    const ui::LayoutMetrics metrics = MetricsOf(*s_);
    ui::FormLayout(metrics).KeepOnScreen(FormToAdjust);
  });
}

void Tolva2011Register::AlignLabel(Label& LabelToAlign, Control& AnchorControl, Boolean AlignRight) noexcept {
  detail::GuardedVoid([&] { ui::FormLayout::AlignLabel(LabelToAlign, AnchorControl, IsTrue(AlignRight)); });
}

void Tolva2011Register::SetupFormTolvaSize(Control& ControlRight, Control& ControlBottom) noexcept {
  detail::GuardedVoid([&] {
    const ui::LayoutMetrics metrics = MetricsOf(*s_);
    ui::FormLayout(metrics).SizeAround(ControlRight, ControlBottom);
  });
}

}  // namespace tolva
