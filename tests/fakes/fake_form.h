// A host form for unit tests: plain fields for its place, size, border and
// window state, a log of every property it was given, and a count of the
// times it was given the standard style.
#ifndef TOLVA_TESTS_FAKES_FAKE_FORM_H_
#define TOLVA_TESTS_FAKES_FAKE_FORM_H_

#include <string>
#include <vector>

#include "tolva/platform/window_services.h"

namespace tolva::fakes {

class FakeForm : public Form {
 public:
  FakeForm(Integer border_style, Single width, Single height) : border(border_style), width(width), height(height) {}

  Single Left() const override { return left; }
  void Left(Single twips) override { Log("Left", twips), left = twips; }
  Single Top() const override { return top; }
  void Top(Single twips) override { Log("Top", twips), top = twips; }
  Single Width() const override { return width; }
  void Width(Single twips) override { Log("Width", twips), width = twips; }
  Single Height() const override { return height; }
  void Height(Single twips) override { Log("Height", twips), height = twips; }
  Integer BorderStyle() const override { return border; }
  Integer WindowState() const override { return state; }
  void ApplyStandardStyle() override { ++styled; }

  Integer border;
  Integer state = 0;
  int styled = 0;
  Single left = 0, top = 0, width, height;
  std::vector<std::string> sets;  // "Width=7200", in the order given

 private:
  void Log(const char* what, Single v) {
    sets.push_back(std::string(what) + "=" + std::to_string(static_cast<long>(v)));
  }
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_FORM_H_
