// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "apps/view/figure_view.h"
#include "apps/view/wafer_loader.h"

class QComboBox;
class QListWidget;

namespace discoplan::app {

/// The wafers that are open and, where a file has several values, a choice of the one to look at.
class WaferList final : public QWidget {
  Q_OBJECT

 public:
  explicit WaferList(QWidget* parent = nullptr);

  /// Adds the wafers of a file and chooses the first of them.
  void Add(const QString& file, const LoadedLot& loaded);
  void RemoveChosen();

  /// Without a wafer if none is chosen, and then its name is empty.
  ShownWafer Chosen() const;
  QString ChosenName() const;

 Q_SIGNALS:
  void ChosenChanged();

 private:
  struct Entry {
    ShownWafer wafer;
    QString parameter;  // of a file with several
  };

  const Entry* ChosenEntry() const;
  void NameWafers();
  void OfferParameters();
  void ShowParameter();

  std::vector<Entry> entries_;
  QComboBox* parameters_;
  QListWidget* list_;
};

}  // namespace discoplan::app
