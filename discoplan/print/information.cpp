// SPDX-License-Identifier: MIT
#include "discoplan/print/information.h"

#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/print/page.h"
#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

using Value = std::optional<std::string>;

constexpr std::size_t kMostCharacters = 15;  // all that a block has room for

std::string FirstCharacters(const std::string& text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (begins && ++characters > kMostCharacters) return text.substr(0, i);
  }
  return text;
}

std::string Percent(double share) { return FormatNonZero(std::abs(share) * 100, "0.00") + " %"; }

template <auto kField>
Value Number(const wafer& source, NumberFormat format) {
  return format(ToFloat(source.*kField));
}

template <auto kField>
Value Length(const wafer& source, NumberFormat format) {
  return format(source.*kField) + " mm";
}

template <auto kField>
Value Text(const wafer& source, NumberFormat) {
  return FirstCharacters(source.*kField);
}

double Spread(const wafer& source) { return static_cast<double>(source.Maximum) - source.Minimum; }

Value DeviationPercent(const wafer& source, NumberFormat) {
  if (!(source.mean > 0)) return {};
  return Percent(source.StdDev / source.mean);
}

Value Range(const wafer& source, NumberFormat format) { return format(ToFloat(Spread(source))); }

Value HighLowPercent(const wafer& source, NumberFormat) {
  const double sum = static_cast<double>(source.Maximum) + source.Minimum;
  return Percent(sum == 0 ? 0 : Spread(source) / sum);
}

Value SiteCount(const wafer& source, NumberFormat) { return PlainNumber(source.GetNop()); }

Value Style(const wafer& source, NumberFormat) {
  return source.FlatRatio == 1.0F ? "Notch" : "Flat";
}

constexpr InformationRow kStatistics[] = {
    {"Mean:", Number<&wafer::mean>},
    {"Maximum:", Number<&wafer::Maximum>},
    {"Minimum:", Number<&wafer::Minimum>},
    {"Std. Dev:", Number<&wafer::StdDev>},
    {"", DeviationPercent},
    {"Range:", Range},
    {"Hi/Lo Var:", HighLowPercent},
    {"Unit:", Text<&wafer::Units>},
};

constexpr InformationRow kSize[] = {
    {"Wafer Diam:", Length<&wafer::WaferDiameter>},
    {"Test Diam:", Length<&wafer::TestDiameter>},
    {"No. Sites:", SiteCount},
    {"Style:", Style},
};

constexpr InformationRow kRemarks[] = {
    {"Operator ID:", Text<&wafer::OperatorId>},
    {"FAB Name:", Text<&wafer::FabName>},
    {"Equip Info:", Text<&wafer::EquipInfo>},
    {"Wafer ID:", Text<&wafer::WaferId>},
    {"Lot:", Text<&wafer::LotName>},
    {"Meas. Equip:", Text<&wafer::MeasEquip>},
    {"Special:", Text<&wafer::SpecialRemark>},
    {"Filename:", Text<&wafer::SpareText1>},
};

}  // namespace

InformationRows StatisticsRows() { return kStatistics; }

InformationRows SizeRows() { return kSize; }

InformationRows RemarkRows() { return RemarkRowsWithFile().first(std::size(kRemarks) - 1); }

InformationRows RemarkRowsWithFile() { return kRemarks; }

}  // namespace discoplan
