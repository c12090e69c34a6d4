#include "platform/linux/console/console_window_services.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>

namespace tolva::platform::posix {

namespace {

constexpr int kOk = 1, kCancel = 2, kAbort = 3, kRetry = 4, kIgnore = 5, kYes = 6, kNo = 7;

const char* ButtonWord(int code) {
  switch (code) {
    case kOk:
      return "OK";
    case kCancel:
      return "Cancel";
    case kAbort:
      return "Abort";
    case kRetry:
      return "Retry";
    case kIgnore:
      return "Ignore";
    case kYes:
      return "Yes";
    case kNo:
      return "No";
    default:
      return "?";
  }
}

// Answers longer than this are not a button name; the rest of the line is dropped.
constexpr std::size_t kMaxAnswer = 64;
// A reader who keeps typing nonsense gets the default button after this many tries.
constexpr int kMaxTries = 5;

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

std::string Trimmed(const std::string& s) {
  std::size_t b = 0, e = s.size();
  while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
  return s.substr(b, e - b);
}

// The button an answer names: its number in the list, its word, or the
// word's first letter (no two buttons of a set share one). 0 when none.
int Match(const std::string& answer, const std::vector<int>& buttons) {
  const std::string a = Lower(Trimmed(answer));
  if (a.empty()) return 0;
  if (a.size() == 1 && a[0] >= '1' && a[0] <= '9') {
    const std::size_t i = static_cast<std::size_t>(a[0] - '1');
    return i < buttons.size() ? buttons[i] : 0;
  }
  for (int b : buttons) {
    const std::string word = Lower(ButtonWord(b));
    if (a == word || (a.size() == 1 && a[0] == word[0])) return b;
  }
  return 0;
}

}  // namespace

std::vector<int> MessageBoxButtons(std::uint32_t flags) {
  switch (flags & 0xF) {
    case 1:
      return {kOk, kCancel};
    case 2:
      return {kAbort, kRetry, kIgnore};
    case 3:
      return {kYes, kNo, kCancel};
    case 4:
      return {kYes, kNo};
    case 5:
      return {kRetry, kCancel};
    default:
      return {kOk};
  }
}

int MessageBoxDefault(std::uint32_t flags) {
  const std::vector<int> buttons = MessageBoxButtons(flags);
  const std::size_t index = (flags & 0xF00) >> 8;
  return index < buttons.size() ? buttons[index] : buttons.front();
}

int ConsoleWindowServices::SystemMetric(int) {
  return 0;
}
double ConsoleWindowServices::TwipsPerPixelX() {
  return 0;
}
double ConsoleWindowServices::TwipsPerPixelY() {
  return 0;
}
WorkArea ConsoleWindowServices::ScreenWorkArea() {
  return {};
}
std::unique_ptr<TextMeasurer> ConsoleWindowServices::NewTextMeasurer(const FontSpec&) {
  return nullptr;
}

void ConsoleWindowServices::Write(const std::string& s) {
  std::size_t done = 0;
  while (done < s.size()) {
    const ssize_t w = ::write(out_fd_, s.data() + done, s.size() - done);
    if (w < 0 && errno == EINTR) continue;
    if (w <= 0) return;  // nobody reads the terminal: the box is simply not seen
    done += static_cast<std::size_t>(w);
  }
}

bool ConsoleWindowServices::ReadLine(std::string& line) {
  line.clear();
  char c;
  for (;;) {
    const ssize_t got = ::read(in_fd_, &c, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    if (c == '\n') return true;
    if (line.size() <= kMaxAnswer) line += c;
  }
}

int ConsoleWindowServices::MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) {
  const std::vector<int> buttons = MessageBoxButtons(flags);
  const int fallback = MessageBoxDefault(flags);
  Write("[" + caption + "]\n" + text + "\n");
  if (buttons.size() < 2) return fallback;  // an OK-only box tells; it does not wait

  const bool ask = ask_ == Ask::kAlways || (ask_ == Ask::kWhenTerminal && ::isatty(in_fd_) == 1);
  std::string prompt;
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (i) prompt += " / ";
    prompt += std::to_string(i + 1) + " " + ButtonWord(buttons[i]);
  }
  prompt += std::string(" [") + ButtonWord(fallback) + "]: ";
  if (!ask) {
    Write(prompt + ButtonWord(fallback) + " (no terminal to ask)\n");
    return fallback;
  }
  for (int tries = 0; tries < kMaxTries; ++tries) {
    Write(prompt);
    std::string line;
    if (!ReadLine(line)) {
      Write("\n");
      return fallback;  // end of input: nobody is there to answer
    }
    if (Trimmed(line).empty()) return fallback;
    if (const int chosen = Match(line, buttons)) return chosen;
  }
  return fallback;
}

std::shared_ptr<WindowServices> NewConsoleWindowServices() {
  return std::make_shared<ConsoleWindowServices>();
}

}  // namespace tolva::platform::posix
