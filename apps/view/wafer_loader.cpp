// SPDX-License-Identifier: MIT
#include "apps/view/wafer_loader.h"

#include <QtConcurrent>
#include <optional>

#include "data/column_names.h"
#include "data/left_out.h"

namespace discoplan::app {

WaferLoader::WaferLoader(ReadRequest reading, QObject* parent)
    : QObject(parent), reading_(std::move(reading)) {
  connect(&watcher_, &QFutureWatcher<Outcome>::finished, this, &WaferLoader::TakeOutcome);
}

WaferLoader::~WaferLoader() { watcher_.waitForFinished(); }

void WaferLoader::Load(const QStringList& files, const std::string& columns) {
  for (const QString& file : files) waiting_.push_back({file, columns});
  if (current_.isEmpty()) BeginNext();
}

void WaferLoader::BeginNext() {
  if (waiting_.empty()) {
    current_.clear();
    return Q_EMIT Finished();
  }
  const Job job = waiting_.front();
  waiting_.pop_front();
  current_ = job.file;
  ReadRequest request = reading_;
  if (!job.columns.empty()) request.columns = job.columns;
  request.path = current_.toStdString();
  Q_EMIT Began(current_);
  watcher_.setFuture(QtConcurrent::run(&WaferLoader::Read, request));
}

namespace {

LoadedLot LoadedFrom(Lot lot) {
  LoadedLot loaded;
  loaded.skipped = QString::fromStdString(data::SkipReport(lot));
  loaded.parameters = lot.parameters;
  for (const std::string& warning : lot.warnings) {
    loaded.warnings += QString::fromStdString(warning);
  }
  for (Wafer& measured : lot.wafers) {
    loaded.wafers.push_back(std::make_shared<const Wafer>(std::move(measured)));
  }
  return loaded;
}

/// All values of a table in which any of several may be meant; nothing if they can't be read.
std::optional<LoadedLot> ReadAllValues(ReadRequest request) {
  if (!request.columns.empty() || !request.parameters.empty()) return {};
  request.parameters = {"all"};
  try {
    return LoadedFrom(data::Read(request));
  } catch (const data::DataError&) {
    return {};
  }
}

}  // namespace

WaferLoader::Outcome WaferLoader::Read(const ReadRequest& request) {
  Outcome outcome;
  try {
    outcome.loaded = LoadedFrom(data::Read(request));
  } catch (const data::DataError& error) {
    if (auto all = ReadAllValues(request)) {
      outcome.loaded = std::move(*all);
      return outcome;
    }
    outcome.fault = QString::fromUtf8(error.what());
    for (const std::string& name : data::ColumnNames(request)) {
      outcome.columns += QString::fromStdString(name);
    }
  } catch (const std::exception& error) {
    outcome.fault = QString::fromUtf8(error.what());
  }
  return outcome;
}

void WaferLoader::TakeOutcome() {
  const Outcome outcome = watcher_.result();
  if (outcome.fault.isEmpty()) {
    Q_EMIT Loaded(current_, outcome.loaded);
  } else {
    Q_EMIT Failed(current_, outcome.fault, outcome.columns);
  }
  BeginNext();
}

}  // namespace discoplan::app
