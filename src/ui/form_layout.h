// Keeping a form on the screen, lining a label up with its control and
// sizing a form around its controls.
#ifndef TOLVA_SRC_UI_FORM_LAYOUT_H_
#define TOLVA_SRC_UI_FORM_LAYOUT_H_

#include "tolva/platform/window_services.h"
#include "ui/layout_metrics.h"

namespace tolva::ui {

class FormLayout {
 public:
  explicit FormLayout(const LayoutMetrics& metrics) noexcept : metrics_(metrics) {}

  void KeepOnScreen(Form& form) const;
  static void AlignLabel(Label& label, const Control& anchor, bool align_right);
  void SizeAround(const Control& right_most, const Control& lowest) const;

 private:
  const LayoutMetrics& metrics_;
};

}  // namespace tolva::ui

#endif  // TOLVA_SRC_UI_FORM_LAYOUT_H_
