// SPDX-License-Identifier: MIT
#pragma once

/// What is made of measured wafers before they are shown: they are mirrored, then turned, then
/// another wafer is subtracted, then what a smooth surface explains. The same for every command.

#include <optional>
#include <string>

#include "apps/discoplan/command.h"
#include "discoplan/analysis/positions.h"

namespace discoplan::app {

/// What is taken off a wafer's values.
struct ResidualRequest {
  enum class Model { Plane, Rings, Zernike } model = Model::Plane;
  int order = 0;
};

struct DeriveRequest {
  std::string minus;        ///< A file, or "mean" for the mean wafer of the lot.
  std::string minus_wafer;  ///< The wafer of the file to subtract from all; the same-named for "".
  std::string minus_parameter;  ///< The value of the file to subtract; the same-named for "".
  std::optional<ResidualRequest> residual;
  std::optional<analysis::MirrorAxis> mirror;
  double rotate = 0;

  /// The file that is read for it; empty for none.
  std::string File() const { return minus == "mean" ? std::string() : minus; }
};

void AddDeriveOptions(CLI::App& command, DeriveRequest& request);

/// Reads the data, tells what was left out, and makes of them what is asked for. Raises
/// `CommandError` where there is no wafer to subtract or nothing would be left. `Wafer::derived`
/// tells what was done.
Lot ReadDerived(const ReadRequest& reading, const DeriveRequest& request);

}  // namespace discoplan::app
