// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sstream>

#include "data/foreign_files.h"
#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

const std::string kHead =
    "FileVersion 1 2;\nInspectionStationID \"A\" \"2132\" \"T;1\";\nLotID \"Lot 1\";\n"
    "SampleSize 1 200;\nDiePitch 1.0e+04 1.2e+04;\nDieOrigin 0 0;\n"
    "ClassLookup 2\n0 \"Unclassified\"\n1 \"Particle\";\n";
const std::string kSpec =
    "DefectRecordSpec 9 DEFECTID XREL YREL XINDEX YINDEX DSIZE CLASSNUMBER IMAGECOUNT IMAGELIST "
    ";\n";
const std::string kWafer = "WaferID \"W01\";\nSlot 1;\nSampleCenterLocation 5000 6000;\n";
// Index times 10 or 12 mm, plus the offset, less the centre at 5, 6 mm.
const std::string kDefects =
    "DefectList\n 1 5000 6000 0 0 0.5 1 0 0\n 2 6000 6000 1 -1 0.75 1 2\n 1 0\n 2 0\n"
    " 3 5000 6000 -2 3 0.25 0 0 0\n;\n";
const std::string kSecond = "WaferID \"W02\"; Slot 2;\nDefectList\n 1 5000 6000 1 0 4 1 0 0;\n";
const std::string kEnd = "EndOfFile;\n";
const std::string kWhole = kHead + kWafer + kSpec + kDefects + kSecond + kEnd;

struct KlarfCase {
  const char* shows;
  std::string content;
  std::string outcome;
  ReadRequest options = {};
};

TEST(Klarf, GivesDefectsAsSitesOrSaysWhatIsWrong) {
  const std::string first = "0,0,0.5 11,-12,0.75 -20,36,0.25";
  const KlarfCase cases[] = {
      {"two wafers, with lists of images", kWhole, first + " | 10,0,4"},
      {"one of them by slot", kWhole, "10,0,4", {.wafers = {"2"}}},
      {"by name", kWhole, first, {.wafers = {"w01"}}},
      {"another field",
       kWhole,
       "0,0,1 11,-12,1 -20,36,0 | 10,0,1",
       {.parameters = {"ClassNumber"}}},
      {"the size by its usual name", kWhole, first + " | 10,0,4", {.parameters = {"DEFECTSIZE"}}},
      {"a condition", kWhole, "0,0,0.5 11,-12,0.75", {.wafers = {"1"}, .where = "CLASSNUMBER = 1"}},
      {"no such field",
       kWhole,
       "a.txt:13: there is no field 'Foo'; choose from 'DEFECTID', 'XREL', 'YREL', 'XINDEX', "
       "'YINDEX', 'DSIZE', 'CLASSNUMBER', 'IMAGECOUNT', 'IMAGELIST'",
       {.parameters = {"Foo"}}},
      {"options for tables",
       kWhole,
       "a.txt: a KLARF says itself where its defects lie and on which wafer; leave out --by",
       {.by = {"Slot"}}},
      {"a later version", "FileVersion 1 8;\n" + kEnd,
       "a.txt:1: this is KLARF 1.8; save it as 1.2"},
      {"the form of later versions", "Record FileRecord \"1.8\"\n{\n}\n",
       "a.txt:1: this is KLARF 1.8 or newer; save it as 1.2"},
      {"version 1.7", "FileVersion 1 7;\n" + kEnd, "a.txt:1: this is KLARF 1.7; save it as 1.2"},
      {"version 1.1", "FileVersion 1 1;\n" + kWhole.substr(kWhole.find('\n') + 1),
       first + " | 10,0,4"},
      {"half a version", "FileVersion 1;\n" + kEnd,
       "a.txt:1: FileVersion has too few numbers; complete it"},
      {"no version", kWhole.substr(kWhole.find('\n') + 1),
       "a.txt:1: this is a KLARF that doesn't begin with its FileVersion; save it again as 1.2"},
      {"no semicolon at the end", kWhole.substr(0, kWhole.size() - 2), first + " | 10,0,4"},
      {"no such wafer",
       kWhole,
       "a.txt: there is no wafer 'W03'; choose from 'W01', 'W02'",
       {.wafers = {"W03"}}},
      {"a condition that no defect meets",
       kWhole,
       "a.txt: no row is left that --where asks for; loosen it",
       {.where = "DSIZE > 100"}},
      {"a pitch of 0", "FileVersion 1 2;\nDiePitch 1e4 0;\n" + kEnd,
       "a.txt:2: DiePitch isn't two positive numbers; save the file again"},
      {"a wafer of 0", "FileVersion 1 2;\nSampleSize 1 0;\n" + kEnd,
       "a.txt:2: SampleSize isn't positive; mend it"},
      {"cut off inside a defect", kHead + kWafer + kSpec + "DefectList\n 1 5000 60",
       "a.txt:15: 3 fields where DefectRecordSpec names 9; mend the line or the DefectRecordSpec"},
      {"cut off", kHead + kWafer + kSpec + kDefects,
       "a.txt: the file ends without EndOfFile, so that a part of it is missing; save it again"},
      {"no pitch", "FileVersion 1 2;\n" + kWafer + kSpec + kDefects + kEnd,
       "a.txt:6: there is no DiePitch or no SampleCenterLocation above the defects, so that nobody "
       "knows where they lie; add them"},
      {"no specification", kHead + kWafer + kDefects + kEnd,
       "a.txt:13: a DefectList stands above its DefectRecordSpec; put it below"},
      {"another number of fields", kHead + kWafer + "DefectRecordSpec 3 DEFECTID XREL;\n" + kEnd,
       "a.txt:13: DefectRecordSpec announces 3 fields and names 2; mend it"},
      {"a specification without a word", kHead + kWafer + kSpec + "DefectRecordSpec;\n" + kEnd,
       "a.txt:14: DefectRecordSpec has too few numbers; complete it"},
      {"another specification", kHead + kWafer + kSpec + "DefectRecordSpec 1 DEFECTID;\n" + kEnd,
       "a.txt:14: a second DefectRecordSpec has other fields; split the file"},
      {"a short defect", kHead + kWafer + kSpec + "DefectList\n 1 2 3;\n" + kEnd,
       "a.txt:15: 3 fields where DefectRecordSpec names 9; mend the line or the DefectRecordSpec"},
      {"a text in place of a number",
       kHead + kWafer + kSpec + "DefectList\n 1 5x 6000 0 0 0.5 1 0 0;\n" + kEnd,
       "a.txt:15:2: '5x' is no number; mend the value or use --skip-invalid"},
      {"a semicolon behind each defect",
       kHead + kWafer + kSpec + "DefectList\n1 0 0 0 0 0.5 1 0 0;\n2 0 0 1 0 0.5 1 0 0;\n" + kEnd,
       "a.txt:16: a row of numbers stands outside of all lists; remove the semicolon that ends its "
       "list"},
      {"no defects", kHead + kWafer + kSpec + "DefectList\n;\n" + kEnd,
       "a.txt: no defect is left; choose another file or wafer"},
      {"an origin inside the die", kHead + "DieOrigin 1 0;\n" + kEnd,
       "a.txt:10: DieOrigin isn't 0 0; save the positions from the lower left corner of their "
       "dies"},
  };
  const TemporaryFolder folder;
  for (const KlarfCase& test : cases) {
    SCOPED_TRACE(test.shows);
    ReadRequest request = test.options;
    request.path = folder.Write("a.txt", test.content);
    EXPECT_EQ(Outcome(request), test.outcome);
  }
}

TEST(Klarf, SaysSizesAndUnits) {
  std::istringstream stream(kWhole);
  const Lot lot = Read({.path = "a.txt"}, stream);
  EXPECT_EQ(lot.kind, FileKind::Defects);
  EXPECT_EQ(lot.parameters, (std::vector<Parameter>{{"DSIZE", "\xC2\xB5m"}}));
  EXPECT_EQ(lot.wafers.at(0).diameter, 200.0F);
  EXPECT_EQ(lot.wafers.at(1).slot, 2);
}

TEST(Klarf, TellsOfAnOrientationThatPlotsDontKnow) {
  const auto warnings = [](const std::string& statements) {
    std::istringstream stream(kHead + statements + kWafer + kSpec + kDefects + statements + kEnd);
    return Read({.path = "a.txt"}, stream).warnings;
  };
  EXPECT_TRUE(warnings("OrientationMarkLocation DOWN;\nCoordinatesMirrored NO;\n").empty());
  EXPECT_EQ(
      warnings("OrientationMarkLocation LEFT;\nCoordinatesMirrored YES;\n"),
      (std::vector<std::string>{
          "OrientationMarkLocation is LEFT, and the mark of a plot is at the bottom unless it "
          "is set elsewhere",
          "CoordinatesMirrored is YES; the defects are shown as the file has them"}));
}

TEST(ForeignFile, IsNamedWithWhatToDo) {
  using std::string_literals::operator""s;
  const struct {
    std::string bytes;
    const char* sentence;
  } cases[] = {
      {"PK\x03\x04....xl/workbook.xml", "this is an Excel workbook; save it as CSV"},
      {"PK\x03\x04....content", "this is a zip archive; unpack it"},
      {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1....",
       "this is an old Excel workbook or another Office document; save it as CSV"},
      {"%PDF-1.7\n", "this is a PDF document; get the data it was made from, as CSV"},
      {"\x1F\x8B\x08....", "this is compressed by gzip; unpack it"},
      {"PAR1....", "this is a Parquet file; save it as CSV"},
      {"\x89PNG\r\n\x1A\n....", "this is a PNG picture; get the data it was made from, as CSV"},
      {"\x89HDF\r\n\x1A\n....", "this is an HDF5 file; save the table as CSV"},
      {"\x02\x00\x00\x0A\x02\x04"s, "this is an STDF file; convert it to CSV"},
      {"SQLite format 3\x00...."s, "this is an SQLite database; save the table as CSV"},
      {std::string(257, 'a') + "ustar  ", "this is a tar archive; unpack it"},
      {"<html><table>", "this is a web page; save its table as CSV"},
      {"<!DOCTYPE html>\n<p>", "this is a web page; save its table as CSV"},
      {"PK\x03\x04....mimetypeapplication/vnd.oasis.opendocument.spreadsheet",
       "this is an OpenDocument spreadsheet; save it as CSV"},
      {"PK\x03\x04....[Content_Types].xml word/document.xml",
       "this is a Word document; save its table as CSV"},
      {"PK\x03\x04....x.npy", "this is a NumPy archive; save the arrays as CSV"},
      {"PK\x03\x04....xl/worksheets", "this is an Excel workbook; save it as CSV"},
      {"{\\rtf1 text}", "this is a rich text document; save it as CSV"},
      {"BZh91AY", "this is compressed by bzip2; unpack it"},
      {"\xFD"
       "7zXZ\x00...."s,
       "this is compressed by xz; unpack it"},
      {"\x28\xB5\x2F\xFD....", "this is compressed by zstd; unpack it"},
      {"7z\xBC\xAF\x27\x1C....", "this is a 7z archive; unpack it"},
      {"Rar!\x1A\x07....", "this is a RAR archive; unpack it"},
      {"ARROW1....", "this is an Arrow file; save it as CSV"},
      {"MATLAB 5.0 MAT-file", "this is a MATLAB file; save the arrays as CSV"},
      {"\x93NUMPY\x01", "this is a NumPy array; save it as CSV"},
      {"\x00\x02\x00\x0A\x01\x04"s, "this is an STDF file; convert it to CSV"},
      {"\xFF\xD8\xFF\xE0....", "this is a JPEG picture; get the data it was made from, as CSV"},
      {"GIF89a....", "this is a GIF picture; get the data it was made from, as CSV"},
      {"II*\x00...."s, "this is a TIFF picture; get the data it was made from, as CSV"},
      {"MM\x00*...."s, "this is a TIFF picture; get the data it was made from, as CSV"},
      {"\x7F"
       "ELF....",
       "this is a program; choose another file"},
      {"<?xml version=\"1.0\"?><Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadsheet\">",
       "this is an Excel workbook in XML; save it as CSV"},
      {"\xFF\xFE\x00\x00X\x00\x00\x00"s, "this is a text in UTF-32; save it as UTF-8"},
      {"\x00\x00\xFE\xFF\x00\x00\x00X"s, "this is a text in UTF-32; save it as UTF-8"},
      {"{\"x\": [1, 2]}", "this is JSON; save its table as CSV"},
      {"[{\"x\":1,\"y\":2}]", "this is JSON; save its table as CSV"},
      {"[[1,2,3],[4,5,6]]", "this is JSON; save its table as CSV"},
      {"[Recipe]\nX,Y,V\n1,2,3\n", ""},
      {"<?xml version=\"1.0\"?><data/>", "this is an XML document; save its table as CSV"},
      {"\xEF\xBB\xBF\n<!doctype HTML>\n<p>", "this is a web page; save its table as CSV"},
      {"<HTML>\n", "this is a web page; save its table as CSV"},
      {"<table><tr><td>X</td></tr></table>", "this is a web page; save its table as CSV"},
      {"<svg xmlns=\"http://www.w3.org/2000/svg\"></svg>",
       "this is an SVG picture; get the data it was made from, as CSV"},
      {"\n { \"x\": 1 }", "this is JSON; save its table as CSV"},
      {"\x80\x04\x95\x10\x00"s, "this is a Python pickle; save the table as CSV"},
      {"FEA1....", "this is a Feather file; save it as CSV"},
      {"MZ....This program cannot be run", "this is a program; choose another file"},
      {"MZ,X,Y\n1,2,3\n", ""},
      {"BM\x36\x84\x03\x00\x00\x00\x00\x00\x36\x00\x00\x00"s,
       "this is a BMP picture; get the data it was made from, as CSV"},
      {"X,Y,V\n1,2,3\n", ""},
      {"", ""},
  };
  const TemporaryFolder folder;
  for (const auto& test : cases) {
    EXPECT_EQ(ForeignFile(test.bytes), test.sentence);
    if (*test.sentence == 0) continue;
    EXPECT_EQ(Outcome({.path = folder.Write("a", test.bytes)}), std::string("a: ") + test.sentence);
  }
}

}  // namespace
}  // namespace discoplan::data
