// The settings database on real SQLite files, below the members: what a read
// or a write does to the file, open keys and their rights, enumeration.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

using namespace std::string_literals;
using namespace platform;

class SqliteStore : public ::testing::Test {
 protected:
  TempDir dir;
  std::shared_ptr<SettingsStore> store = NewSettingsDatabase(dir / "user.db", dir / "machine.db");
  SettingsKey key = 0;
  std::string name, data;
  std::uint32_t type = 0;
};

TEST_F(SqliteStore, ReadsAndDeletesDoNotCreateTheDatabaseAndTheFirstWriteMakesItPrivate) {
  EXPECT_EQ(store->GetString("A\\B", "k", data), kSettingsNotFound);
  EXPECT_EQ(store->OpenKey(kHkeyCurrentUser, "A", kKeyQueryValue, key), kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("A") + store->DeleteValue("A", "k"), 2 * kSettingsNotFound);
  struct stat st;
  EXPECT_NE(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(store->SetString("\\A\\\\B\\", "K", "v"), 0);
  ASSERT_EQ(::stat((dir / "user.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_EQ(store->GetString("a\\b", "k", data), 0) << "empty levels are ignored, ASCII names fold";
  EXPECT_EQ(store->GetString("A\\B", "\xc3\xa9", data), kSettingsNotFound);
  EXPECT_EQ(store->DeleteValue("A\\B", "K"), 0);
  EXPECT_EQ(store->DeleteValue("A\\B", "K"), kSettingsNotFound);
  EXPECT_EQ(store->DeleteKey("\\"), kSettingsInvalidParameter);
  EXPECT_EQ(store->DeleteKey("a"), 0);
  EXPECT_EQ(store->DeleteKey("A"), kSettingsNotFound);
}

// Sub-keys keep their first spelling and list in case-insensitive order.
TEST_F(SqliteStore, SubKeysAndValuesEnumerateInCaseInsensitiveOrder) {
  for (const char* s : {"delta", "Bravo", "alpha", "_under", "Z9", "a b", "alpha\\deeper", "ALPHA"})
    store->SetString("P\\"s + s, "k", "v");
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "p", kKeyEnumerateSubKeys, key), 0);
  std::string names;
  for (std::uint32_t i = 5; store->EnumKey(key, i, name) == 0; i = i ? i - 1 : 99) names += name + "|";
  EXPECT_EQ(names, "Z9|delta|Bravo|alpha|a b|_under|");
  EXPECT_EQ(store->EnumValue(key, 0, name, type, data), kSettingsAccessDenied);
  store->CloseKey(key);
  EXPECT_EQ(store->EnumKey(key, 0, name), kSettingsInvalidHandle);

  ASSERT_EQ(store->CreateKey(kHkeyCurrentUser, "V", key), 0);
  for (const char* n : {"GAMMA", "beta", "", "Alpha"}) store->SetValue(key, n, kRegExpandSz, n + "\0x"s);
  store->CloseKey(key);
  ASSERT_EQ(store->OpenKey(kHkeyCurrentUser, "v", kKeyQueryValue, key), 0);
  names.clear();
  for (std::uint32_t i = 0; store->EnumValue(key, i, name, type, data) == 0; ++i)
    names += name + "=" + std::to_string(type) + ":" + data + "|";
  EXPECT_EQ(names, "=2:\0x|Alpha=2:Alpha\0x|beta=2:beta\0x|GAMMA=2:GAMMA\0x|"s);
  EXPECT_EQ(store->GetString("V", "beta", data), 0) << "an expandable string is a string too";
  EXPECT_EQ(store->EnumKey(key, 0, name), kSettingsAccessDenied);
  EXPECT_EQ(store->SetValue(key, "x", kRegSz, "x"), kSettingsAccessDenied);
}

}  // namespace
}  // namespace tolva::testing_settings
