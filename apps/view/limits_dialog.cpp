// SPDX-License-Identifier: MIT
#include "apps/view/limits_dialog.h"

#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace discoplan::app {

LimitsDialog::LimitsDialog(const Limits& limits, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Limits of the scale"));
  const auto field = [this](double value, const char* name) {
    auto* edit = new QLineEdit(locale().toString(value, 'g', 7), this);
    edit->setObjectName(QLatin1String(name));
    edit->setValidator(new QDoubleValidator(edit));
    return edit;
  };
  high_ = field(limits.high, "high");
  low_ = field(limits.low, "low");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  ok_ = buttons->button(QDialogButtonBox::Ok);
  auto* release = buttons->addButton(tr("Follow the data"), QDialogButtonBox::ResetRole);
  release->setObjectName(QStringLiteral("release"));
  auto* layout = new QFormLayout(this);
  layout->addRow(tr("&Upper limit:"), high_);
  layout->addRow(tr("&Lower limit:"), low_);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(release, &QPushButton::clicked, this, [this] {
    released_ = true;
    accept();
  });
  for (const QLineEdit* edit : {low_, high_}) {
    connect(edit, &QLineEdit::textChanged, this,
            [this] { ok_->setEnabled(Entered().has_value()); });
  }
  ok_->setEnabled(Entered().has_value());
}

std::optional<Limits> LimitsDialog::Entered() const {
  bool low_is_number = false;
  bool high_is_number = false;
  const Limits limits{locale().toDouble(low_->text(), &low_is_number),
                      locale().toDouble(high_->text(), &high_is_number)};
  if (!low_is_number || !high_is_number || !(limits.low < limits.high)) return {};
  return limits;
}

std::optional<Limits> LimitsDialog::Result() const {
  return released_ ? std::optional<Limits>() : Entered();
}

}  // namespace discoplan::app
