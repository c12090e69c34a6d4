#include "settings/desktop_associations.h"

#include <cstdlib>

#include "settings/setting_text.h"

namespace tolva::settings {

namespace {

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

std::vector<std::string> Split(std::string_view text, char sep) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find(sep, start);
    if (end == std::string_view::npos) end = text.size();
    if (end > start) parts.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

// The value of `key` in group `group` of a key-file (desktop entry,
// mimeapps.list); false when absent.
bool KeyFileValue(std::string_view text, std::string_view group, std::string_view key, std::string& value) {
  bool in_group = false;
  for (std::string_view line : Lines(text)) {
    line = Trim(line);
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      in_group = line.size() == group.size() + 2 && line.back() == ']' && line.substr(1, group.size()) == group;
      continue;
    }
    if (!in_group) continue;
    const std::size_t eq = line.find('=');
    if (eq == std::string_view::npos || Trim(line.substr(0, eq)) != key) continue;
    value.assign(Trim(line.substr(eq + 1)));
    return true;
  }
  return false;
}

}  // namespace

std::string DesktopAssociations::Env(const char* name, const std::string& fallback) {
  std::string value;
  if (system_ && system_->Environment(name, value) && !value.empty() && value[0] == '/') return value;
  return fallback;
}

std::vector<std::string> DesktopAssociations::DataDirectories() {
  std::vector<std::string> dirs;
  const std::string home = Env("HOME", "");
  const std::string data_home = Env("XDG_DATA_HOME", home.empty() ? "" : home + "/.local/share");
  if (!data_home.empty()) dirs.push_back(data_home);
  for (std::string& d : Split(Env("XDG_DATA_DIRS", "/usr/local/share:/usr/share"), ':'))
    if (d[0] == '/') dirs.push_back(std::move(d));
  return dirs;
}

std::vector<std::string> DesktopAssociations::ConfigDirectories() {
  std::vector<std::string> dirs;
  const std::string home = Env("HOME", "");
  const std::string config_home = Env("XDG_CONFIG_HOME", home.empty() ? "" : home + "/.config");
  if (!config_home.empty()) dirs.push_back(config_home);
  for (std::string& d : Split(Env("XDG_CONFIG_DIRS", "/etc/xdg"), ':'))
    if (d[0] == '/') dirs.push_back(std::move(d));
  return dirs;
}

bool DesktopAssociations::Read(const std::string& path, std::string& text) {
  platform::FileError error;
  return files_.ReadAll(path, text, error);
}

std::string DesktopAssociations::MimeType(const std::string& extension) {
  if (extension.empty()) return {};
  const std::string wanted = "*." + extension;
  std::string best;
  long best_weight = -1;
  for (const std::string& dir : DataDirectories()) {
    std::string text;
    if (!Read(dir + "/mime/globs2", text)) continue;
    for (std::string_view line : Lines(text)) {
      // weight:type:glob[:flags]
      if (line.empty() || line[0] == '#') continue;
      const std::vector<std::string> f = Split(line, ':');
      if (f.size() < 3) continue;
      const bool case_sensitive = f.size() > 3 && f[3].find("cs") != std::string::npos;
      if (case_sensitive ? f[2] != wanted : !SameName(f[2], wanted)) continue;
      const long weight = std::strtol(f[0].c_str(), nullptr, 10);
      if (weight > best_weight) {
        best_weight = weight;
        best = f[1];
      }
    }
  }
  return best;
}

std::string DesktopAssociations::CommandFromExec(std::string_view exec) {
  std::string out;
  for (std::size_t i = 0; i < exec.size(); ++i) {
    if (exec[i] != '%' || i + 1 == exec.size()) {
      out += exec[i];
      continue;
    }
    const char code = exec[++i];
    if (code == '%') {
      out += '%';
    } else if (code == 'f' || code == 'F' || code == 'u' || code == 'U') {
      out += "%1";
    }
    // Every other field code (%i %c %k, and the deprecated ones) stands for
    // something this host does not have: dropped.
  }
  return std::string(Trim(out));
}

bool DesktopAssociations::ReadDesktopEntry(const std::string& id, std::string& name, std::string& command) {
  if (id.empty() || id.find("..") != std::string::npos) return false;
  std::vector<std::string> candidates = {id};
  // "vendor-app.desktop" may live as "vendor/app.desktop".
  if (const std::size_t dash = id.find('-'); dash != std::string::npos)
    candidates.push_back(id.substr(0, dash) + "/" + id.substr(dash + 1));
  for (const std::string& dir : DataDirectories()) {
    for (const std::string& file : candidates) {
      std::string text, exec;
      if (!Read(dir + "/applications/" + file, text)) continue;
      if (!KeyFileValue(text, "Desktop Entry", "Exec", exec)) continue;
      command = CommandFromExec(exec);
      if (command.empty()) continue;
      if (!KeyFileValue(text, "Desktop Entry", "Name", name)) name = file;
      return true;
    }
  }
  return false;
}

bool DesktopAssociations::Find(const std::string& extension, std::string& name, std::string& command) {
  const std::string type = MimeType(extension);
  if (type.empty()) return false;
  std::vector<std::string> lists;
  for (const std::string& dir : ConfigDirectories()) lists.push_back(dir + "/mimeapps.list");
  for (const std::string& dir : DataDirectories()) lists.push_back(dir + "/applications/mimeapps.list");
  // The chosen default first; an application merely added for the type
  // serves when no default is set anywhere.
  for (const char* group : {"Default Applications", "Added Associations"}) {
    for (const std::string& list : lists) {
      std::string text, ids;
      if (!Read(list, text) || !KeyFileValue(text, group, type, ids)) continue;
      for (const std::string& id : Split(ids, ';'))
        if (ReadDesktopEntry(std::string(Trim(id)), name, command)) return true;
    }
  }
  return false;
}

}  // namespace tolva::settings
