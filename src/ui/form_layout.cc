#include "ui/form_layout.h"

#include "ui/twips.h"

namespace tolva::ui {

void FormLayout::KeepOnScreen(Form& form) const {
  // Without a screen (no display) the form stays where it is rather than
  // being pushed to 0,0.
  if (!metrics_.HasScreen()) return;
  // Kept on purpose: the right and bottom limits are the width and height
  // alone (not left + width), and the left/top correction comes last, so a
  // form larger than the screen ends up at the screen's left or top edge.
  const Long screen_width = metrics_.ScreenWidth();
  if (RoundToLong(form.Left() + form.Width()) > screen_width)
    form.Left(static_cast<Single>(screen_width - form.Width()));
  const Long screen_height = metrics_.ScreenHeight();
  if (RoundToLong(form.Top() + form.Height()) > screen_height)
    form.Top(static_cast<Single>(screen_height - form.Height()));
  const Long screen_left = metrics_.ScreenLeft();
  if (form.Left() < screen_left) form.Left(static_cast<Single>(screen_left));
  const Long screen_top = metrics_.ScreenTop();
  if (form.Top() < screen_top) form.Top(static_cast<Single>(screen_top));
}

void FormLayout::AlignLabel(Label& label, const Control& anchor, bool align_right) {
  label.AutoSize(true);
  // Centred on the anchor; the half is not rounded.
  label.Top(anchor.Top() + (anchor.Height() - label.Height()) / 2);
  if (align_right) label.Left(anchor.Left() - label.Width() - static_cast<Single>(kFormMarginX));
}

void FormLayout::SizeAround(const Control& right_most, const Control& lowest) const {
  Form* form = right_most.Parent();
  if (!form) return;
  form->ApplyStandardStyle();
  const Long dialog_frame = metrics_.DialogWidth();
  form->Width(right_most.Left() + right_most.Width() + static_cast<Single>(kFormMarginX + 2 * dialog_frame));
  form->Height(lowest.Top() + lowest.Height() +
               static_cast<Single>(metrics_.FormMarginY() + metrics_.CaptionHeight() + 2 * dialog_frame));
  KeepOnScreen(*form);
}

}  // namespace tolva::ui
