// SPDX-License-Identifier: MIT
#pragma once

/// What the subcommands share: how they are set up, how they fail, and how data are named.
///
/// A wrong use ends with status 2, everything else that goes wrong with status 1, each with one
/// line on standard error. A warning is such a line too.

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "data/plain_text.h"
#include "data/read.h"

namespace discoplan::app {

using data::Counted;
using data::Listed;
using data::Lot;
using data::Printable;
using data::ReadRequest;
using data::Shown;
using data::Wafer;

/// The command line asks for something that makes no sense.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Something that can't be done.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Options of the subcommands, and what each of them does.
void SetUpPlot(CLI::App& command);
void SetUpStats(CLI::App& command);
void SetUpLot(CLI::App& command);
void SetUpReport(CLI::App& command);
void SetUpView(CLI::App& command);
void SetUpAutomate(CLI::App& command);
void SetUpDescribe(CLI::App& command);

/// Puts a line for people on standard error, without harm to a terminal.
void Warn(std::string_view text);

/// Reads the data and tells on standard error what can't be read and what looks wrong.
Lot ReadReporting(const ReadRequest& request);

}  // namespace discoplan::app
