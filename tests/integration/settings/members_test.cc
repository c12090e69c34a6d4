// The settings members on a real database, with the profile store, file
// system and a 1280 x 1024 pixel screen (19200 x 15360 twips) faked.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "fakes/fake_form.h"
#include "fakes/fake_profile_store.h"
#include "fakes/fake_system_info.h"
#include "fakes/fake_window_services.h"
#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

using namespace std::string_literals;
using platform::kRegSz;
constexpr const char* kApp = "Software\\VB and VBA Program Settings\\Demo\\";
constexpr const char* kBackup = "/data/backup.ini";
constexpr Long kMachine = static_cast<Long>(platform::kHkeyLocalMachine);
constexpr Integer kFixed = 1, kSizable = 2;

class Members : public ::testing::Test {
 protected:
  Members() {
    windows->work_area = {0, 0, 1280, 1024};
    c.RegistryApp("Demo");
  }
  platform::Services Services() {
    platform::Services s;
    s.settings = store, s.profiles = profiles, s.files = files, s.windows = windows, s.system = sys;
    return s;
  }
  // The stored texts of keys of a section of the Demo application, "<absent>" for a missing one.
  std::string Stored(const std::string& section, std::initializer_list<const char*> keys) {
    std::string out, v;
    for (const char* key : keys)
      out += (out.empty() ? "" : " ") + (store->GetString(kApp + section, key, v) == 0 ? v : "<absent>"s);
    return out;
  }
  void Store(const std::string& section, const std::string& key, const std::string& v) {
    store->SetString(kApp + section, key, v);
  }
  void Machine(const std::string& path, const std::string& name, std::uint32_t type, const std::string& data) {
    platform::SettingsKey key = 0;
    store->SqliteSettingsStore::CreateKey(platform::kHkeyLocalMachine, path, key);
    store->SetValue(key, name, type, data);
    store->SqliteSettingsStore::CloseKey(key);
  }
  static std::string Place(const fakes::FakeForm& f) {
    return std::to_string(static_cast<long>(f.left)) + " " + std::to_string(static_cast<long>(f.top)) + " " +
           std::to_string(static_cast<long>(f.width)) + " " + std::to_string(static_cast<long>(f.height));
  }

  TempDir dir;
  std::shared_ptr<CountingStore> store = std::make_shared<CountingStore>(dir / "user.db", dir / "machine.db");
  std::shared_ptr<fakes::FakeProfileStore> profiles = std::make_shared<fakes::FakeProfileStore>();
  std::shared_ptr<fakes::FakeFileSystem> files = std::make_shared<fakes::FakeFileSystem>();
  std::shared_ptr<fakes::FakeWindowServices> windows = std::make_shared<fakes::FakeWindowServices>(96);
  std::shared_ptr<fakes::FakeSystemInfo> sys = std::make_shared<fakes::FakeSystemInfo>();
  Tolva2011Register c{Services()};
};

TEST_F(Members, SavedValuesReadBackWithTheirBytesAndTypedOnesAsText) {
  const std::string big(1 << 20, 'x');
  const std::string rows[][3] = {{"S\xc3\xa9\xff", "K\xe2\x82\xac", "v\xc3\xa9"},
                                 {"S", "a\\b", "in a value name"},
                                 {"Outer\\Inner", "K", "a deeper key"},
                                 {"Big", "K", big},
                                 {"S", "nul", "a\0b"s},
                                 {"S", "pad", "  padded  "}};
  for (const auto& [section, key, value] : rows) {
    c.RegistrySaveSetting(section, key, value);
    EXPECT_EQ(c.RegistryGetSetting(section, key, "d"), value) << key;
  }
  EXPECT_EQ(c.RegistryGetSetting("outer\\INNER", "k", "d"), "a deeper key") << "names compare without case";
  c.RegistrySaveSettingLong("T", "Long", -42);
  c.RegistrySaveSettingDouble("T", "Double", -1.25e-3);
  c.RegistrySaveSettingBoolean("T", "On", kTrue);
  c.RegistrySaveSettingBoolean("T", "Off", kFalse);
  EXPECT_EQ(Stored("T", {"Long", "Double", "On", "Off"}), "-42 -0.00125 True False");
  EXPECT_EQ(c.RegistryGetSettingLong("T", "Long", 0), -42);
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("T", "Double", 0), -1.25e-3);
  EXPECT_EQ(c.RegistryGetSettingBoolean("T", "On", kFalse), kTrue);
  EXPECT_EQ(c.RegistryGetSettingBoolean("T", "Off", kTrue), kFalse);
  // A text that is no number reads as 0, not as the default; one that is no boolean reads as the default.
  Store("T", "Text", "3.5abc");
  EXPECT_EQ(c.RegistryGetSettingLong("T", "Text", -7), 4);
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("T", "On", 1e20), 0);
  EXPECT_EQ(c.RegistryGetSettingBoolean("T", "Text", kTrue), kTrue);
  EXPECT_DOUBLE_EQ(c.RegistryGetSettingDouble("T", "Absent", 1e20), 1e20) << "the default travels as its text";
}

// Without an application, or with an empty section or key name, nothing is
// read or written, in the store or in the backup.
TEST_F(Members, EmptyNamesAreRefusedQuietly) {
  Store("S", "K", "stored");
  store->writes = 0;
  c.RegistryBackupFile(kBackup);
  const std::string rows[][3] = {{"", "S", "K"}, {"Demo", "", "K"}, {"Demo", "S", ""}};
  for (const auto& [app, section, key] : rows) {
    c.RegistryApp(app);
    c.RegistrySaveSetting(section, key, "v");
    EXPECT_EQ(c.RegistryGetSetting(section, key, "dflt"), "dflt") << app << "|" << section << "|" << key;
    c.RegistryDeleteKey(section, key);
  }
  c.RegistryDeleteSection("");
  c.RegistryApp("");
  c.RegistryDeleteSection("S");
  EXPECT_EQ(store->writes + profiles->writes, 0);
  EXPECT_EQ(Stored("S", {"K"}), "stored");
}

TEST_F(Members, SavesReachTheBackupWhichWinsOnlyWhenBackupLoadIsTrue) {
  c.RegistryBackupFile(kBackup);
  for (Boolean load : {kTrue, kFalse}) {
    c.RegistryBackupLoad(load);
    c.RegistrySaveSetting("Window", "Colour", load ? "red" : "blue");
    EXPECT_EQ(Stored("Window", {"Colour"}), load ? "red" : "blue");
  }
  EXPECT_EQ(profiles->files[kBackup], "[Window]\r\nColour=blue\r\n");
  profiles->files[kBackup] = "[Window]\r\nColour=green\r\n";
  c.RegistryBackupLoad(1);  // only exactly true counts
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "blue");
  c.RegistryBackupLoad(kTrue);
  EXPECT_EQ(c.RegistryGetSetting("Window", "Colour", "d"), "green");
  EXPECT_EQ(c.RegistryGetSettingLong("Window", "Width", 640), 640);
  // Each read from the backup refreshes the store, with the default where the backup has no key.
  EXPECT_EQ(Stored("Window", {"Colour", "Width"}), "green 640");
}

TEST_F(Members, DeletesTakeAValueOrASectionWithItsSubSectionsFromTheStoreOnly) {
  c.RegistryBackupFile(kBackup);
  for (const char* s : {"A", "A\\Child", "A]", "A[", "A2", "B"}) c.RegistrySaveSetting(s, "K1", s);
  c.RegistrySaveSetting("A", "K2", "2");
  c.RegistryDeleteKey("a", "k1");
  c.RegistryDeleteKey("A", "Missing");
  c.RegistryDeleteSection("Missing");
  EXPECT_EQ(Stored("A", {"K1", "K2"}), "<absent> 2");
  c.RegistryDeleteSection("A");
  std::string left;
  for (const char* s : {"A", "A\\Child", "A]", "A[", "A2", "B"}) left += Stored(s, {"K1", "K2"}) + "|";
  EXPECT_EQ(left, "<absent> <absent>|<absent> <absent>|A] <absent>|A[ <absent>|A2 <absent>|B <absent>|");
  EXPECT_EQ(c.FileReadProfileString(kBackup, "A", "K1", "?"), "A");
}

TEST_F(Members, SectionsListInCaseInsensitiveOrderFromIndexOneAndSignalATooSmallArray) {
  for (const char* s : {"gamma", "alpha", "Beta"}) c.RegistrySaveSetting(s, "K", "v");
  struct Row {
    Long lower, upper, max, expected;
    std::vector<std::string> filled;  // entries lower..upper
  } rows[] = {{1, 5, 2, 3, {"alpha", "Beta", "", "", ""}},
              {1, 3, 0, 1, {"", "", ""}},
              {1, 2, 10, 3, {"alpha", "Beta"}},
              {0, 3, 3, 3, {"", "alpha", "Beta", "gamma"}}};
  for (const auto& r : rows) {
    HostArray<std::string> names = HostArray<std::string>::OneDim(r.lower, r.upper);
    EXPECT_EQ(c.RegistryGetSections(names, r.max), r.expected) << r.upper << " " << r.max;
    for (Long i = r.lower; i <= r.upper; ++i)
      EXPECT_EQ(*names.At(i), r.filled[static_cast<std::size_t>(i - r.lower)]) << r.upper << " " << r.max << " " << i;
  }
  HostArray<std::string> names = HostArray<std::string>::TwoDim(1, 2, 1, 2);
  EXPECT_EQ(c.RegistryGetSections(names, 5), 3);  // wrong rank: counted, nothing stored
  names = HostArray<std::string>::OneDim(1, 3);
  const std::pair<const char*, Boolean> tests[] = {{"GAMMA", kTrue}, {"delta", kFalse}, {"Bet", kFalse}, {"K", kFalse}};
  for (auto [section, expected] : tests) EXPECT_EQ(c.RegistryTestSection(section), expected) << section;
  EXPECT_EQ(store->open_keys, 0);
  // Kept on purpose: with no application, the sections are the applications.
  c.RegistryApp("Other");
  c.RegistrySaveSetting("S", "K", "v");
  c.RegistryApp("");
  EXPECT_EQ(c.RegistryGetSections(names, 3), 2);
  EXPECT_EQ(*names.At(1) + " " + *names.At(2), "Demo Other");
  EXPECT_EQ(c.RegistryTestSection("other"), kTrue);
  c.RegistryApp("Missing");
  EXPECT_EQ(c.RegistryGetSections(names, 3), 0);
  EXPECT_EQ(c.RegistryTestSection("gamma"), kFalse);
}

TEST_F(Members, WithoutAStoreGetsReturnDefaultsAndSavesStillReachTheBackup) {
  platform::Services s = Services();
  s.settings = nullptr;
  Tolva2011Register bare(s);
  bare.RegistryApp("Demo");
  bare.RegistryBackupFile(kBackup);
  bare.RegistrySaveSetting("S", "K", "v");
  bare.RegistryDeleteSection("S");
  EXPECT_EQ(profiles->files[kBackup], "[S]\r\nK=v\r\n");
  EXPECT_EQ(bare.RegistryGetSetting("S", "K", "d"), "d");
  HostArray<std::string> names = HostArray<std::string>::OneDim(1, 1);
  EXPECT_EQ(bare.RegistryGetSections(names, 1), 0);
  EXPECT_EQ(bare.QueryValue(kMachine, "K", ""), Variant::FromString(""));
}

TEST_F(Members, QueryValueReadsEachTypeItsOwnWay) {
  sys->environment = {{"HOME", "/home/ann"}, {"LONG", std::string(1000, 'y')}};
  Machine("SOFTWARE\\T", "", kRegSz, "plain\0junk"s);
  Machine("SOFTWARE\\T", "exp", platform::kRegExpandSz, "%HOME%\\x %NOPE% 100%");
  Machine("SOFTWARE\\T", "long", platform::kRegExpandSz, "%LONG%");
  Machine("SOFTWARE\\T", "num", platform::kRegDword, "\xfe\xff\xff\xff"s);
  Machine("SOFTWARE\\T", "short", platform::kRegDword, "ab");
  Machine("SOFTWARE\\T", "bin", 3, "raw");
  auto text = [](const std::string& t) { return Variant::FromString(t); };
  const std::pair<const char*, Variant> rows[] = {{"", text("plain")},  // up to its first NUL
                                                  {"EXP", text("/home/ann\\x %NOPE% 100%")},
                                                  {"long", text(std::string(6 + 400 - 1, 'y'))},  // the buffer's size
                                                  {"num", Variant::FromLong(-2)},
                                                  {"short", text("")},  // a number of the wrong size
                                                  {"bin", text("")},
                                                  {"none", text("")}};
  for (const auto& [name, expected] : rows) EXPECT_EQ(c.QueryValue(kMachine, "software\\t", name), expected) << name;
  EXPECT_EQ(c.QueryValue(kMachine, "SOFTWARE\\None", ""), text(""));
  EXPECT_EQ(c.QueryValue(0x12345, "SOFTWARE\\T", ""), text(""));
  EXPECT_EQ(store->open_keys, 0);
}

// Where the program for an extension comes from: the store's classes, then
// the desktop's associations, then the system profile's [Extensions].
TEST_F(Members, QueryProgramForExtension) {
  auto ask = [](Tolva2011Register& t, const std::string& extension) {
    std::string name = "stale", call = "stale";
    return std::to_string(t.QueryProgramForExtension(extension, name, call)) + " " + name + " | " + call;
  };
  profiles->files["/windows/win.ini"] = "[Extensions]\ntxt=C:\\bin\\notepad.exe ^.txt\n";
  Machine("SOFTWARE\\Classes\\.txt", "", kRegSz, "txtfile");
  EXPECT_EQ(ask(c, "txt"), "-1 notepad.exe | C:\\bin\\notepad.exe %1") << "a class without an open command";
  Machine("SOFTWARE\\Classes\\txtfile", "", kRegSz, "Text Document");
  Machine("SOFTWARE\\Classes\\txtfile\\shell\\open\\command", "", platform::kRegExpandSz, "%EDITOR% %1");
  sys->environment = {{"HOME", "/home/ann"}, {"XDG_DATA_DIRS", "/usr/share"}, {"EDITOR", "vi"}};
  files->AddFile("/usr/share/mime/globs2", "# comment\n50:text/plain:*.txt\n10:text/x-low:*.txt\n");
  files->AddFile("/home/ann/.local/share/mime/globs2", "60:text/x-mine:*.TXT\n");
  files->AddFile("/home/ann/.config/mimeapps.list",
                 "[Added Associations]\ntext/x-mine=other.desktop;\n"
                 "[Default Applications]\ntext/x-mine=missing.desktop;org-editor.desktop;\n");
  files->AddFile("/usr/share/applications/org/editor.desktop",
                 "[Desktop Entry]\nName=Editor\nName[de]=Bearbeiter\nExec=editor --new %U %i\n"
                 "[Desktop Action x]\nExec=wrong\n");
  EXPECT_EQ(ask(c, ".txt"), "-1 Text Document | vi %1");
  for (const char* ext : {"", "zzz", "../txt"}) EXPECT_EQ(ask(c, ext), "0  | ") << ext;
  platform::Services s = Services();
  s.settings = nullptr;
  Tolva2011Register no_store(s);
  EXPECT_EQ(ask(no_store, "txt"), "-1 Editor | editor --new %1");
}

// The first use sizes a sizable form by the ratio and centres it (halves to
// even); only the flag is written, the place is saved by the host's save.
TEST_F(Members, GetPositionOnFirstUse) {
  c.FormSizeRatio(0.5f);
  fakes::FakeForm form(kSizable, 3000, 2000), odd(kFixed, 3001, 2003);
  c.RegistryGetPosition(form);
  c.RegistryGetPosition(odd, "Odd");
  EXPECT_EQ(Place(form) + " | " + Place(odd), "4800 3840 9600 7680 | 8100 6678 3001 2003");
  EXPECT_EQ(Stored("Startup", {"FormInitialise", "Left"}), "T <absent>");
}

// A normal form's place is saved, and a sizable one's size; a maximised
// form's normal placement remembered by the last get is saved instead, in
// any section: the placement is the component's, not the section's.
TEST_F(Members, SavePositionAndALaterGet) {
  for (Integer border : {kSizable, kFixed}) {
    fakes::FakeForm form(border, 4321, 1234);
    form.left = 100.4f;
    form.top = 200.5f;
    c.RegistrySavePosition(form, std::to_string(border));
  }
  EXPECT_EQ(Stored("2", {"Left", "Top", "Width", "Height", "WindowState"}), "100 200 4321 1234 <absent>");
  EXPECT_EQ(Stored("1", {"Left", "Top", "Width", "Height"}), "100 200 <absent> <absent>");
  for (auto [k, v] : {std::pair{"FormInitialise", "T"}, {"Left", "300"}, {"Top", "400"}, {"Width", "6000"}})
    Store("Startup", k, v);
  fakes::FakeForm form(kSizable, 3000, 2000);
  c.RegistryGetPosition(form);
  EXPECT_EQ(Place(form), "300 400 6000 2000") << "a later get applies the stored place, not the ratio";
  form.state = 2;
  form.left = form.top = 0;
  form.width = 19200;
  c.RegistrySavePosition(form, "Other");
  EXPECT_EQ(Stored("Other", {"Left", "Top", "Width", "Height"}), "300 400 6000 2000");
}

}  // namespace
}  // namespace tolva::testing_settings
