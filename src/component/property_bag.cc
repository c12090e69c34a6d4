// The in-memory and file-backed property bags.
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "tolva/property_bag.h"

namespace tolva {

namespace {

// A stored value and a default are the same when their texts are: the bag
// keeps "0.75" and a Single 0.75 as one value.
bool SameAsDefault(const Variant& value, const Variant& default_value) {
  if (value.kind() == Variant::Kind::kPicture || default_value.kind() == Variant::Kind::kPicture) {
    return value.AsPicture() == default_value.AsPicture();
  }
  if (value.IsEmpty() || default_value.IsEmpty()) return value.IsEmpty() && default_value.IsEmpty();
  return value.AsString() == default_value.AsString();
}

// Values are written escaped so that any byte, line ends included, survives.
std::string Escape(const std::string& s) {
  std::string out;
  for (unsigned char c : s) {
    if (c == '\\') {
      out += "\\\\";
    } else if (c < 32 || c == 127 || c == '=') {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\x%02x", c);
      out += buf;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out;
}

std::string Unescape(const std::string& s) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\\' && i + 1 < s.size()) {
      if (s[i + 1] == '\\') {
        out += '\\';
        ++i;
        continue;
      }
      if (s[i + 1] == 'x' && i + 3 < s.size()) {
        out += static_cast<char>(std::stoi(s.substr(i + 2, 2), nullptr, 16));
        i += 3;
        continue;
      }
    }
    out += s[i];
  }
  return out;
}

}  // namespace

Variant MemoryPropertyBag::ReadProperty(const std::string& name, const Variant& default_value) {
  auto it = values_.find(name);
  return it == values_.end() ? default_value : it->second;
}

void MemoryPropertyBag::WriteProperty(const std::string& name, const Variant& value, const Variant& default_value) {
  if (SameAsDefault(value, default_value)) {
    values_.erase(name);
  } else {
    values_[name] = value;
  }
}

bool FilePropertyBag::Load() noexcept {
  try {
    values_.clear();
    std::ifstream in(path_, std::ios::binary);
    if (!in) return true;  // no file yet: an empty bag
    std::string line;
    while (std::getline(in, line)) {
      const std::size_t eq = line.find('=');
      if (eq == std::string::npos || eq == 0) continue;
      // "name=value"; a picture is written as "name=@picture:path".
      std::string name = Unescape(line.substr(0, eq));
      std::string value = Unescape(line.substr(eq + 1));
      if (value.rfind("@picture:", 0) == 0) {
        values_[name] = Variant::FromPicture(std::make_shared<Picture>(Picture{value.substr(9), ""}));
      } else {
        values_[name] = Variant::FromString(value);
      }
    }
    return !in.bad();
  } catch (...) {
    return false;
  }
}

bool FilePropertyBag::Save() noexcept {
  try {
    const std::string tmp = path_ + ".tmp";
    {
      std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
      if (!out) return false;
      for (const auto& [name, value] : values_) {
        std::string text = value.kind() == Variant::Kind::kPicture ? "@picture:" + value.AsString() : value.AsString();
        out << Escape(name) << '=' << Escape(text) << '\n';
      }
      out.flush();
      if (!out) return false;
    }
    return std::rename(tmp.c_str(), path_.c_str()) == 0;
  } catch (...) {
    return false;
  }
}

}  // namespace tolva
