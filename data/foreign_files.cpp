// SPDX-License-Identifier: MIT
#include "data/foreign_files.h"

#include "data/plain_text.h"

namespace discoplan::data {
namespace {

using std::string_view_literals::operator""sv;

struct ForeignKind {
  std::size_t offset;
  std::string_view bytes;
  std::string_view also;  // further on in the first block, if that is due
  std::string_view sentence;
};

// None of these begins with a position in millimetres. The first that fits counts.
constexpr ForeignKind kForeignKinds[] = {
    {0, "PK\x03\x04"sv, "xl/workbook"sv, "this is an Excel workbook; save it as CSV"},
    {0, "PK\x03\x04"sv, "xl/"sv, "this is an Excel workbook; save it as CSV"},
    {0, "PK\x03\x04"sv, "opendocument.spreadsheet"sv,
     "this is an OpenDocument spreadsheet; save it as CSV"},
    {0, "PK\x03\x04"sv, "word/"sv, "this is a Word document; save its table as CSV"},
    {0, "PK\x03\x04"sv, ".npy"sv, "this is a NumPy archive; save the arrays as CSV"},
    {0, "PK\x03\x04"sv, ""sv, "this is a zip archive; unpack it"},
    {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, ""sv,
     "this is an old Excel workbook or another Office document; save it as CSV"},
    {0, "{\\rtf"sv, ""sv, "this is a rich text document; save it as CSV"},
    {0, "%PDF-"sv, ""sv, "this is a PDF document; get the data it was made from, as CSV"},
    {0, "\x1F\x8B"sv, ""sv, "this is compressed by gzip; unpack it"},
    {0, "BZh"sv, ""sv, "this is compressed by bzip2; unpack it"},
    {0,
     "\xFD"
     "7zXZ\x00"sv,
     ""sv, "this is compressed by xz; unpack it"},
    {0, "\x28\xB5\x2F\xFD"sv, ""sv, "this is compressed by zstd; unpack it"},
    {0, "7z\xBC\xAF\x27\x1C"sv, ""sv, "this is a 7z archive; unpack it"},
    {0, "Rar!\x1A\x07"sv, ""sv, "this is a RAR archive; unpack it"},
    {257, "ustar"sv, ""sv, "this is a tar archive; unpack it"},
    {0, "PAR1"sv, ""sv, "this is a Parquet file; save it as CSV"},
    {0, "ARROW1"sv, ""sv, "this is an Arrow file; save it as CSV"},
    {0, "\x89HDF\r\n\x1A\n"sv, ""sv, "this is an HDF5 file; save the table as CSV"},
    {0, "MATLAB 5.0"sv, ""sv, "this is a MATLAB file; save the arrays as CSV"},
    {0, "\x93NUMPY"sv, ""sv, "this is a NumPy array; save it as CSV"},
    {0, "\x80\x04\x95"sv, ""sv, "this is a Python pickle; save the table as CSV"},
    {0, "FEA1"sv, ""sv, "this is a Feather file; save it as CSV"},
    {0, "SQLite format 3\x00"sv, ""sv, "this is an SQLite database; save the table as CSV"},
    {0, "\x02\x00\x00\x0A\x02"sv, ""sv, "this is an STDF file; convert it to CSV"},
    {0, "\x00\x02\x00\x0A\x01"sv, ""sv, "this is an STDF file; convert it to CSV"},
    {0, "\x02\x00\x00\x0A\x01"sv, ""sv, "this is an STDF file; convert it to CSV"},
    {0, "\x89PNG\r\n\x1A\n"sv, ""sv,
     "this is a PNG picture; get the data it was made from, as CSV"},
    {0, "\xFF\xD8\xFF"sv, ""sv, "this is a JPEG picture; get the data it was made from, as CSV"},
    {0, "GIF8"sv, ""sv, "this is a GIF picture; get the data it was made from, as CSV"},
    {0, "II*\x00"sv, ""sv, "this is a TIFF picture; get the data it was made from, as CSV"},
    {0, "MM\x00*"sv, ""sv, "this is a TIFF picture; get the data it was made from, as CSV"},
    {0,
     "\x7F"
     "ELF"sv,
     ""sv, "this is a program; choose another file"},
    {0, "MZ"sv, "This program"sv, "this is a program; choose another file"},
    {0, "BM"sv, "\x00\x00\x00\x00\x36\x00\x00\x00"sv,
     "this is a BMP picture; get the data it was made from, as CSV"},
    {0, "\xFF\xFE\x00\x00"sv, ""sv, "this is a text in UTF-32; save it as UTF-8"},
    {0, "\x00\x00\xFE\xFF"sv, ""sv, "this is a text in UTF-32; save it as UTF-8"},
    {0, "{"sv, "\":"sv, "this is JSON; save its table as CSV"},
    {0, "["sv, "\":"sv, "this is JSON; save its table as CSV"},
    {0, "[["sv, ""sv, "this is JSON; save its table as CSV"},
    {0, "<?xml"sv, "office:spreadsheet"sv, "this is an Excel workbook in XML; save it as CSV"},
    {0, "<?xml"sv, ""sv, "this is an XML document; save its table as CSV"},
    {0, "<!DOCTYPE html"sv, ""sv, "this is a web page; save its table as CSV"},
    {0, "<html"sv, ""sv, "this is a web page; save its table as CSV"},
    {0, "<table"sv, ""sv, "this is a web page; save its table as CSV"},
    {0, "<svg"sv, ""sv, "this is an SVG picture; get the data it was made from, as CSV"},
};

/// Marks of text files, whose case doesn't matter, may stand below blank lines.
std::string_view WithoutBlanks(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  const bool marked = first != text.npos && std::string_view("<{[").find(text[first]) != text.npos;
  return marked ? text.substr(first) : std::string_view();
}

}  // namespace

std::string ForeignFile(std::string_view first_bytes) {
  const std::string_view text = WithoutBlanks(first_bytes);
  for (const ForeignKind& kind : kForeignKinds) {
    if (first_bytes.size() <= kind.offset) continue;
    const bool begins = first_bytes.substr(kind.offset).starts_with(kind.bytes) ||
                        (!text.empty() && SameName(text.substr(0, kind.bytes.size()), kind.bytes));
    if (!begins) continue;
    if (first_bytes.find(kind.also) != std::string_view::npos) return std::string(kind.sentence);
  }
  return {};
}

}  // namespace discoplan::data
