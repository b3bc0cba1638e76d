// SPDX-License-Identifier: MIT
#pragma once

/// A measured wafer on its way into a control: the size that it takes, and what doesn't fit.

#include <string>

#include "apps/discoplan/command.h"
#include "discoplan/controls/plot_control.h"

namespace discoplan::app {

/// "lot.csv", with the slot where there are several: for messages.
std::string SourceOf(const std::string& file, const Wafer& measured);

/// Raises `CommandError` for a site that lies outside of a wafer of that diameter, in mm, by more
/// than the precision of its position.
void RefuseFarSites(const std::string& source, const Wafer& measured, double diameter);

/// Raises `CommandError` for a wafer larger than any: its positions have another unit than mm.
void RefuseOtherUnits(const std::string& source, const Wafer& measured);

/// Loads the sites into a control that has its diameter. Raises `CommandError` that tells why they
/// don't fit; `source` names them.
void LoadSites(PlotControl& control, const std::string& source, const Wafer& measured);

/// Says on standard error how many values are so small that every plot takes them for 0.
void WarnOfTinyValues(const std::string& file, const std::vector<Wafer>& wafers);

}  // namespace discoplan::app
