// Whole-number arithmetic of window measures: the host's rounding (to the
// nearest whole number, halves to even) and its integer division.
#ifndef TOLVA_SRC_UI_TWIPS_H_
#define TOLVA_SRC_UI_TWIPS_H_

#include <cmath>
#include <cstdint>

#include "tolva/host_types.h"

namespace tolva::ui {

// Rounds to the nearest Long, halves to even; a value that is not a number
// or lies outside a Long gives 0, as a failed conversion leaves a value 0.
inline Long RoundToLong(double value) noexcept {
  if (!std::isfinite(value)) return 0;
  const double r = std::nearbyint(value);  // the default mode rounds halves to even
  if (r < static_cast<double>(INT32_MIN) || r > static_cast<double>(INT32_MAX)) return 0;
  return static_cast<Long>(r);
}

// Integer division of two measures: both rounded first, the remainder
// dropped. False for a zero divisor, where the host would stop the step.
inline bool IntegerDivide(double dividend, double divisor, Long& quotient) noexcept {
  const Long d = RoundToLong(divisor);
  if (d == 0) return false;
  quotient = RoundToLong(dividend) / d;
  return true;
}

}  // namespace tolva::ui

#endif  // TOLVA_SRC_UI_TWIPS_H_
