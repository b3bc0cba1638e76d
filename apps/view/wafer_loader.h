// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QStringList>
#include <deque>
#include <memory>
#include <vector>

#include "apps/discoplan/command.h"

namespace discoplan::app {

/// What was read of a file.
struct LoadedLot {
  std::vector<std::shared_ptr<const Wafer>> wafers;
  std::vector<data::Parameter> parameters;  ///< that `Wafer::parameter` counts in
  QString skipped;                          ///< rows that can't be read; nothing for ""
  QStringList warnings;                     ///< what looks wrong
};

/// Reads files behind the window's back, one after the other.
class WaferLoader final : public QObject {
  Q_OBJECT

 public:
  /// `reading` says how to read them all.
  explicit WaferLoader(ReadRequest reading, QObject* parent = nullptr);
  ~WaferLoader() override;

  /// `columns` are those of the tables among them, in place of what `reading` says.
  void Load(const QStringList& files, const std::string& columns = {});

 Q_SIGNALS:
  void Began(const QString& file);
  /// In the order of the files.
  void Loaded(const QString& file, const LoadedLot& loaded);
  /// `columns` are the names to choose from, if that may help.
  void Failed(const QString& file, const QString& why, const QStringList& columns);
  void Finished();

 private:
  struct Outcome {
    LoadedLot loaded;
    QString fault;
    QStringList columns;
  };
  struct Job {
    QString file;
    std::string columns;
  };

  void BeginNext();
  void TakeOutcome();
  static Outcome Read(const ReadRequest& request);

  const ReadRequest reading_;
  std::deque<Job> waiting_;
  QString current_;
  QFutureWatcher<Outcome> watcher_;
};

}  // namespace discoplan::app
