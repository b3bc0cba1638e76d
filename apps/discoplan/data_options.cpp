// SPDX-License-Identifier: MIT
#include "apps/discoplan/data_options.h"

#include <string_view>
#include <utility>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/command.h"

namespace discoplan::app {
namespace {

using data::LengthUnit;
using data::Origin;
using data::OutlierRule;

LengthUnit LengthUnitNamed(const std::string& word) {
  constexpr std::pair<std::string_view, LengthUnit> kUnits[] = {{"mm", LengthUnit::Millimetre},
                                                                {"cm", LengthUnit::Centimetre},
                                                                {"um", LengthUnit::Micrometre},
                                                                {"in", LengthUnit::Inch}};
  for (const auto& [name, unit] : kUnits) {
    if (name == word) return unit;
  }
  throw UsageError("--unit is that of the positions and takes mm, cm, um or in, not " +
                   Shown(word) + "; --value-unit names that of the values");
}

OutlierRule OutlierRuleOf(const std::string& text) {
  if (const auto rule = data::ParseOutlierRule(text)) return *rule;
  throw UsageError("--drop-outliers takes a factor and iqr or mad, as in 1.5iqr or 3.5mad, not " +
                   Shown(text));
}

void AddColumnOptions(CLI::App& command, data::ReadRequest& request) {
  command
      .add_option("--columns", request.columns,
                  "X,Y or X,Y,VALUE of a table, by name or number from 1")
      ->check(GivenText());
  command
      .add_option("--parameter", request.parameters,
                  "Value to read, by name or number; again for another, or 'all'")
      ->type_name("NAME")
      ->check(GivenText())
      ->allow_extra_args(false);
  command.add_option("--by", request.by, "Columns of a table that tell its wafers apart")
      ->type_name("COLUMN[,COLUMN]")
      ->check(GivenText())
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      .add_option("--wafer", request.wafers,
                  "Wafer to take, by name, slot or range of slots; again for another")
      ->type_name("NAME|SLOT|FROM-TO")
      ->check(GivenText())
      ->allow_extra_args(false);
  command
      .add_option("--value-unit,--units", request.value_unit,
                  "Unit of the values, in place of the data's")
      ->type_name("UNIT");
  command
      .add_option("--where", request.where,
                  "Rows to take of a table, as \"MSE < 12 and Slot != 3\"")
      ->type_name("CONDITION")
      ->check(GivenText());
}

void AddPositionOptions(CLI::App& command, data::ReadRequest& request) {
  command
      .add_option_function<std::string>(
          "--unit", [&request](const std::string& word) { request.unit = LengthUnitNamed(word); },
          "Unit of positions: mm, cm, um or in; the header's, or mm otherwise")
      ->type_name("UNIT");
  command
      .add_option_function<std::string>(
          "--origin",
          [&request](const std::string& word) {
            request.origin = word == "corner" ? Origin::Corner : Origin::Centre;
          },
          "Where positions count from; the wafer's centre otherwise")
      ->check(CLI::IsMember({"centre", "center", "corner"}));
  command
      .add_option_function<std::vector<double>>(
          "--pitch",
          [&request](const std::vector<double>& pitch) {
            if (pitch[0] == 0 || pitch[1] == 0) throw UsageError("--pitch: a die has no side of 0");
            request.pitch = data::DiePitch{pitch[0], pitch[1]};
          },
          "Positions are numbers of dies of that size in mm; a negative height counts downwards")
      ->expected(2)
      ->check(FiniteNumber())
      ->type_name("WIDTH HEIGHT");
}

void AddExclusionOptions(CLI::App& command, data::ReadRequest& request) {
  command
      .add_option("--diameter", request.diameter,
                  "Wafer's diameter in mm; the smallest standard one that holds all sites "
                  "otherwise")
      ->check(PositiveNumber());
  command
      .add_option("--test-diameter", request.test_diameter,
                  "Diameter of the measured area in mm, outside of which sites are left out; 6 "
                  "less than the wafer's otherwise")
      ->check(PositiveNumber());
  command
      .add_option("--edge-exclusion", request.edge_exclusion,
                  "Leave out sites nearer than that to the wafer's edge, in mm")
      ->check(PositiveNumber());
  command
      .add_option_function<std::string>(
          "--drop-outliers",
          [&request](const std::string& text) { request.outliers = OutlierRuleOf(text); },
          "Leave out values beyond the quartiles by a factor of their distance (1.5iqr), or "
          "beyond the median by a factor of the robust standard deviation (3.5mad)")
      ->type_name("FACTORiqr|FACTORmad");
  command.add_flag("--thin", request.thin,
                   "Leave out sites of a wafer with more than 32767, evenly");
}

}  // namespace

void AddReadingOptions(CLI::App& command, data::ReadRequest& request) {
  AddColumnOptions(command, request);
  AddPositionOptions(command, request);
  AddExclusionOptions(command, request);
  command.add_option("--sites", request.sites,
                     "Number of sites in a binary file, if not from its size");
  command.add_flag("--skip-invalid", request.skip_invalid,
                   "Leave out rows that can't be read, and say how many");
}

void AddDataOptions(CLI::App& command, data::ReadRequest& request) {
  command
      .add_option("DATA", request.path,
                  "Measured sites: a table, a lot export, a KLARF or a binary file")
      ->required()
      ->transform(InputFile());
  AddReadingOptions(command, request);
}

}  // namespace discoplan::app
