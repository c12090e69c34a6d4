#include "platform/linux/profiles/profile_file.h"

namespace tolva::platform::posix {

namespace {

bool IsBlank(char c) noexcept {
  return c == ' ' || c == '\t';
}

}  // namespace

std::string FoldName(std::string_view name) {
  std::string out(TrimProfileBlanks(name));
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

std::string_view TrimProfileBlanks(std::string_view s) noexcept {
  std::size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

ProfileFile::ProfileFile(std::string bytes) : bytes_(std::move(bytes)) {
  Parse();
}

void ProfileFile::Parse() {
  const std::string_view all(bytes_);
  std::size_t pos = 0;
  while (pos < all.size()) {
    Line line;
    line.begin = pos;
    std::size_t e = all.find_first_of("\r\n", pos);
    if (e == std::string_view::npos) e = all.size();
    line.end = e;
    line.next = e;
    if (e < all.size()) line.next = (all[e] == '\r' && e + 1 < all.size() && all[e + 1] == '\n') ? e + 2 : e + 1;
    pos = line.next;

    std::size_t first = line.begin;
    while (first < line.end && IsBlank(all[first])) ++first;
    if (first == line.end) {
      line.kind = Kind::kBlank;
    } else if (all[first] == ';') {
      line.kind = Kind::kComment;
    } else if (all[first] == '[' && all.find(']', first) < line.end) {
      line.kind = Kind::kSection;
      const std::size_t close = all.find(']', first);
      const std::string_view name = TrimProfileBlanks(all.substr(first + 1, close - first - 1));
      line.name_begin = static_cast<std::size_t>(name.data() - all.data());
      line.name_end = line.name_begin + name.size();
    } else if (const std::size_t eq = all.find('=', first); eq < line.end) {
      line.kind = Kind::kKey;
      const std::string_view name = TrimProfileBlanks(all.substr(line.begin, eq - line.begin));
      line.name_begin = static_cast<std::size_t>(name.data() - all.data());
      line.name_end = line.name_begin + name.size();
      std::string_view value = TrimProfileBlanks(all.substr(eq + 1, line.end - eq - 1));
      if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
      line.value_begin = static_cast<std::size_t>(value.data() - all.data());
      line.value_end = line.value_begin + value.size();
    }
    lines_.push_back(line);
  }

  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (line.kind == Kind::kSection) {
      if (!sections_.empty()) sections_.back().end = i;
      sections_.push_back(Section{i, lines_.size(), {}});
      // The first section of a name wins; later ones are never found.
      section_index_.emplace(FoldName(Text(line.name_begin, line.name_end)), sections_.size() - 1);
    } else if (line.kind == Kind::kKey && !sections_.empty()) {
      sections_.back().keys.emplace(FoldName(Text(line.name_begin, line.name_end)), i);
    }
  }
}

const ProfileFile::Section* ProfileFile::FindSection(std::string_view section) const {
  auto it = section_index_.find(FoldName(section));
  return it == section_index_.end() ? nullptr : &sections_[it->second];
}

std::optional<std::string_view> ProfileFile::Find(std::string_view section, std::string_view key) const {
  const Section* s = FindSection(section);
  if (!s) return std::nullopt;
  auto it = s->keys.find(FoldName(key));
  if (it == s->keys.end()) return std::nullopt;
  const Line& line = lines_[it->second];
  std::string_view value = Text(line.value_begin, line.value_end);
  // The value is handed out as the classic API's C string would be: up to a NUL.
  if (const std::size_t nul = value.find('\0'); nul != std::string_view::npos) value = value.substr(0, nul);
  return value;
}

std::string ProfileFile::WithValue(std::string_view section, std::string_view key, const std::string* value,
                                   bool& changed) const {
  changed = false;
  const Section* s = FindSection(section);
  std::string entry;
  if (value) {
    entry.reserve(key.size() + value->size() + 3);
    entry.append(key).append("=").append(*value).append("\r\n");
  }
  // Text that follows a last line without a line end starts a line of its own.
  auto ends_open = [&](std::size_t line_index) { return lines_[line_index].next == lines_[line_index].end; };

  if (!s) {
    if (!value) return bytes_;
    std::string out = bytes_;
    if (!lines_.empty() && ends_open(lines_.size() - 1)) out += "\r\n";
    out.append("[").append(section).append("]\r\n").append(entry);
    changed = true;
    return out;
  }

  const auto it = s->keys.find(FoldName(key));
  if (it != s->keys.end()) {
    const Line& line = lines_[it->second];
    // Taking away a line between a lone CR and an LF would let the two read
    // as one CR LF, and the blank line after it would go too; the LF left in
    // its place ends the line before instead.
    if (!value && line.begin > 0 && bytes_[line.begin - 1] == '\r' && line.next < bytes_.size() &&
        bytes_[line.next] == '\n')
      entry = "\n";
    std::string out;
    out.reserve(bytes_.size() + entry.size());
    out.append(bytes_, 0, line.begin).append(entry).append(bytes_, line.next, std::string::npos);
    changed = out != bytes_;
    return out;
  }
  if (!value) return bytes_;

  // A new key goes after the last line of the section that says something,
  // so trailing blank lines and comments stay below it.
  std::size_t after = s->header;
  for (std::size_t i = s->header + 1; i < s->end; ++i)
    if (lines_[i].kind != Kind::kBlank && lines_[i].kind != Kind::kComment) after = i;
  const Line& anchor = lines_[after];
  std::string out;
  out.reserve(bytes_.size() + entry.size() + 2);
  out.append(bytes_, 0, anchor.next);
  if (ends_open(after)) out += "\r\n";
  out.append(entry).append(bytes_, anchor.next, std::string::npos);
  changed = true;
  return out;
}

}  // namespace tolva::platform::posix
