// SPDX-License-Identifier: MIT
#include "apps/view/wafer_list.h"

#include <QComboBox>
#include <QFileInfo>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

namespace discoplan::app {
namespace {

QString CaptionOf(const data::Parameter& parameter) {
  return QString::fromStdString(Printable(parameter.Caption()));
}

}  // namespace

WaferList::WaferList(QWidget* parent)
    : QWidget(parent), parameters_(new QComboBox(this)), list_(new QListWidget(this)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->addWidget(parameters_);
  column->addWidget(list_);
  parameters_->setAccessibleName(tr("Parameter"));
  parameters_->setToolTip(tr("What was measured"));
  parameters_->hide();
  list_->setAccessibleName(tr("Wafers"));
  connect(list_, &QListWidget::currentRowChanged, this, &WaferList::ChosenChanged);
  connect(parameters_, &QComboBox::currentTextChanged, this, &WaferList::ShowParameter);
}

void WaferList::Add(const QString& file, const LoadedLot& loaded) {
  const int first = list_->count();
  for (const auto& measured : loaded.wafers) {
    const data::Parameter& parameter = loaded.parameters.at(measured->parameter);
    const bool several = loaded.parameters.size() > 1;
    entries_.push_back({{measured, parameter, file}, several ? CaptionOf(parameter) : QString()});
    auto* item = new QListWidgetItem(list_);
    item->setToolTip(
        QStringLiteral("%1, %2").arg(file, QString::fromStdString(measured->SitesText())));
  }
  if (loaded.wafers.empty()) return;
  NameWafers();
  OfferParameters();
  list_->setCurrentRow(first);
  const QString& parameter = entries_[static_cast<std::size_t>(first)].parameter;
  if (!parameter.isEmpty()) parameters_->setCurrentText(parameter);
  ShowParameter();
}

void WaferList::RemoveChosen() {
  const int row = list_->currentRow();
  if (row < 0) return;
  entries_.erase(entries_.begin() + row);
  delete list_->takeItem(row);
  NameWafers();
  OfferParameters();
  ShowParameter();
  Q_EMIT ChosenChanged();
}

const WaferList::Entry* WaferList::ChosenEntry() const {
  const int row = list_->currentRow();
  const bool is_wafer = row >= 0 && row < static_cast<int>(entries_.size());
  return is_wafer ? &entries_[static_cast<std::size_t>(row)] : nullptr;
}

ShownWafer WaferList::Chosen() const {
  const Entry* entry = ChosenEntry();
  return entry != nullptr ? entry->wafer : ShownWafer();
}

QString WaferList::ChosenName() const {
  return ChosenEntry() != nullptr ? list_->currentItem()->text() : QString();
}

/// Wafers of one name are told apart by their files.
void WaferList::NameWafers() {
  std::set<QString> files;
  std::multiset<QString> short_names;
  for (const Entry& entry : entries_) files.insert(entry.wafer.file);
  for (const QString& file : files) short_names.insert(QFileInfo(file).fileName());
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    QString name = QString::fromStdString(entries_[i].wafer.measured->name);
    if (files.size() > 1) {
      const QString short_name = QFileInfo(entries_[i].wafer.file).fileName();
      const bool is_clear = short_names.count(short_name) == 1;
      name += QStringLiteral(" - ") + (is_clear ? short_name : entries_[i].wafer.file);
    }
    list_->item(static_cast<int>(i))->setText(name);
  }
}

void WaferList::OfferParameters() {
  QStringList names;
  for (const Entry& entry : entries_) {
    if (!entry.parameter.isEmpty() && !names.contains(entry.parameter)) names += entry.parameter;
  }
  const QString chosen = parameters_->currentText();
  const QSignalBlocker quiet(parameters_);
  parameters_->clear();
  parameters_->addItems(names);
  parameters_->setCurrentIndex(std::max(0, static_cast<int>(names.indexOf(chosen))));
  parameters_->setVisible(!names.isEmpty());
}

/// Chooses the same wafer in that value or, where it wasn't measured, the first one shown.
void WaferList::ShowParameter() {
  const Entry* chosen = ChosenEntry();
  int first = -1;
  int same = -1;
  for (int i = 0; i < list_->count(); ++i) {
    const Entry& entry = entries_[static_cast<std::size_t>(i)];
    const bool is_hidden =
        !entry.parameter.isEmpty() && entry.parameter != parameters_->currentText();
    list_->item(i)->setHidden(is_hidden);
    if (is_hidden) continue;
    if (first < 0) first = i;
    const bool is_same = chosen != nullptr && entry.wafer.file == chosen->wafer.file &&
                         entry.wafer.measured->name == chosen->wafer.measured->name;
    if (is_same && (same < 0 || &entry == chosen)) same = i;
  }
  list_->setCurrentRow(same < 0 ? first : same);
}

}  // namespace discoplan::app
