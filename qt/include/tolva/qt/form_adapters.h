// Qt widgets seen as the component's host forms, controls and labels.
#ifndef TOLVA_QT_FORM_ADAPTERS_H_
#define TOLVA_QT_FORM_ADAPTERS_H_

#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <memory>

#include "tolva/export.h"
#include "tolva/platform/window_services.h"

namespace tolva::qt {

/// Twips per pixel of the screen widget `w` is on; 15 when the widget is gone.
TOLVA_QT_EXPORT double WidgetTwipsPerPixel(const QWidget* w);

/// A top-level QWidget as a host form. Left/Top/Width/Height are its frame (the window with its decoration),
/// as a host form's are, in twips at the widget's own logical resolution. The adapter does not own its widget
/// and tolerates its deletion: a deleted widget reads as 0 and ignores changes.
class TOLVA_QT_EXPORT QtForm : public Form {
 public:
  /// A form on the top-level widget `window`.
  explicit QtForm(QWidget* window) : w_(window) {}
  Single Left() const override;
  void Left(Single twips) override;
  Single Top() const override;
  void Top(Single twips) override;
  Single Width() const override;
  void Width(Single twips) override;
  Single Height() const override;
  void Height(Single twips) override;
  /// 2 (sizable) unless the window's minimum and maximum sizes are equal.
  Integer BorderStyle() const override;
  /// 0 normal, 1 minimised, 2 maximised, from the window's state.
  Integer WindowState() const override;
  /// Caption texts tidied, one font size throughout, group titles and default buttons bold, read-only fields
  /// drawn on the window's background.
  void ApplyStandardStyle() override;
  /// The window; null once it is deleted.
  QWidget* widget() const { return w_; }

 private:
  QPointer<QWidget> w_;
};

/// A child widget as a host control, its geometry relative to its parent in twips. Like QtForm it does not
/// own the widget and tolerates its deletion.
/// @tparam Base the host interface it implements, Control or Label.
template <class Base>
class QtPlaced : public Base {
 public:
  /// A control on the child widget `w`.
  explicit QtPlaced(QWidget* w) : w_(w) {}
  /// The widget's left edge in twips.
  Single Left() const override { return Twips(w_ ? w_->x() : 0); }
  /// Moves the widget's left edge to `t` twips.
  void Left(Single t) override {
    if (w_) w_->move(Pixels(t), w_->y());
  }
  /// The widget's top edge in twips.
  Single Top() const override { return Twips(w_ ? w_->y() : 0); }
  /// Moves the widget's top edge to `t` twips.
  void Top(Single t) override {
    if (w_) w_->move(w_->x(), Pixels(t));
  }
  /// The widget's width in twips.
  Single Width() const override { return Twips(w_ ? w_->width() : 0); }
  /// Sets the widget's width to `t` twips.
  void Width(Single t) override {
    if (w_) w_->resize(Pixels(t), w_->height());
  }
  /// The widget's height in twips.
  Single Height() const override { return Twips(w_ ? w_->height() : 0); }
  /// Sets the widget's height to `t` twips.
  void Height(Single t) override {
    if (w_) w_->resize(w_->width(), Pixels(t));
  }
  /// The window the control sits on, as a form; null once the widget is deleted.
  Form* Parent() const override {
    if (!w_) return nullptr;
    if (!parent_ || parent_->widget() != w_->window()) parent_ = std::make_unique<QtForm>(w_->window());
    return parent_.get();
  }

 protected:
  /// `pixels` of the widget's screen in twips.
  Single Twips(int pixels) const { return static_cast<Single>(pixels * WidgetTwipsPerPixel(w_)); }
  /// `twips` in whole pixels of the widget's screen.
  int Pixels(Single twips) const { return qRound(twips / WidgetTwipsPerPixel(w_)); }
  /// The widget; null once it is deleted.
  QPointer<QWidget> w_;

 private:
  mutable std::unique_ptr<QtForm> parent_;
};

/// A child widget as a host control.
using QtControl = QtPlaced<Control>;

/// A QLabel as a host label.
class TOLVA_QT_EXPORT QtLabel : public QtPlaced<Label> {
 public:
  /// A label on `label`.
  explicit QtLabel(QLabel* label) : QtPlaced<Label>(label) {}
  /// With `on` true, the label takes the size of its text.
  void AutoSize(bool on) override {
    if (on && w_) w_->adjustSize();
  }
};

}  // namespace tolva::qt

#endif  // TOLVA_QT_FORM_ADAPTERS_H_
