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
  // A byte is a character: no decoding, so "é" is two of them.
  const Row rows[] = {{"", "anything", true},
                      {"*", "", true},
                      {"*.txt", "a.txt", true},
                      {"*.txt", "a.txt.bak", false},
                      {"?.txt", "ab.txt", false},
                      {"a*b*c", "aXXbYYc", true},
                      {"a*b*c", "aXXbYY", false},
                      {"*x*", "", false},
                      {"a?c", "a\xC3\xA9\x63", false},
                      {"a??c", "a\xC3\xA9\x63", true},
                      {"*b", "*ab", true}};  // a "*" in the name is just a byte
  for (const auto& r : rows) EXPECT_EQ(r.match, MaskMatches(r.mask, r.name)) << r.mask << " vs " << r.name;
  // Exponential backtracking would never finish this.
  EXPECT_FALSE(MaskMatches("*a*a*a*a*a*a*a*a*a*a*b", std::string(20000, 'a')));
}

TEST(HostPortTest, Table) {
  struct Row {
    const char* text;
    std::uint16_t port;
    const char* host;  // nullptr: refused
    std::uint16_t expected_port;
  };
  const Row rows[] = {{"example.org", 0, "example.org", 21},
                      {"example.org", 2121, "example.org", 2121},
                      {"example.org:990", 0, "example.org", 990},
                      {"example.org:0", 2121, "example.org", 2121},
                      {"[::1]:2100", 0, "::1", 2100},
                      {"::1", 0, "::1", 21},
                      {"fe80::1:2", 7, "fe80::1:2", 7},
                      {"", 0, nullptr, 0},
                      {"host:65536", 0, nullptr, 0},
                      {"[::1", 0, nullptr, 0},
                      {"two words", 0, nullptr, 0}};
  for (const auto& r : rows) {
    const auto got = ParseHostPort(r.text, r.port);
    const std::string expected = r.host ? r.host + (":" + std::to_string(r.expected_port)) : "refused";
    EXPECT_EQ(expected, got ? got->host + ":" + std::to_string(got->port) : "refused") << "[" << r.text << "]";
  }
}

TEST(LineEndConverterTest, EveryLineEndsWithCrLfWhateverTheBlocks) {
  struct Row {
    std::string in, out, label;
  };
  const std::vector<Row> rows = {
      {"a\nb\n", "a\r\nb\r\n", "bare LF"},
      {"a\r\r\nb", "a\r\nb", "CR CR LF from a server that added a CR"},
      {"a\rb", "a\rb", "lone CR inside a line kept"},
      {"end\r", "end\r", "CR at the very end kept"},
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
