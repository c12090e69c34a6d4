// One value of the store, and the program registered for an extension.
#include <string>

#include "settings/desktop_associations.h"
#include "unit/settings/settings_fixture.h"

namespace tolva::testing_settings {
namespace {

using fakes::FakeSettingsStore;
constexpr Long kMachine = static_cast<Long>(platform::kHkeyLocalMachine);
constexpr Long kUser = static_cast<Long>(platform::kHkeyCurrentUser);

std::string Dword(std::uint32_t v) {
  return {static_cast<char>(v & 0xff), static_cast<char>((v >> 8) & 0xff), static_cast<char>((v >> 16) & 0xff),
          static_cast<char>(v >> 24)};
}

class QueryMembersTest : public SettingsTest {};

TEST_F(QueryMembersTest, ValuesComeBackByType) {
  env->vars["HOME"] = "/home/ann";
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "", platform::kRegSz, std::string("plain\0junk", 10));
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "exp", platform::kRegExpandSz, "%HOME%\\x %NOPE% 100%");
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "num", platform::kRegDword, Dword(0xfffffffe));
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "short", platform::kRegDword, "ab");
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "bin", 3, "raw");
  store->Put(FakeSettingsStore::kUser, "Software\\U", "u", platform::kRegSz, "user");
  struct Row {
    const char* label;
    Long root;
    std::string key, name;
    Variant expected;
  } rows[] = {
      {"string up to its first NUL", kMachine, "SOFTWARE\\T", "", Variant::FromString("plain")},
      {"expandable: defined names expanded, others kept", kMachine, "software\\t", "EXP",
       Variant::FromString("/home/ann\\x %NOPE% 100%")},
      {"number as a Long", kMachine, "SOFTWARE\\T", "num", Variant::FromLong(-2)},
      {"number of the wrong size is not read", kMachine, "SOFTWARE\\T", "short", Variant::FromString("")},
      {"other types are not read", kMachine, "SOFTWARE\\T", "bin", Variant::FromString("")},
      {"missing value", kMachine, "SOFTWARE\\T", "none", Variant::FromString("")},
      {"missing key", kMachine, "SOFTWARE\\None", "", Variant::FromString("")},
      {"per-user root", kUser, "Software\\U", "u", Variant::FromString("user")},
      {"unknown root", 0x12345, "SOFTWARE\\T", "", Variant::FromString("")},
  };
  for (const auto& r : rows) EXPECT_EQ(c.QueryValue(r.root, r.key, r.name), r.expected) << r.label;
  EXPECT_EQ(store->open_keys(), 0u);
}

TEST_F(QueryMembersTest, ARootTheCallerMayNotWriteYieldsNothing) {
  // The wide access mask is deliberate: read-only callers get "".
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\T", "", platform::kRegSz, "v");
  store->machine_writable = false;
  EXPECT_EQ(c.QueryValue(kMachine, "SOFTWARE\\T", ""), Variant::FromString(""));
}

TEST_F(QueryMembersTest, ExpansionIsCutToTheBufferOfTheValuesSizeAnd400) {
  env->vars["LONG"] = std::string(1000, 'y');
  store->Put(FakeSettingsStore::kMachine, "K", "", platform::kRegExpandSz, "%LONG%");
  const std::string got = c.QueryValue(kMachine, "K", "").AsString();
  EXPECT_EQ(got, std::string(6 + 400 - 1, 'y'));
}

class ProgramForExtensionTest : public SettingsTest {
 protected:
  void Classes() {
    store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\Classes\\.txt", "", platform::kRegSz, "txtfile");
    store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\Classes\\txtfile", "", platform::kRegSz, "Text Document");
    store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\Classes\\txtfile\\shell\\open\\command", "",
               platform::kRegExpandSz, "%EDITOR% %1");
  }
  void Desktop() {
    env->vars["HOME"] = "/home/ann";
    env->vars["XDG_DATA_DIRS"] = "/usr/share";
    files->AddFile("/usr/share/mime/globs2", "# comment\n50:text/plain:*.txt\n10:text/x-low:*.txt\n");
    files->AddFile("/home/ann/.local/share/mime/globs2", "60:text/x-mine:*.TXT\n");
    files->AddFile("/home/ann/.config/mimeapps.list",
                   "[Added Associations]\ntext/x-mine=other.desktop;\n"
                   "[Default Applications]\ntext/x-mine=missing.desktop;org-editor.desktop;\n");
    files->AddFile("/usr/share/applications/org/editor.desktop",
                   "[Desktop Entry]\nName=Editor\nName[de]=Bearbeiter\nExec=editor --new %U %i\n"
                   "[Desktop Action x]\nExec=wrong\n");
  }
  void Profile() { profiles->files["/windows/win.ini"] = "[Extensions]\ntxt=C:\\bin\\notepad.exe ^.txt\n"; }

  bool Ask(const std::string& ext) {
    name = call = "stale";
    return c.QueryProgramForExtension(ext, name, call) == kTrue;
  }
  std::string name, call;
};

TEST_F(ProgramForExtensionTest, TheStoreWinsThenTheDesktopThenTheSystemProfile) {
  env->vars["EDITOR"] = "vi";
  Classes();
  Desktop();
  Profile();
  ASSERT_TRUE(Ask(".txt"));
  EXPECT_EQ(name, "Text Document");
  EXPECT_EQ(call, "vi %1");
  store = std::make_shared<FakeSettingsStore>();
  Tolva2011Register no_store(Services());
  name = call = "";
  ASSERT_EQ(no_store.QueryProgramForExtension("txt", name, call), kTrue);
  EXPECT_EQ(name, "Editor");
  EXPECT_EQ(call, "editor --new %1");
  files = std::make_shared<fakes::FakeFileSystem>();
  Tolva2011Register profile_only(Services());
  ASSERT_EQ(profile_only.QueryProgramForExtension("TXT", name, call), kTrue);
  EXPECT_EQ(name, "notepad.exe");
  EXPECT_EQ(call, "C:\\bin\\notepad.exe %1");
}

TEST_F(ProgramForExtensionTest, NothingKnownGivesFalseAndEmptyTexts) {
  Classes();
  Desktop();
  Profile();
  for (const char* ext : {"", ".", "zzz", "../txt", "a/b"}) {
    EXPECT_FALSE(Ask(ext)) << ext;
    EXPECT_EQ(name, "") << ext;
    EXPECT_EQ(call, "") << ext;
  }
}

TEST_F(ProgramForExtensionTest, AClassWithoutAnOpenCommandFallsThrough) {
  store->Put(FakeSettingsStore::kMachine, "SOFTWARE\\Classes\\.txt", "", platform::kRegSz, "txtfile");
  Profile();
  ASSERT_TRUE(Ask("txt"));
  EXPECT_EQ(name, "notepad.exe");
}

TEST(DesktopExecTest, FieldCodesBecomeTheFilePlaceholderOrVanish) {
  struct Row {
    const char* label;
    const char* exec;
    const char* command;
  } rows[] = {
      {"single file", "gedit %f", "gedit %1"},
      {"file list", "gimp-2.10 %F", "gimp-2.10 %1"},
      {"URL list", "firefox %U", "firefox %1"},
      {"icon and caption dropped", "app %i %c %u", "app   %1"},
      {"escaped percent", "printf 100%% %f", "printf 100% %1"},
      {"no field code", "xterm", "xterm"},
      {"trailing lone percent", "odd %", "odd %"},
  };
  for (const auto& r : rows) EXPECT_EQ(settings::DesktopAssociations::CommandFromExec(r.exec), r.command) << r.label;
}

}  // namespace
}  // namespace tolva::testing_settings
