// The window members through the Qt binding on real Qt widgets: the
// resolution, frame measures and work area of the screen, keeping a window
// on it, aligning labels, sizing a form, and tab stops on a list widget.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTemporaryDir>

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
    platform::Services services;
    services.windows = windows;
    c = std::make_unique<Tolva2011Register>(services);
    const char* dpi = std::getenv("TOLVA_EXPECT_DPI");
    expected_dpi = dpi ? std::atof(dpi) : 96;
    factor = 1440.0 / expected_dpi;
  }
  std::shared_ptr<qt::QtWindowServices> windows = std::make_shared<qt::QtWindowServices>();
  std::unique_ptr<Tolva2011Register> c;
  double expected_dpi = 96, factor = 15;
};

TEST_F(QtBinding, ScreenMeasuresFollowTheLogicalResolution) {
  EXPECT_DOUBLE_EQ(windows->TwipsPerPixelX(), factor);
  EXPECT_DOUBLE_EQ(windows->TwipsPerPixelY(), factor);
  EXPECT_EQ(c->FormMarginY(), expected_dpi == 120 ? 84 : 90);
  EXPECT_EQ(c->FormMarginX(), 120);
  const int caption = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
  ASSERT_GT(caption, 0);
  EXPECT_EQ(c->CaptionHeight(), std::lround(caption * factor));
  EXPECT_GT(c->MenuHeight(), 0);
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_EQ(c->ScreenWidth(), std::lround(area.width() * factor));
  EXPECT_EQ(c->ScreenHeight(), std::lround(area.height() * factor));
  EXPECT_EQ(c->ScreenLeft(), std::lround(area.x() * factor));
  EXPECT_EQ(c->ScreenTop(), std::lround(area.y() * factor));
}

TEST_F(QtBinding, AFormLargerThanTheScreenEndsAtItsEdges) {
  struct Row {
    std::string label;
    QSize size;
    QPoint at;
    bool expect_left_edge, expect_top_edge;
  };
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  const std::vector<Row> rows = {
      {"wider and taller than the screen", area.size() + QSize(500, 300), {200, 100}, true, true},
      {"wider only", {area.width() + 400, 200}, {50, 60}, true, false},
      {"inside: not moved", {300, 200}, {40, 30}, false, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    QWidget window;
    window.resize(r.size);
    window.move(r.at);
    window.show();
    qt::QtForm form(&window);
    const Single before_left = form.Left(), before_top = form.Top();
    c->AdjustFormPosition(form);
    EXPECT_NEAR(form.Left(), r.expect_left_edge ? c->ScreenLeft() : before_left, factor / 2);
    EXPECT_NEAR(form.Top(), r.expect_top_edge ? c->ScreenTop() : before_top, factor / 2);
  }
}

TEST_F(QtBinding, LabelsAlignOnTheirBoxAndFormsSizeAroundControls) {
  QWidget window;
  window.setFixedSize(600, 400);  // a fixed dialog
  auto* edit = new QLineEdit(&window);
  edit->setGeometry(200, 40, 220, 23);
  auto* label = new QLabel(QStringLiteral("Customer name:"), &window);
  label->move(5, 5);
  auto* ok = new QPushButton(QStringLiteral("OK"), &window);
  ok->setGeometry(340, 120, 80, 26);
  window.show();

  qt::QtLabel label_adapter(label);
  qt::QtControl edit_adapter(edit);
  c->AlignLabel(label_adapter, edit_adapter, kTrue);
  // One pixel is the grain of a real widget.
  const double expected_top = edit_adapter.Top() + (edit_adapter.Height() - label_adapter.Height()) / 2;
  EXPECT_NEAR(label_adapter.Top(), expected_top, factor);
  EXPECT_NEAR(label_adapter.Left() + label_adapter.Width(), edit_adapter.Left() - 120, factor);
  EXPECT_EQ(label->size(), label->sizeHint());  // sized to its text

  qt::QtControl ok_adapter(ok);
  ASSERT_NE(ok_adapter.Parent(), nullptr);
  EXPECT_EQ(ok_adapter.Parent()->BorderStyle(), 1);
  window.setMinimumSize(0, 0);
  window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  EXPECT_EQ(ok_adapter.Parent()->BorderStyle(), 2);
  c->SetupFormTolvaSize(ok_adapter, ok_adapter);
  qt::QtForm form(&window);
  EXPECT_NEAR(form.Width(), ok_adapter.Left() + ok_adapter.Width() + 120 + 2 * c->DialogWidth(), factor);
  EXPECT_NEAR(form.Height(),
              ok_adapter.Top() + ok_adapter.Height() + c->FormMarginY() + c->CaptionHeight() + 2 * c->DialogWidth(),
              factor);
}

TEST_F(QtBinding, TabStopsOfRealRowsLeaveEveryColumnRoomForItsText) {
  const std::vector<QString> rows = {
      QStringLiteral("Id\tName\tCity\tBalance"), QStringLiteral("1\tAnna Lindqvist\tGothenburg\t1,204.50"),
      QStringLiteral("2\tBo\tÅre\t-3.00"),       QStringLiteral("3\tWolfgang Maximilian Oberhuber\tWien\t12"),
      QStringLiteral("4\tEmpty city\t\t0"),
  };
  QListWidget list;
  for (const QString& r : rows) list.addItem(r);
  list.resize(400, 200);
  list.show();
  qt::QtListBox box(&list);
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 4);
  c->ListBoxTabPositionsSet(box, 4, widths);

  const std::vector<Long>& stops = box.delegate()->tab_stops();
  ASSERT_EQ(stops.size(), 4u);
  EXPECT_EQ(stops[0], 0);
  QFont unkerned = list.font();
  unkerned.setKerning(false);  // widths are measured as the classic call does, without kerning
  const QFontMetricsF metrics(unkerned);
  const double average = qt::TabStopDelegate::AverageCharWidth(list.font());
  for (int column = 0; column < 4; ++column) {
    SCOPED_TRACE(column);
    double widest_text = 0;
    for (const QString& r : rows) widest_text = std::max(widest_text, metrics.horizontalAdvance(r.split('\t')[column]));
    EXPECT_NEAR(*widths.At(column + 1), widest_text * factor, 1.0);  // measured in twips
    const double widest = std::max(widest_text, metrics.horizontalAdvance(QStringLiteral("XX")));
    const int start = box.delegate()->ColumnStart(static_cast<std::size_t>(column), list.font());
    const int next = box.delegate()->ColumnStart(static_cast<std::size_t>(column) + 1, list.font());
    if (column < 3) {
      // The widest text fits, with between one and three average characters
      // to spare (two of space, give or take the rounding to whole characters).
      EXPECT_GE(next - start, widest + average - 1);
      EXPECT_LE(next - start, widest + 3 * average + 1);
    }
  }
  const Long extent = box.delegate()->horizontal_extent();
  const int last_start = box.delegate()->ColumnStart(3, list.font());
  EXPECT_GT(extent, last_start + metrics.horizontalAdvance(QStringLiteral("1,204.50")));
  // The list scrolls sideways over the extent, not over its raw text.
  EXPECT_GE(list.sizeHintForColumn(0), extent);
}

TEST_F(QtBinding, MeasuresUseTheListFontAndAreWholeTwips) {
  QFont big = QApplication::font();
  big.setPointSizeF(big.pointSizeF() * 2);
  FontSpec font{big.family().toStdString(), big.pointSizeF(), true, false};
  auto measurer = windows->NewTextMeasurer(font);
  ASSERT_NE(measurer, nullptr);
  big.setBold(true);
  big.setKerning(false);
  const double expected = QFontMetricsF(big).horizontalAdvance(QStringLiteral("Measure me")) * factor;
  EXPECT_NEAR(measurer->TextWidthTwips("Measure me"), expected, 1e-6);
  EXPECT_EQ(measurer->TextWidthTwips(""), 0);
  // Text outside printable ASCII is shaped by the toolkit.
  EXPECT_NEAR(measurer->TextWidthTwips("\xc3\x85re"),
              QFontMetricsF(big).horizontalAdvance(QString::fromUtf8("\xc3\x85re")) * factor, 1e-6);
}

TEST_F(QtBinding, AWindowComesBackWhereItWasSaved) {
  // A settings store of the test's own, in a temporary configuration home.
  QTemporaryDir home;
  ASSERT_TRUE(home.isValid());
  qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
  Tolva2011Register c(qt::QtServices());
  c.RegistryApp("tolva-qt-test");
  struct Row {
    std::string label;
    bool fixed;
    QRect saved;
  };
  const std::vector<Row> rows = {
      {"sizable window: place and size", false, {120, 90, 500, 300}},
      {"fixed window: place only", true, {60, 40, 320, 200}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    const std::string section = r.fixed ? "Fixed" : "Sizable";
    QWidget window;
    if (r.fixed) window.setFixedSize(r.saved.size());
    window.resize(r.saved.size());
    window.move(r.saved.topLeft());
    window.show();
    qt::QtForm form(&window);
    c.RegistrySavePosition(form, section);
    window.move(r.saved.topLeft() + QPoint(200, 150));
    if (!r.fixed) window.resize(r.saved.size() - QSize(100, 80));
    c.RegistryGetPosition(form, section);
    EXPECT_EQ(window.frameGeometry().topLeft(), r.saved.topLeft());
    EXPECT_EQ(window.frameGeometry().size(), r.saved.size() + (window.frameGeometry().size() - window.size()));
  }
  qunsetenv("XDG_CONFIG_HOME");
}

// No QApplication (no platform asked for, no display): every member fails
// quietly instead of aborting the host.
TEST(NoDisplay, EveryWindowMemberFailsQuietly) {
  if (QCoreApplication::instance()) GTEST_SKIP() << "a display is available";
  EXPECT_FALSE(qt::CanStartGui());
  Tolva2011Register c(qt::QtServices());
  EXPECT_EQ(c.CaptionHeight(), 0);
  EXPECT_EQ(c.MenuHeight(), 0);
  EXPECT_EQ(c.DialogWidth(), 0);
  EXPECT_EQ(c.SizableWidth(), 0);
  EXPECT_EQ(c.ScreenWidth(), 0);
  EXPECT_EQ(c.ScreenHeight(), 0);
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
  EXPECT_EQ(gone.Left(), 0);
}

}  // namespace
}  // namespace tolva
