#include "ui/layout_metrics.h"

#include "ui/twips.h"

namespace tolva::ui {

double LayoutMetrics::FactorX() const {
  return windows_ ? windows_->TwipsPerPixelX() : 0;
}
double LayoutMetrics::FactorY() const {
  return windows_ ? windows_->TwipsPerPixelY() : 0;
}

Long LayoutMetrics::MetricTwips(int index, double factor) const {
  if (!windows_) return 0;
  return RoundToLong(windows_->SystemMetric(index) * factor);
}

// Heights scale with the vertical factor, widths with the horizontal one;
// they are equal on every common display.
Long LayoutMetrics::CaptionHeight() const {
  return MetricTwips(platform::kSmCyCaption, FactorY());
}
Long LayoutMetrics::MenuHeight() const {
  return MetricTwips(platform::kSmCyMenu, FactorY());
}
Long LayoutMetrics::DialogWidth() const {
  return MetricTwips(platform::kSmCxDlgFrame, FactorX());
}
Long LayoutMetrics::SizableWidth() const {
  return MetricTwips(platform::kSmCxFrame, FactorX());
}

Long LayoutMetrics::FormMarginY() const {
  // Large-font displays (120 dpi, 12 twips a pixel) get the smaller margin.
  return FactorY() == 12.0 ? kFormMarginYAt120Dpi : kFormMarginY;
}

Long LayoutMetrics::ScreenLeft() const {
  return windows_ ? RoundToLong(windows_->ScreenWorkArea().left * FactorX()) : 0;
}
Long LayoutMetrics::ScreenTop() const {
  return windows_ ? RoundToLong(windows_->ScreenWorkArea().top * FactorY()) : 0;
}
Long LayoutMetrics::ScreenWidth() const {
  return windows_ ? RoundToLong(windows_->ScreenWorkArea().width * FactorX()) : 0;
}
Long LayoutMetrics::ScreenHeight() const {
  return windows_ ? RoundToLong(windows_->ScreenWorkArea().height * FactorY()) : 0;
}

bool LayoutMetrics::HasScreen() const {
  return ScreenWidth() > 0 && ScreenHeight() > 0;
}

}  // namespace tolva::ui
