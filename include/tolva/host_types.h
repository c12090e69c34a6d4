// Host types: the value types a classic desktop scripting host passes to and
// receives from the component. Booleans are 16-bit with true = -1; arrays
// carry their rank and per-dimension bounds at run time.
#ifndef TOLVA_HOST_TYPES_H_
#define TOLVA_HOST_TYPES_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "tolva/export.h"

/// The component, the types a host exchanges with it, and the host-side interfaces it calls.
namespace tolva {

/// The host's Long: a 32-bit signed integer.
using Long = std::int32_t;
/// The host's Integer: a 16-bit signed integer.
using Integer = std::int16_t;
/// The host's Single: a single-precision floating-point number.
using Single = float;
/// The host's Double: a double-precision floating-point number.
using Double = double;
/// The host's Boolean: 16 bits, true is -1 (all bits set), false is 0.
using Boolean = std::int16_t;

/// Host true.
inline constexpr Boolean kTrue = -1;
/// Host false.
inline constexpr Boolean kFalse = 0;

/// The host boolean of `b`: kTrue or kFalse.
constexpr Boolean ToBoolean(bool b) noexcept {
  return b ? kTrue : kFalse;
}
/// Whether `b` is exactly host true; an option passed as 1 counts as false.
constexpr bool IsTrue(Boolean b) noexcept {
  return b == kTrue;
}

/// A calendar date (no time of day), as returned by LastDateInMonth.
struct Date {
  /// The year, such as 2011.
  Integer Year = 0;
  /// The month, 1 to 12.
  Integer Month = 0;
  /// The day of the month, from 1.
  Integer Day = 0;
  /// Whether two dates are the same day.
  friend bool operator==(const Date&, const Date&) = default;
};

/// A picture the host hands to the component (its Icon property). The component only stores and returns
/// the reference.
struct Picture {
  std::string Path;   ///< where it came from, if from a file
  std::string Bytes;  ///< the image data, if held in memory
};
/// A shared, read-only reference to a Picture; null for no picture.
using PictureRef = std::shared_ptr<const Picture>;

/// A tagged value: empty, String, Long, Single, Double, Boolean or picture.
class TOLVA_EXPORT Variant {
 public:
  /// What a Variant holds: nothing, a String, a Long, a Single, a Double, a Boolean or a picture.
  enum class Kind { kEmpty, kString, kLong, kSingle, kDouble, kBoolean, kPicture };

  /// An empty variant.
  Variant() noexcept = default;
  /// A variant holding the String `s`.
  static Variant FromString(std::string s) { return Variant(Store{std::move(s)}); }
  /// A variant holding the Long `v`.
  static Variant FromLong(Long v) noexcept { return Variant(Store{v}); }
  /// A variant holding the Single `v`.
  static Variant FromSingle(Single v) noexcept { return Variant(Store{v}); }
  /// A variant holding the Double `v`.
  static Variant FromDouble(Double v) noexcept { return Variant(Store{v}); }
  /// A variant holding the host Boolean `v`.
  static Variant FromBoolean(Boolean v) noexcept { return Variant(Store{BoolBox{v}}); }
  /// A variant holding the picture reference `p`.
  static Variant FromPicture(PictureRef p) noexcept { return Variant(Store{std::move(p)}); }

  /// What the variant holds.
  Kind kind() const noexcept { return static_cast<Kind>(v_.index()); }
  /// Whether the variant holds nothing.
  bool IsEmpty() const noexcept { return kind() == Kind::kEmpty; }

  /// The value as text. Each typed read returns the held value when the kind matches and a conversion
  /// otherwise (numbers to and from their decimal text, with "." as the decimal point); an empty variant
  /// reads as "", 0 or false. "" if the text cannot be allocated.
  std::string AsString() const noexcept;  // "" if the text cannot be allocated
  /// The value as a Long (converted as AsString says).
  Long AsLong() const noexcept;
  /// The value as a Single (converted as AsString says).
  Single AsSingle() const noexcept;
  /// The value as a Double (converted as AsString says).
  Double AsDouble() const noexcept;
  /// The value as a host Boolean (converted as AsString says).
  Boolean AsBoolean() const noexcept;
  /// The picture held, or null for any other kind.
  PictureRef AsPicture() const noexcept;

  /// Whether `a` and `b` hold the same kind and value.
  friend TOLVA_EXPORT bool operator==(const Variant& a, const Variant& b) noexcept;

 private:
  struct BoolBox {
    Boolean value;
    friend bool operator==(const BoolBox&, const BoolBox&) = default;
  };
  using Store = std::variant<std::monostate, std::string, Long, Single, Double, BoolBox, PictureRef>;
  explicit Variant(Store s) noexcept : v_(std::move(s)) {}
  Store v_;
};

/// The bounds of one array dimension, both inclusive.
struct Bounds {
  /// The lowest index.
  Long Lower = 0;
  /// The highest index; below Lower for an empty dimension.
  Long Upper = -1;
};

// An array whose rank and per-dimension bounds are chosen at run time, as a
// host dimensions them (Dim A(1 To 10, 1 To 5)). The component never resizes
// a host array: At() returns nullptr for an index outside the bounds or for
// an index count that does not match the rank, and Store() then drops the
// value silently.
template <class T>
/// An array whose rank and per-dimension bounds are chosen at run time, as a host dimensions them
/// (Dim A(1 To 10, 1 To 5)). The component never resizes a host array: At() returns nullptr for an index
/// outside the bounds or for an index count that does not match the rank, and Store() then drops the value
/// silently.
/// @tparam T the element type.
class HostArray {
 public:
  /// An array of rank 0, holding nothing.
  HostArray() = default;  // rank 0: holds nothing
  /// An array with one dimension per entry of `dims`, every element default-constructed.
  explicit HostArray(std::vector<Bounds> dims) : dims_(std::move(dims)) {
    std::size_t n = dims_.empty() ? 0 : 1;
    for (const Bounds& d : dims_) n *= d.Upper >= d.Lower ? static_cast<std::size_t>(d.Upper - d.Lower) + 1 : 0;
    cells_.resize(n);
  }
  /// Dim A(`lower` To `upper`).
  static HostArray OneDim(Long lower, Long upper) { return HostArray({{lower, upper}}); }
  /// Dim A(`rlower` To `rupper`, `clower` To `cupper`).
  static HostArray TwoDim(Long rlower, Long rupper, Long clower, Long cupper) {
    return HostArray({{rlower, rupper}, {clower, cupper}});
  }

  /// The number of dimensions.
  int Rank() const noexcept { return static_cast<int>(dims_.size()); }
  /// The lower bound of dimension `dim` (1-based); 0 when there is no such dimension.
  Long LBound(int dim = 1) const noexcept { return Has(dim) ? dims_[dim - 1].Lower : 0; }
  /// The upper bound of dimension `dim` (1-based); -1 when there is no such dimension.
  Long UBound(int dim = 1) const noexcept { return Has(dim) ? dims_[dim - 1].Upper : -1; }

  /// The element at `i` of a one-dimensional array, or nullptr when outside it.
  T* At(Long i) noexcept { return Find({i}); }
  /// The element at (`r`, `c`) of a two-dimensional array, or nullptr when outside it.
  T* At(Long r, Long c) noexcept { return Find({r, c}); }
  /// The element at `i`, read only, or nullptr.
  const T* At(Long i) const noexcept { return const_cast<HostArray*>(this)->Find({i}); }
  /// The element at (`r`, `c`), read only, or nullptr.
  const T* At(Long r, Long c) const noexcept { return const_cast<HostArray*>(this)->Find({r, c}); }

  /// Stores `value` at `i` when the index is inside the array; returns whether it did.
  bool Store(Long i, T value) noexcept(std::is_nothrow_move_assignable_v<T>) {
    T* p = At(i);
    if (p) *p = std::move(value);
    return p != nullptr;
  }
  /// Stores `value` at (`r`, `c`) when the index is inside the array; returns whether it did.
  bool Store(Long r, Long c, T value) noexcept(std::is_nothrow_move_assignable_v<T>) {
    T* p = At(r, c);
    if (p) *p = std::move(value);
    return p != nullptr;
  }

 private:
  bool Has(int dim) const noexcept { return dim >= 1 && dim <= Rank(); }
  T* Find(std::initializer_list<Long> idx) noexcept {
    if (idx.size() != dims_.size() || cells_.empty()) return nullptr;
    std::size_t offset = 0;
    std::size_t k = 0;
    for (Long i : idx) {
      const Bounds& d = dims_[k++];
      if (i < d.Lower || i > d.Upper) return nullptr;
      offset = offset * (static_cast<std::size_t>(d.Upper - d.Lower) + 1) + static_cast<std::size_t>(i - d.Lower);
    }
    return &cells_[offset];
  }

  std::vector<Bounds> dims_;
  std::vector<T> cells_;
};

}  // namespace tolva

#endif  // TOLVA_HOST_TYPES_H_
