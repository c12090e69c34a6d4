// Faults the settings database must survive: two writers at once, a writer
// killed mid-loop, and database files it cannot use.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

std::string Key(int i) {
  return "Key" + std::to_string(i);
}

// Two processes each save 5,000 distinct keys at the same time; no save may
// be lost to the other's lock.
TEST(SettingsReliability, TwoProcessesSavingAtOnceBothSucceed) {
  TempDir dir;
  int go[2];
  ASSERT_EQ(::pipe(go), 0);
  pid_t writers[2];
  for (int w = 0; w < 2; ++w) {
    if ((writers[w] = ::fork()) == 0) {
      char c;
      if (::read(go[0], &c, 1) != 1) ::_exit(3);  // start together
      auto component = OnDatabase(dir / "shared.db", "Shared");
      for (int i = 0; i < 5000; ++i) component->RegistrySaveSetting("Writer" + std::to_string(w), Key(i), Key(i));
      ::_exit(0);
    }
  }
  ASSERT_EQ(::write(go[1], "gg", 2), 2);
  for (pid_t p : writers) {
    int status = 0;
    ::waitpid(p, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  auto c = OnDatabase(dir / "shared.db", "Shared");
  int found = 0;
  for (int i = 0; i < 10000; ++i)
    found += c->RegistryGetSetting("Writer" + std::to_string(i % 2), Key(i / 2), "") == Key(i / 2);
  EXPECT_EQ(found, 10000);
  EXPECT_EQ(IntegrityCheck(dir / "shared.db"), "ok");
}

// A writer is killed with SIGKILL while saving in a loop. Every save that
// returned (and was reported down the pipe) must be there afterwards.
TEST(SettingsReliability, AWriterKilledMidLoopLosesNothingAcknowledged) {
  TempDir dir;
  int acks[2];
  ASSERT_EQ(::pipe(acks), 0);
  const pid_t writer = ::fork();
  if (writer == 0) {
    auto component = OnDatabase(dir / "killed.db", "Killed");
    for (std::int32_t i = 0;; ++i) {
      component->RegistrySaveSetting("S" + std::to_string(i % 7), Key(i), std::string(100, 'v'));
      if (::write(acks[1], &i, sizeof i) != sizeof i) ::_exit(1);
    }
  }
  ::close(acks[1]);
  std::set<std::int32_t> acknowledged;
  std::int32_t i;
  while (acknowledged.size() < 1500 && ::read(acks[0], &i, sizeof i) == sizeof i) acknowledged.insert(i);
  ::kill(writer, SIGKILL);
  while (::read(acks[0], &i, sizeof i) == sizeof i) acknowledged.insert(i);  // sent before the kill
  int status = 0;
  ::waitpid(writer, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(IntegrityCheck(dir / "killed.db"), "ok");
  auto c = OnDatabase(dir / "killed.db", "Killed");
  std::size_t missing = 0;
  for (std::int32_t k : acknowledged)
    missing += c->RegistryGetSetting("S" + std::to_string(k % 7), Key(k), "") != std::string(100, 'v');
  EXPECT_EQ(missing, 0u) << "of " << acknowledged.size() << " acknowledged saves";
  c->RegistrySaveSetting("After", "K", "v");
  EXPECT_EQ(c->RegistryGetSetting("After", "K", ""), "v") << "the database takes new writes";
}

// What an ordinary user's component makes of a database file it cannot use:
// the defaults, no crash, and the file left as it was.
TEST(SettingsReliability, UnusableDatabaseFilesGiveTheDefaults) {
  TempDir dir;
  ::chmod(dir.path.c_str(), 0777);
  OnDatabase(dir / "good.db", "App")->RegistrySaveSetting("S", "K", "stored");
  const std::string good =
      tolva::testing::ReadWholeFile(dir / "good.db");  // checkpointed when the last connection closed
  std::string corrupt = good;
  for (std::size_t i = 0; i < corrupt.size(); i += 7) corrupt[i] = static_cast<char>(corrupt[i] ^ 0x5a);
  struct Row {
    const char* file;
    std::string data;
    mode_t mode;
    std::string seen;  // get before the save | get after saving "new" | sections
  } rows[] = {{"good.db", good, 0666, "stored|new|1"},
              {"readonly.db", good, 0444, "stored|stored|1"},
              {"unreadable.db", good, 0, "default|default|0"},
              {"corrupt.db", corrupt, 0666, "default|default|0"},
              {"missing/settings.db", "", 0, "default|default|0"},
              {"", "", 0, "default|default|0"}};  // the directory itself
  for (const auto& r : rows) {
    if (!r.data.empty()) std::ofstream(dir / r.file) << r.data, ::chmod((dir / r.file).c_str(), r.mode);
    const std::string seen = InChild(
        [&] {
          auto c = OnDatabase(dir / r.file, "App");
          std::string out = c->RegistryGetSetting("S", "K", "default") + "|";
          c->RegistrySaveSetting("S", "K", "new");
          HostArray<std::string> names = HostArray<std::string>::OneDim(1, 4);
          return out + c->RegistryGetSetting("S", "K", "default") + "|" +
                 std::to_string(c->RegistryGetSections(names, 4));
        },
        /*as_ordinary_user=*/true);
    EXPECT_EQ(seen, r.seen) << r.file;
  }
  EXPECT_EQ(tolva::testing::ReadWholeFile(dir / "corrupt.db"), corrupt);
  EXPECT_FALSE(std::filesystem::exists(dir / "missing")) << "a named path's directory is not made";
}

}  // namespace
}  // namespace tolva::testing_settings
