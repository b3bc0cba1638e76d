// SPDX-License-Identifier: MIT
#include "apps/view/wafer_loader.h"

#include <QtConcurrent>

#include "apps/discoplan/skip_report.h"

namespace discoplan::app {

WaferLoader::WaferLoader(DataRequest reading, QObject* parent)
    : QObject(parent), reading_(std::move(reading)) {
  connect(&watcher_, &QFutureWatcher<Outcome>::finished, this, &WaferLoader::TakeOutcome);
}

WaferLoader::~WaferLoader() { watcher_.waitForFinished(); }

void WaferLoader::Load(const QStringList& files) {
  waiting_.append(files);
  if (current_.isEmpty()) BeginNext();
}

void WaferLoader::BeginNext() {
  if (waiting_.isEmpty()) {
    current_.clear();
    return Q_EMIT Finished();
  }
  current_ = waiting_.takeFirst();
  DataRequest request = reading_;
  request.path = current_.toStdString();
  Q_EMIT Began(current_);
  watcher_.setFuture(QtConcurrent::run(&WaferLoader::Read, request));
}

WaferLoader::Outcome WaferLoader::Read(const DataRequest& request) {
  Outcome outcome;
  try {
    DataResult data = ReadData(request);
    if (!data.skipped.empty()) {
      outcome.skipped = QString::fromStdString(SkipReport(request.path.string(), data));
    }
    for (Wafer& measured : data.wafers) {
      outcome.wafers.push_back(std::make_shared<const Wafer>(std::move(measured)));
    }
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
    Q_EMIT Failed(current_, outcome.fault);
  }
  BeginNext();
}

}  // namespace discoplan::app
