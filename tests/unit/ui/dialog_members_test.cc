// The file dialogs, About box, viewer and browser members: what the
// component hands the window service and how it words failures.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "fakes/fake_window_services.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

constexpr const char* kNoWindows = "No window can be shown on this display.";

// A window service that records its requests and answers as scripted.
struct ScriptedWindows : fakes::FakeWindowServices {
  platform::FileDialogResult FileDialog(const platform::FileDialogRequest& request) override {
    return requests.push_back(request), dialog_answer;
  }
  bool AboutBox(const platform::AboutInfo& about) override { return abouts.push_back(about), true; }
  bool ViewFile(const std::string& path, const std::string& caption, std::string& error) override {
    viewed.push_back(path + "|" + caption);
    return (error = view_error).empty();
  }
  bool OpenUrl(const std::string& url) override { return urls.push_back(url), true; }
  platform::FileDialogResult dialog_answer;
  std::vector<platform::FileDialogRequest> requests;
  std::vector<platform::AboutInfo> abouts;
  std::vector<std::string> viewed, urls;
  std::string view_error;
};

struct Fixture {
  // `windows`: the scripted service, or (false) the default one that refuses every dialog.
  explicit Fixture(bool scripted = true) {
    platform::Services services;
    services.windows = scripted ? windows : std::make_shared<fakes::FakeWindowServices>();
    services.files = files;
    c = std::make_unique<Tolva2011Register>(services);
  }
  std::shared_ptr<ScriptedWindows> windows = std::make_shared<ScriptedWindows>();
  std::shared_ptr<fakes::FakeFileSystem> files = std::make_shared<fakes::FakeFileSystem>();
  std::unique_ptr<Tolva2011Register> c;
};

TEST(FileDialogs, OutcomesBecomeResultsAndTexts) {
  using platform::DialogOutcome;
  struct Row {
    std::string label, filter, expected_path, expected_error;
    bool save;
    DialogOutcome outcome;
    Boolean expected;
  };
  const std::vector<Row> rows = {
      {"open, chosen", "", "/data/a.csv", "", false, DialogOutcome::kChosen, kTrue},
      {"save, chosen, own filter", "Text|*.txt", "/data/a.csv", "", true, DialogOutcome::kChosen, kTrue},
      {"cancelled: no text, path kept", "", "keep", "", false, DialogOutcome::kCancelled, kFalse},
      {"no dialog possible", "", "keep", kNoWindows, true, DialogOutcome::kUnavailable, kFalse},
  };
  for (const Row& r : rows) {
    Fixture f;
    f.windows->dialog_answer = {r.outcome, "/data/a.csv"};
    std::string path = "keep", error = "stale";
    const Boolean got = r.save ? f.c->DialogFileSave2(path, error, "Save as", r.filter, "C:\\data\\x.csv")
                               : f.c->DialogFileOpen2(path, error, "Open", r.filter, "C:\\data\\x.csv");
    EXPECT_EQ(got, r.expected) << r.label;
    EXPECT_EQ(path, r.expected_path) << r.label;
    EXPECT_EQ(error, r.expected_error) << r.label;
    ASSERT_EQ(f.windows->requests.size(), 1u) << r.label;
    EXPECT_EQ(f.windows->requests[0].save, r.save) << r.label;
    EXPECT_EQ(f.windows->requests[0].filter, r.filter.empty() ? f.c->DialogFilter() : r.filter) << r.label;
    EXPECT_EQ(f.windows->requests[0].initial_path, "C:/data/x.csv") << r.label;
  }
}

TEST(WindowMembers, WithoutAWindowTheyFailWithAText) {
  std::string path, error;
  Tolva2011Register bare{platform::Services{}};
  EXPECT_EQ(bare.DialogFileOpen2(path, error), kFalse);
  EXPECT_EQ(error, kNoWindows);
  Fixture console(false);
  EXPECT_EQ(console.c->DialogFileSave2(path, error), kFalse);
  EXPECT_EQ(error, kNoWindows);
  EXPECT_EQ(console.c->ShowTolvaAboutBox(error), kFalse);
  EXPECT_EQ(error, kNoWindows);
  EXPECT_EQ(console.c->LoadURL("http://127.0.0.1/", error), kFalse);
  EXPECT_EQ(error, "URL [http://127.0.0.1/] can't be opened.");
  Fixture scripted;
  EXPECT_EQ(scripted.c->LoadURL("  ", error), kFalse);
  EXPECT_EQ(error, "URL has not been defined.");
  EXPECT_EQ(scripted.c->LoadURL("https://example.org/", error), kTrue);
  EXPECT_EQ(scripted.windows->urls, std::vector<std::string>({"https://example.org/"}));
}

TEST(AboutBox, ShowsTheProgramProperties) {
  Fixture f;
  f.c->ProgramName("Ledger");
  f.c->ProgramAuthor("A. Author");
  f.c->ProgramCompany("Small Firm");
  std::string error = "stale";
  EXPECT_EQ(f.c->ShowTolvaAboutBox(error), kTrue);
  EXPECT_EQ(error, "");
  ASSERT_EQ(f.windows->abouts.size(), 1u);
  const platform::AboutInfo& a = f.windows->abouts[0];
  EXPECT_EQ(a.program_name + "|" + a.program_author + "|" + a.program_company, "Ledger|A. Author|Small Firm");
}

TEST(ViewBinary, ChecksTheFileBeforeShowingIt) {
  struct Row {
    std::string label, path, viewer_error, expected_error;
    Boolean expected;
    std::vector<std::string> shown;
  };
  const std::string blob = "/data/blob.bin|Tolva - ";
  const std::vector<Row> rows = {
      {"an existing file is shown", "\\data\\blob.bin", "", "", kTrue, {blob + "\\data\\blob.bin"}},
      {"no name", "", "", "File has not been defined.", kFalse, {}},
      {"missing file", "/data/none.bin", "", "File [/data/none.bin] does not exist.", kFalse, {}},
      {"unreadable",
       "/data/blob.bin",
       "can't be read.",
       "File [/data/blob.bin] can't be read.",
       kFalse,
       {blob + "/data/blob.bin"}},
  };
  for (const Row& r : rows) {
    Fixture f;
    f.c->ProgramName("Tolva");
    f.files->AddFile("/data/blob.bin", std::string("\x00\x01zz", 4));
    f.windows->view_error = r.viewer_error;
    std::string error;
    EXPECT_EQ(f.c->ViewBinary(r.path, error), r.expected) << r.label;
    EXPECT_EQ(error, r.expected_error) << r.label;
    EXPECT_EQ(f.windows->viewed, r.shown) << r.label;
  }
}

}  // namespace
}  // namespace tolva
