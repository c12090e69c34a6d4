// A component over the in-memory file system, with a host that records
// every progress event and can cancel from inside it.
#ifndef TOLVA_TESTS_UNIT_TEXTDATA_READERS_FIXTURE_H_
#define TOLVA_TESTS_UNIT_TEXTDATA_READERS_FIXTURE_H_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/fake_file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_textdata {

class RecordingHost : public HostContainer, public Tolva2011RegisterEvents {
 public:
  void ReadWriteProgress(std::string& message, Long& records) override {
    events.emplace_back(message, records);
    if (on_progress) on_progress(message, records);
    message = "changed by the handler";  // the next event must not see this
    records = -99;
  }
  void DoEvents() override {
    ++yields;
    if (on_yield) on_yield();
  }
  std::vector<std::pair<std::string, Long>> events;
  std::function<void(const std::string&, Long)> on_progress;
  std::function<void()> on_yield;
  int yields = 0;
};

class ReadersTest : public ::testing::Test {
 protected:
  ReadersTest() : fs(std::make_shared<fakes::FakeFileSystem>()), c(Services(), &host, &host) {}

  platform::Services Services() {
    platform::Services s;
    s.files = fs;
    return s;
  }

  std::vector<std::string> Messages() const {
    std::vector<std::string> out;
    for (const auto& e : host.events) out.push_back(e.first);
    return out;
  }

  std::shared_ptr<fakes::FakeFileSystem> fs;
  RecordingHost host;
  Tolva2011Register c;
};

}  // namespace tolva::testing_textdata

#endif  // TOLVA_TESTS_UNIT_TEXTDATA_READERS_FIXTURE_H_
