// The fixture every FTP unit test runs on: a component over the in-memory
// FTP library and file system, a clock fixed on a known day, and a host
// that records every event in order and can act from inside its handlers.
#ifndef TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_
#define TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "fakes/fake_internet.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftptest {

// A clock that always says 15 June 2026, noon.
class FixedClock : public platform::SystemInfo {
 public:
  platform::DateTime now{2026, 6, 15, 12, 0, 0};
  std::uint32_t TickCount() override { return 0; }
  void WaitForInput(std::uint32_t) override {}
  platform::DateTime Now() override { return now; }
  bool ComputerName(std::string&) override { return false; }
  bool UserName(std::string&) override { return false; }
  std::string MessageText(std::int32_t) override { return ""; }
  bool Environment(const std::string&, std::string&) override { return false; }
};

// Records events as lines ("Found a.txt", "Deleted x 0", "Progress 0/100",
// "DoEvents", ...) and runs the test's actions from inside them.
class RecordingHost : public HostContainer, public Tolva2011RegisterEvents {
 public:
  std::vector<std::string> events;
  int do_events = 0;
  bool record_do_events = false;
  std::function<void()> on_do_events;
  std::function<void(const std::string& name, Boolean& cancel)> on_found;
  std::function<void(const std::string& path)> on_downloaded;
  std::function<void(Long& done, Long& total)> on_get_progress;
  std::function<void(Long& done, Long& total)> on_put_progress;

  void DoEvents() override {
    ++do_events;
    if (record_do_events) events.push_back("DoEvents");
    if (on_do_events) on_do_events();
  }
  void SystemMessage(std::string& m) override { events.push_back("System " + m); }
  void FTPSessionFileFound(Boolean& dir, std::string& name, Long& size, std::string& date, std::string& time,
                           Boolean& cancel) override {
    events.push_back("Found " + name + " " + std::to_string(dir) + " " + std::to_string(size) + " " + date + " " +
                     time);
    if (on_found) on_found(name, cancel);
  }
  void FTPSessionFileDeleted(std::string& path, Boolean& ok) override {
    events.push_back("Deleted " + path + " " + std::to_string(ok));
  }
  void FTPSessionFileDownloaded(std::string& path, Boolean& ok) override {
    events.push_back("Downloaded " + path + " " + std::to_string(ok));
    if (on_downloaded) on_downloaded(path);
  }
  void FTPSessionGetProgress(std::string& name, Long& done, Long& total) override {
    events.push_back("GetProgress " + name + " " + std::to_string(done) + "/" + std::to_string(total));
    if (on_get_progress) on_get_progress(done, total);
  }
  void FTPSessionPutProgress(std::string& name, Long& done, Long& total) override {
    events.push_back("PutProgress " + name + " " + std::to_string(done) + "/" + std::to_string(total));
    if (on_put_progress) on_put_progress(done, total);
  }
};

class FtpTest : public ::testing::Test {
 protected:
  FtpTest() {
    platform::Services services;
    services.files = files;
    services.internet = net;
    services.system = clock;
    c = std::make_unique<Tolva2011Register>(services, &host, &host);
  }

  // Opens the component's session as user/secret on "server1"; fails the test otherwise.
  void OpenSession() {
    std::string msg;
    ASSERT_EQ(c->FTPSessionOpen("server1", "user", "secret", msg), kTrue) << msg;
  }
  // Events recorded so far, without the DoEvents lines.
  std::vector<std::string> Events(const std::string& prefix = "") const {
    std::vector<std::string> out;
    for (const auto& e : host.events)
      if (e != "DoEvents" && e.rfind(prefix, 0) == 0) out.push_back(e);
    return out;
  }

  std::shared_ptr<fakes::FakeFileSystem> files = std::make_shared<fakes::FakeFileSystem>();
  std::shared_ptr<fakes::FakeInternet> net = std::make_shared<fakes::FakeInternet>(files);
  std::shared_ptr<FixedClock> clock = std::make_shared<FixedClock>();
  RecordingHost host;
  std::unique_ptr<Tolva2011Register> c;
};

using Op = fakes::FakeInternet::Op;
inline constexpr std::uint32_t kExtended = platform::kErrorInternetExtendedError;

}  // namespace tolva::ftptest

#endif  // TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_
