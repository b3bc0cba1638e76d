// SPDX-License-Identifier: MIT
#include "apps/discoplan/command.h"

#include <iostream>

#include "apps/discoplan/measured_wafer.h"
#include "data/left_out.h"

namespace discoplan::app {

void Warn(std::string_view text) { std::cerr << "discoplan: " << Printable(text) << '\n'; }

Lot ReadReporting(const ReadRequest& request) {
  Lot result = data::Read(request);
  const std::string file = request.path.string();
  if (!result.skipped.empty()) Warn(data::SkipReport(result));
  for (const std::string& warning : result.warnings) Warn(file + ": " + warning);
  WarnOfTinyValues(file, result.wafers);
  return result;
}

}  // namespace discoplan::app
