// SPDX-License-Identifier: MIT
#include "apps/discoplan/command.h"

#include <iostream>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/measured_wafer.h"
#include "data/left_out.h"

namespace discoplan::app {

void Warn(std::string_view text) { std::cerr << "discoplan: " << Printable(text) << '\n'; }

void AddDataOptions(CLI::App& command, ReadRequest& request) {
  command
      .add_option("DATA", request.path, "Measured sites: a table, a lot export or a binary file")
      ->required()
      ->transform(InputFile());
  AddReadingOptions(command, request);
}

void AddReadingOptions(CLI::App& command, ReadRequest& request) {
  command.add_option("--columns", request.columns,
                     "X,Y,VALUE of a table, by name or number from 1");
  command
      .add_option("--wafer", request.wafers,
                  "Wafer to take, by name, slot or range of slots; again for another")
      ->type_name("NAME|SLOT|FROM-TO")
      ->allow_extra_args(false);
  command.add_option("--sites", request.sites,
                     "Number of sites in a binary file, if not from its size");
  command.add_flag("--skip-invalid", request.skip_invalid,
                   "Leave out rows that can't be read, and say how many");
}

Lot ReadReporting(const ReadRequest& request) {
  Lot result = data::Read(request);
  const std::string file = request.path.string();
  if (!result.skipped.empty()) Warn(data::SkipReport(result));
  WarnOfTinyValues(file, result.wafers);
  return result;
}

}  // namespace discoplan::app
