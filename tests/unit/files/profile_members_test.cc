// FileReadProfileString and FileWriteProfileString on the in-memory profile store.
#include <string>

#include "unit/files/files_fixture.h"

namespace tolva::testing_files {
namespace {

class ProfileMembersTest : public FilesTest {};

TEST_F(ProfileMembersTest, ReadAppliesTheDefaultRules) {
  profiles->files["/p/app.ini"] =
      "[Main]\r\nName =  Tolva  \r\nEmpty=\r\nQuoted=\" x \"\r\nLong=" + std::string(2000, 'z') + "\r\n";
  struct Row {
    const char* label;
    std::string section, key, def, expected;
  } rows[] = {
      {"value trimmed", "Main", "Name", "d", "Tolva"},
      {"case and blanks in names", " main ", "NAME", "d", "Tolva"},
      {"empty value gives the default, untrimmed", "Main", "Empty", "  d  ", "  d  "},
      {"missing key gives the default trimmed", "Main", "None", "  d  ", "d"},
      {"missing key, empty default", "Main", "None", "", ""},
      {"missing section", "Other", "Name", "d", "d"},
      {"quotes removed, then the member trims", "Main", "Quoted", "d", "x"},
  };
  for (const auto& r : rows)
    EXPECT_EQ(c.FileReadProfileString("/p/app.ini", r.section, r.key, r.def), r.expected) << r.label;
  EXPECT_EQ(c.FileReadProfileString("/p/app.ini", "Main", "Long").size(), 1023u);
  EXPECT_EQ(c.FileReadProfileString("/p/none.ini", "Main", "Name", "d"), "d");
}

TEST_F(ProfileMembersTest, WriteSetsReplacesAndDeletes) {
  c.FileWriteProfileString("\\p\\app.ini", "Main", "Name", "one");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nName=one\r\n");
  c.FileWriteProfileString("/p/app.ini", "main", "name", "two");
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\nname=two\r\n");
  c.FileWriteProfileString("/p/app.ini", "Main", "Name", "");  // an empty value removes the key
  EXPECT_EQ(profiles->files["/p/app.ini"], "[Main]\r\n");
  EXPECT_EQ(c.FileReadProfileString("/p/app.ini", "Main", "Name", "gone"), "gone");
}

TEST_F(ProfileMembersTest, BareNamesLiveInTheWindowsDirectory) {
  c.FileWriteProfileString("app.ini", "S", "k", "v");
  EXPECT_EQ(profiles->files.count("/windows/app.ini"), 1u);
  EXPECT_EQ(c.FileReadProfileString("app.ini", "S", "k"), "v");
}

TEST_F(ProfileMembersTest, NoProfileServiceGivesTheDefault) {
  Tolva2011Register bare{platform::Services{}};
  EXPECT_EQ(bare.FileReadProfileString("/x.ini", "S", "k", " d "), " d ");
  bare.FileWriteProfileString("/x.ini", "S", "k", "v");  // nothing to write to; no crash
}

}  // namespace
}  // namespace tolva::testing_files
