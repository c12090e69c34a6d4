#include "fakes/fake_window_services.h"

namespace tolva::fakes {

namespace {

class FakeMeasurer : public platform::TextMeasurer {
 public:
  explicit FakeMeasurer(FakeWindowServices& owner) : owner_(owner) {}
  double TextWidthTwips(const std::string& text) override {
    ++owner_.strings_measured;
    return static_cast<double>(text.size()) * owner_.pixels_per_character * owner_.twips_per_pixel;
  }

 private:
  FakeWindowServices& owner_;
};

}  // namespace

std::unique_ptr<platform::TextMeasurer> FakeWindowServices::NewTextMeasurer(const FontSpec& font) {
  ++measurers_made;
  fonts.push_back(font);
  return std::make_unique<FakeMeasurer>(*this);
}

}  // namespace tolva::fakes
