// Faults the settings database must survive: two writers at once, a writer
// killed mid-loop, and database files that are read-only, unreadable,
// corrupt or in a missing directory.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>
#include <string>

#include "integration/settings/settings_test_support.h"

namespace tolva::testing_settings {
namespace {

// Two processes each save 5,000 distinct keys at the same time; no save may
// be lost to the other's lock.
TEST(SettingsReliabilityTest, TwoProcessesSavingAtOnceBothSucceed) {
  TempDir dir;
  const std::string db = dir / "shared.db";
  int go[2];
  ASSERT_EQ(::pipe(go), 0);
  pid_t writers[2];
  for (int w = 0; w < 2; ++w) {
    writers[w] = ::fork();
    ASSERT_GE(writers[w], 0);
    if (writers[w] == 0) {
      ::close(go[1]);
      char c;
      if (::read(go[0], &c, 1) != 1) ::_exit(3);  // start together
      Tolva2011Register component(DatabaseServices(db));
      component.RegistryApp("Shared");
      for (int i = 0; i < 5000; ++i)
        component.RegistrySaveSetting("Writer" + std::to_string(w), "Key" + std::to_string(i), std::to_string(i));
      ::_exit(0);
    }
  }
  ::close(go[0]);
  ASSERT_EQ(::write(go[1], "gg", 2), 2);
  ::close(go[1]);
  for (pid_t p : writers) {
    int status = 0;
    ::waitpid(p, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  Tolva2011Register c(DatabaseServices(db));
  c.RegistryApp("Shared");
  int found = 0;
  for (int w = 0; w < 2; ++w)
    for (int i = 0; i < 5000; ++i)
      found += c.RegistryGetSetting("Writer" + std::to_string(w), "Key" + std::to_string(i), "") == std::to_string(i);
  EXPECT_EQ(found, 10000);
  EXPECT_EQ(IntegrityCheck(db), "ok");
}

// A writer is killed with SIGKILL while saving in a loop. Every save that
// returned (and was reported down the pipe) must be there afterwards.
TEST(SettingsReliabilityTest, AWriterKilledMidLoopLosesNothingAcknowledged) {
  TempDir dir;
  const std::string db = dir / "killed.db";
  int acks[2];
  ASSERT_EQ(::pipe(acks), 0);
  const pid_t writer = ::fork();
  ASSERT_GE(writer, 0);
  if (writer == 0) {
    ::close(acks[0]);
    Tolva2011Register component(DatabaseServices(db));
    component.RegistryApp("Killed");
    for (std::int32_t i = 0;; ++i) {
      component.RegistrySaveSetting("S" + std::to_string(i % 7), "Key" + std::to_string(i), std::string(100, 'v'));
      if (::write(acks[1], &i, sizeof i) != sizeof i) ::_exit(1);
    }
  }
  ::close(acks[1]);
  std::set<std::int32_t> acknowledged;
  std::int32_t i;
  while (acknowledged.size() < 1500 && ::read(acks[0], &i, sizeof i) == sizeof i) acknowledged.insert(i);
  ::kill(writer, SIGKILL);
  while (::read(acks[0], &i, sizeof i) == sizeof i) acknowledged.insert(i);  // sent before the kill
  ::close(acks[0]);
  int status = 0;
  ::waitpid(writer, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));

  EXPECT_EQ(IntegrityCheck(db), "ok");
  Tolva2011Register c(DatabaseServices(db));
  c.RegistryApp("Killed");
  std::size_t missing = 0;
  for (std::int32_t k : acknowledged)
    missing +=
        c.RegistryGetSetting("S" + std::to_string(k % 7), "Key" + std::to_string(k), "") != std::string(100, 'v');
  EXPECT_EQ(missing, 0u) << "of " << acknowledged.size() << " acknowledged saves";
  // And the database takes new writes.
  c.RegistrySaveSetting("After", "K", "v");
  EXPECT_EQ(c.RegistryGetSetting("After", "K", ""), "v");
}

// What a component makes of a database file it cannot use: the documented
// defaults, no crash, and the file left as it was.
TEST(SettingsReliabilityTest, UnusableDatabaseFilesGiveTheDefaults) {
  TempDir dir;
  ::chmod(dir.path().c_str(), 0777);  // the ordinary user of the child works here too
  // A healthy database, then copies of it in the states to test.
  {
    Tolva2011Register c(DatabaseServices(dir / "good.db"));
    c.RegistryApp("App");
    c.RegistrySaveSetting("S", "K", "stored");
  }
  const std::string good = TempDir::Read(dir / "good.db");  // checkpointed when the last connection closed
  TempDir::Write(dir / "readonly.db", good);
  TempDir::Write(dir / "unreadable.db", good);
  std::string corrupt = good;
  for (std::size_t i = 0; i < corrupt.size(); i += 7) corrupt[i] = static_cast<char>(corrupt[i] ^ 0x5a);
  TempDir::Write(dir / "corrupt.db", corrupt);
  TempDir::Write(dir / "garbage.db", std::string(5000, '\x42'));
  ::chmod((dir / "readonly.db").c_str(), 0444);
  ::chmod((dir / "unreadable.db").c_str(), 0);
  for (const char* f : {"good.db", "corrupt.db", "garbage.db"}) ::chmod((dir / f).c_str(), 0666);

  struct Row {
    const char* label;
    std::string db;
    std::string get;       // RegistryGetSetting("S", "K", "default") before the save
    std::string after;     // the same after saving "new"
    std::string sections;  // count from RegistryGetSections
  } rows[] = {
      {"healthy", dir / "good.db", "stored", "new", "1"},
      {"read-only file: reads work, saves do nothing", dir / "readonly.db", "stored", "stored", "1"},
      {"unreadable file", dir / "unreadable.db", "default", "default", "0"},
      {"corrupt file", dir / "corrupt.db", "default", "default", "0"},
      {"not a database", dir / "garbage.db", "default", "default", "0"},
      {"missing directory", dir / "missing/settings.db", "default", "default", "0"},
      {"a directory, not a file", dir.path(), "default", "default", "0"},
  };
  for (const auto& r : rows) {
    const std::string seen = InChild(
        [&] {
          Tolva2011Register c(DatabaseServices(r.db));
          c.RegistryApp("App");
          std::string out = c.RegistryGetSetting("S", "K", "default") + "|";
          c.RegistrySaveSetting("S", "K", "new");
          out += c.RegistryGetSetting("S", "K", "default") + "|";
          HostArray<std::string> names = HostArray<std::string>::OneDim(1, 4);
          out += std::to_string(c.RegistryGetSections(names, 4));
          return out;
        },
        /*as_ordinary_user=*/true);
    EXPECT_EQ(seen, r.get + "|" + r.after + "|" + r.sections) << r.label;
  }
  EXPECT_EQ(TempDir::Read(dir / "corrupt.db"), corrupt);
  EXPECT_EQ(TempDir::Read(dir / "garbage.db"), std::string(5000, '\x42'));
  struct stat st;
  EXPECT_NE(::stat((dir / "missing").c_str(), &st), 0) << "a named path's directory is not made";
}

// The machine database opens read-only for anyone but its owner, and asking
// for write rights there fails, which is what the one-value read asks for.
TEST(SettingsReliabilityTest, OnlyTheOwnerMayWriteTheMachineDatabase) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to act as a second user";
  TempDir dir;
  ::chmod(dir.path().c_str(), 0755);
  {
    auto owner = platform::NewSettingsDatabase("", dir / "machine.db");
    platform::SettingsKey key = 0;
    ASSERT_EQ(owner->CreateKey(platform::kHkeyLocalMachine, "SOFTWARE\\Classes\\.txt", key), 0);
    owner->SetValue(key, "", platform::kRegSz, "txtfile");
    owner->CloseKey(key);
  }
  struct stat st;
  ASSERT_EQ(::stat((dir / "machine.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0644u);
  const std::string seen = InChild(
      [&] {
        auto store = platform::NewSettingsDatabase("", dir / "machine.db");
        std::string out;
        platform::SettingsKey key = 0;
        out += std::to_string(store->OpenKey(platform::kHkeyClassesRoot, ".txt", platform::kKeyQueryValue, key)) + " ";
        std::uint32_t type = 0;
        std::string data;
        out += std::to_string(store->QueryValue(key, "", type, data)) + ":" + data + " ";
        store->CloseKey(key);
        out += std::to_string(store->OpenKey(platform::kHkeyLocalMachine, "SOFTWARE", 63, key)) + " ";
        out += std::to_string(store->CreateKey(platform::kHkeyLocalMachine, "SOFTWARE\\New", key));
        return out;
      },
      /*as_ordinary_user=*/true);
  EXPECT_EQ(seen, "0 0:txtfile 5 5");
}

}  // namespace
}  // namespace tolva::testing_settings
