// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>

namespace discoplan::app {

void AddReportCommand(CLI::App& program);

}  // namespace discoplan::app
