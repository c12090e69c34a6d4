// Message boxes, file dialogs, the filter conversion and the hex view of
// the Qt binding; modal windows are answered as a user would.
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

#include "file_viewer.h"
#include "tolva/qt/display_check.h"
#include "tolva/qt/name_filters.h"
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

TEST_F(QtDialogs, MessageBoxesShowTheirButtonsAndAnswerClassicCodes) {
  using B = QMessageBox;
  struct Row {
    std::string label;
    std::function<Long()> show;
    B::StandardButton press;                 // NoButton: press the default button
    std::multiset<B::StandardButton> shown;  // in any order
    Long expected;
    std::string caption;
    B::Icon icon;
  };
  const std::string kText = "Save <b>x</b>?";  // shown as plain text, never as markup
  auto query = [&](Long buttons) { return [&, buttons] { return c.MessageQuery(kText, buttons).AsLong(); }; };
  const std::vector<Row> rows = {
      {"OK", query(0), B::Ok, {B::Ok}, 1, "Tolva Query", B::Question},
      {"OK/Cancel, cancel", query(1), B::Cancel, {B::Ok, B::Cancel}, 2, "Tolva Query", B::Question},
      {"Abort/Retry/Ignore", query(2), B::Ignore, {B::Abort, B::Retry, B::Ignore}, 5, "Tolva Query", B::Question},
      {"Yes/No/Cancel, yes", query(3), B::Yes, {B::Yes, B::No, B::Cancel}, 6, "Tolva Query", B::Question},
      {"Retry/Cancel, retry", query(5), B::Retry, {B::Retry, B::Cancel}, 4, "Tolva Query", B::Question},
      {"second default", query(4 + 0x100), B::NoButton, {B::Yes, B::No}, 7, "Tolva Query", B::Question},
      {"third default", query(3 + 0x200), B::NoButton, {B::Yes, B::No, B::Cancel}, 2, "Tolva Query", B::Question},
      {"error", [&] { return c.MessageError(kText), 1; }, B::Ok, {B::Ok}, 1, "Tolva Error", B::Critical},
      {"information", [&] { return c.MessageInfo(kText), 1; }, B::Ok, {B::Ok}, 1, "Tolva Information", B::Information},
      {"warning", [&] { return c.MessageWarn(kText), 1; }, B::Ok, {B::Ok}, 1, "Tolva Warning", B::Warning},
  };
  for (const Row& r : rows) {
    std::string caption, text;
    B::Icon icon = B::NoIcon;
    std::multiset<B::StandardButton> shown;
    Long got = 0;
    {
      ModalAnswerer answer([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        if (!box) return;
        caption = box->windowTitle().toStdString();
        text = box->text().toStdString();
        icon = box->icon();
        shown.clear();
        for (QAbstractButton* b : box->buttons()) shown.insert(box->standardButton(b));
        (r.press == B::NoButton ? box->defaultButton() : box->button(r.press))->click();
      });
      got = r.show();
    }
    EXPECT_EQ(got, r.expected) << r.label;
    EXPECT_EQ(caption, r.caption) << r.label;
    EXPECT_EQ(text, kText) << r.label;
    EXPECT_EQ(icon, r.icon) << r.label;
    EXPECT_EQ(shown, r.shown) << r.label;
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

TEST(NameFilters, TheDialogFilterBecomesQtNameFilters) {
  struct Row {
    std::string filter;
    QStringList expected;
  };
  const std::vector<Row> rows = {
      {"All Files|*.*|Text Files (*.txt)|*.txt", {"All Files (*)", "Text Files (*.txt)"}},
      {"Graphic Files|*.gif; *.jpeg;*.bmp", {"Graphic Files (*.gif *.jpeg *.bmp)"}},
      {"HTML Files|*.html; &.htm", {"HTML Files (*.html &.htm)"}},
      {"Anything", {"Anything (*)"}},
      {"|*.csv||", {"*.csv (*.csv)"}},
      {"", {}},
  };
  for (const Row& r : rows) EXPECT_EQ(qt::NameFilters(r.filter), r.expected) << r.filter;
  EXPECT_EQ(qt::NameFilters(Tolva2011Register{platform::Services{}}.DialogFilter()).size(), 10);
}

TEST(FileViewer, HexAndTextViews) {
  const QByteArray bytes("AB\x00\x7f\n\tz0123456789abcdefXYZ", 26);
  EXPECT_EQ(qt::HexDump(bytes).toStdString(),
            "00000000  41 42 00 7f 0a 09 7a 30  31 32 33 34 35 36 37 38  |AB....z012345678|\n"
            "00000010  39 61 62 63 64 65 66 58  59 5a                    |9abcdefXYZ|\n");
  EXPECT_EQ(qt::PrintableText("a\001b\r\n\tc").toStdString(), "a.b\r\n\tc");  // line ends and tabs kept
  EXPECT_EQ(qt::HexDump(QByteArray()).toStdString(), "");
}

}  // namespace
}  // namespace tolva
