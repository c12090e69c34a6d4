// The path text helpers and the phrase builders, through the public members.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

struct Row {
  std::string label;
  std::string input;
  std::string expected;
};

class PathMembers : public ::testing::Test {
 protected:
  Tolva2011Register c{platform::Services{}};
};

TEST_F(PathMembers, SeparatorsAreAddedAndRemovedOnce) {
  EXPECT_EQ(c.AddMissingBackslash(""), "");
  EXPECT_EQ(c.AddMissingBackslash("C:"), "C:\\");
  EXPECT_EQ(c.AddMissingBackslash("C:\\"), "C:\\");
  EXPECT_EQ(c.AddMissingSlash("dir"), "dir/");
  EXPECT_EQ(c.AddMissingSlash(""), "");
  EXPECT_EQ(c.RemoveLastBackslash("C:\\\\"), "C:\\");  // only one is removed
  EXPECT_EQ(c.RemoveLastBackslash(""), "");
  EXPECT_EQ(c.RemoveLastSlash("/a/"), "/a");
  EXPECT_EQ(c.RemoveLastSlash("/a"), "/a");
}

TEST_F(PathMembers, BuildPathJoinsOnlyNamesWithoutABackslash) {
  struct JoinRow {
    std::string label, dir, file, expected;
  };
  const std::vector<JoinRow> rows = {
      {"full path wins", "C:\\Data", "D:\\x.txt", "D:\\x.txt"},
      {"trailing separator kept once", "C:\\Data\\", "x.txt", "C:\\Data\\x.txt"},
      {"slash name joined all the same", "C:\\Data", "sub/x.txt", "C:\\Data\\sub/x.txt"},
      {"empty directory", "", "x.txt", "x.txt"},
      {"empty file", "C:\\Data", "", ""},
      {"unix directory", "/home/me", "x.txt", "/home/me\\x.txt"},
  };
  for (const auto& r : rows) EXPECT_EQ(c.BuildPath(r.dir, r.file), r.expected) << r.label;
}

TEST_F(PathMembers, BuildPathRunUsesTheRunDirectory) {
  EXPECT_EQ(c.BuildPathRun("a.txt"), "a.txt");
  c.DirectoryRun("/opt/app");
  EXPECT_EQ(c.BuildPathRun("a.txt"), "/opt/app\\a.txt");
  EXPECT_EQ(c.BuildPathRun("x\\a.txt"), "x\\a.txt");
  EXPECT_EQ(c.BuildPathRun(""), "");
}

TEST_F(PathMembers, SplittingTakesTheRightMostSeparatorOfEitherKind) {
  const std::vector<Row> dir = {
      {"backslash", "C:\\a\\b.txt", "C:\\a\\"},
      {"slash", "dir/x", "dir/"},
      {"mixed", "a\\b/c", "a\\b/"},
      {"none", "name.txt", ""},
      {"empty", "", ""},
  };
  for (const auto& r : dir) EXPECT_EQ(c.FileDirectory(r.input), r.expected) << r.label;
  const std::vector<Row> name = {
      {"backslash", "C:\\a\\b.txt", "b.txt"},
      {"none", "name.txt", "name.txt"},
      {"trailing", "a/b/", ""},
      {"mixed", "a/b\\c", "c"},
  };
  for (const auto& r : name) EXPECT_EQ(c.FileName(r.input), r.expected) << r.label;
  const std::vector<Row> only = {
      {"two dots", "a.b.txt", "a.b"},
      {"hidden", "/home/.profile", ""},
      {"no dot", "dir\\readme", "readme"},
      {"dot in directory only", "v1.2/readme", "readme"},
  };
  for (const auto& r : only) EXPECT_EQ(c.FileNameOnly(r.input), r.expected) << r.label;
  const std::vector<Row> ext = {
      {"last dot", "archive.tar.gz", "gz"},
      {"none", "Makefile", ""},
      {"blank", "   ", ""},
      {"trimmed", "a. txt ", "txt"},
      {"own case", "A.TXT", "TXT"},
      {"dot in directory", "C:\\v1.2\\readme", "2\\readme"},
  };
  for (const auto& r : ext) EXPECT_EQ(c.FileExtension(r.input), r.expected) << r.label;
}

TEST_F(PathMembers, FilePathSimplifyRemovesAKnownLeadingDirectoryIgnoringCase) {
  EXPECT_EQ(c.FilePathSimplify("C:\\Data\\x\\y.txt", "c:\\data"), "x\\y.txt");
  EXPECT_EQ(c.FilePathSimplify("C:\\Data\\", "C:\\Data"), "C:\\Data\\");  // equal is not shorter
  EXPECT_EQ(c.FilePathSimplify("C:\\Other\\y", "C:\\Data"), "C:\\Other\\y");
  EXPECT_EQ(c.FilePathSimplify("x", ""), "x");
}

TEST_F(PathMembers, FilePathShortenKeepsBothEndsAndDropsTheMiddle) {
  struct ShortRow {
    std::string label, path, delimiter;
    Long max;
    std::string expected;
  };
  const std::string p36 = "C:\\dir1\\dir2\\dir3\\dir4\\dir5\\file.txt";
  const std::vector<ShortRow> rows = {
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
}

TEST_F(PathMembers, PhraseBuildersShortenBracketedPaths) {
  EXPECT_EQ(c.ErrorMessageDoesNotExist("File", ""), "File does not exist.");
  EXPECT_EQ(c.ErrorMessageDoesNotExist("Directory", "C:\\Data"), "Directory [C:\\Data] does not exist.");
  EXPECT_EQ(c.ErrorMessageDoesNotExist("File", "C:\\dir1\\dir2\\dir3\\dir4\\dir5\\file.txt"),
            "File [C:\\dir1\\...\\dir4\\dir5\\file.txt] does not exist.");
  EXPECT_EQ(c.ErrorMessageNotDefined("Local File"), "Local File has not been defined.");
  EXPECT_EQ(c.ErrorMessageShortenFile("Can't read", "a.txt").AsString(), "Can't read [a.txt].");
  EXPECT_EQ(c.ErrorMessageShortenFile("Can't read", "a.txt", "x").AsString(), "Can't read [a.txt] x");
  EXPECT_EQ(c.ErrorMessageShortenFile("M", "").AsString(), "M [].");
}

TEST_F(PathMembers, HugeAndBinaryInputsGoThroughEveryMember) {
  std::string huge(10 * 1024 * 1024, 'a');
  for (std::size_t i = 0; i < huge.size(); i += 97) huge[i] = (i / 97) % 2 ? '\\' : '/';
  huge[5] = '\0';
  EXPECT_LE(c.FilePathShorten(huge).size(), huge.size());
  EXPECT_FALSE(c.FileName(huge).empty());
  EXPECT_EQ(c.AddMissingBackslash(huge).size(), huge.size() + (huge.back() == '\\' ? 0 : 1));
  const std::string binary("a\0b\\c\0.d", 8);
  EXPECT_EQ(c.FileName(binary), std::string("c\0.d", 4));
  EXPECT_EQ(c.FileExtension(binary), "d");
}

}  // namespace
}  // namespace tolva
