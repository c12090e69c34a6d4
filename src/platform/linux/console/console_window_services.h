// Window services for a host without a display: no screen, no metrics, no
// text measure; a message box is written to the terminal. A box with more
// than one button asks on the terminal when there is one to ask on, and
// otherwise answers its default button at once: it never blocks a host that
// runs without a terminal (a service, a pipeline, a test).
#ifndef TOLVA_SRC_PLATFORM_LINUX_CONSOLE_CONSOLE_WINDOW_SERVICES_H_
#define TOLVA_SRC_PLATFORM_LINUX_CONSOLE_CONSOLE_WINDOW_SERVICES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tolva/platform/window_services.h"

namespace tolva::platform::posix {

// The buttons of a message-box button set (flags & 0xF), as their classic
// codes in display order; an unknown set is OK alone.
std::vector<int> MessageBoxButtons(std::uint32_t flags);
// The code of the default button ((flags & 0xF00): first, second, third).
int MessageBoxDefault(std::uint32_t flags);

class ConsoleWindowServices : public WindowServices {
 public:
  enum class Ask { kWhenTerminal, kAlways, kNever };

  // Writes boxes to `out_fd` and reads answers from `in_fd`. With
  // kWhenTerminal it asks only when `in_fd` is a terminal.
  explicit ConsoleWindowServices(int in_fd = 0, int out_fd = 2, Ask ask = Ask::kWhenTerminal)
      : in_fd_(in_fd), out_fd_(out_fd), ask_(ask) {}
  ConsoleWindowServices(const ConsoleWindowServices&) = delete;
  ConsoleWindowServices& operator=(const ConsoleWindowServices&) = delete;

  int SystemMetric(int index) override;
  double TwipsPerPixelX() override;
  double TwipsPerPixelY() override;
  WorkArea ScreenWorkArea() override;
  int MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) override;
  std::unique_ptr<TextMeasurer> NewTextMeasurer(const FontSpec& font) override;

 private:
  void Write(const std::string& s);
  // One answer line (without its end), false at end of input or on an error.
  bool ReadLine(std::string& line);

  int in_fd_;
  int out_fd_;
  Ask ask_;
};

// The service of this folder, as linux_services.cc assembles it.
// Message boxes on the terminal, no screen: what a console host gets.
std::shared_ptr<WindowServices> NewConsoleWindowServices();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_CONSOLE_CONSOLE_WINDOW_SERVICES_H_
