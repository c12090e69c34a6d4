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

namespace tolva {

using Long = std::int32_t;
using Integer = std::int16_t;
using Single = float;
using Double = double;
using Boolean = std::int16_t;

inline constexpr Boolean kTrue = -1;
inline constexpr Boolean kFalse = 0;

// A host boolean from a C++ bool: true is all bits set.
constexpr Boolean ToBoolean(bool b) noexcept {
  return b ? kTrue : kFalse;
}
// An option counts as set only when it is exactly host true; 1 is false.
constexpr bool IsTrue(Boolean b) noexcept {
  return b == kTrue;
}

// A calendar date (no time of day), as returned by LastDateInMonth.
struct Date {
  Integer Year = 0;
  Integer Month = 0;
  Integer Day = 0;
  friend bool operator==(const Date&, const Date&) = default;
};

// A picture the host hands to the component (its Icon property). The
// component only stores and returns the reference.
struct Picture {
  std::string Path;   // where it came from, if from a file
  std::string Bytes;  // the image data, if held in memory
};
using PictureRef = std::shared_ptr<const Picture>;

// A tagged value: empty, String, Long, Single, Double, Boolean or picture.
class TOLVA_EXPORT Variant {
 public:
  enum class Kind { kEmpty, kString, kLong, kSingle, kDouble, kBoolean, kPicture };

  Variant() noexcept = default;
  static Variant FromString(std::string s) { return Variant(Store{std::move(s)}); }
  static Variant FromLong(Long v) noexcept { return Variant(Store{v}); }
  static Variant FromSingle(Single v) noexcept { return Variant(Store{v}); }
  static Variant FromDouble(Double v) noexcept { return Variant(Store{v}); }
  static Variant FromBoolean(Boolean v) noexcept { return Variant(Store{BoolBox{v}}); }
  static Variant FromPicture(PictureRef p) noexcept { return Variant(Store{std::move(p)}); }

  Kind kind() const noexcept { return static_cast<Kind>(v_.index()); }
  bool IsEmpty() const noexcept { return kind() == Kind::kEmpty; }

  // Typed reads. Each returns the held value when the kind matches and a
  // conversion otherwise (numbers to and from their decimal text, with "."
  // as the decimal point); an empty variant reads as "", 0 or false.
  std::string AsString() const noexcept;  // "" if the text cannot be allocated
  Long AsLong() const noexcept;
  Single AsSingle() const noexcept;
  Double AsDouble() const noexcept;
  Boolean AsBoolean() const noexcept;
  PictureRef AsPicture() const noexcept;

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

// The bounds of one array dimension, both inclusive.
struct Bounds {
  Long Lower = 0;
  Long Upper = -1;
};

// An array whose rank and per-dimension bounds are chosen at run time, as a
// host dimensions them (Dim A(1 To 10, 1 To 5)). The component never resizes
// a host array: At() returns nullptr for an index outside the bounds or for
// an index count that does not match the rank, and Store() then drops the
// value silently.
template <class T>
class HostArray {
 public:
  HostArray() = default;  // rank 0: holds nothing
  explicit HostArray(std::vector<Bounds> dims) : dims_(std::move(dims)) {
    std::size_t n = dims_.empty() ? 0 : 1;
    for (const Bounds& d : dims_) n *= d.Upper >= d.Lower ? static_cast<std::size_t>(d.Upper - d.Lower) + 1 : 0;
    cells_.resize(n);
  }
  // Dim A(lower To upper)
  static HostArray OneDim(Long lower, Long upper) { return HostArray({{lower, upper}}); }
  // Dim A(rlower To rupper, clower To cupper)
  static HostArray TwoDim(Long rlower, Long rupper, Long clower, Long cupper) {
    return HostArray({{rlower, rupper}, {clower, cupper}});
  }

  int Rank() const noexcept { return static_cast<int>(dims_.size()); }
  // Bounds of dimension `dim` (1-based); 0 and -1 when it has no such dimension.
  Long LBound(int dim = 1) const noexcept { return Has(dim) ? dims_[dim - 1].Lower : 0; }
  Long UBound(int dim = 1) const noexcept { return Has(dim) ? dims_[dim - 1].Upper : -1; }

  T* At(Long i) noexcept { return Find({i}); }
  T* At(Long r, Long c) noexcept { return Find({r, c}); }
  const T* At(Long i) const noexcept { return const_cast<HostArray*>(this)->Find({i}); }
  const T* At(Long r, Long c) const noexcept { return const_cast<HostArray*>(this)->Find({r, c}); }

  // Stores the value when the index is inside the array; returns whether it did.
  bool Store(Long i, T value) noexcept(std::is_nothrow_move_assignable_v<T>) {
    T* p = At(i);
    if (p) *p = std::move(value);
    return p != nullptr;
  }
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
