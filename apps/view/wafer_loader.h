// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QStringList>
#include <memory>
#include <vector>

#include "apps/discoplan/command.h"

namespace discoplan::app {

/// Reads files behind the window's back, one after the other.
class WaferLoader final : public QObject {
  Q_OBJECT

 public:
  /// `reading` says how to read them all.
  explicit WaferLoader(ReadRequest reading, QObject* parent = nullptr);
  ~WaferLoader() override;

  void Load(const QStringList& files);

 Q_SIGNALS:
  void Began(const QString& file);
  /// In the order of the files. `skipped` is empty if nothing was left out.
  void Loaded(const QString& file, const std::vector<std::shared_ptr<const Wafer>>& wafers,
              const QString& skipped);
  void Failed(const QString& file, const QString& why);
  void Finished();

 private:
  struct Outcome {
    std::vector<std::shared_ptr<const Wafer>> wafers;
    QString skipped;
    QString fault;
  };

  void BeginNext();
  void TakeOutcome();
  static Outcome Read(const ReadRequest& request);

  const ReadRequest reading_;
  QStringList waiting_;
  QString current_;
  QFutureWatcher<Outcome> watcher_;
};

}  // namespace discoplan::app
