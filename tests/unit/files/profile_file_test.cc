// The profile line model on raw bytes: what a look-up finds and what an
// edit leaves behind, byte for byte.
#include "platform/linux/profiles/profile_file.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace tolva::platform::posix {
namespace {

struct FindRow {
  const char* label;
  std::string bytes;
  std::string section, key;
  std::optional<std::string> expected;
};

TEST(ProfileFileTest, FindsValuesAsTheClassicReaderDoes) {
  const FindRow rows[] = {
      {"plain", "[S]\r\nk=v\r\n", "S", "k", "v"},
      {"names fold case and ignore blanks", "[ Sec ]\r\n  KeY  = v\r\n", "sEC", " key ", "v"},
      {"value trimmed", "[S]\r\nk=   a b \t\r\n", "S", "k", "a b"},
      {"double quotes removed", "[S]\r\nk= \" a \" \r\n", "S", "k", " a "},
      {"single quotes removed", "[S]\r\nk='x'\r\n", "S", "k", "x"},
      {"mismatched quotes kept", "[S]\r\nk=\"x'\r\n", "S", "k", "\"x'"},
      {"lone quote kept", "[S]\r\nk=\"\r\n", "S", "k", "\""},
      {"only the outer pair goes", "[S]\r\nk=\"\"x\"\"\r\n", "S", "k", "\"x\""},
      {"empty value is found, empty", "[S]\r\nk=\r\n", "S", "k", ""},
      {"value after the first =", "[S]\r\nk=a=b\r\n", "S", "k", "a=b"},
      {"lone LF ends lines", "[S]\nk=v\nj=w", "S", "j", "w"},
      {"lone CR ends lines", "[S]\rk=v\rj=w\r", "S", "j", "w"},
      {"no final line end", "[S]\r\nk=v", "S", "k", "v"},
      {"comment is no key", "[S]\r\n;k=v\r\n", "S", "k", std::nullopt},
      {"indented comment is no key", "[S]\r\n   ;k=v\r\n", "S", "k", std::nullopt},
      {"hash is not special", "[S]\r\n#k=v\r\n", "S", "#k", "v"},
      {"key before any section unreachable", "k=v\r\n[S]\r\n", "", "k", std::nullopt},
      {"line without = never matches", "[S]\r\nk\r\n", "S", "k", std::nullopt},
      {"first duplicate section wins", "[S]\r\na=1\r\n[S]\r\na=2\r\nb=3\r\n", "S", "b", std::nullopt},
      {"first duplicate key wins", "[S]\r\na=1\r\nA=2\r\n", "S", "a", "1"},
      {"key of another section not found", "[S]\r\n[T]\r\nk=v\r\n", "S", "k", std::nullopt},
      {"missing section", "[S]\r\nk=v\r\n", "X", "k", std::nullopt},
      {"byte-order mark is part of the first line", "\xEF\xBB\xBF[S]\r\nk=v\r\n", "S", "k", std::nullopt},
      {"unclosed bracket with = is a key", "[S]\r\n[x=1\r\n", "S", "[x", "1"},
      {"text after the closing bracket ignored", "[S] junk\r\nk=v\r\n", "S", "k", "v"},
      {"value cut at a NUL", std::string("[S]\r\nk=ab\0cd\r\n", 13), "S", "k", "ab"},
      {"NUL elsewhere harmless", std::string("[S]\r\n\0\r\nk=v\r\n", 12), "S", "k", "v"},
      {"empty file", "", "S", "k", std::nullopt},
  };
  for (const auto& row : rows) {
    const ProfileFile file(row.bytes);
    const auto got = file.Find(row.section, row.key);
    ASSERT_EQ(got.has_value(), row.expected.has_value()) << row.label;
    if (got) {
      EXPECT_EQ(std::string(*got), *row.expected) << row.label;
    }
  }
}

struct EditRow {
  const char* label;
  std::string before;
  std::string section, key;
  std::optional<std::string> value;  // nullopt deletes
  std::string after;
};

TEST(ProfileFileTest, EditsChangeOnlyTheLineConcerned) {
  const EditRow rows[] = {
      {"replace keeps other lines and their ends", "; top\n[S]\nk=old\n\nj=1\r", "S", "k", "new",
       "; top\n[S]\nk=new\r\n\nj=1\r"},
      {"replace writes the caller's key", "[S]\r\n  KEY = old \r\n", "s", "key", "v", "[S]\r\nkey=v\r\n"},
      {"replace of the last line without an end", "[S]\r\nk=old", "S", "k", "v", "[S]\r\nk=v\r\n"},
      {"new key after the last line that says something", "[S]\r\na=1\r\n; note\r\n\r\n[T]\r\n", "S", "b", "2",
       "[S]\r\na=1\r\nb=2\r\n; note\r\n\r\n[T]\r\n"},
      {"new key in an empty section goes under the header", "[S]\n\n[T]\n", "S", "k", "v", "[S]\nk=v\r\n\n[T]\n"},
      {"new key after an unterminated last line", "[S]\r\na=1", "S", "b", "2", "[S]\r\na=1\r\nb=2\r\n"},
      {"new section at the end, no blank line", "[S]\r\na=1\r\n", "T", "k", "v", "[S]\r\na=1\r\n[T]\r\nk=v\r\n"},
      {"new section after an unterminated line", "[S]\na=1", "T", "k", "v", "[S]\na=1\r\n[T]\r\nk=v\r\n"},
      {"empty file", "", "S", "k", "v", "[S]\r\nk=v\r\n"},
      {"delete removes the line, keeps the section", "[S]\r\nk=v\r\n[T]\r\n", "S", "k", std::nullopt, "[S]\r\n[T]\r\n"},
      {"delete of a missing key changes nothing", "[S]\r\nk=v\r\n", "S", "x", std::nullopt, "[S]\r\nk=v\r\n"},
      {"delete in a missing section changes nothing", "[S]\r\nk=v\r\n", "X", "k", std::nullopt, "[S]\r\nk=v\r\n"},
      {"later duplicate section left alone", "[S]\r\na=1\r\n[s]\r\nb=2\r\n", "S", "b", "3",
       "[S]\r\na=1\r\nb=3\r\n[s]\r\nb=2\r\n"},
      {"later duplicate key left alone", "[S]\r\nk=1\r\nk=2\r\n", "S", "k", "9", "[S]\r\nk=9\r\nk=2\r\n"},
      {"lines before the first section kept", "x=1\r\n[S]\r\n", "S", "x", "2", "x=1\r\n[S]\r\nx=2\r\n"},
  };
  for (const auto& row : rows) {
    const ProfileFile file(row.before);
    bool changed = false;
    const std::string* value = row.value ? &*row.value : nullptr;
    const std::string after = file.WithValue(row.section, row.key, value, changed);
    EXPECT_EQ(after, row.after) << row.label;
    EXPECT_EQ(changed, after != row.before) << row.label;
    if (row.value) {
      const ProfileFile reread(after);
      const auto read_back = reread.Find(row.section, row.key);
      ASSERT_TRUE(read_back.has_value()) << row.label;
      EXPECT_EQ(std::string(*read_back), *row.value) << row.label;
    }
  }
}

TEST(ProfileFileTest, VeryLongLinesAndManyKeys) {
  std::string bytes = "[S]\r\nlong=" + std::string(100000, 'x') + "\r\n";
  for (int i = 0; i < 2000; ++i) bytes += "k" + std::to_string(i) + "=" + std::to_string(i * 7) + "\r\n";
  const ProfileFile file(bytes);
  EXPECT_EQ(file.Find("S", "long")->size(), 100000u);
  EXPECT_EQ(std::string(*file.Find("s", "K1999")), "13993");
}

}  // namespace
}  // namespace tolva::platform::posix
