// SPDX-License-Identifier: MIT
#include "data/column_names.h"

#include "data/klarf.h"
#include "data/lot_export.h"
#include "data/table_dialect.h"
#include "data/utf16.h"

namespace discoplan::data {

std::vector<std::string> ColumnNames(const ReadRequest& request) {
  std::vector<std::string> names;
  try {
    FileBytes bytes(request.path);
    LineReader lines(bytes);
    if (lines.Ahead().empty() || IsKlarf(lines) || LotSeparator(lines)) return {};
    const ColumnWish wish(request, lines.file());
    const TableStart start = FindHead(request, wish, lines);
    if (!start.header) return {};
    for (const std::string& name : start.names) names.push_back(Printable(Utf8(name)));
  } catch (const DataError&) {
    return {};
  }
  return names;
}

}  // namespace discoplan::data
