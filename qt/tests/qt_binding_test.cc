// The window members through the Qt binding on real widgets at the
// resolution the test program is started with.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QListWidget>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tolva/qt/display_check.h"
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
  Tolva2011Register c{qt::QtServices()};  // its settings live in the test's own home
  const double dpi = std::getenv("TOLVA_EXPECT_DPI") ? std::atof(std::getenv("TOLVA_EXPECT_DPI")) : 96;
  const double factor = 1440.0 / dpi;
};

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

// No QApplication (no platform asked for, no display): every member fails
// quietly instead of aborting the host.
TEST(NoDisplay, EveryWindowMemberFailsQuietly) {
  if (QCoreApplication::instance()) GTEST_SKIP() << "a display is available";
  EXPECT_FALSE(qt::CanStartGui());
  Tolva2011Register c(qt::QtServices());
  EXPECT_EQ(std::vector<Long>({c.CaptionHeight(), c.MenuHeight(), c.DialogWidth(), c.SizableWidth(), c.ScreenWidth(),
                               c.ScreenHeight()}),
            std::vector<Long>(6, 0));
  EXPECT_TRUE(c.MessageQuery("nobody answers", 4).IsEmpty());
  std::string path, error;
  EXPECT_EQ(c.DialogFileOpen2(path, error), kFalse);
  qt::QtListBox none(nullptr);
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 2);
  c.ListBoxTabPositionsSet(none, 2, widths);
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
