// The window members through the Qt binding on real Qt widgets: the
// resolution, frame measures and work area of the screen, keeping a window
// on it, aligning labels, sizing a form, tab stops on a list widget, and a
// window's saved place.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tolva/qt/display_check.h"
#include "tolva/qt/form_adapters.h"
#include "tolva/qt/list_box_adapter.h"
#include "tolva/qt/qt_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

class QtBinding : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!qt::GuiReady()) GTEST_SKIP() << "no QApplication here";
  }
  qt::QtWindowServices windows;
  Tolva2011Register c{qt::QtServices()};  // its settings live in the test's own home
  const double dpi = std::getenv("TOLVA_EXPECT_DPI") ? std::atof(std::getenv("TOLVA_EXPECT_DPI")) : 96;
  const double factor = 1440.0 / dpi;
  const QRect area = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry() : QRect();
};

TEST_F(QtBinding, ScreenMeasuresFollowTheLogicalResolution) {
  EXPECT_DOUBLE_EQ(windows.TwipsPerPixelX(), factor);
  EXPECT_DOUBLE_EQ(windows.TwipsPerPixelY(), factor);
  EXPECT_EQ(c.FormMarginY(), dpi == 120 ? 84 : 90);
  const int caption = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
  ASSERT_GT(caption, 0);
  EXPECT_GT(c.MenuHeight(), 0);
  auto twips = [&](int pixels) { return static_cast<Long>(std::lround(pixels * factor)); };
  EXPECT_EQ(std::vector<Long>({c.ScreenLeft(), c.ScreenTop(), c.ScreenWidth(), c.ScreenHeight()}),
            std::vector<Long>({twips(area.x()), twips(area.y()), twips(area.width()), twips(area.height())}));
  EXPECT_EQ(c.CaptionHeight(), twips(caption));
}

TEST_F(QtBinding, FormsStayOnScreenAndSizeAroundTheirControls) {
  for (bool larger : {true, false}) {
    QWidget window;
    window.resize(larger ? area.size() + QSize(500, 300) : QSize(300, 200));
    window.move(200, 100);
    window.show();
    qt::QtForm form(&window);
    c.AdjustFormPosition(form);  // larger than the screen: at its corner; else not moved
    EXPECT_NEAR(form.Left(), larger ? c.ScreenLeft() : 200 * factor, factor / 2) << larger;
    EXPECT_NEAR(form.Top(), larger ? c.ScreenTop() : 100 * factor, factor / 2) << larger;
  }
  QWidget window;
  window.setFixedSize(600, 400);  // a fixed dialog
  auto* edit = new QLineEdit(&window);
  edit->setGeometry(200, 40, 220, 23);
  auto* label = new QLabel(QStringLiteral("Customer name:"), &window);
  auto* ok = new QPushButton(QStringLiteral("OK"), &window);
  ok->setGeometry(340, 120, 80, 26);
  window.show();
  qt::QtLabel l(label);
  qt::QtControl e(edit), b(ok);
  c.AlignLabel(l, e, kTrue);
  EXPECT_EQ(label->size(), label->sizeHint());                            // sized to its text
  EXPECT_NEAR(l.Top(), e.Top() + (e.Height() - l.Height()) / 2, factor);  // a pixel is a real widget's grain
  EXPECT_NEAR(l.Left() + l.Width(), e.Left() - 120, factor);
  ASSERT_NE(b.Parent(), nullptr);
  EXPECT_EQ(b.Parent()->BorderStyle(), 1);
  window.setMinimumSize(0, 0);
  window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  EXPECT_EQ(b.Parent()->BorderStyle(), 2);
  c.SetupFormTolvaSize(b, b);
  qt::QtForm form(&window);
  EXPECT_NEAR(form.Width(), b.Left() + b.Width() + 120 + 2 * c.DialogWidth(), factor);
  EXPECT_NEAR(form.Height(), b.Top() + b.Height() + c.FormMarginY() + c.CaptionHeight() + 2 * c.DialogWidth(), factor);
}

TEST_F(QtBinding, TabStopsOfRealRowsLeaveEveryColumnRoomForItsText) {
  const QStringList rows = {"Id\tName\tCity\tBalance", "1\tAnna Lindqvist\tGothenburg\t1,204.50",
                            QString::fromUtf8("2\tBo\t\xc3\x85re\t-3.00"), "3\tWolfgang Maximilian Oberhuber\tWien\t12",
                            "4\tEmpty city\t\t0"};
  QListWidget list;
  list.addItems(rows);
  list.show();
  qt::QtListBox box(&list);
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 4);
  c.ListBoxTabPositionsSet(box, 4, widths);
  const qt::TabStopDelegate& d = *box.delegate();
  ASSERT_EQ(d.tab_stops().size(), 4u);
  QFont unkerned = list.font();
  unkerned.setKerning(false);  // widths are measured as the classic call does, without kerning
  const QFontMetricsF m(unkerned);
  const double average = qt::TabStopDelegate::AverageCharWidth(list.font());
  for (int col = 0; col < 4; ++col) {
    double text = 0;
    for (const QString& r : rows) text = std::max(text, m.horizontalAdvance(r.split('\t')[col]));
    EXPECT_NEAR(*widths.At(col + 1), text * factor, 1.0) << col;  // in twips
    // The widest text fits, with one to three average characters to spare
    // (two of space, give or take the rounding to whole characters).
    const double room = d.ColumnStart(col + 1, list.font()) - d.ColumnStart(col, list.font()) -
                        std::max(text, m.horizontalAdvance(QStringLiteral("XX")));
    EXPECT_TRUE(col == 3 || (room >= average - 1 && room <= 3 * average + 1)) << col << ": " << room;
  }
  EXPECT_GT(d.horizontal_extent(), d.ColumnStart(3, list.font()) + m.horizontalAdvance(QStringLiteral("1,204.50")));
  EXPECT_GE(list.sizeHintForColumn(0), d.horizontal_extent());  // it scrolls over the extent, not its raw text
}

TEST_F(QtBinding, MeasuresUseTheListFontWithoutKerning) {
  QFont big = QApplication::font();
  big.setPointSizeF(big.pointSizeF() * 2);
  auto measurer = windows.NewTextMeasurer({big.family().toStdString(), big.pointSizeF(), true, false});
  ASSERT_NE(measurer, nullptr);
  big.setBold(true);
  big.setKerning(false);
  for (const char* text : {"Measure me", "", "\xc3\x85re"})  // the last is shaped by the toolkit
    EXPECT_NEAR(measurer->TextWidthTwips(text), QFontMetricsF(big).horizontalAdvance(QString::fromUtf8(text)) * factor,
                1e-6)
        << text;
}

TEST_F(QtBinding, AWindowComesBackWhereItWasSaved) {
  c.RegistryApp("tolva-qt-test");
  for (bool fixed : {false, true}) {  // a fixed window keeps its size, a sizable one gets its saved size back
    const QRect saved = fixed ? QRect(60, 40, 320, 200) : QRect(120, 90, 500, 300);
    QWidget window;
    if (fixed) window.setFixedSize(saved.size());
    window.resize(saved.size());
    window.move(saved.topLeft());  // the frame's corner, as a host form's Left and Top
    window.show();
    qt::QtForm form(&window);
    c.RegistrySavePosition(form, fixed ? "Fixed" : "Sizable");
    window.move(saved.topLeft() + QPoint(200, 150));
    if (!fixed) window.resize(saved.size() - QSize(100, 80));
    c.RegistryGetPosition(form, fixed ? "Fixed" : "Sizable");
    EXPECT_EQ(window.frameGeometry().topLeft(), saved.topLeft()) << fixed;
    EXPECT_EQ(window.size(), saved.size()) << fixed;
  }
}

// No QApplication (no platform asked for, no display): every member fails
// quietly instead of aborting the host.
TEST(NoDisplay, EveryWindowMemberFailsQuietly) {
  if (QCoreApplication::instance()) GTEST_SKIP() << "a display is available";
  EXPECT_FALSE(qt::CanStartGui());
  Tolva2011Register c(qt::QtServices());
  EXPECT_EQ(std::vector<Long>({c.CaptionHeight(), c.MenuHeight(), c.DialogWidth(), c.SizableWidth(), c.ScreenWidth(),
                               c.ScreenHeight()}),
            std::vector<Long>(6, 0));
  c.MessageError("nobody sees this");
  EXPECT_TRUE(c.MessageQuery("nobody answers", 4).IsEmpty());
  std::string path, error;
  EXPECT_EQ(c.DialogFileOpen2(path, error), kFalse);
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(c.ShowTolvaAboutBox(error), kFalse);
  EXPECT_EQ(c.LoadURL("http://127.0.0.1/", error), kFalse);
  qt::QtListBox none(nullptr);
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 2);
  c.ListBoxTabPositionsSet(none, 2, widths);
  qt::QtForm gone(nullptr);
  c.AdjustFormPosition(gone);
}

}  // namespace
}  // namespace tolva

// Runs with a QApplication when one can be made here, and without one (the
// NoDisplay tests) when it cannot.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  std::unique_ptr<QApplication> app;
  if (tolva::qt::CanStartGui()) app = std::make_unique<QApplication>(argc, argv);
  return RUN_ALL_TESTS();
}
