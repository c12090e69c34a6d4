// Application settings against the in-memory store and profile store.
#include <string>

#include "unit/settings/settings_fixture.h"

namespace tolva::testing_settings {
namespace {

constexpr const char* kBackup = "/data/backup.ini";

class RegistryMembersTest : public SettingsTest {};

TEST_F(RegistryMembersTest, TypedValuesAreSavedAsTextAndReadBack) {
  c.RegistrySaveSettingLong("Numbers", "Count", -42);
  c.RegistrySaveSettingDouble("Numbers", "Ratio", 0.75);
  c.RegistrySaveSettingBoolean("Flags", "On", kTrue);
  c.RegistrySaveSettingBoolean("Flags", "Off", kFalse);
  c.RegistrySaveSetting("Text", "Name", "  padded  ");
  EXPECT_EQ(Stored("Numbers", "Count"), "-42");
  EXPECT_EQ(Stored("Numbers", "Ratio"), "0.75");
  EXPECT_EQ(Stored("Flags", "On"), "True");
  EXPECT_EQ(Stored("Flags", "Off"), "False");
  EXPECT_EQ(Stored("Text", "Name"), "  padded  ");
  EXPECT_EQ(c.RegistryGetSettingLong("Numbers", "Count", 0), -42);
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("Numbers", "Ratio", 0), 0.75);
  EXPECT_EQ(c.RegistryGetSettingBoolean("Flags", "On", kFalse), kTrue);
  EXPECT_EQ(c.RegistryGetSettingBoolean("Flags", "Off", kTrue), kFalse);
  EXPECT_EQ(c.RegistryGetSetting("Text", "Name", "d"), "  padded  ");
  // Section and key names are found whatever their case.
  EXPECT_EQ(c.RegistryGetSetting("TEXT", "name", "d"), "  padded  ");
}

TEST_F(RegistryMembersTest, StoredTextsReadAsTypedValues) {
  struct Row {
    const char* label;
    std::string stored;  // "<absent>" leaves the key out
    Long as_long;        // default 99
    double as_double;    // default 9.5
    Boolean as_boolean;  // default kTrue
  } rows[] = {
      {"absent gives the defaults", "<absent>", 99, 9.5, kTrue},
      {"trailing letters", "12abc", 12, 12, kTrue},
      {"no number is 0, not the default", "x", 0, 0, kTrue},
      {"half rounds down to even", "2.5", 2, 2.5, kTrue},
      {"half rounds up to even", "3.5", 4, 3.5, kTrue},
      {"upper-case yes", "YES", 0, 0, kTrue},
      {"no", "no", 0, 0, kFalse},
      {"maybe keeps the default", "maybe", 0, 0, kTrue},
      {"zero", "0", 0, 0, kFalse},
      {"empty", "", 0, 0, kTrue},
  };
  for (const auto& r : rows) {
    store = std::make_shared<fakes::FakeSettingsStore>();
    Tolva2011Register fresh(Services());
    fresh.RegistryApp("Demo");
    if (std::string(r.stored) != "<absent>") store->PutString(std::string(kApp) + "\\S", "K", r.stored);
    EXPECT_EQ(fresh.RegistryGetSettingLong("S", "K", 99), r.as_long) << r.label;
    EXPECT_DOUBLE_EQ(fresh.RegistryGetSettingDouble("S", "K", 9.5), r.as_double) << r.label;
    EXPECT_EQ(fresh.RegistryGetSettingBoolean("S", "K", kTrue), r.as_boolean) << r.label;
  }
}

TEST_F(RegistryMembersTest, BooleanGetOfAnAbsentKeyReturnsTheDefaultThroughItsText) {
  EXPECT_EQ(c.RegistryGetSettingBoolean("S", "Missing", kTrue), kTrue);
  EXPECT_EQ(c.RegistryGetSettingBoolean("S", "Missing", kFalse), kFalse);
  // Number defaults travel as their text and come back unchanged.
  EXPECT_EQ(c.RegistryGetSettingLong("S", "Missing", -7), -7);
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("S", "Missing", 1e20), 1e20);
}

TEST_F(RegistryMembersTest, WithoutAnApplicationNothingIsReadOrWritten) {
  c.RegistryApp("");
  c.RegistryBackupFile(kBackup);
  Store("S", "K", "stored");
  c.RegistrySaveSetting("S", "New", "v");
  c.RegistrySaveSettingLong("S", "N", 1);
  c.RegistryDeleteKey("S", "K");
  c.RegistryDeleteSection("S");
  EXPECT_EQ(c.RegistryGetSetting("S", "K", "default"), "default");
  EXPECT_EQ(c.RegistryGetSettingLong("S", "K", 5), 5);
  EXPECT_EQ(store->writes, 0);
  EXPECT_EQ(profiles->writes, 0);
  EXPECT_EQ(Stored("S", "K"), "stored");
}

TEST_F(RegistryMembersTest, EmptySectionOrKeyNamesAreRefusedQuietly) {
  c.RegistryBackupFile(kBackup);
  struct Row {
    const char* label;
    std::string section, key;
  } rows[] = {{"empty section", "", "K"}, {"empty key", "S", ""}, {"both empty", "", ""}};
  for (const auto& r : rows) {
    c.RegistrySaveSetting(r.section, r.key, "v");
    EXPECT_EQ(c.RegistryGetSetting(r.section, r.key, "dflt"), "dflt") << r.label;
    c.RegistryDeleteKey(r.section, r.key);
  }
  c.RegistryDeleteSection("");
  EXPECT_EQ(store->writes, 0);
  EXPECT_EQ(profiles->writes, 0);
  EXPECT_FALSE(store->HasKey(fakes::FakeSettingsStore::kUser, kApp));
}

TEST_F(RegistryMembersTest, OddNamesAndLargeValuesKeepTheirBytes) {
  const std::string big(1 << 20, 'x');
  struct Row {
    const char* label;
    std::string section, key, value;
  } rows[] = {
      {"non-ASCII bytes", "S\xc3\xa9\xff", "K\xe2\x82\xac", "v\xc3\xa9"},
      {"backslash in the key name", "S", "a\\b", "slash"},
      {"backslash in the section makes a deeper key", "Outer\\Inner", "K", "deep"},
      {"1 MB value", "Big", "K", big},
      {"embedded NUL", "S", "nul", std::string("a\0b", 3)},
  };
  for (const auto& r : rows) {
    c.RegistrySaveSetting(r.section, r.key, r.value);
    EXPECT_EQ(c.RegistryGetSetting(r.section, r.key, "d"), r.value) << r.label;
  }
  EXPECT_TRUE(store->HasKey(fakes::FakeSettingsStore::kUser, std::string(kApp) + "\\Outer\\Inner"));
}

TEST_F(RegistryMembersTest, SaveWritesTheBackupWhateverBackupLoadSays) {
  c.RegistryBackupFile(kBackup);
  for (Boolean load : {kFalse, kTrue}) {
    c.RegistryBackupLoad(load);
    c.RegistrySaveSetting("Window", "Colour", load ? "red" : "blue");
    EXPECT_EQ(Stored("Window", "Colour"), load ? "red" : "blue");
    EXPECT_EQ(c.FileReadProfileString(kBackup, "Window", "Colour", "?"), load ? "red" : "blue");
  }
  EXPECT_EQ(profiles->files[kBackup], "[Window]\r\nColour=red\r\n");
}

TEST_F(RegistryMembersTest, BackupLoadReadsTheFileAndRefreshesTheStore) {
  c.RegistryBackupFile(kBackup);
  profiles->files[kBackup] = "[Window]\r\nColour=green\r\n";
  Store("Window", "Colour", "blue");
  // BackupLoad false: the store is read, the file ignored.
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "blue");
  c.RegistryBackupLoad(1);  // only exactly true counts
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "blue");
  c.RegistryBackupLoad(kTrue);
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "green");
  EXPECT_EQ(Stored("Window", "Colour"), "green");
  // A key the file lacks gives the default, which is copied into the store too.
  EXPECT_EQ(c.RegistryGetSetting("Window", "Size", "small"), "small");
  EXPECT_EQ(Stored("Window", "Size"), "small");
  EXPECT_EQ(c.RegistryGetSettingLong("Window", "Width", 640), 640);
  EXPECT_EQ(Stored("Window", "Width"), "640");
  // Without a backup file the flag means nothing.
  c.RegistryBackupFile("");
  Store("Window", "Colour", "blue");
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "blue");
}

TEST_F(RegistryMembersTest, AFailingStoreOrBackupLosesNothingElse) {
  c.RegistryBackupFile(kBackup);
  store->fail_writes = true;
  c.RegistrySaveSetting("S", "K", "kept in the backup");
  EXPECT_EQ(c.FileReadProfileString(kBackup, "S", "K", "?"), "kept in the backup");
  store->fail_writes = false;
  profiles->fail_writes = true;
  c.RegistrySaveSetting("S", "K", "kept in the store");
  EXPECT_EQ(Stored("S", "K"), "kept in the store");
  store->fail_reads = true;
  EXPECT_EQ(c.RegistryGetSetting("S", "K", "default"), "default");
  HostArray<std::string> names = HostArray<std::string>::OneDim(1, 5);
  EXPECT_EQ(c.RegistryGetSections(names, 5), 0);
  EXPECT_EQ(c.RegistryTestSection("S"), kFalse);
  EXPECT_EQ(store->open_keys(), 0u);
}

TEST_F(RegistryMembersTest, DeletesTouchOnlyTheStore) {
  c.RegistryBackupFile(kBackup);
  c.RegistrySaveSetting("A", "K1", "1");
  c.RegistrySaveSetting("A", "K2", "2");
  c.RegistrySaveSetting("A\\Child", "K", "3");
  c.RegistrySaveSetting("B", "K", "4");
  c.RegistryDeleteKey("a", "k1");
  EXPECT_EQ(Stored("A", "K1"), "<absent>");
  EXPECT_EQ(Stored("A", "K2"), "2");
  c.RegistryDeleteKey("A", "Missing");  // no error, nothing changes
  c.RegistryDeleteSection("Missing");
  c.RegistryDeleteSection("A");
  EXPECT_EQ(Stored("A", "K2"), "<absent>");
  EXPECT_EQ(Stored("A\\Child", "K"), "<absent>");
  EXPECT_EQ(Stored("B", "K"), "4");
  EXPECT_EQ(c.FileReadProfileString(kBackup, "A", "K1", "?"), "1");
}

TEST_F(RegistryMembersTest, SectionsFillFromIndexOneAndSignalATooSmallArray) {
  for (const char* s : {"gamma", "Alpha", "beta"}) c.RegistrySaveSetting(s, "K", "v");
  struct Row {
    const char* label;
    Long lower, upper, max;
    Long expected;
    std::vector<std::string> filled;  // entries lower..upper
  } rows[] = {
      {"room for all", 1, 5, 5, 3, {"Alpha", "beta", "gamma", "", ""}},
      {"three sections, MaxSections 2", 1, 5, 2, 3, {"Alpha", "beta", "", "", ""}},
      {"MaxSections 0", 1, 3, 0, 1, {"", "", ""}},
      {"array smaller than MaxSections", 1, 2, 10, 3, {"Alpha", "beta"}},
      {"array from 0 leaves index 0 alone", 0, 3, 3, 3, {"", "Alpha", "beta", "gamma"}},
  };
  for (const auto& r : rows) {
    HostArray<std::string> names = HostArray<std::string>::OneDim(r.lower, r.upper);
    EXPECT_EQ(c.RegistryGetSections(names, r.max), r.expected) << r.label;
    for (Long i = r.lower; i <= r.upper; ++i)
      EXPECT_EQ(*names.At(i), r.filled[static_cast<std::size_t>(i - r.lower)]) << r.label << " index " << i;
  }
  HostArray<std::string> two_dim = HostArray<std::string>::TwoDim(1, 2, 1, 2);
  EXPECT_EQ(c.RegistryGetSections(two_dim, 5), 3);  // wrong rank: counted, nothing stored
  EXPECT_EQ(store->open_keys(), 0u);
}

TEST_F(RegistryMembersTest, SectionsOfAnEmptyApplicationListTheApplications) {
  c.RegistrySaveSetting("S", "K", "v");
  c.RegistryApp("Other");
  c.RegistrySaveSetting("S", "K", "v");
  c.RegistryApp("");
  HostArray<std::string> names = HostArray<std::string>::OneDim(1, 3);
  EXPECT_EQ(c.RegistryGetSections(names, 3), 2);
  EXPECT_EQ(*names.At(1), "Demo");
  EXPECT_EQ(*names.At(2), "Other");
  // And the test of a section finds an application by that name: kept as it is.
  EXPECT_EQ(c.RegistryTestSection("other"), kTrue);
  c.RegistryApp("Missing");
  EXPECT_EQ(c.RegistryGetSections(names, 3), 0);
}

TEST_F(RegistryMembersTest, TestSectionComparesWithoutCase) {
  c.RegistrySaveSetting("Startup", "K", "v");
  struct Row {
    const char* label;
    std::string section;
    Boolean expected;
  } rows[] = {
      {"same case", "Startup", kTrue}, {"other case", "STARTUP", kTrue}, {"missing", "Shutdown", kFalse},
      {"empty", "", kFalse},           {"prefix only", "Start", kFalse}, {"a value name is no section", "K", kFalse},
  };
  for (const auto& r : rows) EXPECT_EQ(c.RegistryTestSection(r.section), r.expected) << r.label;
  EXPECT_EQ(store->open_keys(), 0u);
}

TEST_F(RegistryMembersTest, WithoutAStoreGetsReturnDefaultsAndSavesStillReachTheBackup) {
  platform::Services s = Services();
  s.settings = nullptr;
  Tolva2011Register bare(s);
  bare.RegistryApp("Demo");
  bare.RegistryBackupFile(kBackup);
  bare.RegistrySaveSetting("S", "K", "v");
  EXPECT_EQ(bare.FileReadProfileString(kBackup, "S", "K", "?"), "v");
  EXPECT_EQ(bare.RegistryGetSetting("S", "K", "d"), "d");
  HostArray<std::string> names = HostArray<std::string>::OneDim(1, 1);
  EXPECT_EQ(bare.RegistryGetSections(names, 1), 0);
  EXPECT_EQ(bare.RegistryTestSection("S"), kFalse);
}

}  // namespace
}  // namespace tolva::testing_settings
