// Property bags for the component's persisted properties: the PropertyBag
// interface, and bags in memory and in a file.
#ifndef TOLVA_PROPERTY_BAG_H_
#define TOLVA_PROPERTY_BAG_H_

#include <map>
#include <string>

#include "tolva/export.h"
#include "tolva/host_types.h"

namespace tolva {

/// The property bag in which a host form keeps the component's persisted properties. A bag stores a value only
/// when it differs from the default the writer names, so a component saved with all defaults leaves it empty.
class TOLVA_EXPORT PropertyBag {
 public:
  /// Destroys the bag.
  virtual ~PropertyBag() = default;
  /// The stored value of `name`, or `default_value` when the bag has none.
  virtual Variant ReadProperty(const std::string& name, const Variant& default_value) = 0;
  /// Stores `value` under `name`, or removes the key when `value` equals `default_value` (compared as text).
  virtual void WriteProperty(const std::string& name, const Variant& value, const Variant& default_value) = 0;
};

/// A bag held in memory; what a test or a host without persistence uses.
class TOLVA_EXPORT MemoryPropertyBag : public PropertyBag {
 public:
  Variant ReadProperty(const std::string& name, const Variant& default_value) override;
  void WriteProperty(const std::string& name, const Variant& value, const Variant& default_value) override;

  /// Whether the bag holds no value.
  bool Empty() const noexcept { return values_.empty(); }
  /// The number of values held.
  std::size_t Size() const noexcept { return values_.size(); }
  /// Whether the bag holds a value under `name`.
  bool Contains(const std::string& name) const { return values_.count(name) != 0; }

 protected:
  /// The values held, by name.
  std::map<std::string, Variant> values_;
};

/// A bag kept in a text file of "name=value" lines (values escaped so that any bytes survive).
class TOLVA_EXPORT FilePropertyBag : public MemoryPropertyBag {
 public:
  /// A bag for the file `path`; nothing is read until Load().
  explicit FilePropertyBag(std::string path) : path_(std::move(path)) {}
  /// Reads the file; a missing file is an empty bag. False on a read error.
  bool Load() noexcept;
  /// Writes the bag to a temporary file beside it and renames it into place; false when that fails.
  bool Save() noexcept;
  /// The file the bag is kept in.
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
};

}  // namespace tolva

#endif  // TOLVA_PROPERTY_BAG_H_
