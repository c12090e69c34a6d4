// The text forms in which typed settings are kept: numbers as invariant
// decimal text, booleans as "True" / "False", and the lenient reading back
// that hosts rely on (a stored "12abc" reads as 12).
#ifndef TOLVA_SRC_SETTINGS_SETTING_TEXT_H_
#define TOLVA_SRC_SETTINGS_SETTING_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

#include "tolva/host_types.h"

namespace tolva::settings {

// Decimal text with "." as the decimal point and no blanks: "-12", "2.5", "1E+20".
std::string LongText(Long value);
std::string DoubleText(Double value);

// The longest number at the start of `text` after leading blanks and tabs
// (sign, digits, "." fraction, exponent); 0 when there is none.
Double LeadingNumber(std::string_view text) noexcept;
// A number rounded to a Long, halves to even, clamped to the Long range.
Long RoundToLong(Double value) noexcept;

// "True" / "False", as saved.
const char* BooleanSaveText(Boolean value) noexcept;
// "true" / "false", as passed to the string getter as the default.
const char* BooleanDefaultText(Boolean value) noexcept;
// The boolean a stored text stands for, or nothing when it is none of the
// known spellings (compared in lower case).
std::optional<Boolean> BooleanFromText(std::string_view text);

// ASCII case-insensitive equality, as section names compare.
bool SameName(std::string_view a, std::string_view b) noexcept;

}  // namespace tolva::settings

#endif  // TOLVA_SRC_SETTINGS_SETTING_TEXT_H_
