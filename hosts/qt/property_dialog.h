// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <memory>
#include <vector>

#include "discoplan/dialogs/property_page.h"
#include "hosts/qt/export.h"
#include "hosts/qt/plot_widget.h"

class QDialogButtonBox;

namespace discoplan::qt {

class FormView;
class QtPlatform;

/// The property pages of a plot, one behind the other: OK and Apply write what was edited.
///
///     PropertyDialog(*plot).exec();
///
/// A child of the plot, so that it goes with it.
class DISCOPLAN_QT_EXPORT PropertyDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit PropertyDialog(PlotWidget& plot);
  ~PropertyDialog() override;

  /// Writes back what was edited and reads how the plot took it.
  void Apply();
  void accept() override;

 private:
  void ShowChanged();

  PlotWidget& plot_;
  std::unique_ptr<QtPlatform> platform_;
  std::vector<std::unique_ptr<PropertyPage>> pages_;
  std::vector<FormView*> views_;
  QDialogButtonBox* buttons_;
};

}  // namespace discoplan::qt
