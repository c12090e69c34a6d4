#include "fakes/fake_settings_store.h"

#include <algorithm>

namespace tolva::fakes {

using platform::kSettingsAccessDenied;
using platform::kSettingsInvalidHandle;
using platform::kSettingsNoMoreItems;
using platform::kSettingsNotFound;
using platform::kSettingsOk;
using platform::kSettingsStoreFailed;

std::string FakeSettingsStore::Fold(const std::string& s) {
  std::string out = s;
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

std::string FakeSettingsStore::Normal(const std::string& path) {
  std::string out;
  std::size_t start = 0;
  while (start <= path.size()) {
    std::size_t end = path.find('\\', start);
    if (end == std::string::npos) end = path.size();
    if (end > start) {
      if (!out.empty()) out += '\\';
      out += path.substr(start, end - start);
    }
    start = end + 1;
  }
  return out;
}

void FakeSettingsStore::Ensure(Root root, const std::string& normal_path) {
  std::size_t start = 0;
  while (start < normal_path.size()) {
    std::size_t end = normal_path.find('\\', start);
    if (end == std::string::npos) end = normal_path.size();
    keys_.emplace(std::make_pair(static_cast<int>(root), Fold(normal_path.substr(0, end))),
                  normal_path.substr(start, end - start));
    start = end + 1;
  }
}

void FakeSettingsStore::AddKey(Root root, const std::string& path) {
  Ensure(root, Normal(path));
}

void FakeSettingsStore::Put(Root root, const std::string& path, const std::string& name, std::uint32_t type,
                            const std::string& data) {
  const std::string n = Normal(path);
  Ensure(root, n);
  values_[{root, Fold(n), Fold(name)}] = {type, data};
  value_names_.emplace(std::make_tuple(static_cast<int>(root), Fold(n), Fold(name)), name);
}

bool FakeSettingsStore::HasKey(Root root, const std::string& path) const {
  const std::string f = Fold(Normal(path));
  return f.empty() || keys_.count({root, f}) > 0;
}

std::optional<FakeSettingsStore::Value> FakeSettingsStore::Find(Root root, const std::string& path,
                                                                const std::string& name) const {
  auto it = values_.find({root, Fold(Normal(path)), Fold(name)});
  if (it == values_.end()) return std::nullopt;
  return it->second;
}

std::optional<std::string> FakeSettingsStore::FindString(const std::string& user_path, const std::string& name) const {
  auto v = Find(kUser, user_path, name);
  if (!v) return std::nullopt;
  return v->data;
}

bool FakeSettingsStore::Locate(platform::SettingsKey root, const std::string& path, Root& where,
                               std::string& folded) const {
  const std::string sub = Fold(Normal(path));
  auto join = [](const std::string& a, const std::string& b) { return a.empty() ? b : b.empty() ? a : a + "\\" + b; };
  if (root == platform::kHkeyCurrentUser) {
    where = kUser;
    folded = sub;
  } else if (root == platform::kHkeyLocalMachine) {
    where = kMachine;
    folded = sub;
  } else if (root == platform::kHkeyClassesRoot) {
    where = kMachine;
    folded = join("software\\classes", sub);
  } else {
    auto it = open_.find(root);
    if (it == open_.end()) return false;
    where = it->second.root;
    folded = join(it->second.path, sub);
  }
  return true;
}

long FakeSettingsStore::OpenKey(platform::SettingsKey root, const std::string& path, std::uint32_t access,
                                platform::SettingsKey& key) {
  key = 0;
  ++reads;
  if (fail_reads) return kSettingsStoreFailed;
  Root where;
  std::string folded;
  if (!Locate(root, path, where, folded)) return kSettingsInvalidHandle;
  if (!folded.empty() && !keys_.count({where, folded})) return kSettingsNotFound;
  if ((access & platform::kKeyWriteRights) && !Writable(where)) return kSettingsAccessDenied;
  key = next_++;
  open_[key] = {where, folded, access};
  return kSettingsOk;
}

long FakeSettingsStore::CreateKey(platform::SettingsKey root, const std::string& path, platform::SettingsKey& key) {
  key = 0;
  ++writes;
  Root where;
  std::string folded;
  if (!Locate(root, path, where, folded)) return kSettingsInvalidHandle;
  if (fail_writes) return kSettingsStoreFailed;
  if (!Writable(where)) return kSettingsAccessDenied;
  Ensure(where, Normal(path));  // spelling only matters for test set-up
  key = next_++;
  open_[key] = {where, folded, 0x3f};
  return kSettingsOk;
}

long FakeSettingsStore::CloseKey(platform::SettingsKey key) {
  return open_.erase(key) ? kSettingsOk : kSettingsInvalidHandle;
}

long FakeSettingsStore::EnumKey(platform::SettingsKey key, std::uint32_t index, std::string& name) {
  ++reads;
  auto it = open_.find(key);
  if (it == open_.end()) return kSettingsInvalidHandle;
  if (!(it->second.access & platform::kKeyEnumerateSubKeys)) return kSettingsAccessDenied;
  if (fail_reads) return kSettingsStoreFailed;
  const std::string prefix = it->second.path.empty() ? "" : it->second.path + "\\";
  std::uint32_t i = 0;
  // keys_ is ordered by folded path, so the children come in folded-name order.
  for (const auto& [k, spelling] : keys_) {
    if (k.first != it->second.root || k.second.size() <= prefix.size()) continue;
    if (k.second.compare(0, prefix.size(), prefix) != 0) continue;
    if (k.second.find('\\', prefix.size()) != std::string::npos) continue;
    if (i++ == index) {
      name = spelling;
      return kSettingsOk;
    }
  }
  return kSettingsNoMoreItems;
}

long FakeSettingsStore::QueryValue(platform::SettingsKey key, const std::string& name, std::uint32_t& type,
                                   std::string& data) {
  ++reads;
  auto it = open_.find(key);
  if (it == open_.end()) return kSettingsInvalidHandle;
  if (!(it->second.access & platform::kKeyQueryValue)) return kSettingsAccessDenied;
  if (fail_reads) return kSettingsStoreFailed;
  auto v = values_.find({it->second.root, it->second.path, Fold(name)});
  if (v == values_.end()) return kSettingsNotFound;
  type = v->second.type;
  data = v->second.data;
  return kSettingsOk;
}

long FakeSettingsStore::EnumValue(platform::SettingsKey key, std::uint32_t index, std::string& name,
                                  std::uint32_t& type, std::string& data) {
  ++reads;
  auto it = open_.find(key);
  if (it == open_.end()) return kSettingsInvalidHandle;
  if (!(it->second.access & platform::kKeyQueryValue)) return kSettingsAccessDenied;
  if (fail_reads) return kSettingsStoreFailed;
  std::uint32_t i = 0;
  for (const auto& [k, v] : values_) {
    if (std::get<0>(k) != it->second.root || std::get<1>(k) != it->second.path) continue;
    if (i++ != index) continue;
    auto spelt = value_names_.find(k);
    name = spelt == value_names_.end() ? std::get<2>(k) : spelt->second;
    type = v.type;
    data = v.data;
    return kSettingsOk;
  }
  return kSettingsNoMoreItems;
}

long FakeSettingsStore::SetValue(platform::SettingsKey key, const std::string& name, std::uint32_t type,
                                 const std::string& data) {
  ++writes;
  auto it = open_.find(key);
  if (it == open_.end()) return kSettingsInvalidHandle;
  if (!(it->second.access & platform::kKeySetValue)) return kSettingsAccessDenied;
  if (fail_writes) return kSettingsStoreFailed;
  values_[{it->second.root, it->second.path, Fold(name)}] = {type, data};
  value_names_.emplace(std::make_tuple(static_cast<int>(it->second.root), it->second.path, Fold(name)), name);
  return kSettingsOk;
}

long FakeSettingsStore::GetString(const std::string& path, const std::string& name, std::string& value) {
  ++reads;
  if (fail_reads) return kSettingsStoreFailed;
  auto v = Find(kUser, path, name);
  if (!v || (v->type != platform::kRegSz && v->type != platform::kRegExpandSz)) return kSettingsNotFound;
  value = v->data;
  return kSettingsOk;
}

long FakeSettingsStore::SetString(const std::string& path, const std::string& name, const std::string& value) {
  ++writes;
  if (fail_writes) return kSettingsStoreFailed;
  if (!user_writable) return kSettingsAccessDenied;
  Put(kUser, path, name, platform::kRegSz, value);
  return kSettingsOk;
}

long FakeSettingsStore::DeleteValue(const std::string& path, const std::string& name) {
  ++writes;
  if (fail_writes) return kSettingsStoreFailed;
  if (!user_writable) return kSettingsAccessDenied;
  return values_.erase({kUser, Fold(Normal(path)), Fold(name)}) ? kSettingsOk : kSettingsNotFound;
}

long FakeSettingsStore::DeleteKey(const std::string& path) {
  ++writes;
  if (fail_writes) return kSettingsStoreFailed;
  if (!user_writable) return kSettingsAccessDenied;
  const std::string f = Fold(Normal(path));
  if (f.empty()) return platform::kSettingsInvalidParameter;
  if (!keys_.count({kUser, f})) return kSettingsNotFound;
  auto below = [&](const std::string& p) { return p == f || p.compare(0, f.size() + 1, f + "\\") == 0; };
  std::erase_if(keys_, [&](const auto& kv) { return kv.first.first == kUser && below(kv.first.second); });
  std::erase_if(values_,
                [&](const auto& kv) { return std::get<0>(kv.first) == kUser && below(std::get<1>(kv.first)); });
  return kSettingsOk;
}

}  // namespace tolva::fakes
