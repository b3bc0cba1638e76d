// SPDX-License-Identifier: MIT
#pragma once

/// Which settings a control keeps in a property store, under which keys.
///
/// What a control writes and what it reads differ in a few places. Stores that exist depend on
/// that, so each list says what it says.

#include <string>
#include <string_view>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/platform/property_bag.h"

namespace discoplan {

struct StoredProperty {
  std::string key;
  StoredKind kind;
  Variant otherwise;
  std::string_view property;  ///< Of the interface.
};

struct StoredProperties {
  std::vector<StoredProperty> written;
  std::vector<StoredProperty> read;
};

/// What a control keeps beside the settings that all have.
struct OwnStored {
  std::string_view prefix;       ///< Of the keys of the first four settings.
  std::string_view last_prefix;  ///< Of the last four.
  std::vector<StoredProperty> own;
  std::vector<StoredProperty> own_read = {};  ///< Where reading them differs from writing.
  StoredKind style_read_as = StoredKind::Int32;
  bool has_caption = true;
  std::string caption_read_otherwise = "Wafer";
};

/// All settings in store order.
StoredProperties StoredWith(const OwnStored& own);

StoredProperty StoredInt16(std::string key, std::int16_t otherwise, std::string_view property);
StoredProperty StoredInt32(std::string key, std::int32_t otherwise, std::string_view property);
StoredProperty StoredDouble(std::string key, double otherwise, std::string_view property);
StoredProperty StoredColour(std::string key, Colour otherwise, std::string_view property);

/// The ten interval colours under keys with that prefix, before the rows that follow.
std::vector<StoredProperty> WithIntervals(const std::string& prefix,
                                          const std::vector<StoredProperty>& rows);
/// The three colours of a sigma range, likewise.
std::vector<StoredProperty> WithRangeColours(const std::string& prefix,
                                             const std::vector<StoredProperty>& rows);

}  // namespace discoplan
