// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>
#include <array>
#include <string>

class QComboBox;

namespace discoplan::app {

/// Asks which columns of a table hold X, Y and the value.
class ColumnDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit ColumnDialog(const QStringList& names, QWidget* parent = nullptr);

  /// As `ReadRequest` takes them: "1,2,4".
  std::string Columns() const;

 private:
  std::array<QComboBox*, 3> choices_{};
};

}  // namespace discoplan::app
