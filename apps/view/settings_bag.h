// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>

#include "discoplan/platform/property_bag.h"

namespace discoplan::app {

/// A control's settings in a group of the program's own.
class SettingsBag final : public PropertyBag {
 public:
  explicit SettingsBag(const QString& group) { settings_.beginGroup(group); }

  bool IsEmpty() const { return settings_.childKeys().isEmpty(); }
  void WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                     const Variant& otherwise) override;
  Variant ReadProperty(std::string_view key, const Variant& otherwise) const override;

 private:
  QSettings settings_;
};

}  // namespace discoplan::app
