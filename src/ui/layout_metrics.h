// Frame measures, margins and the work area in twips, read afresh from the
// window service on every call (a host may move to another display).
#ifndef TOLVA_SRC_UI_LAYOUT_METRICS_H_
#define TOLVA_SRC_UI_LAYOUT_METRICS_H_

#include "tolva/host_types.h"
#include "tolva/platform/window_services.h"

namespace tolva::ui {

inline constexpr Long kFormMarginX = 120;
inline constexpr Long kFormMarginYAt120Dpi = 84;
inline constexpr Long kFormMarginY = 90;

class LayoutMetrics {
 public:
  // `windows` may be null: every measure is then 0.
  explicit LayoutMetrics(platform::WindowServices* windows) noexcept : windows_(windows) {}

  Long CaptionHeight() const;
  Long MenuHeight() const;
  Long DialogWidth() const;
  Long SizableWidth() const;
  Long FormMarginY() const;
  Long ScreenLeft() const;
  Long ScreenTop() const;
  Long ScreenWidth() const;
  Long ScreenHeight() const;
  // Whether there is a screen to keep a form on: a resolution and a work
  // area of some size. Without one nothing is moved.
  bool HasScreen() const;

 private:
  double FactorX() const;
  double FactorY() const;
  Long MetricTwips(int index, double factor) const;

  platform::WindowServices* windows_;
};

}  // namespace tolva::ui

#endif  // TOLVA_SRC_UI_LAYOUT_METRICS_H_
