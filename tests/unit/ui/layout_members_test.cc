// Frame measures, margins, the work area, and placing and sizing forms,
// through the public members against a fake display at 96 and 120 dpi.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"
#include "unit/ui/ui_fakes.h"

namespace tolva {
namespace {

using uitest::MemControl;
using uitest::MemForm;
using uitest::MemLabel;

struct Display {
  std::shared_ptr<fakes::FakeWindowServices> windows;
  std::unique_ptr<Tolva2011Register> c;
};

// A display with a 19-pixel caption, 20-pixel menu, 3-pixel dialog frame,
// 4-pixel sizable frame and a 1024 x 728 work area (a 40-pixel task bar).
Display MakeDisplay(double dpi, platform::WorkArea area = {0, 0, 1024, 728}) {
  Display d;
  d.windows = std::make_shared<fakes::FakeWindowServices>(dpi);
  d.windows->metrics = {
      {platform::kSmCyCaption, 19}, {platform::kSmCyMenu, 20}, {platform::kSmCxDlgFrame, 3}, {platform::kSmCxFrame, 4}};
  d.windows->work_area = area;
  platform::Services services;
  services.windows = d.windows;
  d.c = std::make_unique<Tolva2011Register>(services);
  return d;
}

TEST(LayoutMetrics, MeasuresAreWholeTwipsAtEachResolution) {
  struct Row {
    std::string label;
    double dpi;
    Long caption, menu, dialog, sizable, margin_y, left, top, width, height;
  };
  const std::vector<Row> rows = {
      {"96 dpi: 15 twips a pixel", 96, 285, 300, 45, 60, 90, 0, 0, 15360, 10920},
      {"120 dpi: 12 twips a pixel, the smaller margin", 120, 228, 240, 36, 48, 84, 0, 0, 12288, 8736},
      {"144 dpi: 10 twips a pixel", 144, 190, 200, 30, 40, 90, 0, 0, 10240, 7280},
      {"72 dpi: 20 twips a pixel", 72, 380, 400, 60, 80, 90, 0, 0, 20480, 14560},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Display d = MakeDisplay(r.dpi);
    EXPECT_EQ(d.c->CaptionHeight(), r.caption);
    EXPECT_EQ(d.c->MenuHeight(), r.menu);
    EXPECT_EQ(d.c->DialogWidth(), r.dialog);
    EXPECT_EQ(d.c->SizableWidth(), r.sizable);
    EXPECT_EQ(d.c->FormMarginX(), 120);
    EXPECT_EQ(d.c->FormMarginY(), r.margin_y);
    EXPECT_EQ(d.c->ScreenLeft(), r.left);
    EXPECT_EQ(d.c->ScreenTop(), r.top);
    EXPECT_EQ(d.c->ScreenWidth(), r.width);
    EXPECT_EQ(d.c->ScreenHeight(), r.height);
  }
}

TEST(LayoutMetrics, FractionalFactorsRoundHalvesToEven) {
  // 12.5 twips a pixel: 19 px = 237.5 -> 238, 3 px = 37.5 -> 38,
  // 1 px = 12.5 -> 12. The margin is the large one: the factor is not exactly 12.
  Display d = MakeDisplay(96, {1, 0, 1, 0});
  d.windows->twips_per_pixel = 12.5;
  EXPECT_EQ(d.c->CaptionHeight(), 238);
  EXPECT_EQ(d.c->DialogWidth(), 38);
  EXPECT_EQ(d.c->ScreenLeft(), 12);
  EXPECT_EQ(d.c->ScreenWidth(), 12);
  EXPECT_EQ(d.c->FormMarginY(), 90);
}

TEST(LayoutMetrics, WithoutAWindowServiceEveryMeasureIsZero) {
  Tolva2011Register c{platform::Services{}};
  EXPECT_EQ(c.CaptionHeight(), 0);
  EXPECT_EQ(c.MenuHeight(), 0);
  EXPECT_EQ(c.DialogWidth(), 0);
  EXPECT_EQ(c.SizableWidth(), 0);
  EXPECT_EQ(c.ScreenWidth(), 0);
  EXPECT_EQ(c.ScreenHeight(), 0);
  EXPECT_EQ(c.FormMarginX(), 120);
  EXPECT_EQ(c.FormMarginY(), 90);
  // Nothing to keep a form on: it is left where it is.
  MemForm f;
  f.r = {-500, 99999, 4000, 3000};
  c.AdjustFormPosition(f);
  EXPECT_EQ(f.r.left, -500);
  EXPECT_EQ(f.r.top, 99999);
}

TEST(AdjustFormPosition, KeepsFormsOnTheWorkArea) {
  struct Row {
    std::string label;
    platform::WorkArea area;  // pixels at 96 dpi
    uitest::Rect form, expected;
  };
  const std::vector<Row> rows = {
      {"inside: unchanged", {0, 0, 1024, 728}, {1000, 1000, 4000, 3000}, {1000, 1000, 4000, 3000}},
      {"past the right edge: pulled back", {0, 0, 1024, 728}, {14000, 500, 4000, 3000}, {11360, 500, 4000, 3000}},
      {"past the bottom: pulled up", {0, 0, 1024, 728}, {500, 9000, 4000, 3000}, {500, 7920, 4000, 3000}},
      {"right edge exactly on the screen's: unchanged",
       {0, 0, 1024, 728},
       {11360, 0, 4000, 3000},
       {11360, 0, 4000, 3000}},
      {"above and left of the screen: to its corner", {0, 0, 1024, 728}, {-300, -20, 4000, 3000}, {0, 0, 4000, 3000}},
      {"wider than the screen: at its left edge", {0, 0, 1024, 728}, {3000, 0, 20000, 3000}, {0, 0, 20000, 3000}},
      {"taller than the screen: at its top edge", {0, 0, 1024, 728}, {0, 500, 3000, 12000}, {0, 0, 3000, 12000}},
      // The right limit is the work area's width alone, not its left + width.
      {"task bar on the left: right limit is the width",
       {60, 0, 964, 768},
       {13000, 0, 2000, 3000},
       {12460, 0, 2000, 3000}},
      {"task bar on the left: left limit is its edge", {60, 0, 964, 768}, {100, 0, 2000, 3000}, {900, 0, 2000, 3000}},
      {"larger than a screen with a left bar: at the bar",
       {60, 0, 964, 768},
       {0, 0, 20000, 3000},
       {900, 0, 20000, 3000}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Display d = MakeDisplay(96, r.area);
    MemForm f;
    f.r = r.form;
    d.c->AdjustFormPosition(f);
    EXPECT_EQ(f.r.left, r.expected.left);
    EXPECT_EQ(f.r.top, r.expected.top);
    EXPECT_EQ(f.r.width, r.expected.width);
    EXPECT_EQ(f.r.height, r.expected.height);
  }
}

TEST(AlignLabel, CentresOnTheAnchorAndEndsAMarginBeforeIt) {
  struct Row {
    std::string label;
    Boolean align_right;
    Single text_width, text_height;
    uitest::Rect anchor;
    Single expected_left, expected_top;
  };
  const std::vector<Row> rows = {
      {"195-twip label on a 315-twip box at 600", kFalse, 1000, 195, {2000, 600, 1500, 315}, 50, 660},
      {"aligned right: ends 120 before the box", kTrue, 1000, 195, {2000, 600, 1500, 315}, 880, 660},
      {"1 is not true: left unchanged", 1, 1000, 195, {2000, 600, 1500, 315}, 50, 660},
      {"the half is not rounded", kFalse, 500, 200, {0, 100, 900, 315}, 50, 157.5f},
      {"label taller than the anchor sits above its top", kTrue, 300, 400, {1000, 600, 900, 300}, 580, 550},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Display d = MakeDisplay(96);
    MemLabel label;
    label.r = {50, 0, 10, 10};
    label.text_width = r.text_width;
    label.text_height = r.text_height;
    MemControl anchor;
    anchor.r = r.anchor;
    d.c->AlignLabel(label, anchor, r.align_right);
    EXPECT_TRUE(label.auto_size);
    EXPECT_EQ(label.r.left, r.expected_left);
    EXPECT_EQ(label.r.top, r.expected_top);
  }
}

TEST(SetupFormTolvaSize, SizesTheFormAroundItsControlsAndKeepsItOnScreen) {
  struct Row {
    std::string label;
    double dpi;
    uitest::Rect form_before;
    Single expected_left, expected_width, expected_height;
  };
  // Right-most control ends at 5000, the lowest at 3000.
  // 96 dpi: width 5000 + 120 + 2*45 = 5210; height 3000 + 90 + 285 + 90 = 3465.
  // 120 dpi: width 5000 + 120 + 2*36 = 5192; height 3000 + 84 + 228 + 72 = 3384.
  const std::vector<Row> rows = {
      {"96 dpi", 96, {100, 100, 1, 1}, 100, 5210, 3465},
      {"120 dpi", 120, {100, 100, 1, 1}, 100, 5192, 3384},
      {"grown past the right edge: pulled back", 96, {14000, 100, 1, 1}, 15360 - 5210, 5210, 3465},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Display d = MakeDisplay(r.dpi);
    MemForm form;
    form.r = r.form_before;
    MemControl right, bottom;
    right.parent = bottom.parent = &form;
    right.r = {3000, 200, 2000, 300};
    bottom.r = {200, 2500, 1000, 500};
    d.c->SetupFormTolvaSize(right, bottom);
    EXPECT_EQ(form.styled, 1);
    EXPECT_EQ(form.r.left, r.expected_left);
    EXPECT_EQ(form.r.width, r.expected_width);
    EXPECT_EQ(form.r.height, r.expected_height);
  }
}

TEST(SetupFormTolvaSize, AControlWithoutAFormChangesNothing) {
  Display d = MakeDisplay(96);
  MemControl right, bottom;
  right.r = {3000, 200, 2000, 300};
  d.c->SetupFormTolvaSize(right, bottom);
  EXPECT_EQ(right.r.left, 3000);
  EXPECT_EQ(right.r.width, 2000);
}

}  // namespace
}  // namespace tolva
