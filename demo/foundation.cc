// The foundation part of the tour: properties and their persistence, text
// utilities, clock texts, waiting, system names, error texts and a message
// box on the console.
#include <chrono>
#include <cstdio>
#include <string>

#include "demo.h"

namespace {

std::string Yes(tolva::Boolean b) {
  return tolva::IsTrue(b) ? "yes" : "no";
}

// Shows a text with its control characters made visible.
std::string Visible(const std::string& s) {
  std::string out;
  for (unsigned char c : s) {
    if (c == '\r')
      out += "\\r";
    else if (c == '\n')
      out += "\\n";
    else if (c == '\t')
      out += "\\t";
    else if (c == '\0')
      out += "\\0";
    else
      out += static_cast<char>(c);
  }
  return "\"" + out + "\"";
}

int Foundation(const demo::Args&) {
  demo::ConsoleHost host;
  host.verbose = true;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), &host, &host);
  c.InitProperties();
  demo::Heading("Component properties");
  c.ProgramName("Tolva Demo");
  c.ProgramAuthor("The Tolva team");
  demo::Show("ProgramName", c.ProgramName());
  demo::Show("FormSizeRatio", std::to_string(c.FormSizeRatio()));
  tolva::MemoryPropertyBag bag;
  c.WriteProperties(bag);
  demo::Show("properties saved (only those that differ from the default)", std::to_string(bag.Size()));
  host.verbose = false;

  demo::Heading("Counting and trimming");
  demo::Show("StringCountCharacters(\"a/b//c\", \"/\")", std::to_string(c.StringCountCharacters("a/b//c", "/")));
  demo::Show("  ... with IgnoreCase and RepeatAsOne",
             std::to_string(c.StringCountCharacters("a/b//c", "/", tolva::kTrue, tolva::kTrue)));
  demo::Show("StringCountCharacters(\"aaa\", \"aa\") (each listed character counts)",
             std::to_string(c.StringCountCharacters("aaa", "aa")));
  demo::Show("StringCountCharacters(\"AbA\", \"a\", IgnoreCase:=1) (1 is not true)",
             std::to_string(c.StringCountCharacters("AbA", "a", 1)));
  demo::Show("TrimCrLf(" + Visible("\r\n\tA B \r\n") + ")", Visible(c.TrimCrLf("\r\n\tA B \r\n")));

  demo::Heading("Clock texts and dates");
  for (tolva::Long n : {5, 65, 754, 3600, 3725}) {
    demo::Show(std::to_string(n),
               "MinutesSeconds " + c.MinutesSeconds(n) + ", HoursMinutesSeconds " + c.HoursMinutesSeconds(n));
  }
  demo::Show("HoursMinutes(90)", c.HoursMinutes(90));
  for (const char* t : {"12:30", "1a:30", "12::30", ":30", "1230"})
    demo::Show(std::string("IsTime ") + t, Yes(c.IsTime(t)));
  const tolva::Date d = c.LastDateInMonth(2, 2012);
  demo::Show("LastDateInMonth(2, 2012)",
             std::to_string(d.Year) + "-" + std::to_string(d.Month) + "-" + std::to_string(d.Day));

  demo::Heading("Waiting while the host runs");
  const auto t0 = std::chrono::steady_clock::now();
  c.WaitMilliSeconds(300);
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - t0);
  demo::Show("WaitMilliSeconds(300) took", std::to_string(ms.count()) + " ms");

  demo::Heading("This machine");
  demo::Show("ComputerName", c.ComputerName());
  const std::string user = c.UserName();
  demo::Show("UserName", Visible(user) + " (the platform's terminating NUL is kept)");
  demo::Show("ProgramCallSetup(\"viewer %1 --page 2\", \"/tmp/a b.txt\")",
             c.ProgramCallSetup("viewer %1 --page 2", "/tmp/a b.txt"));
  demo::Show("ProgramExecute(\"true\")", Yes(c.ProgramExecute("true")));
  demo::Show("ProgramExecute(\"no-such-program\")", Yes(c.ProgramExecute("no-such-program")));

  demo::Heading("Error texts");
  for (tolva::Long n : {0, 53, 76, 2, 12002, 12029, 4711}) {
    demo::Show("FormatErrorMessage(" + std::to_string(n) + ")", "\"" + c.FormatErrorMessage(n) + "\"");
  }

  demo::Heading("A message box on the console");
  std::fflush(stdout);
  c.MessageInfo("The report is ready.");
  const tolva::Variant answer = c.MessageQuery("Overwrite the old report?", 4 + 0x100);
  demo::Show("MessageQuery answered", answer.IsEmpty() ? "(no box)" : std::to_string(answer.AsLong()));
  return 0;
}

TOLVA_DEMO_COMMAND("foundation", "", Foundation);

}  // namespace
