// SPDX-License-Identifier: MIT
#include "apps/view/wafer_loader.h"

#include <QtConcurrent>

#include "apps/view/column_dialog.h"

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

WaferLoader::Outcome WaferLoader::Read(const ReadRequest& request) {
  Outcome outcome;
  try {
    Lot lot = data::Read(request);
    if (!lot.skipped.empty()) {
      outcome.skipped = QString::fromStdString(data::SkipReport(lot));
    }
    for (Wafer& measured : lot.wafers) {
      outcome.wafers.push_back(std::make_shared<const Wafer>(std::move(measured)));
    }
  } catch (const data::DataError& error) {
    outcome.fault = QString::fromUtf8(error.what());
    outcome.columns = ColumnNames(request.path);
  } catch (const std::exception& error) {
    outcome.fault = QString::fromUtf8(error.what());
  }
  return outcome;
}

void WaferLoader::TakeOutcome() {
  const Outcome outcome = watcher_.result();
  if (outcome.fault.isEmpty()) {
    Q_EMIT Loaded(current_, outcome.wafers, outcome.skipped);
  } else {
    Q_EMIT Failed(current_, outcome.fault, outcome.columns);
  }
  BeginNext();
}

}  // namespace discoplan::app
