// The FTP part of the tour: one session on a local server, from a failed
// login to a buffered download stopped half-way from its progress handler.
//   tolva-demo ftp HOST:PORT USER PASSWORD LOCAL_WORK_DIRECTORY
#include <iomanip>
#include <iostream>
#include <string>

#include "demo.h"

namespace {

using tolva::Boolean;
using tolva::HostArray;
using tolva::Long;

std::string YesNo(Boolean b) {
  return b == tolva::kTrue ? "True" : "False";
}

// The host of this part: prints what the component finds, deletes and
// downloads, and draws the buffered download's progress bar, stopping the
// transfer once it has passed half-way.
class FtpHost : public demo::ConsoleHost {
 public:
  tolva::Tolva2011Register* component = nullptr;
  bool stop_half_way = false;

  void FTPSessionFileFound(Boolean& directory, std::string& name, Long& size, std::string& date, std::string& time,
                           Boolean&) override {
    std::cout << "    found " << (directory ? "<dir> " : "      ") << std::left << std::setw(16) << name << std::right
              << std::setw(10) << size << "  " << date << " " << time << "\n";
  }
  void FTPSessionFileDeleted(std::string& path, Boolean& success) override {
    std::cout << "    deleted " << path << ": " << YesNo(success) << "\n";
  }
  void FTPSessionFileDownloaded(std::string& path, Boolean& success) override {
    std::cout << "    downloaded " << path << ": " << YesNo(success) << "\n";
  }
  void FTPSessionGetProgress(std::string& name, Long& done, Long& total) override {
    constexpr int kWidth = 40;
    const double part = total > 0 ? static_cast<double>(done) / total : 0.0;
    const int percent = static_cast<int>(part * 100);
    if (done == 0) last_percent_ = -1;
    // Redrawn only when the figure changes, so a log of the tour stays short.
    if (percent != last_percent_) {
      last_percent_ = percent;
      const int filled = static_cast<int>(part * kWidth);
      std::cout << "\r    " << name << " [" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
                << std::setw(3) << percent << "%" << std::flush;
    }
    if (stop_half_way && part >= 0.5 && component) {
      component->FTPSessionStop();
      stop_half_way = false;
    }
  }

 private:
  int last_percent_ = -1;
};

int Ftp(const demo::Args& args) {
  if (args.size() < 4) {
    std::cerr << "usage: ftp HOST:PORT USER PASSWORD LOCAL_WORK_DIRECTORY\n";
    return 2;
  }
  const std::string& host_name = args[0];
  const std::string& user = args[1];
  const std::string& password = args[2];
  const std::string local = args[3] + "/";

  FtpHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  host.component = &c;
  c.FTPConnectTimeout(10000);
  c.FTPReadTimeout(10000);
  std::string msg;

  demo::Heading("FTP: a failed login and its texts");
  Boolean ok = c.FTPSessionOpen(host_name, user, "not-the-password", msg);
  demo::Show("FTPSessionOpen", YesNo(ok));
  demo::Show("ErrorMessage", msg);
  demo::Show("FTPLastError", c.FTPLastError());
  demo::Show("FTPShortError", c.FTPShortError());

  demo::Heading("FTP: the session");
  msg.clear();
  if (c.FTPSessionOpen(host_name, user, password, msg) != tolva::kTrue) {
    demo::Show("FTPSessionOpen failed", msg);
    return 1;
  }
  demo::Show("FTPSessionOpen", "True");
  demo::Show("FTPSessionTest", YesNo(c.FTPSessionTest(msg)));

  demo::Heading("FTP: directories");
  demo::Show("FTPSessionDirectoryCurrent", c.FTPSessionDirectoryCurrent());
  demo::Show("FTPSessionDirectoryCreate reports", YesNo(c.FTPSessionDirectoryCreate("reports", msg)));
  demo::Show("FTPSessionDirectoryExists reports", YesNo(c.FTPSessionDirectoryExists("reports")));
  demo::Show("FTPSessionDirectoryExists missing", YesNo(c.FTPSessionDirectoryExists("missing")));
  demo::Show("FTPSessionDirectoryCurrentSet reports", YesNo(c.FTPSessionDirectoryCurrentSet("reports")));
  demo::Show("FTPSessionDirectoryCurrent", c.FTPSessionDirectoryCurrent());
  c.FTPSessionDirectoryCurrentSet("/");
  demo::Show("FTPSessionDirectoryDelete reports", YesNo(c.FTPSessionDirectoryDelete("reports")));

  demo::Heading("FTP: finding, with the finding event");
  const Long found = c.FTPSessionFileFind("*", msg);
  demo::Show("FTPSessionFileFind *", std::to_string(found) + " entries");

  demo::Heading("FTP: listing into arrays");
  auto names = HostArray<std::string>::OneDim(1, 20);
  auto sizes = HostArray<Long>::OneDim(1, 20);
  auto dates = HostArray<std::string>::OneDim(1, 20);
  auto times = HostArray<std::string>::OneDim(1, 20);
  const Long files = c.FTPSessionFileFindFilesFull("*", names, sizes, dates, times, 20, msg);
  for (Long i = 1; i <= files && i <= 20; ++i) {
    std::cout << "    " << i << ". " << std::left << std::setw(16) << *names.At(i) << std::right << std::setw(10)
              << *sizes.At(i) << "  " << *dates.At(i) << " " << *times.At(i) << "\n";
  }
  Long count_files = 0, count_dirs = 0;
  c.FTPSessionFileFindCount("*", count_files, count_dirs, msg);
  demo::Show("FTPSessionFileFindCount",
             std::to_string(count_files) + " files, " + std::to_string(count_dirs) + " directories");

  demo::Heading("FTP: deleting by mask");
  demo::Show("FTPSessionFileDeleteMask *.tmp", YesNo(c.FTPSessionFileDeleteMask("*.tmp", msg)));
  demo::Show("FTPSessionFileDelete missing.txt", YesNo(c.FTPSessionFileDelete("missing.txt")));
  demo::Show("FTPLastError", c.FTPLastError());

  demo::Heading("FTP: get and put");
  msg.clear();
  demo::Show("FTPSessionGet readme.txt (text)",
             YesNo(c.FTPSessionGet("readme.txt", local + "readme.txt", tolva::kTrue, msg)));
  demo::Show("FTPSessionGetAuto readme.txt", YesNo(c.FTPSessionGetAuto("readme.txt", local + "auto.txt", msg)));
  demo::Show("FTPSessionGetAutoAscii", c.FTPSessionGetAutoAscii());
  demo::Show("FTPSessionPut notes.txt", YesNo(c.FTPSessionPut(local + "readme.txt", "notes.txt", tolva::kTrue, msg)));
  demo::Show("FTPSessionFileExists notes.txt", YesNo(c.FTPSessionFileExists("notes.txt", msg)));
  demo::Show("FTPSessionGet nothing-here.txt",
             YesNo(c.FTPSessionGet("nothing-here.txt", local + "x", tolva::kFalse, msg)));
  demo::Show("ErrorMessage", msg);

  demo::Heading("FTP: downloading by mask, with the download event");
  msg.clear();
  demo::Show("FTPSessionGetMask *.csv", YesNo(c.FTPSessionGetMask("*.csv", local + "downloads", msg)));

  demo::Heading("FTP: the head of a file");
  std::string head;
  Long got = 0;
  c.FTPSessionGetBuffer("readme.txt", 24, head, got, msg);
  demo::Show("FTPSessionGetBuffer readme.txt 24", "\"" + head + "\" (" + std::to_string(got) + " bytes)");

  demo::Heading("FTP: a buffered download, stopped half-way from the progress handler");
  host.stop_half_way = true;
  msg.clear();
  ok = c.FTPSessionGetBuffered("large.bin", local + "large.bin", tolva::kFalse, msg, 100000);
  std::cout << "\n";
  demo::Show("FTPSessionGetBuffered", YesNo(ok) + " (a stopped get still succeeds)");
  demo::Show("FTPSessionStopped", YesNo(c.FTPSessionStopped()));
  ok = c.FTPSessionGetBuffered("large.bin", local + "large.bin", tolva::kFalse, msg, 100000);
  std::cout << "\n";
  demo::Show("FTPSessionGetBuffered again, to the end", YesNo(ok));
  demo::Show("FTPSessionStopped", YesNo(c.FTPSessionStopped()));

  demo::Heading("FTP: one-call transfers and tests");
  demo::Show("FTPTest", YesNo(c.FTPTest(host_name, user, password, msg)));
  demo::Show("FTPGetBinaryFile readme.txt",
             YesNo(c.FTPGetBinaryFile(host_name, user, password, "readme.txt", local + "one-call.txt", msg)));

  c.FTPSessionClose();
  demo::Show("FTPSessionClose", "done");
  return 0;
}

TOLVA_DEMO_COMMAND("ftp", "HOST:PORT USER PASSWORD LOCAL_WORK_DIRECTORY", Ftp);

}  // namespace
