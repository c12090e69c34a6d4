// Fuzz target of the profile file: parse, set or delete one key, parse the
// result again. The key reads back as written, every other name keeps its
// value, and no line but the edited one changes. Bytes 0 to 2 give the
// lengths of the section, key and value that follow (value length 255
// deletes the key); the rest is the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "platform/linux/profiles/profile_file.h"

namespace {

using tolva::platform::posix::FoldName;
using tolva::platform::posix::ProfileFile;

// The lines of `s`, each with its line end (CR LF, a lone CR or LF).
std::vector<std::string> Lines(const std::string& s) {
  std::vector<std::string> lines;
  for (std::size_t b = 0, e; b < s.size(); b = e) {
    e = s.find_first_of("\r\n", b);
    e = e == std::string::npos ? s.size() : e + (s.compare(e, 2, "\r\n") == 0 ? 2 : 1);
    lines.push_back(s.substr(b, e - b));
  }
  return lines;
}

std::string Trimmed(const std::string& s) {
  const std::size_t b = s.find_first_not_of(" \t"), e = s.find_last_not_of(" \t");
  return b == std::string::npos ? std::string() : s.substr(b, e - b + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const bool remove = data[2] == 255;
  const std::size_t lengths[3] = {data[0] % 8u, data[1] % 8u, remove ? 0u : data[2] % 16u};
  if (size < 3 + lengths[0] + lengths[1] + lengths[2]) return 0;
  const char* at = reinterpret_cast<const char*>(data + 3);
  const std::string section(at, lengths[0]), key(at + lengths[0], lengths[1]);
  const std::string value(at + lengths[0] + lengths[1], lengths[2]);
  const std::string file(at + lengths[0] + lengths[1] + lengths[2], reinterpret_cast<const char*>(data + size));
  // Line breaks and NULs are refused before they reach a profile; a key with
  // "=" or one that reads as a comment or section, and a section name with
  // "]", are written as asked and read back differently, as a profile does.
  if (section.find_first_of(std::string("]\r\n\0", 4)) != std::string::npos ||
      key.find_first_of(std::string("=\r\n\0", 4)) != std::string::npos ||
      value.find_first_of(std::string("\r\n\0", 3)) != std::string::npos || Trimmed(key).find_first_of(";[") == 0)
    return 0;

  const ProfileFile before(file);
  bool changed = false;
  const ProfileFile after(before.WithValue(section, key, remove ? nullptr : &value, changed));
  Check(changed == (after.bytes() != file), "changed says whether the bytes differ");
  if (!remove) {
    std::string expected = Trimmed(value);
    if (expected.size() >= 2 && (expected[0] == '"' || expected[0] == '\'') && expected.back() == expected[0])
      expected = expected.substr(1, expected.size() - 2);
    Check(after.Find(section, key) == std::optional<std::string_view>(expected), "the value reads back");
  }

  // Every other section and key name in the file keeps its value.
  const std::vector<std::string> old_lines = Lines(file), new_lines = Lines(after.bytes());
  std::vector<std::string> sections, keys;
  for (const std::string& line : old_lines) {
    const std::size_t open = line.find('['), close = line.find(']'), eq = line.find('=');
    if (open < close && close != std::string::npos && sections.size() < 8)
      sections.push_back(line.substr(open + 1, close - open - 1));
    if (eq != std::string::npos && keys.size() < 8) keys.push_back(line.substr(0, eq));
  }
  for (const std::string& s : sections)
    for (const std::string& k : keys)
      if (FoldName(s) != FoldName(section) || FoldName(k) != FoldName(key))
        Check(before.Find(s, k) == after.Find(s, k), "other names keep their values");

  // Lines before and after the edit are the same; the edit removes at most
  // one line and adds only the entry, its section header, or the old last
  // line given the line end it lacked.
  const std::size_t common = std::min(old_lines.size(), new_lines.size());
  std::size_t head = 0, tail = 0;
  while (head < common && old_lines[head] == new_lines[head]) ++head;
  while (tail < common - head && old_lines[old_lines.size() - 1 - tail] == new_lines[new_lines.size() - 1 - tail])
    ++tail;
  const bool one_removed = old_lines.size() - head - tail == 1;
  Check(old_lines.size() - head - tail <= 1, "at most the edited line goes");
  for (std::size_t i = head; i < new_lines.size() - tail; ++i)
    Check(new_lines[i] == key + "=" + value + "\r\n" || new_lines[i] == "[" + section + "]\r\n" ||
              (one_removed && new_lines[i] == old_lines[head] + "\r\n"),
          "no line but the edited one changes");
  return 0;
}
