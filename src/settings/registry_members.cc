// Application settings: typed values under the application's key in the
// per-user store, mirrored into an optional backup profile file.
//
// Every error is swallowed: a get returns its default, a save or delete does
// nothing, an enumeration returns the count it reached.
#include <string>

#include "component/component_state.h"
#include "settings/app_settings_layout.h"
#include "settings/setting_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

using platform::SettingsKey;

// Opens the application key for enumeration; 0 when it cannot be opened.
// With an empty application the key is the settings key itself, so the
// enumeration lists the applications: kept on purpose, hosts use it.
SettingsKey OpenApplicationKey(platform::SettingsStore& store, const std::string& app) {
  SettingsKey key = 0;
  if (store.OpenKey(platform::kHkeyCurrentUser, settings::ApplicationKeyPath(app), platform::kKeyEnumerateSubKeys,
                    key) != platform::kSettingsOk)
    return 0;
  return key;
}

// Closes an open key on every path out of a member.
class KeyCloser {
 public:
  KeyCloser(platform::SettingsStore& store, SettingsKey key) noexcept : store_(store), key_(key) {}
  ~KeyCloser() {
    if (key_) store_.CloseKey(key_);
  }
  KeyCloser(const KeyCloser&) = delete;
  KeyCloser& operator=(const KeyCloser&) = delete;

 private:
  platform::SettingsStore& store_;
  SettingsKey key_;
};

// The sub-key name as a fixed character buffer would hold it: up to its first NUL.
std::string UpToNul(const std::string& name) {
  return name.substr(0, name.find('\0'));
}

}  // namespace

std::string Tolva2011Register::RegistryGetSetting(const std::string& Section, const std::string& Key,
                                                  const std::string& Default) noexcept {
  return detail::Guarded(Default, [&]() -> std::string {
    const std::string& app = s_->props.registry_app;
    // The settings calls refuse empty names with a run-time error, which the
    // member swallows: the default comes back.
    if (app.empty() || Section.empty() || Key.empty()) return Default;
    platform::SettingsStore* store = s_->services.settings.get();
    const std::string path = settings::SectionKeyPath(app, Section);
    if (!s_->props.registry_backup_file.empty() && IsTrue(s_->props.registry_backup_load)) {
      // The backup file wins, and each such read refreshes the store's copy.
      std::string value = FileReadProfileString(s_->props.registry_backup_file, Section, Key, Default);
      if (store) store->SetString(path, Key, value);
      return value;
    }
    std::string value;
    if (store && store->GetString(path, Key, value) == platform::kSettingsOk) return value;
    return Default;
  });
}

Long Tolva2011Register::RegistryGetSettingLong(const std::string& Section, const std::string& Key,
                                               Long Default) noexcept {
  return detail::Guarded(Default, [&] {
    // A stored text that is no number reads as 0, not as the default: kept on purpose.
    const std::string text = RegistryGetSetting(Section, Key, settings::LongText(Default));
    return settings::RoundToLong(settings::LeadingNumber(text));
  });
}

Double Tolva2011Register::RegistryGetSettingDouble(const std::string& Section, const std::string& Key,
                                                   Double Default) noexcept {
  return detail::Guarded(Default, [&] {
    const std::string text = RegistryGetSetting(Section, Key, settings::DoubleText(Default));
    return settings::LeadingNumber(text);
  });
}

Boolean Tolva2011Register::RegistryGetSettingBoolean(const std::string& Section, const std::string& Key,
                                                     Boolean Default) noexcept {
  return detail::Guarded(Default, [&] {
    const std::string text = RegistryGetSetting(Section, Key, settings::BooleanDefaultText(Default));
    return settings::BooleanFromText(text).value_or(Default);
  });
}

void Tolva2011Register::RegistrySaveSetting(const std::string& Section, const std::string& Key,
                                            const std::string& Value) noexcept {
  detail::GuardedVoid([&] {
    const std::string& app = s_->props.registry_app;
    // An empty name stops the settings call with a run-time error before
    // the backup is written.
    if (app.empty() || Section.empty() || Key.empty()) return;
    if (platform::SettingsStore* store = s_->services.settings.get())
      store->SetString(settings::SectionKeyPath(app, Section), Key, Value);
    // The backup is written whatever RegistryBackupLoad says.
    if (!s_->props.registry_backup_file.empty())
      FileWriteProfileString(s_->props.registry_backup_file, Section, Key, Value);
  });
}

void Tolva2011Register::RegistrySaveSettingLong(const std::string& Section, const std::string& Key,
                                                Long Value) noexcept {
  detail::GuardedVoid([&] { RegistrySaveSetting(Section, Key, settings::LongText(Value)); });
}

void Tolva2011Register::RegistrySaveSettingDouble(const std::string& Section, const std::string& Key,
                                                  Double Value) noexcept {
  detail::GuardedVoid([&] { RegistrySaveSetting(Section, Key, settings::DoubleText(Value)); });
}

void Tolva2011Register::RegistrySaveSettingBoolean(const std::string& Section, const std::string& Key,
                                                   Boolean Value) noexcept {
  // Capitalised, unlike the getter's lower-case defaults; both parse back.
  detail::GuardedVoid([&] { RegistrySaveSetting(Section, Key, settings::BooleanSaveText(Value)); });
}

void Tolva2011Register::RegistryDeleteKey(const std::string& Section, const std::string& Key) noexcept {
  detail::GuardedVoid([&] {
    const std::string& app = s_->props.registry_app;
    if (app.empty() || Section.empty() || Key.empty()) return;
    // The backup file is left alone; a missing value is no error.
    if (platform::SettingsStore* store = s_->services.settings.get())
      store->DeleteValue(settings::SectionKeyPath(app, Section), Key);
  });
}

void Tolva2011Register::RegistryDeleteSection(const std::string& Section) noexcept {
  detail::GuardedVoid([&] {
    const std::string& app = s_->props.registry_app;
    if (app.empty() || Section.empty()) return;
    if (platform::SettingsStore* store = s_->services.settings.get())
      store->DeleteKey(settings::SectionKeyPath(app, Section));
  });
}

Long Tolva2011Register::RegistryGetSections(HostArray<std::string>& Sections, Long MaxSections) noexcept {
  Long count = 0;
  detail::GuardedVoid([&] {
    platform::SettingsStore* store = s_->services.settings.get();
    if (!store) return;
    const SettingsKey key = OpenApplicationKey(*store, s_->props.registry_app);
    if (!key) return;
    KeyCloser closer(*store, key);
    std::string name;
    for (std::uint32_t index = 0; store->EnumKey(key, index, name) == platform::kSettingsOk; ++index) {
      ++count;
      // One more than MaxSections tells the host its array was too small.
      if (count > MaxSections) break;
      Sections.Store(count, UpToNul(name));  // entries start at 1; outside the array: skipped
    }
  });
  return count;
}

Boolean Tolva2011Register::RegistryTestSection(const std::string& Section) noexcept {
  return detail::Guarded(kFalse, [&] {
    platform::SettingsStore* store = s_->services.settings.get();
    if (Section.empty() || !store) return kFalse;
    const SettingsKey key = OpenApplicationKey(*store, s_->props.registry_app);
    if (!key) return kFalse;
    KeyCloser closer(*store, key);
    std::string name;
    for (std::uint32_t index = 0; store->EnumKey(key, index, name) == platform::kSettingsOk; ++index)
      if (settings::SameName(UpToNul(name), Section)) return kTrue;
    return kFalse;
  });
}

}  // namespace tolva
