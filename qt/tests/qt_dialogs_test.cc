// Message boxes, file dialogs, the filter conversion and the hex view of
// the Qt binding; modal windows are answered by a timer, as a user would.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <QDir>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "file_viewer.h"
#include "tolva/qt/display_check.h"
#include "tolva/qt/name_filters.h"
#include "tolva/qt/qt_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

// Runs `answer` on the first modal window that appears.
void AnswerNextModal(std::function<void(QWidget*)> answer) {
  auto* timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, [timer, answer] {
    if (QWidget* modal = QApplication::activeModalWidget()) {
      timer->stop();
      timer->deleteLater();
      answer(modal);
    }
  });
  timer->start(10);
}

class QtDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!qt::GuiReady()) GTEST_SKIP() << "no QApplication here";
    platform::Services services;
    services.windows = std::make_shared<qt::QtWindowServices>();
    c = std::make_unique<Tolva2011Register>(services);
  }
  std::unique_ptr<Tolva2011Register> c;
};

TEST_F(QtDialogs, MessageBoxesShowTheirButtonsAndAnswerClassicCodes) {
  struct Row {
    std::string label;
    Long buttons;
    QMessageBox::StandardButton press;  // NoButton: press the default button
    std::vector<QMessageBox::StandardButton> shown;
    Long expected;
  };
  using B = QMessageBox;
  const std::vector<Row> rows = {
      {"OK", 0, B::Ok, {B::Ok}, 1},
      {"OK/Cancel, cancel", 1, B::Cancel, {B::Ok, B::Cancel}, 2},
      {"Abort/Retry/Ignore, ignore", 2, B::Ignore, {B::Abort, B::Retry, B::Ignore}, 5},
      {"Yes/No/Cancel, yes", 3, B::Yes, {B::Yes, B::No, B::Cancel}, 6},
      {"Yes/No, no", 4, B::No, {B::Yes, B::No}, 7},
      {"Retry/Cancel, retry", 5, B::Retry, {B::Retry, B::Cancel}, 4},
      {"Yes/No with the second as default", 4 + 0x100, B::NoButton, {B::Yes, B::No}, 7},
      {"Yes/No/Cancel with the third as default", 3 + 0x200, B::NoButton, {B::Yes, B::No, B::Cancel}, 2},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    std::string caption, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    std::vector<QMessageBox::StandardButton> shown;
    AnswerNextModal([&](QWidget* w) {
      auto* box = qobject_cast<QMessageBox*>(w);
      ASSERT_NE(box, nullptr);
      caption = box->windowTitle().toStdString();
      text = box->text().toStdString();
      icon = box->icon();
      for (QAbstractButton* b : box->buttons()) shown.push_back(box->standardButton(b));
      if (r.press == QMessageBox::NoButton)
        box->defaultButton()->click();
      else
        box->button(r.press)->click();
    });
    const Variant pressed = c->MessageQuery("Save <b>changes</b>?", r.buttons);
    EXPECT_EQ(pressed.AsLong(), r.expected);
    EXPECT_EQ(caption, "Tolva Query");
    EXPECT_EQ(text, "Save <b>changes</b>?");
    EXPECT_EQ(icon, QMessageBox::Question);
    std::sort(shown.begin(), shown.end());
    std::vector<QMessageBox::StandardButton> want = r.shown;
    std::sort(want.begin(), want.end());
    EXPECT_EQ(shown, want);
  }
}

TEST_F(QtDialogs, TheFourBoxesCarryTheirCaptionsAndIcons) {
  struct Row {
    std::string label;
    std::function<void()> show;
    std::string caption;
    QMessageBox::Icon icon;
  };
  const std::vector<Row> rows = {
      {"error", [&] { c->MessageError("e"); }, "Tolva Error", QMessageBox::Critical},
      {"information", [&] { c->MessageInfo("i"); }, "Tolva Information", QMessageBox::Information},
      {"warning", [&] { c->MessageWarn("w"); }, "Tolva Warning", QMessageBox::Warning},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    std::string caption;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    AnswerNextModal([&](QWidget* w) {
      auto* box = qobject_cast<QMessageBox*>(w);
      ASSERT_NE(box, nullptr);
      caption = box->windowTitle().toStdString();
      icon = box->icon();
      box->button(QMessageBox::Ok)->click();
    });
    r.show();
    EXPECT_EQ(caption, r.caption);
    EXPECT_EQ(icon, r.icon);
  }
}

TEST_F(QtDialogs, FileDialogsReturnTheChoiceOrACancel) {
  const std::string here = QDir::currentPath().toStdString();
  std::vector<QString> filters;
  AnswerNextModal([&](QWidget* w) {
    auto* dialog = qobject_cast<QFileDialog*>(w);
    ASSERT_NE(dialog, nullptr);
    const QStringList names = dialog->nameFilters();
    filters.assign(names.begin(), names.end());
    dialog->selectFile(QStringLiteral("chosen.csv"));
    QMetaObject::invokeMethod(dialog, "accept");  // what the Save button does
  });
  std::string path, error;
  EXPECT_EQ(c->DialogFileSave2(path, error, "Save", "", here), kTrue);
  EXPECT_EQ(path, here + "/chosen.csv");
  EXPECT_EQ(error, "");
  ASSERT_FALSE(filters.empty());
  EXPECT_EQ(filters[0].toStdString(), "All Files (*)");

  AnswerNextModal([](QWidget* w) { qobject_cast<QDialog*>(w)->reject(); });
  path = "kept";
  EXPECT_EQ(c->DialogFileOpen2(path, error, "Open"), kFalse);
  EXPECT_EQ(path, "kept");
  EXPECT_EQ(error, "");
}

TEST(NameFilters, TheDialogFilterBecomesQtNameFilters) {
  struct Row {
    std::string label, filter;
    std::vector<std::string> expected;
  };
  const std::vector<Row> rows = {
      {"pairs, a description's own patterns dropped",
       "All Files|*.*|Text Files (*.txt)|*.txt",
       {"All Files (*)", "Text Files (*.txt)"}},
      {"several patterns", "Graphic Files|*.gif; *.jpeg;*.bmp", {"Graphic Files (*.gif *.jpeg *.bmp)"}},
      {"kept as written, odd pattern included", "HTML Files|*.html; &.htm", {"HTML Files (*.html &.htm)"}},
      {"a description without patterns matches all", "Anything", {"Anything (*)"}},
      {"empty pieces are skipped", "|*.csv||", {"*.csv (*.csv)"}},
      {"nothing", "", {}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    std::vector<std::string> got;
    for (const QString& f : qt::NameFilters(r.filter)) got.push_back(f.toStdString());
    EXPECT_EQ(got, r.expected);
  }
  Tolva2011Register c{platform::Services{}};
  EXPECT_EQ(qt::NameFilters(c.DialogFilter()).size(), 10);
}

TEST(FileViewer, HexAndTextViews) {
  const QByteArray bytes("AB\x00\x7f\n\tz0123456789abcdefXYZ", 26);
  EXPECT_EQ(qt::HexDump(bytes).toStdString(),
            "00000000  41 42 00 7f 0a 09 7a 30  31 32 33 34 35 36 37 38  |AB....z012345678|\n"
            "00000010  39 61 62 63 64 65 66 58  59 5a                    |9abcdefXYZ|\n");
  EXPECT_EQ(qt::PrintableText(QByteArray("a\x01"
                                         "b\r\n\tc",
                                         7))
                .toStdString(),
            "a.b\r\n\tc");
  EXPECT_EQ(qt::HexDump(QByteArray()).toStdString(), "");
}

}  // namespace
}  // namespace tolva
