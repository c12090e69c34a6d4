// Form positions against the in-memory store and a 19200 x 15360 twip screen.
#include <string>

#include "fakes/fake_form.h"
#include "unit/settings/settings_fixture.h"

namespace tolva::testing_settings {
namespace {

constexpr Integer kSizable = 2;
constexpr Integer kFixed = 1;
constexpr Integer kMaximised = 2;

class PositionMembersTest : public SettingsTest {};

TEST_F(PositionMembersTest, FirstUseSizesASizableFormByTheRatioAndCentresIt) {
  c.FormSizeRatio(0.5f);
  fakes::FakeForm form(kSizable, 3000, 2000);
  c.RegistryGetPosition(form);
  EXPECT_EQ(form.width, 9600);
  EXPECT_EQ(form.height, 7680);
  EXPECT_EQ(form.left, 4800);
  EXPECT_EQ(form.top, 3840);
  EXPECT_EQ(Stored("Startup", "FormInitialise"), "T");
  // Only the flag is written on a get; the place is saved by the host's save.
  EXPECT_EQ(Stored("Startup", "Left"), "<absent>");
}

TEST_F(PositionMembersTest, LaterUsesApplyTheStoredPlaceWithoutResizingByTheRatio) {
  struct Row {
    const char* label;
    Integer border;
    std::string init;  // stored FormInitialise, "<absent>" for none
    std::vector<std::pair<std::string, std::string>> stored;
    Single left, top, width, height;
  } rows[] = {
      {"sizable, all stored",
       kSizable,
       "T",
       {{"Left", "10"}, {"Top", "20"}, {"Width", "5000"}, {"Height", "4000"}},
       10,
       20,
       5000,
       4000},
      {"sizable, nothing stored but initialised: centred at its own size", kSizable, "T", {}, 8100, 6680, 3000, 2000},
      {"fixed border, first use: never resized, centred", kFixed, "<absent>", {}, 8100, 6680, 3000, 2000},
      {"fixed border ignores stored sizes",
       kFixed,
       "T",
       {{"Left", "1"}, {"Top", "2"}, {"Width", "9999"}, {"Height", "9999"}},
       1,
       2,
       3000,
       2000},
      {"stored off-screen place is applied as stored",
       kSizable,
       "T",
       {{"Left", "-5000"}, {"Top", "99999"}},
       -5000,
       99999,
       3000,
       2000},
      {"flag other than F counts as initialised", kSizable, "f", {}, 8100, 6680, 3000, 2000},
      {"stored text with letters reads its number", kFixed, "T", {{"Left", "12abc"}, {"Top", "x"}}, 12, 0, 3000, 2000},
  };
  for (const auto& r : rows) {
    store = std::make_shared<fakes::FakeSettingsStore>();
    Tolva2011Register fresh(Services());
    fresh.RegistryApp("Demo");
    if (r.init != "<absent>") Store("Main", "FormInitialise", r.init);
    for (const auto& [k, v] : r.stored) Store("Main", k, v);
    fakes::FakeForm form(r.border, 3000, 2000);
    fresh.RegistryGetPosition(form, "Main");
    EXPECT_EQ(form.left, r.left) << r.label;
    EXPECT_EQ(form.top, r.top) << r.label;
    EXPECT_EQ(form.width, r.width) << r.label;
    EXPECT_EQ(form.height, r.height) << r.label;
    EXPECT_EQ(Stored("Main", "FormInitialise"), r.init == "<absent>" ? "T" : r.init) << r.label;
  }
}

TEST_F(PositionMembersTest, CentringRoundsHalvesToEven) {
  // (19200 - 3001) / 2 = 8099.5 -> 8100 ; (15360 - 2003) / 2 = 6678.5 -> 6678
  fakes::FakeForm form(kFixed, 3001, 2003);
  c.RegistryGetPosition(form);
  EXPECT_EQ(form.left, 8100);
  EXPECT_EQ(form.top, 6678);
}

TEST_F(PositionMembersTest, SavingANormalFormWritesItsPlaceAndForASizableOneItsSize) {
  struct Row {
    const char* label;
    Integer border;
    std::string width_stored;
  } rows[] = {{"sizable", kSizable, "4321"}, {"fixed", kFixed, "<absent>"}};
  for (const auto& r : rows) {
    store = std::make_shared<fakes::FakeSettingsStore>();
    Tolva2011Register fresh(Services());
    fresh.RegistryApp("Demo");
    fakes::FakeForm form(r.border, 4321, 1234);
    form.left = 100.4f;
    form.top = 200.5f;
    fresh.RegistrySavePosition(form, "Main");
    EXPECT_EQ(Stored("Main", "Left"), "100") << r.label;
    EXPECT_EQ(Stored("Main", "Top"), "200") << r.label;  // halves to even
    EXPECT_EQ(Stored("Main", "Width"), r.width_stored) << r.label;
    EXPECT_EQ(Stored("Main", "WindowState"), "<absent>") << r.label;
  }
}

TEST_F(PositionMembersTest, SavingAMaximisedFormKeepsTheRememberedNormalPlacement) {
  Store("Startup", "FormInitialise", "T");
  Store("Startup", "Left", "300");
  Store("Startup", "Top", "400");
  Store("Startup", "Width", "6000");
  Store("Startup", "Height", "5000");
  fakes::FakeForm form(kSizable, 3000, 2000);
  c.RegistryGetPosition(form);
  form.state = kMaximised;
  form.left = 0;
  form.top = 0;
  form.width = 19200;
  form.height = 15360;
  c.RegistrySavePosition(form);
  EXPECT_EQ(Stored("Startup", "Left"), "300");
  EXPECT_EQ(Stored("Startup", "Top"), "400");
  EXPECT_EQ(Stored("Startup", "Width"), "6000");
  EXPECT_EQ(Stored("Startup", "Height"), "5000");
  // The placement is the component's, not the section's: another section
  // saved while maximised gets the same one.
  c.RegistrySavePosition(form, "Other");
  EXPECT_EQ(Stored("Other", "Width"), "6000");
}

TEST_F(PositionMembersTest, WithoutAnApplicationTheFormAndStoreAreLeftAlone) {
  c.RegistryApp("");
  fakes::FakeForm form(kSizable, 3000, 2000);
  c.RegistryGetPosition(form);
  c.RegistrySavePosition(form);
  EXPECT_TRUE(form.sets.empty());
  EXPECT_EQ(store->writes + store->reads, 0);
}

TEST_F(PositionMembersTest, WithoutAScreenTheFormStaysOnTheStoredPlace) {
  windows->work_area = {};
  Store("Startup", "FormInitialise", "T");
  Store("Startup", "Left", "50");
  Store("Startup", "Top", "60");
  fakes::FakeForm form(kFixed, 3000, 2000);
  c.RegistryGetPosition(form);
  EXPECT_EQ(form.left, 50);
  EXPECT_EQ(form.top, 60);
}

}  // namespace
}  // namespace tolva::testing_settings
