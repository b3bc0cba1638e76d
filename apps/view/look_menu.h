// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <memory>
#include <vector>

#include "apps/view/figure_view.h"

class QActionGroup;
class QSettings;

namespace discoplan::app {

/// Chooses between figures of today and the live controls, and how the figures look. What was
/// chosen is kept from start to start.
class LookMenu final : public QMenu {
  Q_OBJECT

 public:
  explicit LookMenu(QWidget* parent = nullptr);

  ViewLook Look() const;
  void Restore(const QSettings& kept);
  void Save(QSettings& kept) const;
  /// The two looks, for a tool bar.
  QList<QAction*> Looks() const;

 Q_SIGNALS:
  void Changed();

 private:
  void AddChoice(const char* key, QMenu& menu, const QStringList& names, const QStringList& titles);
  void AddSwitch(const char* key, const QString& title);
  std::string Chosen(const char* key) const;
  bool IsOn(const char* key) const;

  struct Choice {
    const char* key;
    QActionGroup* names;
  };
  std::vector<Choice> choices_;
  struct Switch {
    const char* key;
    QAction* action;
  };
  std::vector<Switch> switches_;
};

}  // namespace discoplan::app
