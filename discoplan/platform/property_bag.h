// SPDX-License-Identifier: MIT
#pragma once

/// The named values in which a container keeps a control's settings.
///
///     MemoryBag bag;
///     plot.WriteProperties(bag);
///     other_plot.ReadProperties(bag);
///
/// One thread uses a bag at a time.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/base/variant.h"
#include "discoplan/export.h"

namespace discoplan {

/// What a store is told about a value.
enum class StoredKind { Int16, Int32, Double, Boolean, String, Object };

/// "int16", "int32", "double", "boolean", "string" or "object".
DISCOPLAN_EXPORT std::string_view NameOf(StoredKind kind);

class DISCOPLAN_EXPORT PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  /// A value that equals its default need not be kept.
  virtual void WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                             const Variant& default_value) = 0;
  /// The value of that key, or the default.
  virtual Variant ReadProperty(std::string_view key, const Variant& default_value) const = 0;
};

/// Keeps all that is written, in order.
class DISCOPLAN_EXPORT MemoryBag final : public PropertyBag {
 public:
  struct Entry {
    std::string key;
    StoredKind kind;
    Variant value;
    Variant default_value;
  };

  void WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                     const Variant& default_value) override;
  Variant ReadProperty(std::string_view key, const Variant& default_value) const override;

  std::span<const Entry> entries() const { return entries_; }

 private:
  std::vector<Entry> entries_;
};

}  // namespace discoplan
