// Host forms, controls, labels and list boxes held in memory, for the window
// layout tests.
#ifndef TOLVA_TESTS_UNIT_UI_UI_FAKES_H_
#define TOLVA_TESTS_UNIT_UI_UI_FAKES_H_

#include <string>
#include <vector>

#include "tolva/platform/window_services.h"

namespace tolva::uitest {

struct Rect {
  Single left = 0, top = 0, width = 0, height = 0;
};

template <class Base>
class Placed : public Base {
 public:
  Single Left() const override { return r.left; }
  void Left(Single v) override { r.left = v; }
  Single Top() const override { return r.top; }
  void Top(Single v) override { r.top = v; }
  Single Width() const override { return r.width; }
  void Width(Single v) override { r.width = v; }
  Single Height() const override { return r.height; }
  void Height(Single v) override { r.height = v; }
  Rect r;
};

class MemForm : public Placed<Form> {
 public:
  Integer BorderStyle() const override { return border_style; }
  Integer WindowState() const override { return window_state; }
  void ApplyStandardStyle() override { ++styled; }
  Integer border_style = 2;
  Integer window_state = 0;
  int styled = 0;
};

class MemControl : public Placed<Control> {
 public:
  Form* Parent() const override { return parent; }
  Form* parent = nullptr;
};

class MemLabel : public Placed<Label> {
 public:
  Form* Parent() const override { return parent; }
  // Sizing to the text gives the label its text's size.
  void AutoSize(bool on) override {
    auto_size = on;
    if (on) r.width = text_width, r.height = text_height;
  }
  Form* parent = nullptr;
  bool auto_size = false;
  Single text_width = 0, text_height = 0;
};

class MemListBox : public ListBox {
 public:
  FontSpec Font() const override { return font; }
  Long ListCount() const override { return static_cast<Long>(rows.size()); }
  std::string List(Long row) const override {
    ++rows_read;
    return rows.at(static_cast<std::size_t>(row));
  }
  void SetTabStops(const std::vector<Long>& s) override {
    stops = s;
    ++stops_set;
  }
  void SetHorizontalExtent(Long pixels) override {
    extent = pixels;
    ++extents_set;
  }

  FontSpec font{"Sans", 9, false, false};
  std::vector<std::string> rows;
  mutable int rows_read = 0;
  std::vector<Long> stops;
  Long extent = -1;
  int stops_set = 0, extents_set = 0;
};

}  // namespace tolva::uitest

#endif  // TOLVA_TESTS_UNIT_UI_UI_FAKES_H_
