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
      {"names fold case and ignore blanks", "[ Sec ]\r\n  KeY  = v\r\n", "sEC", " key ", "v"},
      {"value trimmed", "[S]\r\nk=   a b \t\r\n", "S", "k", "a b"},
      {"double quotes removed", "[S]\r\nk= \" a \" \r\n", "S", "k", " a "},
      {"lone LF ends lines", "[S]\nk=v\nj=w", "S", "j", "w"},
      {"comment is no key", "[S]\r\n;k=v\r\n", "S", "k", std::nullopt},
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
      {"new key after the last line that says something", "[S]\r\na=1\r\n; note\r\n\r\n[T]\r\n", "S", "b", "2",
       "[S]\r\na=1\r\nb=2\r\n; note\r\n\r\n[T]\r\n"},
      {"new key in an empty section goes under the header", "[S]\n\n[T]\n", "S", "k", "v", "[S]\nk=v\r\n\n[T]\n"},
      {"new section at the end, no blank line", "[S]\r\na=1\r\n", "T", "k", "v", "[S]\r\na=1\r\n[T]\r\nk=v\r\n"},
      {"delete removes the line, keeps the section", "[S]\r\nk=v\r\n[T]\r\n", "S", "k", std::nullopt, "[S]\r\n[T]\r\n"},
  };
  for (const auto& row : rows) {
    const ProfileFile file(row.before);
    bool changed = false;
    const std::string* value = row.value ? &*row.value : nullptr;
    const std::string after = file.WithValue(row.section, row.key, value, changed);
    EXPECT_EQ(after, row.after) << row.label;
    EXPECT_EQ(changed, after != row.before) << row.label;
  }
}

}  // namespace
}  // namespace tolva::platform::posix
