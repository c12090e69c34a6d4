// The listing formats servers really send, one row per shape.
#include "platform/linux/ftp/listing_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolva::platform::posix::ftp {
namespace {

constexpr int kThisYear = 2026;
constexpr std::uint32_t kDir = kFileAttributeDirectory;
constexpr std::uint32_t kFile = kFileAttributeNormal;

struct Row {
  std::string line;
  bool parsed;
  std::string name;
  std::uint32_t attributes;
  std::uint64_t size;
  FindTime time;  // valid=false: no date expected
  const char* label;
};

FindTime T(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
  return {true, y, mo, d, h, mi, s};
}

void Check(const Row& row, bool ok, const FindData& e) {
  SCOPED_TRACE(row.label);
  ASSERT_EQ(row.parsed, ok);
  if (!ok) return;
  EXPECT_EQ(row.name, e.name);
  EXPECT_EQ(row.attributes, e.attributes);
  EXPECT_EQ(row.size, e.size);
  EXPECT_EQ(row.time.valid, e.last_write.valid);
  if (row.time.valid) {
    EXPECT_EQ(row.time.year, e.last_write.year);
    EXPECT_EQ(row.time.month, e.last_write.month);
    EXPECT_EQ(row.time.day, e.last_write.day);
    EXPECT_EQ(row.time.hour, e.last_write.hour);
    EXPECT_EQ(row.time.minute, e.last_write.minute);
    EXPECT_EQ(row.time.second, e.last_write.second);
  }
}

TEST(ListingParserTest, UnixLines) {
  const std::vector<Row> rows = {
      {"-rw-r--r--   1 owner group    1234 Jan 05  2020 plain.txt", true, "plain.txt", kFile, 1234, T(2020, 1, 5),
       "day padded with zero, year"},
      {"-rw-r--r--   1 owner group    1234 Mar  5  2019 blank.txt", true, "blank.txt", kFile, 1234, T(2019, 3, 5),
       "day padded with blank"},
      {"drwxr-xr-x   2 0     0        4096 Nov 23 14:07 sub", true, "sub", kDir, 4096, T(kThisYear, 11, 23, 14, 7),
       "numeric owners, time instead of year"},
      {"lrwxrwxrwx   1 u g 7 Feb 29  2024 link -> target", true, "link", kFile, 7, T(2024, 2, 29),
       "symbolic link keeps only its own name"},
      {"-rw-r--r--   1 owner    123 Dec 31  1999 no group", true, "no group", kFile, 123, T(1999, 12, 31),
       "owner only, no group column"},
      {"-rw-r--r--   1 u g 5 Jan  1  2020  two  blanks ", true, " two  blanks ", kFile, 5, T(2020, 1, 1),
       "blanks inside, before and after the name are kept"},
      {"-rw-r--r--+  1 u g 5 Jan  1  2020 acl", true, "acl", kFile, 5, T(2020, 1, 1), "ACL marker after modes"},
      {"-rw-r--r--   1 u g 5000000000 Jan  1  2020 big", true, "big", kFile, 5000000000ull, T(2020, 1, 1),
       "size above 4 GiB"},
      {"-rw-r--r--   1 u g 5 jan  1  2020 lower", true, "lower", kFile, 5, T(2020, 1, 1), "month in lower case"},
      {"-rw-r--r--   1 u g 5 Jan  1  2020 Jan  2  2021 x", true, "Jan  2  2021 x", kFile, 5, T(2020, 1, 1),
       "a name that looks like a date"},
      {"total 48", false, "", 0, 0, {}, "total line"},
      {"", false, "", 0, 0, {}, "blank line"},
      {"-rw-r--r--   1 u g 5 Jan  1  2020", false, "", 0, 0, {}, "no name"},
      {"-rw-r--r--   1 u g 99999999999999999999999 Jan  1  2020 x", false, "", 0, 0, {}, "size overflows"},
      {"-rw-r--r--   1 u g 5 Foo  1  2020 x", false, "", 0, 0, {}, "no month"},
      {"-rw-r--r--   1 u g 5 Jan  1  25:61 x", false, "", 0, 0, {}, "impossible time"},
      {"hello world this is not a listing", false, "", 0, 0, {}, "garbage"},
  };
  ListingParser parser(kThisYear);
  for (const auto& row : rows) {
    FindData e;
    const bool ok = parser.ParseListLine(row.line, e);
    Check(row, ok, e);
  }
}

TEST(ListingParserTest, DosLines) {
  const std::vector<Row> rows = {
      {"01-05-20  12:34PM       <DIR>          Folder", true, "Folder", kDir, 0, T(2020, 1, 5, 12, 34), "directory"},
      {"11-23-2026  09:03AM             1234 with blank.txt", true, "with blank.txt", kFile, 1234,
       T(2026, 11, 23, 9, 3), "four-digit year, name with blank"},
      {"12-31-99  12:00AM                0 midnight", true, "midnight", kFile, 0, T(1999, 12, 31, 0, 0),
       "12 AM is midnight, 99 is 1999"},
      {"01-05-20  13:34XM                0 x", false, "", 0, 0, {}, "neither AM nor PM"},
      {"01-05-20  12:34PM             abc x", false, "", 0, 0, {}, "size not a number"},
      {"01-05-20  12:34PM                1", false, "", 0, 0, {}, "no name"},
  };
  ListingParser parser(kThisYear);
  for (const auto& row : rows) {
    FindData e;
    const bool ok = parser.ParseListLine(row.line, e);
    Check(row, ok, e);
  }
}

TEST(ListingParserTest, MlsdLines) {
  const std::vector<Row> rows = {
      {"type=file;size=42;modify=20200102030405; a.txt", true, "a.txt", kFile, 42, T(2020, 1, 2, 3, 4, 5), "file"},
      {"Type=DIR;Modify=20200102030405.123;perm=el; sub dir", true, "sub dir", kDir, 0, T(2020, 1, 2, 3, 4, 5),
       "case-insensitive facts, fractions, blank in name"},
      {"type=file;size=1; semi;colon", true, "semi;colon", kFile, 1, {}, "semicolon in name, no date"},
      {"type=OS.unix=symlink;size=3; ln", true, "ln", kFile, 3, {}, "other types are files"},
      {"type=file;modify=20201340000000; bad date", true, "bad date", kFile, 0, {}, "impossible date dropped"},
      {"type=cdir; .", false, "", 0, 0, {}, "the directory itself"},
      {"type=pdir; ..", false, "", 0, 0, {}, "its parent"},
      {"no-facts-no-name", false, "", 0, 0, {}, "garbage"},
      {"type=file; ", false, "", 0, 0, {}, "empty name"},
  };
  ListingParser parser(kThisYear);
  for (const auto& row : rows) {
    FindData e;
    const bool ok = parser.ParseMlsdLine(row.line, e);
    Check(row, ok, e);
  }
}

TEST(ListingParserTest, WholeListingsSplitLinesAndDropSelfAndParent) {
  ListingParser parser(kThisYear);
  const std::string unix_text =
      "total 3\r\n"
      "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 .\r\n"
      "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 ..\n"
      "-rw-r--r-- 1 0 0 1 Jan  5  2020 a\n"
      "garbage\r\n"
      "-rw-r--r-- 1 0 0 2 Jan  5  2020 b";  // no line end at the very end
  const auto entries = parser.ParseListing(unix_text, false);
  ASSERT_EQ(2u, entries.size());
  EXPECT_EQ("a", entries[0].name);
  EXPECT_EQ("b", entries[1].name);
  EXPECT_EQ(2u, entries[1].size);

  const auto mlsd = parser.ParseListing("type=cdir; /x\r\ntype=file;size=1; .\r\ntype=file;size=1; f\r\n", true);
  ASSERT_EQ(1u, mlsd.size());
  EXPECT_EQ("f", mlsd[0].name);
  EXPECT_TRUE(parser.ParseListing("", true).empty());
}

}  // namespace
}  // namespace tolva::platform::posix::ftp
