// An in-memory window service: a screen of chosen resolution, scripted
// metrics, recorded message boxes and fixed-width characters.
#ifndef TOLVA_TESTS_FAKES_FAKE_WINDOW_SERVICES_H_
#define TOLVA_TESTS_FAKES_FAKE_WINDOW_SERVICES_H_

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tolva/platform/window_services.h"

namespace tolva::fakes {

class FakeWindowServices : public platform::WindowServices {
 public:
  struct Box {
    std::string text;
    std::string caption;
    std::uint32_t flags;
  };

  // A display of `dpi` dots per inch: 1440 / dpi twips per pixel.
  explicit FakeWindowServices(double dpi = 96) : twips_per_pixel(dpi > 0 ? 1440.0 / dpi : 0) {}

  int SystemMetric(int index) override { return metrics.count(index) ? metrics[index] : 0; }
  double TwipsPerPixelX() override { return twips_per_pixel; }
  double TwipsPerPixelY() override { return twips_per_pixel; }
  platform::WorkArea ScreenWorkArea() override { return work_area; }
  int MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) override {
    boxes.push_back({text, caption, flags});
    return answer;
  }
  std::unique_ptr<platform::TextMeasurer> NewTextMeasurer(const FontSpec&) override {
    return std::make_unique<Measurer>(*this);
  }

  double twips_per_pixel;
  std::map<int, int> metrics;       // GetSystemMetrics index -> pixels
  platform::WorkArea work_area;     // pixels
  int answer = 1;                   // the button every message box returns
  std::vector<Box> boxes;           // every message box shown
  double pixels_per_character = 7;  // width of every character in the measurer

 private:
  struct Measurer : platform::TextMeasurer {
    explicit Measurer(FakeWindowServices& owner) : owner(owner) {}
    double TextWidthTwips(const std::string& text) override {
      return static_cast<double>(text.size()) * owner.pixels_per_character * owner.twips_per_pixel;
    }
    FakeWindowServices& owner;
  };
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_WINDOW_SERVICES_H_
