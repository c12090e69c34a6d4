// The settings database on real SQLite files: names, enumeration, sub-tree
// deletion, machine root, and the component's members on top of it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

using platform::SettingsKey;

class SqliteStoreTest : public ::testing::Test {
 protected:
  SqliteStoreTest() : store(platform::NewSettingsDatabase(dir / "user.db", dir / "machine.db")) {}

  std::vector<std::string> Children(SettingsKey root, const std::string& path) {
    std::vector<std::string> names;
    SettingsKey key = 0;
    if (store->OpenKey(root, path, platform::kKeyEnumerateSubKeys, key) != platform::kSettingsOk) return {"<no key>"};
    std::string name;
    for (std::uint32_t i = 0; store->EnumKey(key, i, name) == platform::kSettingsOk; ++i) names.push_back(name);
    store->CloseKey(key);
    return names;
  }
  std::string Get(const std::string& path, const std::string& name) {
    std::string v;
    return store->GetString(path, name, v) == platform::kSettingsOk ? v : "<absent>";
  }

  TempDir dir;
  std::shared_ptr<platform::SettingsStore> store;
};

TEST_F(SqliteStoreTest, ReadsDoNotCreateTheDatabaseAndTheFirstWriteMakesItPrivate) {
  EXPECT_EQ(Get("A\\B", "k"), "<absent>");
  SettingsKey key = 0;
  EXPECT_EQ(store->OpenKey(platform::kHkeyCurrentUser, "A", platform::kKeyQueryValue, key),
            platform::kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("A"), platform::kSettingsNotFound);
  struct stat st;
  EXPECT_NE(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(store->SetString("A\\B", "k", "v"), platform::kSettingsOk);
  ASSERT_EQ(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(SqliteStoreTest, NamesCompareWithoutCaseAndKeepTheirFirstSpelling) {
  ASSERT_EQ(store->SetString("Software\\App\\Sect", "Key", "1"), platform::kSettingsOk);
  ASSERT_EQ(store->SetString("SOFTWARE\\app\\SECT", "KEY", "2"), platform::kSettingsOk);
  EXPECT_EQ(Get("software\\APP\\sect", "key"), "2");
  EXPECT_EQ(Children(platform::kHkeyCurrentUser, "software\\app"), std::vector<std::string>{"Sect"});
  // Empty levels are ignored: these all name the same key.
  EXPECT_EQ(Get("\\Software\\\\App\\Sect\\", "Key"), "2");
  // Letters beyond ASCII compare exactly.
  store->SetString("X", "\xc3\xa9", "lower");
  EXPECT_EQ(Get("X", "\xc3\x89"), "<absent>");
  EXPECT_EQ(Get("X", "\xc3\xa9"), "lower");
}

TEST_F(SqliteStoreTest, SubKeysEnumerateInCaseInsensitiveOrderAndStayStable) {
  for (const char* s : {"delta", "Bravo", "alpha", "Charlie", "_under", "Z9", "a b"})
    store->SetString(std::string("P\\") + s, "k", "v");
  store->SetString("P\\alpha\\deeper", "k", "v");
  const std::vector<std::string> expected = {"_under", "a b", "alpha", "Bravo", "Charlie", "delta", "Z9"};
  EXPECT_EQ(Children(platform::kHkeyCurrentUser, "P"), expected);
  // Index by index, with other reads in between, the order holds.
  SettingsKey key = 0;
  ASSERT_EQ(store->OpenKey(platform::kHkeyCurrentUser, "P", platform::kKeyEnumerateSubKeys, key), 0);
  std::string name;
  for (std::uint32_t i = expected.size(); i-- > 0;) {
    ASSERT_EQ(store->EnumKey(key, i, name), 0);
    EXPECT_EQ(name, expected[i]) << i;
    Get("P\\delta", "k");
  }
  EXPECT_EQ(store->EnumKey(key, 7, name), platform::kSettingsNoMoreItems);
  // A change shows at once, also in the middle of an enumeration.
  store->DeleteKey("P\\_under");
  ASSERT_EQ(store->EnumKey(key, 0, name), 0);
  EXPECT_EQ(name, "a b");
  SettingsKey no_enum = 0;
  ASSERT_EQ(store->OpenKey(platform::kHkeyCurrentUser, "P", platform::kKeyQueryValue, no_enum), 0);
  EXPECT_EQ(store->EnumKey(no_enum, 0, name), platform::kSettingsAccessDenied);
  store->CloseKey(no_enum);
  store->CloseKey(key);
  EXPECT_EQ(store->EnumKey(key, 0, name), platform::kSettingsInvalidHandle);
}

TEST_F(SqliteStoreTest, ValuesEnumerateInCaseInsensitiveOrderWithTypeAndData) {
  SettingsKey key = 0;
  ASSERT_EQ(store->CreateKey(platform::kHkeyCurrentUser, "V\\Key", key), 0);
  const std::string number("\x2a\x00\x00\x00", 4);
  ASSERT_EQ(store->SetValue(key, "beta", platform::kRegSz, "b"), 0);
  ASSERT_EQ(store->SetValue(key, "Alpha", platform::kRegDword, number), 0);
  ASSERT_EQ(store->SetValue(key, "", platform::kRegExpandSz, "%HOME%"), 0);
  ASSERT_EQ(store->SetValue(key, "GAMMA", platform::kRegSz, std::string("nul\0inside", 10)), 0);
  store->CloseKey(key);
  struct Expected {
    std::string name;
    std::uint32_t type;
    std::string data;
  };
  const std::vector<Expected> expected = {{"", platform::kRegExpandSz, "%HOME%"},
                                          {"Alpha", platform::kRegDword, number},
                                          {"beta", platform::kRegSz, "b"},
                                          {"GAMMA", platform::kRegSz, std::string("nul\0inside", 10)}};
  ASSERT_EQ(store->OpenKey(platform::kHkeyCurrentUser, "v\\key", platform::kKeyQueryValue, key), 0);
  std::string name, data;
  std::uint32_t type = 0;
  for (std::uint32_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(store->EnumValue(key, i, name, type, data), 0) << i;
    EXPECT_EQ(name, expected[i].name) << i;
    EXPECT_EQ(type, expected[i].type) << i;
    EXPECT_EQ(data, expected[i].data) << i;
  }
  EXPECT_EQ(store->EnumValue(key, 4, name, type, data), platform::kSettingsNoMoreItems);
  store->CloseKey(key);
  EXPECT_EQ(store->EnumValue(key, 0, name, type, data), platform::kSettingsInvalidHandle);
  // Enumerating values needs the right to query them.
  ASSERT_EQ(store->OpenKey(platform::kHkeyCurrentUser, "V\\Key", platform::kKeyEnumerateSubKeys, key), 0);
  EXPECT_EQ(store->EnumValue(key, 0, name, type, data), platform::kSettingsAccessDenied);
  store->CloseKey(key);
}

TEST_F(SqliteStoreTest, DeletingAKeyTakesItsSubTreeAndNothingBeside) {
  for (const char* p : {"App", "App\\S", "App\\S\\T", "App2", "App]", "App[", "app\\x", "Apq"})
    store->SetString(p, "k", p);
  EXPECT_EQ(store->DeleteKey("APP"), platform::kSettingsOk);
  for (const char* p : {"App", "App\\S", "App\\S\\T", "app\\x"}) EXPECT_EQ(Get(p, "k"), "<absent>") << p;
  for (const char* p : {"App2", "App]", "App[", "Apq"}) EXPECT_EQ(Get(p, "k"), p) << p;
  EXPECT_EQ(store->DeleteKey("App"), platform::kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("\\"), platform::kSettingsInvalidParameter);
  EXPECT_EQ(store->DeleteValue("App2", "K"), platform::kSettingsOk);
  EXPECT_EQ(store->DeleteValue("App2", "K"), platform::kSettingsNotFound);
}

TEST_F(SqliteStoreTest, TypedValuesOnTheMachineRoot) {
  SettingsKey key = 0;
  ASSERT_EQ(store->CreateKey(platform::kHkeyClassesRoot, ".txt", key), 0);
  EXPECT_EQ(store->SetValue(key, "", platform::kRegSz, "txtfile"), 0);
  EXPECT_EQ(store->SetValue(key, "n", platform::kRegDword, std::string("\x07\0\0\0", 4)), 0);
  store->CloseKey(key);
  Tolva2011Register c(DatabaseServices(dir / "user.db", dir / "machine.db"));
  const Long machine = static_cast<Long>(platform::kHkeyLocalMachine);
  EXPECT_EQ(c.QueryValue(machine, "SOFTWARE\\Classes\\.TXT", ""), Variant::FromString("txtfile"));
  EXPECT_EQ(c.QueryValue(machine, "SOFTWARE\\Classes\\.txt", "N"), Variant::FromLong(7));
  EXPECT_EQ(c.QueryValue(machine, "SOFTWARE\\Classes\\.doc", ""), Variant::FromString(""));
  // Key names longer than the store allows are refused, not truncated.
  EXPECT_EQ(store->CreateKey(platform::kHkeyCurrentUser, std::string(256, 'k'), key),
            platform::kSettingsInvalidParameter);
  EXPECT_EQ(store->CreateKey(0x80000009, "x", key), platform::kSettingsInvalidHandle);
}

TEST_F(SqliteStoreTest, TheMembersRoundTripOddValuesThroughTheDatabase) {
  Tolva2011Register c(DatabaseServices(dir / "user.db"));
  c.RegistryApp("Demo \xc3\xa9");
  const std::string big(1 << 20, 'z');
  const std::string binary("\x01\x02\0\xff", 4);
  c.RegistrySaveSetting("S", "big", big);
  c.RegistrySaveSetting("S", "bin", binary);
  c.RegistrySaveSetting("S", "empty", "");
  c.RegistrySaveSettingDouble("S", "d", -1.25e-3);
  c.RegistrySaveSettingLong("S", "l", 2147483647);
  c.RegistrySaveSettingBoolean("S", "b", kTrue);
  EXPECT_EQ(c.RegistryGetSetting("S", "big", ""), big);
  EXPECT_EQ(c.RegistryGetSetting("S", "bin", ""), binary);
  EXPECT_EQ(c.RegistryGetSetting("S", "empty", "default"), "");
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("s", "D", 0), -1.25e-3);
  EXPECT_EQ(c.RegistryGetSettingLong("S", "l", 0), 2147483647);
  EXPECT_EQ(c.RegistryGetSettingBoolean("S", "b", kFalse), kTrue);
  EXPECT_EQ(c.RegistryTestSection("s"), kTrue);
}

TEST_F(SqliteStoreTest, TenThousandSectionsListInOrderAndSignalOverflow) {
  Tolva2011Register c(DatabaseServices(dir / "user.db"));
  c.RegistryApp("Many");
  for (int i = 0; i < 10000; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "S%05d", i);
    c.RegistrySaveSetting(name, "k", "v");
  }
  HostArray<std::string> names = HostArray<std::string>::OneDim(1, 10000);
  EXPECT_EQ(c.RegistryGetSections(names, 10000), 10000);
  EXPECT_EQ(*names.At(1), "S00000");
  EXPECT_EQ(*names.At(10000), "S09999");
  EXPECT_EQ(c.RegistryGetSections(names, 9999), 10000);
}

TEST_F(SqliteStoreTest, TheBackupFileIsWrittenBesideTheDatabaseAndMayBeMissing) {
  Tolva2011Register c(DatabaseServices(dir / "user.db"));
  c.RegistryApp("Demo");
  c.RegistryBackupFile(dir / "backup.ini");
  c.RegistrySaveSetting("Window", "Colour", "red");
  EXPECT_EQ(TempDir::Read(dir / "backup.ini"), "[Window]\r\nColour=red\r\n");
  c.RegistryBackupFile(dir / "missing/backup.ini");
  c.RegistrySaveSetting("Window", "Colour", "blue");
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", ""), "blue");
  c.RegistryBackupLoad(kTrue);
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "from default"), "from default");
}

}  // namespace
}  // namespace tolva::testing_settings
