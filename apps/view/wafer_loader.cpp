// SPDX-License-Identifier: MIT
#include "apps/view/wafer_loader.h"

#include <QtConcurrent>

#include "data/left_out.h"

namespace discoplan::app {

WaferLoader::WaferLoader(ReadRequest reading, QObject* parent)
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
  ReadRequest request = reading_;
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
