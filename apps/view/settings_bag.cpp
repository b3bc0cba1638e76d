// SPDX-License-Identifier: MIT
#include "apps/view/settings_bag.h"

#include "discoplan/base/numbers.h"

namespace discoplan::app {
namespace {

QString KeyOf(std::string_view key) {
  return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

void SettingsBag::WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                                const Variant&) {
  switch (kind) {
    case StoredKind::Object:
      return;  // a program's icon isn't kept
    case StoredKind::String:
      return settings_.setValue(KeyOf(key), QString::fromUtf8(value.AsString()));
    case StoredKind::Boolean:
      return settings_.setValue(KeyOf(key), value.AsBoolean());
    default:
      return settings_.setValue(KeyOf(key), value.AsDouble());
  }
}

/// A value that was damaged by hand is its default.
Variant SettingsBag::ReadProperty(std::string_view key, const Variant& default_value) const {
  const QVariant value = settings_.value(KeyOf(key));
  if (!value.isValid()) return default_value;
  if (std::holds_alternative<std::string>(default_value.value())) {
    return Variant(value.toString().toStdString());
  }
  if (value.toString() == QLatin1String("true") || value.toString() == QLatin1String("false")) {
    return BooleanVariant(value.toBool());
  }
  bool is_number = false;
  const double number = value.toDouble(&is_number);
  return is_number ? Variant(number) : default_value;
}

}  // namespace discoplan::app
