// Fuzz target of the profile file: set or delete one key, parse again. Bytes
// 0 to 2 give the lengths of the section, key and value that follow (a value
// length of 255 deletes the key); the rest is the file.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "platform/linux/profiles/profile_file.h"

namespace {

using tolva::platform::posix::FoldName;
using tolva::platform::posix::ProfileFile;
using tolva::platform::posix::TrimProfileBlanks;

// The lines of `s`, each with its line end (CR LF, a lone CR or LF).
std::vector<std::string> Lines(const std::string& s) {
  std::vector<std::string> lines;
  for (std::size_t b = 0, e; b < s.size(); b = e) {
    e = std::min(s.find_first_of("\r\n", b), s.size());
    e += s.compare(e, 2, "\r\n") == 0 ? 2 : e < s.size();
    lines.push_back(s.substr(b, e - b));
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const bool remove = data[2] == 255;
  const std::size_t lengths[3] = {data[0] % 8u, data[1] % 8u, remove ? 0u : data[2] % 16u};
  if (size < 3 + lengths[0] + lengths[1] + lengths[2]) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data + 3), size - 3);
  const std::string section = bytes.substr(0, lengths[0]), key = bytes.substr(lengths[0], lengths[1]);
  const std::string value = bytes.substr(lengths[0] + lengths[1], lengths[2]);
  const std::string file = bytes.substr(lengths[0] + lengths[1] + lengths[2]);
  // Line breaks and NULs never reach a profile; a key with "=", ";" or "["
  // first, or a section with "]", is written as asked and reads differently.
  if (section.find_first_of(std::string("]\r\n\0", 4)) != std::string::npos ||
      key.find_first_of(std::string("=\r\n\0", 4)) != std::string::npos ||
      value.find_first_of(std::string("\r\n\0", 3)) != std::string::npos ||
      TrimProfileBlanks(key).find_first_of(";[") == 0)
    return 0;

  const ProfileFile before(file);
  bool changed = false;
  const ProfileFile after(before.WithValue(section, key, remove ? nullptr : &value, changed));
  Check(changed == (after.bytes() != file), "changed says whether the bytes differ");
  std::string_view expected = TrimProfileBlanks(value);
  if (expected.size() >= 2 && (expected[0] == '"' || expected[0] == '\'') && expected.back() == expected[0])
    expected = expected.substr(1, expected.size() - 2);
  Check(remove || after.Find(section, key) == expected, "the value reads back");

  // Every other name in the file keeps its value.
  const std::vector<std::string> old_lines = Lines(file), new_lines = Lines(after.bytes());
  std::vector<std::string> names;  // each line's text after "[" up to "=" or "]"
  for (std::size_t i = 0; i < old_lines.size() && i < 12; ++i) {
    const std::size_t open = old_lines[i].find('[') + 1;  // 0 without "["
    names.push_back(old_lines[i].substr(open, old_lines[i].find_first_of("=]", open) - open));
  }
  for (const std::string& s : names)
    for (const std::string& k : names)
      if (FoldName(s) != FoldName(section) || FoldName(k) != FoldName(key))
        Check(before.Find(s, k) == after.Find(s, k), "other names keep their values");

  // The edit removes at most one line and adds only the entry, its section
  // header, or the old last line given the line end it lacked.
  const std::size_t common = std::min(old_lines.size(), new_lines.size());
  std::size_t head = 0, tail = 0;
  while (head < common && old_lines[head] == new_lines[head]) ++head;
  while (tail < common - head && old_lines[old_lines.size() - 1 - tail] == new_lines[new_lines.size() - 1 - tail])
    ++tail;
  Check(old_lines.size() - head - tail <= 1, "at most the edited line goes");
  for (std::size_t i = head; i < new_lines.size() - tail; ++i)
    Check(new_lines[i] == key + "=" + value + "\r\n" || new_lines[i] == "[" + section + "]\r\n" ||
              (old_lines.size() - head - tail == 1 && new_lines[i] == old_lines[head] + "\r\n"),
          "no line but the edited one changes");
  return 0;
}
