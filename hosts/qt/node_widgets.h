// SPDX-License-Identifier: MIT
#pragma once

/// The widgets that nodes are shown by.

#include <QSpinBox>
#include <functional>

#include "discoplan/forms/node.h"

namespace discoplan::qt {

/// A spin box that only tells how far it was turned.
class StepBox final : public QSpinBox {
 public:
  explicit StepBox(QWidget* parent) : QSpinBox(parent) {
    setRange(-1, 361);
    setFocusPolicy(Qt::NoFocus);
  }
  std::function<void(int)> turned;

  void stepBy(int steps) override {
    if (turned) turned(steps);
  }
};

/// The widget that shows a node of that kind; it has nothing of the node's state yet.
QWidget* NewWidget(Node& node, QWidget* parent);

}  // namespace discoplan::qt
