// The listing shapes servers really send, one row each; an entry is written out as
// "type size date time [name]" so a row reads as what the host gets.
#include "platform/linux/ftp/listing_parser.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace tolva::platform::posix::ftp {
namespace {

constexpr int kThisYear = 2026;

std::string Describe(const FindData& e) {
  char when[32] = "-";
  const FindTime& t = e.last_write;
  if (t.valid)
    std::snprintf(when, sizeof when, "%04d-%02d-%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
  const std::string type = e.attributes == kFileAttributeDirectory ? "d"
                           : e.attributes == kFileAttributeNormal  ? "f"
                                                                   : std::to_string(e.attributes);
  return type + " " + std::to_string(e.size) + " " + when + " [" + e.name + "]";
}

TEST(ListingParserTest, Lines) {
  struct Row {
    bool mlsd;
    std::string line;
    std::string entry;  // "" when the line is no entry
    const char* label;
  };
  const std::vector<Row> rows = {
      {false, "-rw-r--r--   1 owner group    1234 Mar  5  2019 b", "f 1234 2019-03-05 00:00:00 [b]",
       "day padded with blank"},
      {false, "drwxr-xr-x   2 0     0        4096 Nov 23 14:07 sub", "d 4096 2026-11-23 14:07:00 [sub]",
       "time instead of year: this year"},
      {false, "lrwxrwxrwx   1 u g 7 Feb 29  2024 link -> target", "f 7 2024-02-29 00:00:00 [link]", "symbolic link"},
      {false, "-rw-r--r--   1 u g 5 Jan  1  2020  two  blanks ", "f 5 2020-01-01 00:00:00 [ two  blanks ]",
       "blanks in, before and after the name kept"},
      {false, "-rw-r--r--   1 u g 5000000000 Jan  1  2020 big", "f 5000000000 2020-01-01 00:00:00 [big]",
       "above 4 GiB"},
      {false, std::string("-rw-r--r-- 1 0 0 13 Jan  5  2020 nul") + '\0' + "byte",
       std::string("f 13 2020-01-05 00:00:00 [nul") + '\0' + "byte]", "hostile: NUL byte"},
      {false, "-rw-r--r--   1 u g 5 Jan  1  2020", "", "no name"},
      {false, "-rw-r--r--   1 u g 99999999999999999999999 Jan  1  2020 x", "", "size overflows"},
      {false, "-rw-r--r--   1 u g 5 Jan  1  25:61 x", "", "impossible time"},
      {false, "01-05-20  12:34PM       <DIR>          Folder", "d 0 2020-01-05 12:34:00 [Folder]", "DOS directory"},
      {false, "11-23-2026  09:03AM             1234 with blank.txt", "f 1234 2026-11-23 09:03:00 [with blank.txt]",
       "DOS four-digit year"},
      {false, "12-31-99  12:00AM                0 midnight", "f 0 1999-12-31 00:00:00 [midnight]",
       "DOS 12 AM is midnight, 99 is 1999"},
      {false, "01-05-20  13:34XM                0 x", "", "DOS neither AM nor PM"},
      {true, "type=file;size=42;modify=20200102030405; a.txt", "f 42 2020-01-02 03:04:05 [a.txt]", "MLSD file"},
      {true, "Type=DIR;Modify=20200102030405.123;perm=el; sub dir", "d 0 2020-01-02 03:04:05 [sub dir]",
       "MLSD facts in any case, fractions"},
      {true, "type=file;size=1; semi;colon", "f 1 - [semi;colon]", "MLSD semicolon in name, no date"},
      {true, "type=file;modify=20201340000000; bad date", "f 0 - [bad date]", "MLSD impossible date dropped"},
      {true, "type=file; ", "", "MLSD empty name"},
      {true, "type=cdir;modify=20200102030405; .", "d 0 2020-01-02 03:04:05 [.]", "MLSD directory itself kept"},
      {true, "type=pdir; ..", "d 0 - [..]", "MLSD parent kept"},
  };
  const ListingParser parser(kThisYear);
  for (const auto& row : rows) {
    FindData e;
    const bool parsed = row.mlsd ? parser.ParseMlsdLine(row.line, e) : parser.ParseListLine(row.line, e);
    EXPECT_EQ(row.entry, parsed ? Describe(e) : "") << row.label;
  }
}

TEST(ListingParserTest, WholeListingsSplitLinesAndKeepEveryEntryAsNamed) {
  const ListingParser parser(kThisYear);
  std::vector<std::string> got;
  for (const auto& e : parser.ParseListing("total 3\r\n"
                                           "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 .\r\n"
                                           "drwxr-xr-x 2 0 0 4096 Jan  5 12:34 ..\n"
                                           "-rw-r--r-- 1 0 0 1 Jan  5  2020 a\n"
                                           "garbage\r\n"
                                           "-rw-r--r-- 1 0 0 2 Jan  5  2020 b",  // no final line end
                                           false))
    got.push_back(Describe(e));
  for (const auto& e : parser.ParseListing("type=cdir; /x\r\ntype=file;size=1; .\r\ntype=file;size=1; f\r\n", true))
    got.push_back(Describe(e));
  const std::vector<std::string> expected = {"d 4096 2026-01-05 12:34:00 [.]",
                                             "d 4096 2026-01-05 12:34:00 [..]",
                                             "f 1 2020-01-05 00:00:00 [a]",
                                             "f 2 2020-01-05 00:00:00 [b]",
                                             "d 0 - [/x]",
                                             "f 1 - [.]",
                                             "f 1 - [f]"};
  EXPECT_EQ(expected, got);
  EXPECT_TRUE(parser.ParseListing("", true).empty());
}

}  // namespace
}  // namespace tolva::platform::posix::ftp
