// A component on the in-memory settings store, profile store, file system
// and a 1280 x 1024 pixel screen at 15 twips per pixel (19200 x 15360 twips).
#ifndef TOLVA_TESTS_UNIT_SETTINGS_SETTINGS_FIXTURE_H_
#define TOLVA_TESTS_UNIT_SETTINGS_SETTINGS_FIXTURE_H_

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "fakes/fake_profile_store.h"
#include "fakes/fake_settings_store.h"
#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_settings {

// Only the environment matters to this family; the rest answers nothing.
class FakeEnvironment : public platform::SystemInfo {
 public:
  std::uint32_t TickCount() override { return 0; }
  void WaitForInput(std::uint32_t) override {}
  platform::DateTime Now() override { return {}; }
  bool ComputerName(std::string&) override { return false; }
  bool UserName(std::string&) override { return false; }
  std::string MessageText(std::int32_t) override { return ""; }
  bool Environment(const std::string& name, std::string& value) override {
    auto it = vars.find(name);
    if (it == vars.end()) return false;
    value = it->second;
    return true;
  }
  std::map<std::string, std::string> vars;
};

inline constexpr const char* kApp = "Software\\VB and VBA Program Settings\\Demo";

class SettingsTest : public ::testing::Test {
 protected:
  SettingsTest()
      : store(std::make_shared<fakes::FakeSettingsStore>()),
        profiles(std::make_shared<fakes::FakeProfileStore>()),
        files(std::make_shared<fakes::FakeFileSystem>()),
        windows(std::make_shared<fakes::FakeWindowServices>(96)),
        env(std::make_shared<FakeEnvironment>()),
        c(Services()) {
    windows->work_area = {0, 0, 1280, 1024};
    c.RegistryApp("Demo");
  }

  platform::Services Services() {
    platform::Services s;
    s.settings = store;
    s.profiles = profiles;
    s.files = files;
    s.windows = windows;
    s.system = env;
    return s;
  }

  // The stored text of a key of the Demo application, or "<absent>".
  std::string Stored(const std::string& section, const std::string& key) const {
    return store->FindString(std::string(kApp) + "\\" + section, key).value_or("<absent>");
  }
  void Store(const std::string& section, const std::string& key, const std::string& value) {
    store->PutString(std::string(kApp) + "\\" + section, key, value);
  }

  std::shared_ptr<fakes::FakeSettingsStore> store;
  std::shared_ptr<fakes::FakeProfileStore> profiles;
  std::shared_ptr<fakes::FakeFileSystem> files;
  std::shared_ptr<fakes::FakeWindowServices> windows;
  std::shared_ptr<FakeEnvironment> env;
  Tolva2011Register c;
};

}  // namespace tolva::testing_settings

#endif  // TOLVA_TESTS_UNIT_SETTINGS_SETTINGS_FIXTURE_H_
