// SPDX-License-Identifier: MIT
#include "data/read.h"

#include <algorithm>

#include "data/binary_data.h"
#include "data/doubts.h"
#include "data/exclusions.h"
#include "data/foreign_files.h"
#include "data/klarf.h"
#include "data/line_reader.h"
#include "data/lot_export.h"
#include "data/site_rows.h"
#include "data/text_table.h"
#include "data/units.h"

namespace discoplan::data {
namespace {

enum class Kind { Text, Binary, Unclear };

Kind KindOf(std::string_view block) {
  std::size_t foreign = 0;
  bool control = false;
  bool nul = false;
  for (std::size_t i = 0; i < block.size();) {
    const auto byte = static_cast<unsigned char>(block[i]);
    if (byte >= 0x20 && byte < 0x7F) {  // as nearly all of a text
      ++i;
      continue;
    }
    const std::size_t length = PrintableLength(block.substr(i, 4));
    const bool layout = byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f';
    if (length == 0 && !layout) {
      ++foreign;
      control |= byte < 0x20 || byte == 0x7F;
      nul |= byte == 0;
    }
    i += std::max<std::size_t>(length, 1);
  }
  const bool mostly_text = 10 * foreign <= block.size();
  if (mostly_text && !nul) return Kind::Text;
  return !mostly_text && control ? Kind::Binary : Kind::Unclear;
}

Lot ReadText(const ReadRequest& request, FileBytes& bytes, PositionScale& scale) {
  if (request.sites) {
    throw DataError({bytes.file()}, "the file is a text; leave out --sites, it's for binary files");
  }
  LineReader lines(bytes);
  const auto& ahead = lines.Ahead();
  const bool any_line = std::any_of(ahead.begin(), ahead.end(),
                                    [](const TextLine& line) { return !line.text.empty(); });
  if (!any_line) {
    throw DataError({bytes.file()},
                    lines.Comments().empty()
                        ? "the file holds nothing but blank lines; choose another one"
                        : "all lines begin with '#', as comments do; take it away from rows, "
                          "or choose another file");
  }
  if (IsKlarf(lines)) return ReadKlarf(request, lines, scale);
  if (const auto separator = LotSeparator(lines)) {
    return ReadLotExport(request, *separator, lines, scale);
  }
  return ReadTextTable(request, lines, scale);
}

Lot ReadBinary(const ReadRequest& request, FileBytes& bytes, PositionScale& scale) {
  const auto refuse = [&](const std::string& why) { throw DataError({bytes.file()}, why); };
  if (!request.wafers.empty()) refuse("the file has one wafer without a slot; leave out --wafer");
  struct Unfit {
    bool given;
    const char* option;
  };
  const Unfit unfits[] = {{!request.columns.empty(), "--columns"},
                          {!request.parameters.empty(), "--parameter"},
                          {!request.by.empty(), "--by"},
                          {!request.where.empty(), "--where"}};
  for (const Unfit& unfit : unfits) {
    if (!unfit.given) continue;
    refuse(std::string("the file is binary and has no columns; leave out ") + unfit.option);
  }
  if (request.pitch) {
    scale = {.x = request.pitch->width, .y = request.pitch->height, .stated = true};
  } else if (request.unit) {
    scale = {.x = MillimetresIn(*request.unit), .y = MillimetresIn(*request.unit), .stated = true};
  }
  return ReadBinaryData(request, scale, bytes);
}

Lot ReadAny(const ReadRequest& request, FileBytes& bytes, PositionScale& scale) {
  const auto refuse = [&](const std::string& why) { throw DataError({bytes.file()}, why); };
  if (bytes.block().empty()) refuse("the file is empty; choose another one");
  const std::string foreign = ForeignFile(bytes.block());
  if (!foreign.empty()) refuse(foreign);
  switch (KindOf(bytes.block())) {
    case Kind::Text:
      return ReadText(request, bytes, scale);
    case Kind::Binary:
      return ReadBinary(request, bytes, scale);
    case Kind::Unclear:
      break;
  }
  if (request.sites) return ReadBinary(request, bytes, scale);
  throw DataError({bytes.file()},
                  "this is neither clearly text nor clearly binary; save text as UTF-8, "
                  "or give the number of sites of binary data with --sites");
}

/// Positions, size and exclusions, in the order in which they rely on each other.
Lot ReadWafers(const ReadRequest& request, FileBytes& bytes) {
  const auto refuse = [&](const std::string& why) { throw DataError({bytes.file()}, why); };
  PositionScale scale;
  Lot lot = ReadAny(request, bytes, scale);
  lot.source = bytes.file();
  if (lot.wafers.empty()) refuse("no row is left that --where asks for; loosen it");
  for (Parameter& parameter : lot.parameters) {
    if (!request.value_unit.empty()) parameter.unit = request.value_unit;
  }
  for (Wafer& wafer : lot.wafers) MoveToCentre(request, wafer);
  TellDoubts(request, scale, lot);
  for (Wafer& wafer : lot.wafers) {
    GiveSize(request, wafer);
    LeaveOutBeyond(request, wafer);
    if (request.outliers && !LeaveOutOutliers(*request.outliers, wafer)) {
      lot.warnings.push_back("so many values of " + Shown(wafer.name) +
                             " are the same that none of the others can be told to be an outlier");
    }
    if (request.thin) Thin(request.most_sites, wafer);
    if (std::ssize(wafer.x) > request.most_sites) {
      refuse(TooManySites(request.most_sites));
    }
  }
  const auto is_empty = [](const Wafer& wafer) { return wafer.x.empty(); };
  if (std::all_of(lot.wafers.begin(), lot.wafers.end(), is_empty)) {
    refuse(
        "no site lies in the area that is looked at; give a larger --test-diameter or "
        "a smaller --edge-exclusion, and check the positions");
  }
  lot.wafers.erase(std::remove_if(lot.wafers.begin(), lot.wafers.end(), is_empty),
                   lot.wafers.end());
  return lot;
}

}  // namespace

Lot Read(const ReadRequest& request) {
  FileBytes bytes(request.path);
  return ReadWafers(request, bytes);
}

Lot Read(const ReadRequest& request, std::istream& stream) {
  FileBytes bytes(request.path.string(), stream);
  return ReadWafers(request, bytes);
}

}  // namespace discoplan::data
