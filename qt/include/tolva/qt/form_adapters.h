// Qt widgets seen as the component's host forms, controls and labels:
// positions and sizes in twips at the widget's own logical resolution.
// An adapter does not own its widget and tolerates its deletion: a deleted
// widget reads as 0 and ignores changes.
#ifndef TOLVA_QT_FORM_ADAPTERS_H_
#define TOLVA_QT_FORM_ADAPTERS_H_

#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <memory>

#include "tolva/export.h"
#include "tolva/platform/window_services.h"

namespace tolva::qt {

// Twips per pixel of `w`'s screen; 15 when the widget is gone.
TOLVA_QT_EXPORT double WidgetTwipsPerPixel(const QWidget* w);

// A top-level QWidget as a form. Left/Top/Width/Height are its frame (the
// window with its decoration), as a host form's are.
class TOLVA_QT_EXPORT QtForm : public Form {
 public:
  explicit QtForm(QWidget* window) : w_(window) {}
  Single Left() const override;
  void Left(Single twips) override;
  Single Top() const override;
  void Top(Single twips) override;
  Single Width() const override;
  void Width(Single twips) override;
  Single Height() const override;
  void Height(Single twips) override;
  // 2 (sizable) unless the window's minimum and maximum sizes are equal.
  Integer BorderStyle() const override;
  Integer WindowState() const override;
  // Caption texts tidied, one font size throughout, group titles and default
  // buttons bold, read-only fields drawn on the window's background.
  void ApplyStandardStyle() override;
  QWidget* widget() const { return w_; }

 private:
  QPointer<QWidget> w_;
};

// Geometry of a child widget relative to its parent, in twips.
template <class Base>
class QtPlaced : public Base {
 public:
  explicit QtPlaced(QWidget* w) : w_(w) {}
  Single Left() const override { return Twips(w_ ? w_->x() : 0); }
  void Left(Single t) override {
    if (w_) w_->move(Pixels(t), w_->y());
  }
  Single Top() const override { return Twips(w_ ? w_->y() : 0); }
  void Top(Single t) override {
    if (w_) w_->move(w_->x(), Pixels(t));
  }
  Single Width() const override { return Twips(w_ ? w_->width() : 0); }
  void Width(Single t) override {
    if (w_) w_->resize(Pixels(t), w_->height());
  }
  Single Height() const override { return Twips(w_ ? w_->height() : 0); }
  void Height(Single t) override {
    if (w_) w_->resize(w_->width(), Pixels(t));
  }
  // The window the control sits on.
  Form* Parent() const override {
    if (!w_) return nullptr;
    if (!parent_ || parent_->widget() != w_->window()) parent_ = std::make_unique<QtForm>(w_->window());
    return parent_.get();
  }

 protected:
  Single Twips(int pixels) const { return static_cast<Single>(pixels * WidgetTwipsPerPixel(w_)); }
  int Pixels(Single twips) const { return qRound(twips / WidgetTwipsPerPixel(w_)); }
  QPointer<QWidget> w_;

 private:
  mutable std::unique_ptr<QtForm> parent_;
};

using QtControl = QtPlaced<Control>;

class TOLVA_QT_EXPORT QtLabel : public QtPlaced<Label> {
 public:
  explicit QtLabel(QLabel* label) : QtPlaced<Label>(label) {}
  // On: the label takes the size of its text.
  void AutoSize(bool on) override {
    if (on && w_) w_->adjustSize();
  }
};

}  // namespace tolva::qt

#endif  // TOLVA_QT_FORM_ADAPTERS_H_
