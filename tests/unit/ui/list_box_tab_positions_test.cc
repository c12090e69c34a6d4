// Tab stops and scroll extent of multi-column list boxes, against a fake
// measurer whose characters are a fixed number of pixels wide.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"
#include "unit/ui/ui_fakes.h"

namespace tolva {
namespace {

using uitest::MemListBox;

struct Fixture {
  explicit Fixture(double dpi, double pixels_per_character) {
    windows = std::make_shared<fakes::FakeWindowServices>(dpi);
    windows->pixels_per_character = pixels_per_character;
    platform::Services services;
    services.windows = windows;
    c = std::make_unique<Tolva2011Register>(services);
  }
  std::shared_ptr<fakes::FakeWindowServices> windows;
  std::unique_ptr<Tolva2011Register> c;
};

std::vector<Long> Values(const HostArray<Long>& a) {
  std::vector<Long> out;
  for (Long i = a.LBound(); i <= a.UBound(); ++i) out.push_back(*a.At(i));
  return out;
}

TEST(ListBoxTabPositionsSet, MeasuredColumnsGiveStopsAndExtent) {
  struct Row {
    std::string label;
    double dpi, pixels_per_character;
    std::vector<std::string> rows;
    Long columns;
    std::vector<Long> widths, stops;  // widths in twips, stops in dialog units
    Long extent;
  };
  // 7-pixel characters: an average character of 7 pixels, 2 of them (14
  // pixels) of space, "XX" 14 pixels. A column of n characters is
  // (7n + 14) \ 7 * 4 dialog units wide, at least 16.
  const std::vector<Row> rows = {
      {"three columns at 96 dpi",
       96,
       7,
       {"abc\tde\tfghij", "a\t\tx", "abcdefgh"},
       3,
       {840, 210, 525},
       {0, 40, 56},
       147},
      {"the same rows at 120 dpi",
       120,
       7,
       {"abc\tde\tfghij", "a\t\tx", "abcdefgh"},
       3,
       {672, 168, 420},
       {0, 40, 56},
       147},
      {"a row without a tab only widens column 1", 96, 7, {"abc"}, 3, {315, 0, 0}, {0, 20, 36}, 91},
      {"text past the last column is ignored", 96, 7, {"a\tb\tcccccccccc"}, 2, {105, 105}, {0, 16}, 56},
      {"empty parts are not measured", 96, 7, {"\t\t"}, 3, {0, 0, 0}, {0, 16, 32}, 84},
      {"a one-character column is as wide as XX", 96, 7, {"i\tWWWW"}, 2, {105, 420}, {0, 16}, 70},
      // 6.5-pixel characters: the average (6.5) rounds to 6 for the division,
      // halves to even; 3 characters are 292.5 twips, kept as 292.
      {"halves round to even", 96, 6.5, {"abc"}, 1, {292}, {0}, 32},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Fixture f(r.dpi, r.pixels_per_character);
    MemListBox list;
    list.rows = r.rows;
    HostArray<Long> widths = HostArray<Long>::OneDim(1, r.columns);
    f.c->ListBoxTabPositionsSet(list, r.columns, widths);
    EXPECT_EQ(Values(widths), r.widths);
    EXPECT_EQ(list.stops, r.stops);
    EXPECT_EQ(list.extent, r.extent);
    EXPECT_EQ(f.windows->measurers_made, 1);  // one measuring surface per call
    ASSERT_EQ(f.windows->fonts.size(), 1u);
    EXPECT_EQ(f.windows->fonts[0].family, "Sans");
  }
}

TEST(ListBoxTabPositionsSet, GivenWidthsAreUsedAsTheyStand) {
  struct Row {
    std::string label;
    double pixels_per_character;
    std::vector<Long> widths;
    Long space;
    std::vector<Long> stops;
    Long extent;
  };
  const std::vector<Row> rows = {
      // 300 twips = 20 px + 13 px space = 33 \ 6 = 5 -> 20; 0 -> XX 13 + 13 = 26 \ 6 -> 16.
      // Total 36 \ 4 = 9 characters of 6.5 px = 58.5 -> 58.
      {"6.5-pixel characters", 6.5, {300, 0}, 2, {0, 20}, 58},
      {"no space between columns", 7, {1050, 210}, 0, {0, 40}, 84},
      {"a narrow width gets XX", 7, {15, 1500}, 2, {0, 16}, 140},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Fixture f(96, r.pixels_per_character);
    MemListBox list;
    list.rows = {"wide text that must not be read\tx"};
    HostArray<Long> widths = HostArray<Long>::OneDim(1, static_cast<Long>(r.widths.size()));
    for (std::size_t i = 0; i < r.widths.size(); ++i) widths.Store(static_cast<Long>(i) + 1, r.widths[i]);
    f.c->ListBoxTabPositionsSet(list, static_cast<Long>(r.widths.size()), widths, kFalse, r.space);
    EXPECT_EQ(list.rows_read, 0);
    EXPECT_EQ(Values(widths), r.widths);
    EXPECT_EQ(list.stops, r.stops);
    EXPECT_EQ(list.extent, r.extent);
  }
}

TEST(ListBoxTabPositionsSet, NothingHappensWithoutColumnsOrRows) {
  struct Row {
    std::string label;
    Long columns;
    std::vector<std::string> rows;
    Boolean calculate;
  };
  const std::vector<Row> rows = {
      {"no columns", 0, {"a\tb"}, kTrue},
      {"negative columns", -3, {"a\tb"}, kFalse},
      {"absurdly many columns", 2000000000, {"a"}, kFalse},
      {"empty list, measured", 2, {}, kTrue},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Fixture f(96, 7);
    MemListBox list;
    list.rows = r.rows;
    HostArray<Long> widths = HostArray<Long>::OneDim(1, 2);
    widths.Store(1, 777);
    f.c->ListBoxTabPositionsSet(list, r.columns, widths, r.calculate);
    EXPECT_EQ(list.stops_set, 0);
    EXPECT_EQ(list.extents_set, 0);
    EXPECT_EQ(*widths.At(1), 777);
  }
}

TEST(ListBoxTabPositionsSet, AShortWidthArrayLeavesMissingColumnsAtZero) {
  Fixture f(96, 7);
  MemListBox list;
  list.rows = {"abcdefgh\tabcdefgh\tabcdefgh"};
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 1);  // room for one of three
  f.c->ListBoxTabPositionsSet(list, 3, widths);
  EXPECT_EQ(Values(widths), std::vector<Long>({840}));
  // Columns 2 and 3 have no stored width: they get the XX minimum.
  EXPECT_EQ(list.stops, std::vector<Long>({0, 40, 56}));
  EXPECT_EQ(list.extent, 7 * (72 / 4));
  HostArray<Long> none;  // not even dimensioned
  f.c->ListBoxTabPositionsSet(list, 2, none);
  EXPECT_EQ(list.stops, std::vector<Long>({0, 16}));
}

TEST(ListBoxTabPositionsSet, WithoutADisplayStopsAreZeroAndNothingBreaks) {
  struct Row {
    std::string label;
    bool have_service;
  };
  for (const Row& r : std::vector<Row>{{"no window service", false}, {"a display of 0 dpi", true}}) {
    SCOPED_TRACE(r.label);
    platform::Services services;
    if (r.have_service) services.windows = std::make_shared<fakes::FakeWindowServices>(0);
    Tolva2011Register c(services);
    MemListBox list;
    list.rows = {"abc\tdef"};
    HostArray<Long> widths = HostArray<Long>::OneDim(1, 2);
    widths.Store(1, 500);
    c.ListBoxTabPositionsSet(list, 2, widths);
    EXPECT_EQ(list.stops, std::vector<Long>({0, 0}));
    EXPECT_EQ(list.extent, 0);
  }
}

TEST(ListBoxTabPositionsSet, RepeatedTextsAreMeasuredOnce) {
  Fixture f(96, 7);
  MemListBox list;
  for (int i = 0; i < 1000; ++i) list.rows.push_back("same\t" + std::to_string(i % 10) + "\tconstant");
  HostArray<Long> widths = HostArray<Long>::OneDim(1, 3);
  f.c->ListBoxTabPositionsSet(list, 3, widths);
  // "same", ten digits, "constant", the alphabet and "XX".
  EXPECT_EQ(f.windows->strings_measured, 1 + 10 + 1 + 2);
  EXPECT_EQ(Values(widths), std::vector<Long>({420, 105, 840}));
}

}  // namespace
}  // namespace tolva
