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

// A window service that records its requests and answers as scripted.
class ScriptedWindows : public fakes::FakeWindowServices {
 public:
  platform::FileDialogResult FileDialog(const platform::FileDialogRequest& request) override {
    requests.push_back(request);
    return dialog_answer;
  }
  bool AboutBox(const platform::AboutInfo& about) override {
    abouts.push_back(about);
    return true;
  }
  bool ViewFile(const std::string& path, const std::string& caption, std::string& error) override {
    viewed.push_back(path + "|" + caption);
    error = view_error;
    return view_error.empty();
  }
  bool OpenUrl(const std::string& url) override {
    urls.push_back(url);
    return true;
  }
  platform::FileDialogResult dialog_answer;
  std::vector<platform::FileDialogRequest> requests;
  std::vector<platform::AboutInfo> abouts;
  std::vector<std::string> viewed, urls;
  std::string view_error;
};

struct Fixture {
  Fixture() {
    services.windows = windows;
    services.files = files;
    c = std::make_unique<Tolva2011Register>(services);
  }
  std::shared_ptr<ScriptedWindows> windows = std::make_shared<ScriptedWindows>();
  std::shared_ptr<fakes::FakeFileSystem> files = std::make_shared<fakes::FakeFileSystem>();
  platform::Services services;
  std::unique_ptr<Tolva2011Register> c;
};

TEST(FileDialogs, OutcomesBecomeResultsAndTexts) {
  using platform::DialogOutcome;
  struct Row {
    std::string label;
    bool save;
    DialogOutcome outcome;
    Boolean expected;
    std::string expected_path, expected_error;
  };
  const std::vector<Row> rows = {
      {"open, chosen", false, DialogOutcome::kChosen, kTrue, "/data/a.csv", ""},
      {"save, chosen", true, DialogOutcome::kChosen, kTrue, "/data/a.csv", ""},
      {"cancelled: false without a text, path kept", false, DialogOutcome::kCancelled, kFalse, "keep", ""},
      {"no dialog possible", true, DialogOutcome::kUnavailable, kFalse, "keep",
       "No window can be shown on this display."},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Fixture f;
    f.windows->dialog_answer = {r.outcome, "/data/a.csv"};
    std::string path = "keep", error = "stale";
    const Boolean got = r.save ? f.c->DialogFileSave2(path, error, "Save as", "", "C:\\data\\x.csv")
                               : f.c->DialogFileOpen2(path, error, "Open", "", "C:\\data\\x.csv");
    EXPECT_EQ(got, r.expected);
    EXPECT_EQ(path, r.expected_path);
    EXPECT_EQ(error, r.expected_error);
    ASSERT_EQ(f.windows->requests.size(), 1u);
    EXPECT_EQ(f.windows->requests[0].save, r.save);
    EXPECT_EQ(f.windows->requests[0].filter, f.c->DialogFilter());  // empty filter: the default
    EXPECT_EQ(f.windows->requests[0].initial_path, "C:/data/x.csv");
  }
}

TEST(FileDialogs, AGivenFilterIsPassedAndNoServiceIsAnError) {
  Fixture f;
  f.windows->dialog_answer = {platform::DialogOutcome::kCancelled, ""};
  std::string path, error;
  f.c->DialogFileOpen2(path, error, "", "Text|*.txt");
  EXPECT_EQ(f.windows->requests.at(0).filter, "Text|*.txt");

  Tolva2011Register bare{platform::Services{}};
  EXPECT_EQ(bare.DialogFileOpen2(path, error), kFalse);
  EXPECT_EQ(error, "No window can be shown on this display.");
  // The console-less default of the window service refuses too.
  platform::Services plain;
  plain.windows = std::make_shared<fakes::FakeWindowServices>();
  Tolva2011Register console(plain);
  EXPECT_EQ(console.DialogFileSave2(path, error), kFalse);
  EXPECT_EQ(error, "No window can be shown on this display.");
  EXPECT_EQ(console.ShowTolvaAboutBox(error), kFalse);
  EXPECT_EQ(console.LoadURL("http://127.0.0.1/", error), kFalse);
  EXPECT_EQ(error, "URL [http://127.0.0.1/] can't be opened.");
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
  EXPECT_EQ(f.windows->abouts[0].program_name, "Ledger");
  EXPECT_EQ(f.windows->abouts[0].program_author, "A. Author");
  EXPECT_EQ(f.windows->abouts[0].program_company, "Small Firm");
}

TEST(ViewBinary, ChecksTheFileBeforeShowingIt) {
  struct Row {
    std::string label, path, viewer_error;
    Boolean expected;
    std::string expected_error;
    std::size_t shown;
  };
  const std::vector<Row> rows = {
      {"an existing file is shown", "\\data\\blob.bin", "", kTrue, "", 1},
      {"no name", "", "", kFalse, "File has not been defined.", 0},
      {"missing file", "/data/none.bin", "", kFalse, "File [/data/none.bin] does not exist.", 0},
      {"the viewer cannot read it", "/data/blob.bin", "can't be read.", kFalse, "File [/data/blob.bin] can't be read.",
       1},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    Fixture f;
    f.files->AddFile("/data/blob.bin", std::string("\x00\x01zz", 4));
    f.windows->view_error = r.viewer_error;
    std::string error;
    EXPECT_EQ(f.c->ViewBinary(r.path, error), r.expected);
    EXPECT_EQ(error, r.expected_error);
    ASSERT_EQ(f.windows->viewed.size(), r.shown);
    if (r.shown) {
      EXPECT_EQ(f.windows->viewed[0].substr(0, 15), "/data/blob.bin|");
    }
  }
}

TEST(LoadURL, ABlankAddressIsNotDefined) {
  Fixture f;
  std::string error;
  EXPECT_EQ(f.c->LoadURL("  ", error), kFalse);
  EXPECT_EQ(error, "URL has not been defined.");
  EXPECT_EQ(f.c->LoadURL("https://example.org/", error), kTrue);
  EXPECT_EQ(f.windows->urls, std::vector<std::string>({"https://example.org/"}));
}

}  // namespace
}  // namespace tolva
