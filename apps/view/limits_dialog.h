// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <optional>

class QLineEdit;
class QPushButton;

namespace discoplan::app {

struct Limits {
  double low = 0;
  double high = 0;
};

/// Asks for a pinned colour scale. OK is offered for a pair in order only.
class LimitsDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Opens with `limits`, the data's own for a start.
  LimitsDialog(const Limits& limits, QWidget* parent);

  /// What was entered; nothing if the scale is to follow the data.
  std::optional<Limits> Result() const;

 private:
  std::optional<Limits> Entered() const;

  QLineEdit* low_;
  QLineEdit* high_;
  QPushButton* ok_;
  bool released_ = false;
};

}  // namespace discoplan::app
