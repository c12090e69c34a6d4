#include "message_box.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

#include <vector>

namespace tolva::qt {

namespace {

struct ButtonCode {
  QMessageBox::StandardButton button;
  int code;
};

// The button sets of the low four bits, in the order they are shown.
std::vector<ButtonCode> ButtonSet(std::uint32_t flags) {
  using B = QMessageBox;
  switch (flags & 0xF) {
    case 1:
      return {{B::Ok, 1}, {B::Cancel, 2}};
    case 2:
      return {{B::Abort, 3}, {B::Retry, 4}, {B::Ignore, 5}};
    case 3:
      return {{B::Yes, 6}, {B::No, 7}, {B::Cancel, 2}};
    case 4:
      return {{B::Yes, 6}, {B::No, 7}};
    case 5:
      return {{B::Retry, 4}, {B::Cancel, 2}};
    default:
      return {{B::Ok, 1}};
  }
}

QMessageBox::Icon IconOf(std::uint32_t flags) {
  switch (flags & 0xF0) {
    case 0x10:
      return QMessageBox::Critical;
    case 0x20:
      return QMessageBox::Question;
    case 0x30:
      return QMessageBox::Warning;
    case 0x40:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

}  // namespace

int ShowClassicMessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) {
  QMessageBox box(IconOf(flags), QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())),
                  QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  box.setTextFormat(Qt::PlainText);  // a host's text is never markup
  const std::vector<ButtonCode> set = ButtonSet(flags);
  std::vector<QPushButton*> buttons;
  for (const ButtonCode& b : set) buttons.push_back(box.addButton(b.button));
  // Bits 8 and 9 choose the second or third button as the default.
  const std::size_t default_index = (flags >> 8) & 0x3;
  box.setDefaultButton(buttons[default_index < buttons.size() ? default_index : 0]);
  // Escape answers Cancel where there is one, else the only OK; a Yes/No or
  // Abort/Retry/Ignore box must be answered with a button.
  for (std::size_t i = 0; i < set.size(); ++i)
    if (set[i].code == 2 || set.size() == 1) box.setEscapeButton(buttons[i]);
  box.exec();
  QAbstractButton* clicked = box.clickedButton();
  for (std::size_t i = 0; i < set.size(); ++i)
    if (clicked == buttons[i]) return set[i].code;
  return 0;
}

}  // namespace tolva::qt
