// The window members against a fake display: measures, placing forms and
// labels, tab stops, and what the dialogs and browser are handed.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_form.h"
#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

// A control or label on a form; sized to its text it takes `text_w` x `text_h`.
struct Item : Label {
  Single Left() const override { return l; }
  void Left(Single v) override { l = v; }
  Single Top() const override { return t; }
  void Top(Single v) override { t = v; }
  Single Width() const override { return w; }
  void Width(Single v) override { w = v; }
  Single Height() const override { return h; }
  void Height(Single v) override { h = v; }
  Form* Parent() const override { return parent; }
  void AutoSize(bool on) override {
    if (on) w = text_w, h = text_h;
  }
  Single l = 0, t = 0, w = 0, h = 0, text_w = 0, text_h = 0;
  Form* parent = nullptr;
};

struct MemList : ListBox {
  FontSpec Font() const override { return {"Sans", 9}; }
  Long ListCount() const override { return static_cast<Long>(rows.size()); }
  std::string List(Long row) const override { return ++rows_read, rows.at(static_cast<std::size_t>(row)); }
  void SetTabStops(const std::vector<Long>& s) override { stops = s; }
  void SetHorizontalExtent(Long pixels) override { extent = pixels; }
  std::vector<std::string> rows;
  mutable int rows_read = 0;
  std::vector<Long> stops;  // empty and -1 until set
  Long extent = -1;
};

// A window service that records its requests and answers as scripted.
struct ScriptedWindows : fakes::FakeWindowServices {
  platform::FileDialogResult FileDialog(const platform::FileDialogRequest& request) override {
    return requests.push_back(request), dialog_answer;
  }
  bool AboutBox(const platform::AboutInfo& about) override { return abouts.push_back(about), true; }
  bool OpenUrl(const std::string& url) override { return urls.push_back(url), true; }
  platform::FileDialogResult dialog_answer;
  std::vector<platform::FileDialogRequest> requests;
  std::vector<platform::AboutInfo> abouts;
  std::vector<std::string> urls;
};

// A display of `twips_per_pixel` (none when negative); frames in pixels.
struct Display {
  explicit Display(double twips_per_pixel = 15, platform::WorkArea area = {0, 0, 1024, 728}) {
    platform::Services services;
    if (twips_per_pixel >= 0) services.windows = windows;
    windows->twips_per_pixel = twips_per_pixel;
    windows->work_area = area;
    windows->metrics = {{platform::kSmCyCaption, 19},
                        {platform::kSmCyMenu, 20},
                        {platform::kSmCxDlgFrame, 3},
                        {platform::kSmCxFrame, 4}};
    c = std::make_unique<Tolva2011Register>(services);
  }
  std::shared_ptr<ScriptedWindows> windows = std::make_shared<ScriptedWindows>();
  std::unique_ptr<Tolva2011Register> c;
};

TEST(LayoutMetrics, MeasuresAreWholeTwipsAtEachResolution) {
  // caption, menu, dialog, sizable, margin y, left, top, width, height; at
  // 12.5 twips a pixel halves round to even, and 120 dpi has the smaller margin
  const std::pair<double, std::vector<Long>> rows[] = {
      {12, {228, 240, 36, 48, 84, 24, 12, 12288, 8736}},
      {12.5, {238, 250, 38, 50, 90, 25, 12, 12800, 9100}},
      {-1, {0, 0, 0, 0, 90, 0, 0, 0, 0}},  // no window service
  };
  for (const auto& [twips_per_pixel, expected] : rows) {
    Display d(twips_per_pixel, {2, 1, 1024, 728});
    Tolva2011Register& c = *d.c;
    EXPECT_EQ(std::vector<Long>({c.CaptionHeight(), c.MenuHeight(), c.DialogWidth(), c.SizableWidth(), c.FormMarginY(),
                                 c.ScreenLeft(), c.ScreenTop(), c.ScreenWidth(), c.ScreenHeight()}),
              expected)
        << twips_per_pixel;
  }
}

TEST(AdjustFormPosition, KeepsFormsOnTheWorkArea) {
  struct Row {
    platform::WorkArea area;  // pixels at 96 dpi
    Single left, top, width, height, expected_left, expected_top;
  };
  const platform::WorkArea screen{0, 0, 1024, 728}, left_bar{60, 0, 964, 768};
  const Row rows[] = {
      {screen, 14000, 500, 4000, 3000, 11360, 500},
      {screen, -300, -20, 4000, 3000, 0, 0},
      {screen, 3000, 0, 20000, 3000, 0, 0},
      // Kept: the right limit is the work area's width alone, not left + width.
      {left_bar, 13000, 0, 2000, 3000, 12460, 0},
      {left_bar, 100, 0, 2000, 3000, 900, 0},
      {{0, 0, 0, 0}, -500, 99999, 4000, 3000, -500, 99999},
  };
  for (const Row& r : rows) {
    Display d(15, r.area);
    fakes::FakeForm f(2, r.width, r.height);
    f.left = r.left, f.top = r.top;
    d.c->AdjustFormPosition(f);
    EXPECT_EQ(f.left, r.expected_left) << r.left;
    EXPECT_EQ(f.top, r.expected_top) << r.left;
  }
}

TEST(AlignLabel, CentresOnTheAnchorAndEndsAMarginBeforeIt) {
  struct Row {
    std::string label;
    Boolean align_right;
    Single text_w, text_h, anchor_left, anchor_top, anchor_height, expected_left, expected_top;
  };
  const std::vector<Row> rows = {
      {"aligned right: ends 120 before the box", kTrue, 1000, 195, 2000, 600, 315, 880, 660},
      {"1 is not true: left unchanged", 1, 1000, 195, 2000, 600, 315, 50, 660},
      {"the half is not rounded", kFalse, 500, 200, 0, 100, 315, 50, 157.5f},
  };
  for (const Row& r : rows) {
    Display d;
    Item label, anchor;
    label.l = 50, label.text_w = r.text_w, label.text_h = r.text_h;
    anchor.l = r.anchor_left, anchor.t = r.anchor_top, anchor.w = 900, anchor.h = r.anchor_height;
    d.c->AlignLabel(label, anchor, r.align_right);
    EXPECT_EQ(label.l, r.expected_left) << r.label;
    EXPECT_EQ(label.t, r.expected_top) << r.label;
  }
}

TEST(SetupFormTolvaSize, SizesTheFormAroundItsControlsAndKeepsItOnScreen) {
  // Right-most control ends at 5000, the lowest at 3000: the width adds the
  // margin and two dialog frames, the height the margin, caption and frames.
  const Single width = 5000 + 120 + 2 * 45, height = 3000 + 90 + 285 + 2 * 45;
  for (const auto& [left, expected_left] : {std::pair<Single, Single>{100, 100}, {14000, 15360 - width}}) {
    Display d;
    fakes::FakeForm form(2, 1, 1);
    form.left = left;
    Item right, bottom;
    right.parent = bottom.parent = &form;
    right.l = 3000, right.w = 2000, bottom.t = 2500, bottom.h = 500;
    d.c->SetupFormTolvaSize(right, bottom);
    EXPECT_EQ(form.styled, 1);
    EXPECT_EQ(std::vector<Single>({form.left, form.width, form.height}),
              std::vector<Single>({expected_left, width, height}));
  }
  Item orphan;  // no form to size
  Display().c->SetupFormTolvaSize(orphan, orphan);
}

TEST(ListBoxTabPositionsSet, StopsAndExtentFromMeasuredOrGivenWidths) {
  struct Row {
    std::string label;
    double twips_per_pixel, pixels_per_character;
    std::vector<std::string> rows;
    Long columns;
    Boolean calculate;
    std::vector<Long> widths, expected_widths;  // twips; an empty array is not dimensioned
    std::vector<Long> expected_stops;           // dialog units; none: not set
    Long expected_extent;                       // -1: not set
  };
  // With 7-pixel characters a column of n characters is (7n + 14) \ 7 * 4
  // dialog units wide (two characters of space), at least "XX" (16).
  const std::vector<std::string> three = {"abc\tde\tfghij", "a\t\tx", "abcdefgh"};
  const std::vector<std::string> wide = {"wide text that must not be read\tx"};
  const std::vector<Row> rows = {
      {"three columns", 15, 7, three, 3, kTrue, {0, 0, 0}, {840, 210, 525}, {0, 40, 56}, 147},
      // 6.5-pixel characters: 3 are 292.5 twips, kept as 292; the average
      // rounds to 6 for the division.
      {"halves round to even", 15, 6.5, {"abc"}, 1, kTrue, {0}, {292}, {0}, 32},
      {"a narrow given width gets XX", 15, 7, wide, 2, kFalse, {15, 1500}, {15, 1500}, {0, 16}, 140},
      {"short array: XX after", 15, 7, {"abcdefgh\tabcdefgh\tabcdefgh"}, 3, kTrue, {0}, {840}, {0, 40, 56}, 126},
      {"no columns", 15, 7, {"a\tb"}, 0, kTrue, {777}, {777}, {}, -1},
      {"no window service", -1, 7, {"abc\tdef"}, 2, kTrue, {500, 0}, {0, 0}, {0, 0}, 0},
  };
  for (const Row& r : rows) {
    Display d(r.twips_per_pixel);
    d.windows->pixels_per_character = r.pixels_per_character;
    MemList list;
    list.rows = r.rows;
    HostArray<Long> widths;
    if (!r.widths.empty()) widths = HostArray<Long>::OneDim(1, static_cast<Long>(r.widths.size()));
    for (std::size_t i = 0; i < r.widths.size(); ++i) widths.Store(static_cast<Long>(i) + 1, r.widths[i]);
    d.c->ListBoxTabPositionsSet(list, r.columns, widths, r.calculate);
    std::vector<Long> got;
    for (Long i = 1; i <= static_cast<Long>(r.widths.size()); ++i) got.push_back(*widths.At(i));
    EXPECT_EQ(got, r.expected_widths) << r.label;
    EXPECT_EQ(list.stops, r.expected_stops) << r.label;
    EXPECT_EQ(list.extent, r.expected_extent) << r.label;
    EXPECT_TRUE(r.calculate || list.rows_read == 0) << r.label << ": given widths, yet the rows were read";
  }
}

TEST(FileDialogs, OutcomesBecomeResultsAndTexts) {
  Display f;
  f.windows->dialog_answer = {platform::DialogOutcome::kChosen, "/data/a.csv"};
  std::string path = "keep", error = "stale";
  EXPECT_EQ(f.c->DialogFileSave2(path, error, "Save as", "Text|*.txt", "C:\\data\\x.csv"), kTrue);
  f.windows->dialog_answer = {platform::DialogOutcome::kCancelled, "/data/b.csv"};
  EXPECT_EQ(f.c->DialogFileOpen2(path, error, "Open"), kFalse);
  EXPECT_EQ(path + "|" + error, "/data/a.csv|");  // the choice, kept through the cancel
  ASSERT_EQ(f.windows->requests.size(), 2u);
  EXPECT_TRUE(f.windows->requests[0].save);
  EXPECT_EQ(f.windows->requests[0].filter, "Text|*.txt");
  EXPECT_EQ(f.windows->requests[1].filter, f.c->DialogFilter());
  EXPECT_EQ(f.windows->requests[0].initial_path, "C:/data/x.csv");
}

TEST(WindowMembers, FailWithATextOrHandTheRequestOn) {
  std::string path, error;
  platform::Services plain;  // a window service with the defaults: no dialog, no About box, no browser
  plain.windows = std::make_shared<fakes::FakeWindowServices>();
  Tolva2011Register console(plain);
  EXPECT_EQ(console.DialogFileSave2(path, error), kFalse);
  EXPECT_EQ(error, "No window can be shown on this display.");
  EXPECT_EQ(console.LoadURL("http://127.0.0.1/", error), kFalse);
  EXPECT_EQ(error, "URL [http://127.0.0.1/] can't be opened.");
  Display scripted;
  EXPECT_EQ(scripted.c->LoadURL("https://example.org/", error), kTrue);
  EXPECT_EQ(scripted.windows->urls, std::vector<std::string>({"https://example.org/"}));
  scripted.c->ProgramCompany("Small Firm");
  EXPECT_EQ(scripted.c->ShowTolvaAboutBox(error), kTrue);
  EXPECT_EQ(scripted.windows->abouts.at(0).program_company, "Small Firm");
}

}  // namespace
}  // namespace tolva
