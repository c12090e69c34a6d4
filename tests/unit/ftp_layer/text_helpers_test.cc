// Masks, host strings and ASCII line ends: small rules with many cases.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/ftp/host_port.h"
#include "platform/linux/ftp/line_end_converter.h"
#include "platform/linux/ftp/mask_matcher.h"

namespace tolva::platform::posix::ftp {
namespace {

TEST(MaskMatcherTest, Table) {
  struct Row {
    const char* mask;
    const char* name;
    bool match;
  };
  const Row rows[] = {
      {"", "anything", true},
      {"*", "", true},
      {"*.*", "no-dot", true},
      {"*.txt", "a.txt", true},
      {"*.txt", "a.txt.bak", false},
      {"*.txt", "A.TXT", false},
      {"?.txt", "a.txt", true},
      {"?.txt", "ab.txt", false},
      {"a*b*c", "aXXbYYc", true},
      {"a*b*c", "aXXbYY", false},
      {"a*", "a", true},
      {"*a", "bbba", true},
      {"**", "x", true},
      {"a?c",
       "a\xC3\xA9"
       "c",
       false},
      {"a??c",
       "a\xC3\xA9"
       "c",
       true},
      {"exact", "exact", true},
      {"exact", "exacT", false},
      {"*x*", "", false},
  };
  for (const auto& r : rows) EXPECT_EQ(r.match, MaskMatches(r.mask, r.name)) << r.mask << " vs " << r.name;
}

TEST(MaskMatcherTest, HostileMaskStaysFast) {
  // Exponential backtracking would never finish this.
  const std::string name(20000, 'a');
  EXPECT_FALSE(MaskMatches("*a*a*a*a*a*a*a*a*a*a*b", name));
}

TEST(HostPortTest, Table) {
  struct Row {
    const char* text;
    std::uint16_t port;
    bool ok;
    const char* host;
    std::uint16_t expected_port;
  };
  const Row rows[] = {
      {"example.org", 0, true, "example.org", 21},
      {"example.org", 2121, true, "example.org", 2121},
      {"example.org:990", 0, true, "example.org", 990},
      {"example.org:990", 2121, true, "example.org", 990},
      {"example.org:0", 2121, true, "example.org", 2121},
      {"example.org:0", 0, true, "example.org", 21},
      {"  127.0.0.1:2100 ", 0, true, "127.0.0.1", 2100},
      {"[::1]:2100", 0, true, "::1", 2100},
      {"[::1]", 0, true, "::1", 21},
      {"::1", 0, true, "::1", 21},
      {"fe80::1:2", 7, true, "fe80::1:2", 7},
      {"", 0, false, "", 0},
      {":21", 0, false, "", 0},
      {"host:", 0, false, "", 0},
      {"host:65536", 0, false, "", 0},
      {"host:12ab", 0, false, "", 0},
      {"[::1", 0, false, "", 0},
      {"[::1]x", 0, false, "", 0},
      {"two words", 0, false, "", 0},
  };
  for (const auto& r : rows) {
    const auto got = ParseHostPort(r.text, r.port);
    ASSERT_EQ(r.ok, got.has_value()) << "[" << r.text << "]";
    if (!r.ok) continue;
    EXPECT_EQ(r.host, got->host) << r.text;
    EXPECT_EQ(r.expected_port, got->port) << r.text;
  }
}

TEST(LineEndConverterTest, EveryLineEndsWithCrLfWhateverTheBlocks) {
  struct Row {
    std::string in, out, label;
  };
  const std::vector<Row> rows = {
      {"a\nb\n", "a\r\nb\r\n", "bare LF"},
      {"a\r\nb\r\n", "a\r\nb\r\n", "CR LF unchanged"},
      {"a\r\r\nb", "a\r\nb", "CR CR LF from a server that added a CR"},
      {"a\rb", "a\rb", "lone CR inside a line kept"},
      {"end\r", "end\r", "CR at the very end kept"},
      {"", "", "empty"},
      {"\n\n", "\r\n\r\n", "empty lines"},
  };
  for (const auto& row : rows) {
    // Every split point: a block boundary must never change the result.
    for (std::size_t cut = 0; cut <= row.in.size(); ++cut) {
      LineEndConverter c;
      std::string out;
      c.Convert(row.in.data(), cut, out);
      c.Convert(row.in.data() + cut, row.in.size() - cut, out);
      c.Finish(out);
      EXPECT_EQ(row.out, out) << row.label << " cut at " << cut;
    }
  }
}

}  // namespace
}  // namespace tolva::platform::posix::ftp
