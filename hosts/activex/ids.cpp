// SPDX-License-Identifier: MIT
#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

/// The id with other low bits in its first eight digits.
std::string Beside(std::string_view class_id, unsigned bits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string id(class_id);
  id[7] = kDigits[kDigits.find(id[7]) ^ bits];
  return id;
}

struct Page {
  std::string_view name;
  std::string_view id;
};
constexpr Page kPages[] = {
    {"WaferInfoProp", "B6A40B23-A948-4BFF-9B95-3258289365A1"},
    {"Plot2DProp", "F1655823-BB20-4B82-876C-CC79CBC72E94"},
    {"Plot2DSProp", "DF59B201-FC8D-41FE-8FE9-D86815ADFCC3"},
    {"Plot2DCProp", "854AA656-3514-4A29-9F77-322DB22B1CF4"},
    {"Plot3DProp", "0188951E-2C9B-4928-98BF-63246D06C679"},
    {"Plot3DSProp", "D7A44D08-B359-4F2B-9AF4-2FFEDFEBF29C"},
    {"Plot3DBProp", "16973301-3CDB-4E4B-8572-62874319712D"},
    {"HistogrammProp", "640ED042-EF81-4A71-B223-123513388588"},
    {"LineScanAngleProp", "FB05DF0D-C76F-4A32-B390-1FDE2F1B2D4E"},
};

}  // namespace

std::string_view PageId(std::string_view page) {
  for (const Page& known : kPages) {
    if (known.name == page) return known.id;
  }
  return {};
}

int ToolboxPicture(const ControlClass& row) { return 100 + row.about_number; }

std::string MembersId(const ControlClass& row) { return Beside(row.class_id, 1); }
std::string EventsId(const ControlClass& row) { return Beside(row.class_id, 2); }

}  // namespace discoplan::activex
