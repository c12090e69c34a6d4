// Conversions of the host's tagged value.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tolva/host_types.h"

namespace tolva {

namespace {

// Leading-number parse with "." as the decimal point; no number gives 0.
double ParseNumber(const std::string& s) noexcept {
  const char* p = s.c_str();
  char* end = nullptr;
  double v = std::strtod(p, &end);
  return end == p ? 0.0 : v;
}

std::string FormatDouble(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15g", v);
  return buf;
}

Long ClampToLong(double v) noexcept {
  if (!(v == v)) return 0;
  if (v >= 2147483647.0) return 2147483647;
  if (v <= -2147483648.0) return static_cast<Long>(-2147483647 - 1);
  return static_cast<Long>(std::nearbyint(v));  // halves to even, as the host rounds
}

}  // namespace

std::string Variant::AsString() const noexcept try {
  switch (kind()) {
    case Kind::kEmpty:
      return "";
    case Kind::kString:
      return std::get<std::string>(v_);
    case Kind::kLong:
      return std::to_string(std::get<Long>(v_));
    case Kind::kSingle: {
      char buf[32];
      std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(std::get<Single>(v_)));
      return buf;
    }
    case Kind::kDouble:
      return FormatDouble(std::get<Double>(v_));
    case Kind::kBoolean:
      return std::get<BoolBox>(v_).value == kTrue ? "True" : "False";
    case Kind::kPicture: {
      const PictureRef& p = std::get<PictureRef>(v_);
      return p ? p->Path : "";
    }
  }
  return "";
} catch (...) {
  // Only a failed allocation lands here; the host then sees an empty text.
  return std::string();
}

Double Variant::AsDouble() const noexcept {
  switch (kind()) {
    case Kind::kLong:
      return std::get<Long>(v_);
    case Kind::kSingle:
      return std::get<Single>(v_);
    case Kind::kDouble:
      return std::get<Double>(v_);
    case Kind::kBoolean:
      return std::get<BoolBox>(v_).value;
    case Kind::kString:
      return ParseNumber(std::get<std::string>(v_));
    default:
      return 0;
  }
}

Long Variant::AsLong() const noexcept {
  if (kind() == Kind::kLong) return std::get<Long>(v_);
  return ClampToLong(AsDouble());
}

Single Variant::AsSingle() const noexcept {
  return static_cast<Single>(AsDouble());
}

Boolean Variant::AsBoolean() const noexcept {
  switch (kind()) {
    case Kind::kBoolean:
      return std::get<BoolBox>(v_).value;
    case Kind::kString: {
      const std::string& s = std::get<std::string>(v_);
      if (s == "True" || s == "true" || s == "TRUE") return kTrue;
      if (s == "False" || s == "false" || s == "FALSE" || s.empty()) return kFalse;
      return ToBoolean(ParseNumber(s) != 0);
    }
    default:
      return ToBoolean(AsDouble() != 0);
  }
}

PictureRef Variant::AsPicture() const noexcept {
  return kind() == Kind::kPicture ? std::get<PictureRef>(v_) : PictureRef();
}

bool operator==(const Variant& a, const Variant& b) noexcept {
  return a.v_ == b.v_;
}

}  // namespace tolva
