// Message boxes and file dialogs of the Qt binding, answered as a user would.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tolva/qt/display_check.h"
#include "tolva/qt/qt_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

// Answers the modal window a member shows, again on every tick for as long
// as one is open. A single answer can come too early to count (a file
// dialog that gives its name field the focus after the answer was typed,
// or that is still reading its folder); giving it again until the window
// has closed leaves nothing to the timing of a busy machine.
class ModalAnswerer {
 public:
  explicit ModalAnswerer(std::function<void(QWidget*)> answer) {
    QObject::connect(&timer_, &QTimer::timeout, [answer] {
      if (QWidget* modal = QApplication::activeModalWidget()) answer(modal);
    });
    timer_.start(10);
  }

 private:
  QTimer timer_;
};

class QtDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!qt::GuiReady()) GTEST_SKIP() << "no QApplication here";
  }
  Tolva2011Register c{qt::QtServices()};
};

TEST_F(QtDialogs, QueriesShowTheirButtonsAndAnswerClassicCodes) {
  using B = QMessageBox;
  struct Row {
    Long buttons;
    B::StandardButton press;                 // NoButton: press the default button
    std::multiset<B::StandardButton> shown;  // in any order
    Long expected;
  };
  const std::string kText = "Save <b>x</b>?";  // shown as plain text, never as markup
  const Row rows[] = {{2, B::Ignore, {B::Abort, B::Retry, B::Ignore}, 5}, {4 + 0x100, B::NoButton, {B::Yes, B::No}, 7}};
  for (const Row& r : rows) {
    QString seen;
    std::multiset<B::StandardButton> shown;
    Long got = 0;
    {
      ModalAnswerer answer([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        if (!box) return;
        seen = box->windowTitle() + (box->icon() == B::Question ? " (question): " : ": ") + box->text();
        shown.clear();
        for (QAbstractButton* b : box->buttons()) shown.insert(box->standardButton(b));
        (r.press == B::NoButton ? box->defaultButton() : box->button(r.press))->click();
      });
      got = c.MessageQuery(kText, r.buttons).AsLong();
    }
    EXPECT_EQ(seen.toStdString(), "Tolva Query (question): " + kText);
    EXPECT_EQ(got, r.expected) << seen.toStdString();
    EXPECT_EQ(shown, r.shown) << seen.toStdString();
  }
}

TEST_F(QtDialogs, FileDialogsReturnTheChoiceOrACancel) {
  QTemporaryDir dir;  // empty: no existing file makes the save dialog ask to overwrite
  ASSERT_TRUE(dir.isValid());
  const std::string here = dir.path().toStdString();
  QStringList filters;
  std::string path, error;
  {
    ModalAnswerer answer([&](QWidget* w) {
      auto* dialog = qobject_cast<QFileDialog*>(w);
      if (!dialog) return;
      filters = dialog->nameFilters();
      // Typed into the name field, as a user does: selectFile leaves the
      // field alone while it has the focus.
      if (auto* name = dialog->findChild<QLineEdit*>("fileNameEdit")) name->setText(QStringLiteral("chosen.csv"));
      static_cast<QDialog*>(dialog)->accept();  // what the Save button does
    });
    EXPECT_EQ(c.DialogFileSave2(path, error, "Save", "", here), kTrue);
  }
  EXPECT_EQ(path + "|" + error, here + "/chosen.csv|");
  EXPECT_EQ(filters.value(0).toStdString(), "All Files (*)");

  path = "kept";
  {
    ModalAnswerer answer([](QWidget* w) {
      if (auto* dialog = qobject_cast<QDialog*>(w)) dialog->reject();
    });
    EXPECT_EQ(c.DialogFileOpen2(path, error, "Open"), kFalse);
  }
  EXPECT_EQ(path + "|" + error, "kept|");
}

}  // namespace
}  // namespace tolva
