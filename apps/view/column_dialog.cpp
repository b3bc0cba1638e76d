// SPDX-License-Identifier: MIT
#include "apps/view/column_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <algorithm>
#include <array>

namespace discoplan::app {

ColumnDialog::ColumnDialog(const QStringList& names, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Columns of the table"));
  setObjectName(QStringLiteral("ColumnDialog"));
  auto* layout = new QFormLayout(this);
  layout->addRow(new QLabel(tr("Positions are millimetres from the wafer's centre."), this));
  const std::array<QString, 3> labels = {tr("&X:"), tr("&Y:"), tr("&Value:")};
  const std::array<const char*, 3> objects = {"x", "y", "value"};
  for (std::size_t i = 0; i < choices_.size(); ++i) {
    choices_[i] = new QComboBox(this);
    choices_[i]->setObjectName(QLatin1String(objects[i]));
    choices_[i]->addItems(names);
    layout->addRow(labels[i], choices_[i]);
  }
  // As far as the names tell; the value is the first of the others.
  const auto begins_with = [&](const char* letter) {
    const auto found = std::ranges::find_if(names, [letter](const QString& name) {
      return name.startsWith(QLatin1String(letter), Qt::CaseInsensitive);
    });
    return found == names.end() ? 0 : static_cast<int>(found - names.begin());
  };
  const int x = begins_with("x");
  const int y = begins_with("y");
  int value = 0;
  while (value + 1 < names.size() && (value == x || value == y)) ++value;
  choices_[0]->setCurrentIndex(x);
  choices_[1]->setCurrentIndex(y);
  choices_[2]->setCurrentIndex(value);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addRow(buttons);
}

std::string ColumnDialog::Columns() const {
  std::string columns;
  for (const QComboBox* choice : choices_) {
    if (!columns.empty()) columns += ',';
    columns += std::to_string(choice->currentIndex() + 1);
  }
  return columns;
}

}  // namespace discoplan::app
