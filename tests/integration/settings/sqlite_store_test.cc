// The settings database on real SQLite files: names, enumeration, sub-tree
// deletion and access rights, below the members.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

using namespace std::string_literals;
using platform::kHkeyCurrentUser;
using platform::SettingsKey;

class SqliteStore : public ::testing::Test {
 protected:
  // The sub-keys of `path`, read index by index with other reads in between.
  std::vector<std::string> Children(const std::string& path) {
    SettingsKey key = 0;
    if (store->OpenKey(kHkeyCurrentUser, path, platform::kKeyEnumerateSubKeys, key) != 0) return {"<no key>"};
    std::vector<std::string> names;
    for (std::string name; store->EnumKey(key, static_cast<std::uint32_t>(names.size()), name) == 0; Get("P", "k"))
      names.push_back(name);
    store->CloseKey(key);
    return names;
  }
  std::string Get(const std::string& path, const std::string& name) {
    std::string v;
    return store->GetString(path, name, v) == 0 ? v : "<absent>";
  }

  TempDir dir;
  std::shared_ptr<platform::SettingsStore> store = platform::NewSettingsDatabase(dir / "user.db", dir / "machine.db");
};

TEST_F(SqliteStore, ReadsDoNotCreateTheDatabaseAndTheFirstWriteMakesItPrivate) {
  SettingsKey key = 0;
  EXPECT_EQ(Get("A\\B", "k"), "<absent>");
  EXPECT_EQ(store->OpenKey(kHkeyCurrentUser, "A", platform::kKeyQueryValue, key), platform::kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("A"), platform::kSettingsNotFound);
  EXPECT_EQ(store->DeleteValue("A", "k"), platform::kSettingsNotFound);
  struct stat st;
  EXPECT_NE(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(store->SetString("A\\B", "k", "v"), 0);
  ASSERT_EQ(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(SqliteStore, NamesCompareWithoutCaseAndKeepTheirFirstSpelling) {
  ASSERT_EQ(store->SetString("Software\\App\\Sect", "Key", "1"), 0);
  ASSERT_EQ(store->SetString("SOFTWARE\\app\\SECT", "KEY", "2"), 0);
  EXPECT_EQ(Get("\\software\\\\APP\\sect\\", "key"), "2") << "empty levels are ignored";
  EXPECT_EQ(Children("software\\app"), std::vector<std::string>{"Sect"});
  store->SetString("X", "\xc3\xa9", "lower");
  EXPECT_EQ(Get("X", "\xc3\x89"), "<absent>") << "letters beyond ASCII compare exactly";
}

TEST_F(SqliteStore, SubKeysEnumerateInCaseInsensitiveOrderAndChangesShowAtOnce) {
  for (const char* s : {"delta", "Bravo", "alpha", "Charlie", "_under", "Z9", "a b", "alpha\\deeper"})
    store->SetString("P\\"s + s, "k", "v");
  EXPECT_EQ(Children("P"), (std::vector<std::string>{"_under", "a b", "alpha", "Bravo", "Charlie", "delta", "Z9"}));
  SettingsKey key = 0, no_enum = 0;
  std::string name;
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "P", platform::kKeyEnumerateSubKeys, key), 0);
  ASSERT_EQ(store->EnumKey(key, 6, name), 0);
  EXPECT_EQ(store->EnumKey(key, 7, name), platform::kSettingsNoMoreItems);
  store->DeleteKey("P\\_under");  // in the middle of an enumeration
  ASSERT_EQ(store->EnumKey(key, 0, name), 0);
  EXPECT_EQ(name, "a b");
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "P", platform::kKeyQueryValue, no_enum), 0);
  EXPECT_EQ(store->EnumKey(no_enum, 0, name), platform::kSettingsAccessDenied);
  store->CloseKey(key);
  EXPECT_EQ(store->EnumKey(key, 0, name), platform::kSettingsInvalidHandle);
}

TEST_F(SqliteStore, ValuesEnumerateInCaseInsensitiveOrderWithTypeAndData) {
  SettingsKey key = 0;
  ASSERT_EQ(store->CreateKey(kHkeyCurrentUser, "V\\Key", key), 0);
  struct Value {
    std::string name;
    std::uint32_t type;
    std::string data;
    bool operator==(const Value&) const = default;
  };
  const std::vector<Value> values = {{"", platform::kRegExpandSz, "%HOME%"},
                                     {"Alpha", platform::kRegDword, "\x2a\0\0\0"s},
                                     {"beta", platform::kRegSz, "b"},
                                     {"GAMMA", platform::kRegSz, "nul\0inside"s}};
  for (auto it = values.rbegin(); it != values.rend(); ++it)
    ASSERT_EQ(store->SetValue(key, it->name, it->type, it->data), 0);
  store->CloseKey(key);
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "v\\key", platform::kKeyQueryValue, key), 0);
  std::vector<Value> seen;
  for (Value v; store->EnumValue(key, static_cast<std::uint32_t>(seen.size()), v.name, v.type, v.data) == 0;)
    seen.push_back(v);
  EXPECT_TRUE(seen == values);
  store->CloseKey(key);
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "V\\Key", platform::kKeyEnumerateSubKeys, key), 0);
  Value v;
  EXPECT_EQ(store->EnumValue(key, 0, v.name, v.type, v.data), platform::kSettingsAccessDenied);
  EXPECT_EQ(store->SetValue(key, "x", platform::kRegSz, "x"), platform::kSettingsAccessDenied);
}

TEST_F(SqliteStore, DeletingAKeyTakesItsSubTreeAndNothingBeside) {
  for (const char* p : {"App", "App\\S", "App\\S\\T", "App2", "App]", "App[", "app\\x", "Apq"})
    store->SetString(p, "k", p);
  EXPECT_EQ(store->DeleteKey("APP"), 0);
  std::string left;
  for (const char* p : {"App", "App\\S", "App\\S\\T", "App2", "App]", "App[", "app\\x", "Apq"})
    left += Get(p, "k") + " ";
  EXPECT_EQ(left, "<absent> <absent> <absent> App2 App] App[ <absent> Apq ");
  EXPECT_EQ(store->DeleteKey("App"), platform::kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("\\"), platform::kSettingsInvalidParameter);
  EXPECT_EQ(store->DeleteValue("App2", "K"), 0);
  EXPECT_EQ(store->DeleteValue("App2", "K"), platform::kSettingsNotFound);
}

TEST_F(SqliteStore, RootsAndKeyNamesOutsideTheStoreAreRefused) {
  SettingsKey key = 0;
  EXPECT_EQ(store->CreateKey(kHkeyCurrentUser, std::string(256, 'k'), key), platform::kSettingsInvalidParameter);
  EXPECT_EQ(store->CreateKey(kHkeyCurrentUser, std::string(255, 'k'), key), 0);
  EXPECT_EQ(store->CreateKey(0x80000009, "x", key), platform::kSettingsInvalidHandle);
  // The classes root is the machine root's SOFTWARE\Classes.
  ASSERT_EQ(store->CreateKey(platform::kHkeyClassesRoot, ".txt", key), 0);
  ASSERT_EQ(store->SetValue(key, "", platform::kRegSz, "txtfile"), 0);
  Tolva2011Register c(DatabaseServices(dir / "user.db", dir / "machine.db"));
  EXPECT_EQ(c.QueryValue(static_cast<Long>(platform::kHkeyLocalMachine), "SOFTWARE\\Classes\\.TXT", ""),
            Variant::FromString("txtfile"));
}

}  // namespace
}  // namespace tolva::testing_settings
