// The settings part of the tour: an application's settings in a database
// the host names (never the user's real one), listed, read, written,
// deleted, and exported as a profile file in the backup layout.
//   tolva-demo settings DATABASE APP list
//   tolva-demo settings DATABASE APP get SECTION KEY [DEFAULT]
//   tolva-demo settings DATABASE APP set SECTION KEY VALUE [BACKUP_FILE]
//   tolva-demo settings DATABASE APP delete SECTION [KEY]
//   tolva-demo settings DATABASE APP export BACKUP_FILE
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "demo.h"

namespace {

using tolva::HostArray;
using tolva::Long;

constexpr const char* kUsage =
    "DATABASE APP list | get SECTION KEY [DEFAULT] | set SECTION KEY VALUE [BACKUP_FILE] | "
    "delete SECTION [KEY] | export BACKUP_FILE";

// Every section of the application; the array grows while the count says
// it was too small.
std::vector<std::string> Sections(tolva::Tolva2011Register& c) {
  Long room = 8;
  for (;;) {
    HostArray<std::string> names = HostArray<std::string>::OneDim(1, room);
    const Long n = c.RegistryGetSections(names, room);
    if (n <= room) return std::vector<std::string>(names.At(1), names.At(1) + n);
    room *= 2;
  }
}

// The string values of one section, read straight from the store: the
// members read values by name, listing them is the store's business.
std::vector<std::pair<std::string, std::string>> Values(tolva::platform::SettingsStore& store, const std::string& app,
                                                        const std::string& section) {
  std::vector<std::pair<std::string, std::string>> values;
  tolva::platform::SettingsKey key = 0;
  const std::string path = "Software\\VB and VBA Program Settings\\" + app + "\\" + section;
  if (store.OpenKey(tolva::platform::kHkeyCurrentUser, path, tolva::platform::kKeyQueryValue, key) != 0) return values;
  std::string name, data;
  std::uint32_t type = 0;
  for (std::uint32_t i = 0; store.EnumValue(key, i, name, type, data) == 0; ++i)
    if (type == tolva::platform::kRegSz) values.emplace_back(name, data);
  store.CloseKey(key);
  return values;
}

int Settings(const demo::Args& args) {
  if (args.size() < 3) {
    std::cerr << "usage: settings " << kUsage << "\n";
    return 2;
  }
  tolva::platform::Services services = tolva::platform::LinuxServices();
  services.settings = tolva::platform::NewSettingsDatabase(args[0], "");
  demo::ConsoleHost host;
  tolva::Tolva2011Register c(services, &host, &host);
  c.RegistryApp(args[1]);
  const std::string& verb = args[2];

  if (verb == "list") {
    demo::Heading("Sections of " + args[1]);
    for (const std::string& s : Sections(c)) {
      std::cout << "  [" << s << "]\n";
      for (const auto& [k, v] : Values(*services.settings, args[1], s)) std::cout << "    " << k << "=" << v << "\n";
    }
    return 0;
  }
  if (verb == "get" && args.size() >= 5) {
    demo::Show(args[3] + "\\" + args[4], c.RegistryGetSetting(args[3], args[4], args.size() > 5 ? args[5] : ""));
    return 0;
  }
  if (verb == "set" && args.size() >= 6) {
    if (args.size() > 6) c.RegistryBackupFile(args[6]);
    c.RegistrySaveSetting(args[3], args[4], args[5]);
    demo::Show("saved " + args[3] + "\\" + args[4], c.RegistryGetSetting(args[3], args[4], "<not saved>"));
    return 0;
  }
  if (verb == "delete" && args.size() >= 4) {
    if (args.size() > 4) {
      c.RegistryDeleteKey(args[3], args[4]);
      demo::Show("deleted " + args[3] + "\\" + args[4], c.RegistryGetSetting(args[3], args[4], "<gone>"));
    } else {
      c.RegistryDeleteSection(args[3]);
      demo::Show("section " + args[3] + " still there", c.RegistryTestSection(args[3]) ? "True" : "False");
    }
    return 0;
  }
  if (verb == "export" && args.size() >= 4) {
    // The backup-file layout: one bracketed heading per section, key=value lines.
    std::size_t written = 0;
    for (const std::string& s : Sections(c))
      for (const auto& [k, v] : Values(*services.settings, args[1], s)) {
        c.FileWriteProfileString(args[3], s, k, v);
        ++written;
      }
    demo::Show("exported values", std::to_string(written));
    return 0;
  }
  std::cerr << "usage: settings " << kUsage << "\n";
  return 2;
}

TOLVA_DEMO_COMMAND("settings", kUsage, Settings);

}  // namespace
