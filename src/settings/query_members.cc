// Reading one value of the settings store, and finding the program that
// opens a file extension.
#include <cstring>
#include <string>

#include "component/component_state.h"
#include "settings/desktop_associations.h"
#include "settings/environment_expander.h"
#include "settings/setting_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// Query, set, create sub-key, enumerate, notify, create link: deliberately
// wide, so the open fails where the caller may not write that root.
constexpr std::uint32_t kQueryAccess = 63;
// The expansion buffer is the value's size plus this many characters.
constexpr std::size_t kExpansionRoom = 400;
constexpr std::size_t kProfileBuffer = 1024;
constexpr const char* kClasses = "SOFTWARE\\Classes\\";

std::string UpToNul(const std::string& s) {
  return s.substr(0, s.find('\0'));
}

// The system profile's [Extensions] entry "txt=notepad.exe ^.txt": "^"
// stands for the file's name without its extension.
bool FromExtensionsEntry(const std::string& entry, const std::string& extension, std::string& name,
                         std::string& command) {
  if (entry.empty()) return false;
  command = entry;
  const std::string marker = "^." + extension;
  if (const std::size_t at = command.find(marker); at != std::string::npos) {
    command.replace(at, marker.size(), "%1");
  } else if (const std::size_t caret = command.find('^'); caret != std::string::npos) {
    const std::size_t end = command.find(' ', caret);
    command.replace(caret, end == std::string::npos ? std::string::npos : end - caret, "%1");
  }
  const std::string program = command.substr(0, command.find(' '));
  const std::size_t slash = program.find_last_of("\\/");
  name = slash == std::string::npos ? program : program.substr(slash + 1);
  return true;
}

}  // namespace

Variant Tolva2011Register::QueryValue(Long KeyArea, const std::string& KeyName, const std::string& ValueName) noexcept {
  return detail::Guarded(Variant::FromString(""), [&] {
    Variant result = Variant::FromString("");
    platform::SettingsStore* store = s_->services.settings.get();
    if (!store) return result;
    platform::SettingsKey key = 0;
    if (store->OpenKey(static_cast<platform::SettingsKey>(KeyArea), KeyName, kQueryAccess, key) !=
        platform::kSettingsOk)
      return result;
    std::uint32_t type = 0;
    std::string data;
    const long rc = store->QueryValue(key, ValueName, type, data);
    store->CloseKey(key);
    if (rc != platform::kSettingsOk) return result;
    if (type == platform::kRegSz) {
      result = Variant::FromString(UpToNul(data));
    } else if (type == platform::kRegExpandSz) {
      platform::SystemInfo* system = s_->services.system.get();
      std::string expanded = settings::ExpandEnvironmentReferences(
          UpToNul(data),
          [system](const std::string& name, std::string& value) { return system && system->Environment(name, value); });
      // What the fixed buffer holds, less its NUL: kept on purpose, hosts
      // sized their own buffers the same way.
      const std::size_t room = data.size() + kExpansionRoom - 1;
      if (expanded.size() > room) expanded.resize(room);
      result = Variant::FromString(std::move(expanded));
    } else if (type == platform::kRegDword && data.size() == 4) {
      std::uint32_t v = 0;
      for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(data[static_cast<std::size_t>(i)]);
      Long number = 0;
      std::memcpy(&number, &v, sizeof number);
      result = Variant::FromLong(number);
    }
    return result;  // other types leave the value unread
  });
}

Boolean Tolva2011Register::QueryProgramForExtension(const std::string& Extension, std::string& ProgramName,
                                                    std::string& ProgramCall) noexcept {
  return detail::Guarded(kFalse, [&] {
    ProgramName.clear();
    ProgramCall.clear();
    const std::string bare = !Extension.empty() && Extension[0] == '.' ? Extension.substr(1) : Extension;
    if (bare.empty() || bare.find_first_of("\\/") != std::string::npos) return kFalse;
    const Long machine = static_cast<Long>(platform::kHkeyLocalMachine);

    // 1. The store's classes: ".txt" names a class whose open command we want.
    const std::string file_class = QueryValue(machine, kClasses + ("." + bare), "").AsString();
    if (!file_class.empty()) {
      std::string command = QueryValue(machine, kClasses + file_class + "\\shell\\open\\command", "").AsString();
      if (!command.empty()) {
        ProgramName = QueryValue(machine, kClasses + file_class, "").AsString();
        if (ProgramName.empty()) ProgramName = file_class;
        ProgramCall = std::move(command);
        return kTrue;
      }
    }

    // 2. The desktop's own associations.
    if (s_->services.files) {
      settings::DesktopAssociations desktop(*s_->services.files, s_->services.system.get());
      if (desktop.Find(bare, ProgramName, ProgramCall)) return kTrue;
      ProgramName.clear();
      ProgramCall.clear();
    }

    // 3. The system profile's [Extensions] section.
    if (s_->services.profiles) {
      std::string entry;
      s_->services.profiles->GetSystemString("Extensions", bare, "", entry, kProfileBuffer);
      if (FromExtensionsEntry(entry, bare, ProgramName, ProgramCall)) return kTrue;
    }
    ProgramName.clear();
    ProgramCall.clear();
    return kFalse;
  });
}

}  // namespace tolva
