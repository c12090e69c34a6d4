// The path text helpers and the phrase builders, through the public members.
#include <gtest/gtest.h>

#include <string>

#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using OneArgument = std::string (Tolva2011Register::*)(const std::string&) noexcept;

TEST(PathMembers, OneArgumentMembers) {
  Tolva2011Register c{platform::Services{}};
  struct Row {
    const char* label;
    OneArgument member;
    std::string input, expected;
  } rows[] = {
      {"backslash added", &Tolva2011Register::AddMissingBackslash, "C:", "C:\\"},
      {"slash added", &Tolva2011Register::AddMissingSlash, "dir", "dir/"},
      {"only one backslash removed", &Tolva2011Register::RemoveLastBackslash, "C:\\\\", "C:\\"},
      {"slash removed", &Tolva2011Register::RemoveLastSlash, "/a/", "/a"},
      {"directory after backslash", &Tolva2011Register::FileDirectory, "C:\\a\\b.txt", "C:\\a\\"},
      {"name after backslash", &Tolva2011Register::FileName, "C:\\a\\b.txt", "b.txt"},
      {"extension after the last dot", &Tolva2011Register::FileExtension, "archive.tar.gz", "gz"},
  };
  for (const auto& r : rows) EXPECT_EQ((c.*r.member)(r.input), r.expected) << r.label;
}

TEST(PathMembers, TwoArgumentMembersAndPhrases) {
  Tolva2011Register c{platform::Services{}};
  EXPECT_EQ(c.BuildPath("C:\\Data", "D:\\x.txt"), "D:\\x.txt") << "a full path wins";
  EXPECT_EQ(c.BuildPath("C:\\Data\\", "x.txt"), "C:\\Data\\x.txt") << "the separator is kept once";
  EXPECT_EQ(c.FilePathSimplify("C:\\Data\\x\\y.txt", "c:\\data"), "x\\y.txt");
  EXPECT_EQ(c.ErrorMessageDoesNotExist("File", "C:\\dir1\\dir2\\dir3\\dir4\\dir5\\file.txt"),
            "File [C:\\dir1\\...\\dir4\\dir5\\file.txt] does not exist.");
  c.DirectoryRun("/opt/app");
  EXPECT_EQ(c.BuildPathRun("a.txt"), "/opt/app\\a.txt");
  EXPECT_EQ(c.ErrorMessageNotDefined("Local File"), "Local File has not been defined.");
  EXPECT_EQ(c.ErrorMessageShortenFile("Can't read", "a.txt").AsString(), "Can't read [a.txt].");
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
      {"still too long keeps SlashesEnd runs", "C:\\a\\b\\c\\d\\e\\averyveryveryverylongname.txt", "", 20,
       "C:\\a\\...\\e\\averyveryveryverylongname.txt"},
      {"a run of separators counts once", "/home//user/docs//work/projects/file.txt", "", 25,
       "/home//user/.../projects/file.txt"},
      {"more runs of / than of \\ choose /", "a\\b\\c/d/e/f/g/h.txt", "", 12, "a\\b\\c/d/.../g/h.txt"},
      {"a given \\ counts only \\", "a\\b\\c/d/e/f/g/h.txt", "\\", 12, "a\\b\\c/d/e/f/g/h.txt"},
      {"a delimiter other than / or \\ gives up", "/a/b/c/d/e/f.txt", "-", 5, "/a/b/c/d/e/f.txt"},
      {"four runs after StartKeep give up", "C:\\aaaaaaaaaa\\bbbbbbbbbb\\cccccccccc\\file.txt", "", 30,
       "C:\\aaaaaaaaaa\\bbbbbbbbbb\\cccccccccc\\file.txt"},
      {"five runs shorten, the last candidate even if too long",
       "C:\\aaaaaaaaaa\\bbbbbbbbbb\\cccccccccc\\dddd\\file.txt", "", 30, "C:\\aaaaaaaaaa\\...\\dddd\\file.txt"},
      {"a run right after StartKeep is the first", "ab\\\\c\\d\\e\\f\\ghijklmnopqrstuvwxyz.txt", "", 30,
       "ab\\\\c\\...\\f\\ghijklmnopqrstuvwxyz.txt"},
      {"blanks around the path are trimmed", "  " + p36 + "  ", "", 30, "C:\\dir1\\...\\dir4\\dir5\\file.txt"},
  };
  for (const auto& r : rows) EXPECT_EQ(c.FilePathShorten(r.path, r.delimiter, r.max), r.expected) << r.label;
}

}  // namespace
}  // namespace tolva
