// The path text helpers and the phrase builders, through the public members.
#include <gtest/gtest.h>

#include <string>

#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using OneArgument = std::string (Tolva2011Register::*)(const std::string&) noexcept;
using TwoArguments = std::string (Tolva2011Register::*)(const std::string&, const std::string&) noexcept;

TEST(PathMembers, OneArgumentMembers) {
  Tolva2011Register c{platform::Services{}};
  struct Row {
    const char* label;
    OneArgument member;
    std::string input, expected;
  } rows[] = {
      {"backslash added", &Tolva2011Register::AddMissingBackslash, "C:", "C:\\"},
      {"backslash kept", &Tolva2011Register::AddMissingBackslash, "C:\\", "C:\\"},
      {"nothing to end", &Tolva2011Register::AddMissingBackslash, "", ""},
      {"slash added", &Tolva2011Register::AddMissingSlash, "dir", "dir/"},
      {"no slash for nothing", &Tolva2011Register::AddMissingSlash, "", ""},
      {"only one backslash removed", &Tolva2011Register::RemoveLastBackslash, "C:\\\\", "C:\\"},
      {"no backslash to remove", &Tolva2011Register::RemoveLastBackslash, "", ""},
      {"slash removed", &Tolva2011Register::RemoveLastSlash, "/a/", "/a"},
      {"no slash to remove", &Tolva2011Register::RemoveLastSlash, "/a", "/a"},
      {"directory after backslash", &Tolva2011Register::FileDirectory, "C:\\a\\b.txt", "C:\\a\\"},
      {"directory after slash", &Tolva2011Register::FileDirectory, "dir/x", "dir/"},
      {"directory, mixed", &Tolva2011Register::FileDirectory, "a\\b/c", "a\\b/"},
      {"no directory", &Tolva2011Register::FileDirectory, "name.txt", ""},
      {"empty directory", &Tolva2011Register::FileDirectory, "", ""},
      {"name after backslash", &Tolva2011Register::FileName, "C:\\a\\b.txt", "b.txt"},
      {"bare name", &Tolva2011Register::FileName, "name.txt", "name.txt"},
      {"trailing separator: no name", &Tolva2011Register::FileName, "a/b/", ""},
      {"name, mixed", &Tolva2011Register::FileName, "a/b\\c", "c"},
      {"name with binary bytes", &Tolva2011Register::FileName, std::string("a\0b\\c\0.d", 8), std::string("c\0.d", 4)},
      {"name only, two dots", &Tolva2011Register::FileNameOnly, "a.b.txt", "a.b"},
      {"name only, hidden", &Tolva2011Register::FileNameOnly, "/home/.profile", ""},
      {"name only, no dot", &Tolva2011Register::FileNameOnly, "dir\\readme", "readme"},
      {"name only, dot in directory", &Tolva2011Register::FileNameOnly, "v1.2/readme", "readme"},
      {"extension after the last dot", &Tolva2011Register::FileExtension, "archive.tar.gz", "gz"},
      {"no extension", &Tolva2011Register::FileExtension, "Makefile", ""},
      {"blank", &Tolva2011Register::FileExtension, "   ", ""},
      {"extension trimmed", &Tolva2011Register::FileExtension, "a. txt ", "txt"},
      {"extension in its own case", &Tolva2011Register::FileExtension, "A.TXT", "TXT"},
      {"dot in directory", &Tolva2011Register::FileExtension, "C:\\v1.2\\readme", "2\\readme"},
      {"extension after binary bytes", &Tolva2011Register::FileExtension, std::string("a\0b\\c\0.d", 8), "d"},
      {"not joined without a run directory", &Tolva2011Register::BuildPathRun, "a.txt", "a.txt"},
  };
  for (const auto& r : rows) EXPECT_EQ((c.*r.member)(r.input), r.expected) << r.label;
}

TEST(PathMembers, TwoArgumentMembers) {
  Tolva2011Register c{platform::Services{}};
  struct Row {
    const char* label;
    TwoArguments member;
    std::string first, second, expected;
  } rows[] = {
      {"full path wins", &Tolva2011Register::BuildPath, "C:\\Data", "D:\\x.txt", "D:\\x.txt"},
      {"trailing separator kept once", &Tolva2011Register::BuildPath, "C:\\Data\\", "x.txt", "C:\\Data\\x.txt"},
      {"slash name joined all the same", &Tolva2011Register::BuildPath, "C:\\Data", "sub/x.txt", "C:\\Data\\sub/x.txt"},
      {"empty directory", &Tolva2011Register::BuildPath, "", "x.txt", "x.txt"},
      {"empty file", &Tolva2011Register::BuildPath, "C:\\Data", "", ""},
      {"unix directory", &Tolva2011Register::BuildPath, "/home/me", "x.txt", "/home/me\\x.txt"},
      {"leading directory removed, any case", &Tolva2011Register::FilePathSimplify, "C:\\Data\\x\\y.txt", "c:\\data",
       "x\\y.txt"},
      {"equal is not shorter", &Tolva2011Register::FilePathSimplify, "C:\\Data\\", "C:\\Data", "C:\\Data\\"},
      {"another directory", &Tolva2011Register::FilePathSimplify, "C:\\Other\\y", "C:\\Data", "C:\\Other\\y"},
      {"no directory", &Tolva2011Register::FilePathSimplify, "x", "", "x"},
      {"does not exist, no path", &Tolva2011Register::ErrorMessageDoesNotExist, "File", "", "File does not exist."},
      {"does not exist", &Tolva2011Register::ErrorMessageDoesNotExist, "Directory", "C:\\Data",
       "Directory [C:\\Data] does not exist."},
      {"does not exist, shortened", &Tolva2011Register::ErrorMessageDoesNotExist, "File",
       "C:\\dir1\\dir2\\dir3\\dir4\\dir5\\file.txt", "File [C:\\dir1\\...\\dir4\\dir5\\file.txt] does not exist."},
  };
  for (const auto& r : rows) EXPECT_EQ((c.*r.member)(r.first, r.second), r.expected) << r.label;
  c.DirectoryRun("/opt/app");
  EXPECT_EQ(c.BuildPathRun("a.txt"), "/opt/app\\a.txt");
  EXPECT_EQ(c.BuildPathRun("x\\a.txt"), "x\\a.txt");
  EXPECT_EQ(c.BuildPathRun(""), "");
  EXPECT_EQ(c.ErrorMessageNotDefined("Local File"), "Local File has not been defined.");
  EXPECT_EQ(c.ErrorMessageShortenFile("Can't read", "a.txt").AsString(), "Can't read [a.txt].");
  EXPECT_EQ(c.ErrorMessageShortenFile("Can't read", "a.txt", "x").AsString(), "Can't read [a.txt] x");
  EXPECT_EQ(c.ErrorMessageShortenFile("M", "").AsString(), "M [].");
}

TEST(PathMembers, FilePathShortenKeepsBothEndsAndDropsTheMiddle) {
  Tolva2011Register c{platform::Services{}};
  const std::string p36 = "C:\\dir1\\dir2\\dir3\\dir4\\dir5\\file.txt";
  struct Row {
    const char* label;
    std::string path, delimiter;
    Long max;
    std::string expected;
  } rows[] = {
      {"worked example", p36, "", 30, "C:\\dir1\\...\\dir4\\dir5\\file.txt"},
      {"exactly max length", p36, "", 36, p36},
      {"trimmed, not shortened", "  short  ", "", 30, "short"},
      {"only three separators", "C:\\aaaaaaaaaaaa\\bbbbbbbbbbbbbbb\\ccccccccccccc.txt", "", 30,
       "C:\\aaaaaaaaaaaa\\bbbbbbbbbbbbbbb\\ccccccccccccc.txt"},
      {"foreign delimiter", p36, "|", 30, p36},
      {"explicit slash on a backslash path", p36, "/", 30, p36},
      {"unix path", "/home/user/projects/tolva/src/paths/file.cc", "", 30, "/home/user/.../paths/file.cc"},
      {"still too long keeps SlashesEnd runs", "C:\\a\\b\\c\\d\\e\\averyveryveryverylongname.txt", "", 20,
       "C:\\a\\...\\e\\averyveryveryverylongname.txt"},
      {"doubled separators count once", "C:\\\\dir1\\\\dir2\\\\dir3\\\\dir4\\\\file.txt", "", 30,
       "C:\\\\dir1\\...\\dir4\\\\file.txt"},
      {"tie chooses backslash", "C:\\aa/bb\\cc/dd\\ee/ff\\gg/hh\\ii/jj", "", 20, "C:\\aa/bb\\...\\gg/hh\\ii/jj"},
      {"tie with too few runs", "C:\\aaaa/bbbb\\cccc/dddd\\eeee/ffff", "", 20, "C:\\aaaa/bbbb\\cccc/dddd\\eeee/ffff"},
  };
  for (const auto& r : rows) EXPECT_EQ(c.FilePathShorten(r.path, r.delimiter, r.max), r.expected) << r.label;
  // A huge path with binary bytes goes through without harm.
  std::string huge(10 * 1024 * 1024, 'a');
  for (std::size_t i = 0; i < huge.size(); i += 97) huge[i] = (i / 97) % 2 ? '\\' : '/';
  huge[5] = '\0';
  EXPECT_LE(c.FilePathShorten(huge).size(), huge.size());
  EXPECT_FALSE(c.FileName(huge).empty());
  EXPECT_EQ(c.AddMissingBackslash(huge).size(), huge.size() + (huge.back() == '\\' ? 0 : 1));
}

}  // namespace
}  // namespace tolva
