#include "tolva/qt/form_adapters.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>

namespace tolva::qt {

double WidgetTwipsPerPixel(const QWidget* w) {
  const double dpi = w ? w->logicalDpiX() : 0;
  return dpi > 0 ? 1440.0 / dpi : 15.0;
}

namespace {
Single Twips(const QWidget* w, int pixels) {
  return static_cast<Single>(pixels * WidgetTwipsPerPixel(w));
}
int Pixels(const QWidget* w, Single twips) {
  return qRound(twips / WidgetTwipsPerPixel(w));
}
// The decoration the window manager adds around the client area.
QSize FrameExtra(const QWidget* w) {
  return w->frameGeometry().size() - w->geometry().size();
}
}  // namespace

Single QtForm::Left() const {
  return w_ ? Twips(w_, w_->frameGeometry().x()) : 0;
}
void QtForm::Left(Single twips) {
  if (w_) w_->move(Pixels(w_, twips), w_->frameGeometry().y());
}
Single QtForm::Top() const {
  return w_ ? Twips(w_, w_->frameGeometry().y()) : 0;
}
void QtForm::Top(Single twips) {
  if (w_) w_->move(w_->frameGeometry().x(), Pixels(w_, twips));
}
Single QtForm::Width() const {
  return w_ ? Twips(w_, w_->frameGeometry().width()) : 0;
}
void QtForm::Width(Single twips) {
  if (w_) w_->resize(Pixels(w_, twips) - FrameExtra(w_).width(), w_->height());
}
Single QtForm::Height() const {
  return w_ ? Twips(w_, w_->frameGeometry().height()) : 0;
}
void QtForm::Height(Single twips) {
  if (w_) w_->resize(w_->width(), Pixels(w_, twips) - FrameExtra(w_).height());
}

Integer QtForm::BorderStyle() const {
  if (!w_) return 0;
  return w_->minimumSize() == w_->maximumSize() ? 1 : 2;
}

Integer QtForm::WindowState() const {
  if (!w_) return 0;
  if (w_->isMinimized()) return 1;
  if (w_->isMaximized() || w_->isFullScreen()) return 2;
  return 0;
}

void QtForm::ApplyStandardStyle() {
  if (!w_) return;
  const QFont base = w_->font();
  for (QWidget* child : w_->findChildren<QWidget*>()) {
    // Captions: runs of blanks in label and button texts become one.
    if (auto* label = qobject_cast<QLabel*>(child); label && label->textFormat() != Qt::RichText)
      label->setText(label->text().simplified());
    else if (auto* button = qobject_cast<QAbstractButton*>(child))
      button->setText(button->text().simplified());
    // Fonts: one family and size on the whole form.
    QFont font = child->font();
    font.setFamily(base.family());
    font.setPointSizeF(base.pointSizeF());
    // Bold: the titles of groups and the default button.
    if (qobject_cast<QGroupBox*>(child)) font.setBold(true);
    if (auto* push = qobject_cast<QPushButton*>(child); push && push->isDefault()) font.setBold(true);
    child->setFont(font);
    // Locked fields look locked: the window's background, not the entry colour.
    bool locked = false;
    if (auto* edit = qobject_cast<QLineEdit*>(child)) locked = edit->isReadOnly();
    if (auto* plain = qobject_cast<QPlainTextEdit*>(child)) locked = plain->isReadOnly();
    if (auto* rich = qobject_cast<QTextEdit*>(child)) locked = rich->isReadOnly();
    if (locked) {
      QPalette palette = child->palette();
      palette.setColor(QPalette::Base, palette.color(QPalette::Window));
      child->setPalette(palette);
      child->setFocusPolicy(Qt::ClickFocus);
    }
  }
}

}  // namespace tolva::qt
