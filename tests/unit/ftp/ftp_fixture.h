// A component over the in-memory FTP library and file system, a clock set to
// 15 June 2026, and a host that records events and can act from its handlers.
#ifndef TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_
#define TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "fakes/fake_internet.h"
#include "fakes/fake_system_info.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftptest {

// Records events as lines ("Deleted x 0", "GetProgress f 0/100") and hands each to on_event.
class RecordingHost : public HostContainer, public Tolva2011RegisterEvents {
 public:
  std::vector<std::string> events;
  std::function<void(const std::string&)> on_event;
  Boolean cancel = kFalse;  // what every FTPSessionFileFound answers

  void DoEvents() override { Add("DoEvents"); }
  void SystemMessage(std::string& m) override { Add("System " + m); }
  void FTPSessionFileFound(Boolean& dir, std::string& name, Long& size, std::string& date, std::string& time,
                           Boolean& cancel_out) override {
    cancel_out = cancel;
    Add("Found " + name + " " + S(dir) + " " + S(size) + " " + date + " " + time);
  }
  void FTPSessionFileDeleted(std::string& path, Boolean& ok) override { Add("Deleted " + path + " " + S(ok)); }
  void FTPSessionFileDownloaded(std::string& path, Boolean& ok) override { Add("Downloaded " + path + " " + S(ok)); }
  void FTPSessionGetProgress(std::string& name, Long& done, Long& total) override {
    Progress("Get", name, done, total);
  }
  void FTPSessionPutProgress(std::string& name, Long& done, Long& total) override {
    Progress("Put", name, done, total);
  }

 private:
  static std::string S(long v) { return std::to_string(v); }
  // Scribbles on the counters afterwards: the transfer must have handed over copies.
  void Progress(const std::string& kind, const std::string& name, Long& done, Long& total) {
    Add(kind + "Progress " + name + " " + S(done) + "/" + S(total));
    done = total = -1;
  }
  void Add(std::string e) {
    events.push_back(std::move(e));
    if (on_event) on_event(events.back());
  }
};

class FtpTest : public ::testing::Test {
 protected:
  FtpTest() {
    clock->SetNow({2026, 6, 15, 12, 0, 0});
    Fresh();
  }
  void Fresh(std::shared_ptr<platform::FileSystem> local = nullptr) {
    platform::Services services;
    services.files = local ? local : files;
    services.internet = net = std::make_shared<fakes::FakeInternet>(services.files);
    services.system = clock;
    c = std::make_unique<Tolva2011Register>(services, &host, &host);
    net->log.clear();
  }
  void OpenSession() {
    std::string msg;
    ASSERT_EQ(c->FTPSessionOpen("server1", "user", "secret", msg), kTrue) << msg;
  }
  // The host calls FTPSessionStop when the nth event starting with `prefix` arrives.
  void StopAt(const std::string& prefix, int nth = 1) {
    host.on_event = [this, prefix, nth, seen = 0](const std::string& e) mutable {
      if (e.rfind(prefix, 0) == 0 && ++seen == nth) c->FTPSessionStop();
    };
  }
  // Events recorded so far that start with `prefix`, without the DoEvents lines.
  std::vector<std::string> Events(const std::string& prefix = "") const {
    std::vector<std::string> out;
    for (const auto& e : host.events)
      if (e != "DoEvents" && e.rfind(prefix, 0) == 0) out.push_back(e);
    return out;
  }
  static std::string Answer(long result, const std::string& message) { return std::to_string(result) + " " + message; }

  // A call that must fail, and its texts: the message it hands back (and FTPLastError),
  // with FTPShortError's part in braces: "Can't Get File [a] - {Session is not opened.}".
  struct Refusal {
    std::string label;
    std::function<long(std::string& message)> run;
    std::string texts;
  };
  void ExpectRefusals(const std::vector<Refusal>& rows) {
    for (const Refusal& r : rows) {
      const std::size_t open = r.texts.find('{'), close = r.texts.find('}');
      const std::string short_text = r.texts.substr(open + 1, close - open - 1);
      const std::string full = r.texts.substr(0, open) + short_text + r.texts.substr(close + 1);
      std::string msg = "stale";
      EXPECT_EQ(r.run(msg), 0) << r.label;
      EXPECT_EQ(msg + "|" + c->FTPLastError() + "|" + c->FTPShortError(), full + "|" + full + "|" + short_text)
          << r.label;
    }
  }

  std::shared_ptr<fakes::FakeFileSystem> files = std::make_shared<fakes::FakeFileSystem>();
  std::shared_ptr<fakes::FakeSystemInfo> clock = std::make_shared<fakes::FakeSystemInfo>();
  RecordingHost host;
  std::shared_ptr<fakes::FakeInternet> net;
  std::unique_ptr<Tolva2011Register> c;
};

inline constexpr std::uint32_t kExtended = platform::kErrorInternetExtendedError;
inline constexpr std::uint32_t kTimeout = platform::kErrorInternetTimeout;
inline constexpr std::uint32_t kAborted = platform::kErrorInternetConnectionAborted;

}  // namespace tolva::ftptest

#endif  // TOLVA_TESTS_UNIT_FTP_FTP_FIXTURE_H_
