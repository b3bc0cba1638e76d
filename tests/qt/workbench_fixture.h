// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QListWidget>
#include <QSettings>
#include <QTest>
#include <memory>

#include "apps/view/workbench.h"
#include "tests/places.h"
#include "tests/temporary_folder.h"

namespace discoplan::app {

/// A workbench with settings of its own, which opens the lot of the examples.
class WorkbenchTest : public testing::Test {
 protected:
  explicit WorkbenchTest(const char* look = "classic") {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, PathOf("settings"));
    QApplication::setOrganizationName(QStringLiteral("Discoplan"));
    QApplication::setApplicationName(QStringLiteral("workbench-test"));
    QSettings().setValue(QStringLiteral("look/look"), QLatin1String(look));
    workbench_ = std::make_unique<Workbench>();
    workbench_->show();
  }

  void Trigger(const char* title) {
    for (QAction* action : workbench_->findChildren<QAction*>()) {
      if (action->text() == QLatin1String(title)) return action->trigger();
    }
    FAIL() << "no action " << title;
  }

  QString PathOf(const char* name) const {
    return QString::fromStdString((folder_.path() / name).string());
  }
  QListWidget& List() { return *workbench_->findChild<QListWidget*>(); }
  qt::PlotWidget& Current() { return workbench_->plots().Current(); }
  void OpenLot() {
    workbench_->Open({QString::fromStdString(Example("native_oxide_lot.csv"))});
    ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 25; }));
  }

  TemporaryFolder folder_;
  std::unique_ptr<Workbench> workbench_;
};

}  // namespace discoplan::app
