// The local-files part of the tour: directories, whole text files, file
// tests, profile values and temporary files, on real files.
#include <cstdio>
#include <cstdlib>

#include "demo.h"

namespace {

std::string Yes(tolva::Boolean b) {
  return tolva::IsTrue(b) ? "yes" : "no";
}

int Files(const demo::Args& args) {
  if (args.size() < 2) {
    std::cerr << "usage: files <data directory> <work directory>\n";
    return 2;
  }
  const std::string data = args[0];
  const std::string work = args[1];
  demo::ConsoleHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  c.InitProperties();
  std::string msg;

  demo::Heading("Directories");
  const std::string deep = work + "\\reports\\2011\\march";  // host code written with backslashes
  demo::Show("DirectoryMake " + deep, Yes(c.DirectoryMake(deep, msg)) + (msg.empty() ? "" : " - " + msg));
  demo::Show("DirectoryExists", Yes(c.DirectoryExists(deep)));
  demo::Show("DirectoryMake of a bare name (its only segment is the drive)",
             Yes(c.DirectoryMake("lonely", msg)) + " - " + msg);
  demo::Show("DirectoryChange to a missing one", Yes(c.DirectoryChange(work + "/none", msg)) + " - " + msg);

  demo::Heading("Whole text files");
  const std::string report = deep + "\\summary.txt";
  demo::Show("WriteFile", Yes(c.WriteFile(report, "Sales rose.\r\nCosts fell.\r\n", msg)));
  const std::string text = c.ReadFileFull(report, msg);
  demo::Show("ReadFileFull",
             std::to_string(text.size()) + " bytes, first line \"" + text.substr(0, text.find('\r')) + "\"");
  c.ReadFileFull(work + "/no such file.txt", msg);
  demo::Show("ReadFileFull of a missing file", msg);
  c.ReadFileFull(work + "/missing dir/x.txt", msg);
  demo::Show("ReadFileFull in a missing directory", msg);
  c.WriteFile(work + "/empty.txt", "", msg);
  c.ReadFileFull(work + "/empty.txt", msg);
  demo::Show("ReadFileFull of an empty file", msg);
  demo::Show("WriteFile onto a directory", Yes(c.WriteFile(work, "x", msg)) + " - " + msg);

  demo::Heading("File tests");
  demo::Show("FileTestAscii people.csv", Yes(c.FileTestAscii(data + "/people.csv")));
  demo::Show("FileTestAscii binary.dat", Yes(c.FileTestAscii(data + "/binary.dat")));
  demo::Show("FileTestAscii of a missing notes.TXT (judged by name)", Yes(c.FileTestAscii(work + "/notes.TXT")));
  c.WriteFile(work + "/copy.csv", c.ReadFile(data + "/people.csv"), msg);
  demo::Show(
      "FileTestIdentical people.csv and its copy (sizes and data)",
      Yes(c.FileTestIdentical(data + "/people.csv", work + "/copy.csv", tolva::kFalse, tolva::kTrue, tolva::kTrue)));
  demo::Show("FileExists " + work + "/*.csv", Yes(c.FileExists(work + "/*.csv")));

  demo::Heading("Profile values");
  const std::string ini = work + "/settings.ini";
  c.WriteFile(ini, c.ReadFile(data + "/settings.ini"), msg);
  demo::Show("[Window] left", c.FileReadProfileString(ini, "window", "LEFT", "0"));
  demo::Show("[Recent] File1 (quotes removed)", c.FileReadProfileString(ini, "Recent", "File1"));
  demo::Show("missing key with default \"  none  \"",
             "\"" + c.FileReadProfileString(ini, "Window", "Width", "  none  ") + "\"");
  c.FileWriteProfileString(ini, "Window", "Top", "95");
  c.FileWriteProfileString(ini, "Window", "Width", "640");
  c.FileWriteProfileString(ini, "Recent", "File1", "");
  c.FileWriteProfileString(ini, "New Section", "Created", "yes");
  std::cout << "  the file after four writes (comments and blank lines kept):\n";
  std::string after = c.ReadFile(ini);
  for (std::size_t p; (p = after.find('\r')) != std::string::npos;) after.erase(p, 1);
  std::cout << after;

  demo::Heading("Temporary files and deletion");
  ::setenv("TMPDIR", work.c_str(), 1);
  demo::Show("WinTempPath", c.WinTempPath());
  const std::string temp = c.WinTempFile("Demo");
  demo::Show("WinTempFile(\"Demo\")", temp);
  c.WriteFile(temp, "scratch", msg);
  c.WriteFile(c.WinTempFile("Demo"), "scratch", msg);
  demo::Show("KillTempFiles(\"dem\")", Yes(c.KillTempFiles("dem", msg)) + (msg.empty() ? "" : " - " + msg));
  demo::Show("KillTempFiles again", Yes(c.KillTempFiles("dem", msg)) + " - " + msg);
  demo::Show("KillFile of a missing file", Yes(c.KillFile(work + "/gone.txt", msg)) + " - " + msg);
  demo::Show("WinDirectory (stand-in: the per-user configuration directory)", c.WinDirectory());
  demo::Show("WinSysDirectory", c.WinSysDirectory());
  return 0;
}

TOLVA_DEMO_COMMAND("files", "<data directory> <work directory>", Files);

}  // namespace
