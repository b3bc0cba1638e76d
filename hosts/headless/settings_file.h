// SPDX-License-Identifier: MIT
#pragma once

/// A control's settings in a JSON file: an object of the keys and values of its property store,
/// such as {"2DTESTDM": 194, "StdResx2D": 5, "2DCaption": "Wafer"}.

#include <filesystem>

#include "discoplan/controls/plot_control.h"
#include "hosts/headless/export.h"
#include "hosts/headless/whole_file.h"

namespace discoplan {

/// Gives the control the settings of the file; a setting that isn't there takes its default.
/// Raises `FileError` for a file that can't be read, that is damaged, or that holds a key or a
/// value that the control has no use for, and leaves the control as it was then.
DISCOPLAN_HEADLESS_EXPORT void ReadSettings(PlotControl& control,
                                            const std::filesystem::path& file);

/// Writes all settings but pictures. Raises `FileError`.
DISCOPLAN_HEADLESS_EXPORT void WriteSettings(PlotControl& control,
                                             const std::filesystem::path& file);

}  // namespace discoplan
