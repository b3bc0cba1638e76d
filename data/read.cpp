// SPDX-License-Identifier: MIT
#include "data/read.h"

#include <algorithm>

#include "data/binary_data.h"
#include "data/line_reader.h"
#include "data/lot_export.h"
#include "data/text_table.h"
#include "discoplan/base/algorithms.h"

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

struct KnownFormat {
  std::string_view start;
  std::string_view name;
};
// What people take for a data file. None of these begins with a position in millimetres.
constexpr KnownFormat kKnownFormats[] = {
    {"PK\x03\x04", "a spreadsheet or another zip archive"},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", "an old spreadsheet"},
    {"\x1F\x8B\x08", "a gzip archive"},
    {"\x89PNG\r\n", "a picture"},
    {"%PDF-", "a PDF document"},
};

bool IsUtf16(std::string_view block) {
  const bool little = block.starts_with("\xFF\xFE");
  if (block.size() < 8 || !(little || block.starts_with("\xFE\xFF"))) return false;
  const std::size_t high = little ? 1 : 0;
  return block[2 + high] == 0 && block[4 + high] == 0 && block[6 + high] == 0;
}

void RefuseOtherFormats(const FileBytes& bytes) {
  const std::string_view block = bytes.block();
  if (block.empty()) throw DataError({bytes.file()}, "the file is empty; choose another one");
  if (IsUtf16(block)) throw DataError({bytes.file()}, "the text is UTF-16; save it as UTF-8");
  for (const KnownFormat& known : kKnownFormats) {
    if (!block.starts_with(known.start)) continue;
    throw DataError({bytes.file()}, "this is " + std::string(known.name) +
                                        "; save the data as comma separated text");
  }
}

Lot ReadText(const ReadRequest& request, FileBytes& bytes) {
  if (request.sites) {
    throw DataError({bytes.file()}, "the file is a text; leave out --sites, it's for binary files");
  }
  LineReader lines(bytes);
  const bool any_line =
      AnyOf(lines.Ahead(), [](const TextLine& line) { return !line.text.empty(); });
  if (!any_line) {
    throw DataError({bytes.file()},
                    "the file holds nothing but comments and blank lines; choose another one");
  }
  if (const auto separator = LotSeparator(lines)) return ReadLotExport(request, *separator, lines);
  if (!request.wafers.empty()) {
    throw DataError({bytes.file()}, "the file has one wafer without a slot; leave out --wafer");
  }
  return ReadTextTable(request, lines);
}

Lot ReadBinary(const ReadRequest& request, FileBytes& bytes) {
  if (!request.wafers.empty()) {
    throw DataError({bytes.file()}, "the file has one wafer without a slot; leave out --wafer");
  }
  if (!request.columns.empty()) {
    throw DataError({bytes.file()}, "the file is binary and has no columns; leave out --columns");
  }
  return ReadBinaryData(request, bytes);
}

Lot ReadAny(const ReadRequest& request) {
  FileBytes bytes(request.path);
  RefuseOtherFormats(bytes);
  switch (KindOf(bytes.block())) {
    case Kind::Text:
      return ReadText(request, bytes);
    case Kind::Binary:
      return ReadBinary(request, bytes);
    case Kind::Unclear:
      break;
  }
  if (request.sites) return ReadBinary(request, bytes);
  throw DataError({bytes.file()},
                  "this is neither clearly text nor clearly binary; save text as UTF-8, "
                  "or give the number of sites of binary data with --sites");
}

}  // namespace

Lot Read(const ReadRequest& request) {
  Lot lot = ReadAny(request);
  lot.source = request.path.string();
  for (Wafer& wafer : lot.wafers) {
    const WaferSize size = SizeFor(wafer.x, wafer.y);
    wafer.diameter = size.diameter;
    wafer.test_diameter = size.test_diameter;
  }
  return lot;
}

}  // namespace discoplan::data
