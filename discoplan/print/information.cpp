// SPDX-License-Identifier: MIT
#include "discoplan/print/information.h"

#include <cmath>

#include "discoplan/core/numbers.h"
#include "discoplan/print/page.h"
#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

std::string Percent(double share) { return FormatNonZero(std::abs(share) * 100, "0.00") + " %"; }

}  // namespace

std::string FirstCharacters(const std::string& text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (begins && ++characters > 15) return text.substr(0, i);
  }
  return text;
}

std::vector<InformationRow> StatisticsRows(const wafer& source, NumberFormat format) {
  const double spread = static_cast<double>(source.Maximum) - source.Minimum;
  const double sum = static_cast<double>(source.Maximum) + source.Minimum;
  const auto number = [&](double value) { return format(ToFloat(value)); };
  std::optional<std::string> deviation;
  if (source.mean > 0) deviation = Percent(source.StdDev / source.mean);
  return {
      {"Mean:", number(source.mean)},
      {"Maximum:", format(source.Maximum)},
      {"Minimum:", format(source.Minimum)},
      {"Std. Dev:", number(source.StdDev)},
      {"", deviation},
      {"Range:", number(spread)},
      {"Hi/Lo Var:", Percent(sum == 0 ? 0 : spread / sum)},
      {"Unit:", FirstCharacters(source.Units)},
  };
}

std::vector<InformationRow> SizeRows(const wafer& source, NumberFormat format) {
  return {
      {"Wafer Diam:", format(source.WaferDiameter) + " mm"},
      {"Test Diam:", format(source.TestDiameter) + " mm"},
      {"No. Sites:", PlainNumber(source.GetNop())},
      {"Style:", source.FlatRatio == 1.0F ? "Notch" : "Flat"},
  };
}

std::vector<InformationRow> RemarkRows(const wafer& source) {
  return {
      {"Operator ID:", FirstCharacters(source.OperatorId)},
      {"FAB Name:", FirstCharacters(source.FabName)},
      {"Equip Info:", FirstCharacters(source.EquipInfo)},
      {"Wafer ID:", FirstCharacters(source.WaferId)},
      {"Lot:", FirstCharacters(source.LotName)},
      {"Meas. Equip:", FirstCharacters(source.MeasEquip)},
      {"Special:", FirstCharacters(source.SpecialRemark)},
  };
}

}  // namespace discoplan
