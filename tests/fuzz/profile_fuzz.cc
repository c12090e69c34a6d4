// Fuzz target of the profile file: set or delete one key, parse again. Bytes
// 0 to 2 give the lengths of the section, key and value that follow (a value
// length of 255 deletes the key); the rest is the file.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "platform/linux/profiles/profile_file.h"

namespace {

// Lines as the profile reads them: CR LF, a lone CR and a lone LF end one.
long Lines(const std::string& s) {
  long lines = !s.empty() && s.back() != '\r' && s.back() != '\n';
  for (std::size_t i = 0; i < s.size(); ++i) lines += s[i] == '\n' || (s[i] == '\r' && s.compare(i, 2, "\r\n") != 0);
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tolva::platform::posix;
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
  std::vector<std::string> names;  // the texts between line ends, "[", "]" and "="
  for (std::size_t b = 0, e = 0; e != std::string::npos && names.size() < 16; b = e + 1)
    names.push_back(file.substr(b, (e = file.find_first_of("\r\n[]=", b)) - b));
  for (const std::string& s : names)
    for (const std::string& k : names)
      if (FoldName(s) != FoldName(section) || FoldName(k) != FoldName(key))
        Check(before.Find(s, k) == after.Find(s, k), "other names keep their values");

  // Every byte outside the edited line is kept: what differs takes away at
  // most one line and adds no more than the entry, its section header and a
  // line end a last line lacked; a delete takes one line, a set adds up to two.
  const long lines_added = Lines(after.bytes()) - Lines(file);
  Check(changed ? (remove ? lines_added == -1 : lines_added >= 0 && lines_added <= 2) : lines_added == 0,
        "a delete takes one line away, a set adds at most a header and the entry");
  const std::string& out = after.bytes();
  const std::size_t common = std::min(file.size(), out.size());
  std::size_t head = 0, tail = 0;
  while (head < common && file[head] == out[head]) ++head;
  while (tail < common - head && file[file.size() - 1 - tail] == out[out.size() - 1 - tail]) ++tail;
  const std::string gone = file.substr(head, file.size() - head - tail),
                    added = out.substr(head, out.size() - head - tail);
  Check(std::count(gone.begin(), gone.end(), '\r') <= 1 && std::count(gone.begin(), gone.end(), '\n') <= 1,
        "at most the edited line goes");
  Check(added.size() <= section.size() + key.size() + value.size() + 9 &&
            std::count(added.begin(), added.end(), '\n') <= 3,
        "no more than the entry, its header and a line end come");
  return 0;
}
