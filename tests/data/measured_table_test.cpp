// SPDX-License-Identifier: MIT
// Tables as instruments write them: what stands above the rows, and in which units.

#include <gtest/gtest.h>

#include "tests/data/data_files.h"
#include "tests/places.h"

namespace discoplan::data {
namespace {

struct InstrumentCase {
  const char* shows;
  std::string content;
  std::string outcome;
  ReadRequest options = {};
};

void Check(const InstrumentCase& test) {
  SCOPED_TRACE(test.shows);
  const TemporaryFolder folder;
  ReadRequest request = test.options;
  request.path = folder.Write("a.csv", test.content);
  EXPECT_EQ(Outcome(request), test.outcome);
}

std::string Lines(int count, const std::string& line) {
  std::string lines;
  for (int i = 0; i < count; ++i) lines += line + '\n';
  return lines;
}

TEST(InstrumentTable, IsFoundBelowFreeText) {
  const InstrumentCase cases[] = {
      {"quotes, rows of other lengths and blank lines",
       "Recipe: \"abc\nOperator,Bob,x\n1,5\n\nX\tY\tMSE\n1\t2\t3\n4\t5\t6\n", "1,2,3 4,5,6"},
      {"a row of units and a blank line", "Lot 5\nX,Y,V\n(cm),(cm),(nm)\n\n1,2,3\n", "10,20,3"},
      {"columns chosen by their names",
       "Machine;A;B\ncol;row;V\n1;2;3\n",
       "1,2,3",
       {.columns = "col,row,V"}},
      {"names in a comment right above the rows", "# lot 5\n# X (cm), Y (cm), V\n1,2,3\n",
       "10,20,3"},
      {"a comment of another width", "# X (cm), Y (cm), V, W\n1,2,3\n", "1,2,3"},
      {"a comment above a header", "# X (cm), Y (cm), V\nX,Y,V\n1,2,3\n", "1,2,3"},
      {"more text than is looked through", Lines(100, "text") + "X,Y,V\n1,2,3\n",
       "a.csv:1: 1 column where at least 3 are due, as in all of the first 100 lines; separate X, "
       "Y "
       "and value by commas, semicolons, tabs or blanks, and leave out text above them"},
      {"as much text as is looked through", Lines(99, "text") + "X,Y,V\n1,2,3\n", "1,2,3"},
      {"rows above the names are no text", "1,2,3\nX,Y,Z\n4,5,6\n",
       "a.csv:2:1: 'X' is no number; mend the value or use --skip-invalid"},
  };
  for (const InstrumentCase& test : cases) Check(test);
}

TEST(InstrumentTable, HasPositionsInUnits) {
  const InstrumentCase cases[] = {
      {"cm", "X (cm),Y (cm),V\n1,-2,3\n", "10,-20,3"},
      {"mm in brackets", "X [mm],Y [mm],V\n1,2,3\n", "1,2,3"},
      {"um behind a line", "X_um,Y_um,V\n1000,-2000,3\n", "1,-2,3"},
      {"inches without a blank", "X(in),Y(in),V\n1,2,3\n", "25.3999996,50.7999992,3"},
      {"micro sign in Latin-1", "X (\xB5m),Y (\xB5m),V\n1000,2000,3\n", "1,2,3"},
      {"micro sign in UTF-8", "X (\xC2\xB5m),Y (\xCE\xBCm),V\n1000,2000,3\n", "1,2,3"},
      {"units below the names", "X,Y,V\nmm,mm,nm\n1,2,3\n", "1,2,3"},
      {"a unit of the value alone below the names", "X,Y,V\n,,nm\n1,2,3\n", "1,2,3"},
      {"degrees in Latin-1", "R (mm),Theta (\xB0),V\n100,180,5\n", "-100,0,5"},
      {"asked for", "X,Y,V\n1,2,3\n", "10,20,3", {.unit = LengthUnit::Centimetre}},
      {"asked for and the same",
       "X (cm),Y (cm),V\n1,2,3\n",
       "10,20,3",
       {.unit = LengthUnit::Centimetre}},
      {"radius and degrees", "R (mm),Theta (deg),V\n100,0,5\n50,180,6\n", "100,0,5 -50,0,6"},
      {"behind a stroke", "X/cm,Y/cm,V\n1,2,3\n", "10,20,3"},
      {"behind a blank", "X Position cm,Y Position cm,V\n1,2,3\n", "10,20,3"},
      {"in words", "X in um,Y in um,V\n1000,2000,3\n", "1,2,3"},
      {"behind nothing", "Xcm,Ycm,V\n1,2,3\n", "10,20,3"},
      {"of chosen columns", "Xcm,Ycm,V\n1,2,3\n", "10,20,3", {.columns = "Xcm,Ycm,V"}},
      {"dies", "X,Y,V\n-1,2,3\n", "-10,-24,3", {.pitch = DiePitch{10, -12}}},
  };
  for (const InstrumentCase& test : cases) Check(test);
}

TEST(InstrumentTable, TakesTheUnitThatStandsAboveIt) {
  const std::string table = "\nX,Y,V\n1,2,3\n";
  const InstrumentCase cases[] = {
      {"in fields", "Units,cm,," + table, "10,20,3"},
      {"behind a colon", "Lot 5\nUnit: cm" + table, "10,20,3"},
      {"in quotes", "\"Units\",\"cm\"" + table, "10,20,3"},
      {"behind a tab", "Units\tmm" + table, "1,2,3"},
      {"behind a blank", "Units in" + table, "25.3999996,50.7999992,3"},
      {"in brackets", "UNITS=[cm]" + table, "10,20,3"},
      {"in a comment", "# units: cm" + table, "10,20,3"},
      {"of positions", "Position unit = um" + table, "0.00100000005,0.00200000009,3"},
      {"of each position alike", "X units: cm\nY units: cm" + table, "10,20,3"},
      {"of coordinates", "Units of XY coordinates: um" + table, "0.00100000005,0.00200000009,3"},
      {"micrometres beside values with a unit", "Units: \xB5m\nX,Y,V (nm)\n1,2,3\n",
       "0.00100000005,0.00200000009,3"},
      {"of the radius alone", "Units: cm\nR,Theta,V\n10,180,5\n", "-100,0,5"},
      {"without names of columns", "Units: cm\n1,2,3\n", "10,20,3"},
      {"of values", "Value units: cm" + table, "1,2,3"},
      {"other than the columns'", "Units: cm\nX (mm),Y (mm),V\n1,2,3\n", "1,2,3"},
      {"other than the one asked for",
       "Units: cm" + table,
       "1,2,3",
       {.unit = LengthUnit::Millimetre}},
      {"of dies", "Units: cm" + table, "10,24,3", {.pitch = DiePitch{10, 12}}},
      {"no length", "Position unit: px" + table,
       "a.csv:1: 'px' is no unit of length that is known; say what the positions are in with "
       "--unit mm, cm, um or in"},
      {"two lengths", "X unit: cm\nY unit: mm" + table,
       "a.csv:2: 'Y unit: mm', and line 1 says 'X unit: cm'; say what the positions are in with "
       "--unit"},
  };
  for (const InstrumentCase& test : cases) Check(test);
}

TEST(InstrumentTable, TellsOfAUnitAboveItThatMayBeAnyones) {
  const auto warnings = [](const std::string& above) {
    std::istringstream stream(above + "\nX,Y,V\n-90,0,9\n90,0,2\n0,90,3\n");
    return Read({.path = "a.csv"}, stream).warnings;
  };
  using Warnings = std::vector<std::string>;
  const std::string taken = "; positions are taken for mm, give another unit with --unit";
  EXPECT_EQ(warnings("Lot 5\nUnits = um"),
            Warnings{"line 2 says 'Units = um', of positions or of values" + taken});
  EXPECT_EQ(warnings("Units: metric"),
            Warnings{"line 1 says 'Units: metric', which isn't known" + taken});
  EXPECT_EQ(warnings("Units: nm"), Warnings{});  // of values
  EXPECT_EQ(warnings("Units: Ohm"), Warnings{});
  EXPECT_EQ(warnings("Unit 5, Chamber B"), Warnings{});
  // As far as they lie, the sites are no longer taken at their word.
  std::istringstream stream("Units: cm\nX,Y,V\n-90,0,9\n90,0,2\n0,90,3\n0,-90,1\n0,0,1\n");
  EXPECT_EQ(Read({.path = "a.csv"}, stream).warnings,
            Warnings{"the sites lie within 1800 mm, ten times a standard wafer; if a position is a "
                     "tenth of a millimetre, scale them"});
}

TEST(InstrumentTable, IsRefusedInUnitsThatArentKnown) {
  const InstrumentCase cases[] = {
      {"no length", "X (px),Y (px),V\n1,2,3\n",
       "a.csv:1: 'X (px)' is in 'px', which is no unit of length that is known; say what it is "
       "with "
       "--unit mm, cm, um or in"},
      {"another one asked for",
       "X (cm),Y (cm),V\n1,2,3\n",
       "a.csv:1: 'X (cm)' is in 'cm' and --unit says mm; leave out --unit or mend the header",
       {.unit = LengthUnit::Millimetre}},
      {"of one position only", "X (cm),Y,V\n1,2,3\n",
       "a.csv:1: one of X and Y has a unit and the other one has none; mend the header"},
      {"of one position only, below the names", "X,Y,V\ncm,,nm\n1,2,3\n",
       "a.csv:1: one of X and Y has a unit and the other one has none; mend the header"},
      {"no length, below the names", "X,Y,V\n(px),(px),(nm)\n1,2,3\n",
       "a.csv:1: 'X' is in 'px', which is no unit of length that is known; say what it is with "
       "--unit mm, cm, um or in"},
      {"no length of one position, below the names", "X,Y,V\nmm,foo,nm\n1,2,3\n",
       "a.csv:1: 'Y' is in 'foo', which is no unit of length that is known; say what it is with "
       "--unit mm, cm, um or in"},
      {"no units, below the names", "X,Y,V\n-,-,-\n1,2,3\n",
       "a.csv:2:1: '-' is no number; mend the value or use --skip-invalid"},
      {"no angle", "R (mm),Theta (grad),V\n1,2,3\n",
       "a.csv:1: 'Theta (grad)' is in 'grad'; write deg or rad"},
      {"numbers of dies", "DieX,DieY,V\n1,2,3\n",
       "a.csv:1: 'DieX' counts dies; give their size in mm with --pitch WIDTH HEIGHT"},
      {"numbers of dies that were chosen",
       "X_Die,Y_Die,V\n1,2,3\n",
       "a.csv:1: 'X_Die' counts dies; give their size in mm with --pitch WIDTH HEIGHT",
       {.columns = "X_Die,Y_Die,V"}},
      {"a pitch of lengths",
       "X (mm),Y (mm),V\n1,2,3\n",
       "a.csv:1: the positions are lengths with a unit and don't count dies; leave out --pitch",
       {.pitch = DiePitch{10, 12}}},
  };
  for (const InstrumentCase& test : cases) Check(test);
}

TEST(InstrumentTable, CountsFromACornerIfAskedTo) {
  const std::string sites = "X,Y,V\n3,150,1\n297,150,2\n150,3,3\n";
  const std::string dies = "X,Y,V\n1,1,1\n3,1,2\n2,4,3\n";
  const InstrumentCase cases[] = {
      {"of the smallest wafer that has all sites inside",
       sites,
       "-147,0,1 147,0,2 0,-147,3",
       {.origin = Origin::Corner}},
      {"of the wafer given",
       sites,
       "-222,-75,1 72,-75,2 -75,-222,3",
       {.origin = Origin::Corner, .diameter = 450}},
      {"of the dies, around their middle",
       dies,
       "-10,-18,1 10,-18,2 0,18,3",
       {.origin = Origin::Corner, .pitch = DiePitch{10, 12}}},
      {"of no wafer",
       "X,Y,V\n0,150,1\n597,150,2\n",
       "a.csv: no standard wafer holds sites that are counted from its corner like these; give its "
       "--diameter, or leave out --origin corner",
       {.origin = Origin::Corner}},
  };
  for (const InstrumentCase& test : cases) Check(test);
}

TEST(InstrumentTable, NamesItsParametersWithTheirUnits) {
  struct NameCase {
    const char* content;
    std::vector<std::string> parameters;
    std::vector<Parameter> names;
  };
  const NameCase cases[] = {
      {"X,Y,Thickness # 1 (nm),MSE\n1,2,3,4\n", {"all"}, {{"Thickness # 1", "nm"}, {"MSE", ""}}},
      {"X,Y,Thk_nm\n1,2,3\n", {}, {{"Thk", "nm"}}},
      {"X,Y,Rs [Ohm/sq]\n1,2,3\n", {}, {{"Rs", "Ohm/sq"}}},
      {"X,Y,V\nmm,mm,\xB5m\n1,2,3\n", {}, {{"V", "\xC2\xB5m"}}},
      {"X,Y,Thickness/nm\n1,2,3\n", {}, {{"Thickness", "nm"}}},
      {"X,Y,Thickness nm\n1,2,3\n", {}, {{"Thickness", "nm"}}},
      {"X,Y,\"Thickness, nm\"\n1,2,3\n", {}, {{"Thickness", "nm"}}},
      {"X,Y,Slope nm/mm\n1,2,3\n", {}, {{"Slope nm/mm", ""}}},
      {"X,Y,Burn In\n1,2,3\n", {}, {{"Burn In", ""}}},
      {"X,Y,spline_e2(13.996)\n1,2,3\n", {}, {{"spline_e2(13.996)", ""}}},
      {"X,Y,Lot,Rs\n1,2,A,5\n3,4,B,6\n", {}, {{"Rs", ""}}},
      {"X,Y,V\n,,nm\n1,2,3\n", {}, {{"V", "nm"}}},
      {"X,Y,Wafer ID,Slot,Rs\n1,2,7,5,3\n3,4,7,6,3\n", {}, {{"Rs", ""}}},
      {"X,Y,Slot,Rs\n1,2,7,5\n", {"Slot"}, {{"Slot", ""}}},
      {"X,Y,Dicke (\xC5),G\xFCte\n1,2,3,4\n", {"G\xC3\xBCte"}, {{"G\xC3\xBCte", ""}}},
      {"X,Y,V,V\n1,2,3,4\n", {"all"}, {{"V", ""}, {"V in column 4", ""}}},
      {"1,2,3\n", {}, {{"Value", ""}}},
  };
  const TemporaryFolder folder;
  for (const NameCase& test : cases) {
    SCOPED_TRACE(test.content);
    EXPECT_EQ(Read({.path = folder.Write("a.csv", test.content), .parameters = test.parameters})
                  .parameters,
              test.names);
  }
}

TEST(InstrumentTable, ReadsTheExamplesOfAnEllipsometer) {
  const std::filesystem::path path = Example("ellipsometer_line_map.txt");
  const Lot lot = Read({.path = path, .parameters = {"Thickness # 1"}});
  ASSERT_EQ(lot.wafers.size(), 1U);
  EXPECT_EQ(lot.parameters, (std::vector<Parameter>{{"Thickness # 1", "nm"}}));
  EXPECT_EQ(lot.wafers[0].x.size(), 11U);
  EXPECT_EQ(lot.wafers[0].x[0], -18.0F);
  EXPECT_EQ(lot.wafers[0].value[0], 117.26F);
  EXPECT_TRUE(lot.warnings.empty());
  const Lot all = Read({.path = Example("ellipsometer_line_map_v2.txt"), .parameters = {"all"}});
  EXPECT_EQ(all.parameters.size(), 20U);
  EXPECT_EQ(all.Of(19).size(), 1U);
}

TEST(InstrumentTable, TellsWhatLooksWrong) {
  struct DoubtCase {
    std::string content;
    std::vector<std::string> warnings;
  };
  const std::string counted =
      "X,Y,Q\n-100,0,1\n100,0,2\n0,100,3\n0,-100,4\n0,0,5\n70,70,6\n-70,70,7\n70,-70,8\n";
  const DoubtCase cases[] = {
      {"X,Y,Q\n-14.7,0,9\n14.7,0,2\n0,14.7,3\n0,-14.7,4\n5,5,7\n",
       {"the sites lie within 29.4 mm, as on no standard wafer; try --unit cm (300 mm, in "
        "centimetres), or --unit mm if that is right"}},
      {"X,Y,Q\n-2,-2,9\n2,0,2\n0,2,3\n0,-1,4\n1,0,7\n",
       {"the sites lie within 5.65685 mm, as on no standard wafer; try --unit in (150 mm, in "
        "inches) or --pitch WIDTH HEIGHT (if they are numbers of dies), or --unit mm if that is "
        "right"}},
      {"X,Y,Q\n-4,0,9\n4,0,2\n0,3,3\n0,-4,4\n1,0,7\n",
       {"the sites lie within 8 mm, as on no standard wafer; try --pitch WIDTH HEIGHT (if they are "
        "numbers of dies), or --unit mm if that is right"}},
      {"X,Y,Q\n-4,0,9\n4,0,2\n0,3.5,3\n0,-4,4\n1,0,7\n", {}},
      {"X (mm),Y (mm),Q\n-14.7,0,9\n14.7,0,2\n0,14.7,3\n0,-14.7,4\n5,5,7\n", {}},
      // Fewer than the smallest pattern that is measured.
      {"X,Y,Q\n-14.7,0,9\n14.7,0,2\n0,14.7,3\n0,-14.7,4\n", {}},
      {"X,Y,Q\n-5.8,0,9\n5.8,0,2\n0,5.8,3\n0,-5.8,4\n2,2,7\n",
       {"the sites lie within 11.6 mm, as on no standard wafer; try --unit cm (125 mm, in "
        "centimetres) or --unit in (300 mm, in inches), or --unit mm if that is right"}},
      {"X,Y,Q\n-1470,0,9\n1470,0,2\n0,1470,3\n0,-1470,4\n5,5,7\n",
       {"the sites lie within 2940 mm, ten times a standard wafer; if a position is a tenth of a "
        "millimetre, scale them"}},
      {"X,Y,Q\n-1e8,0,9\n1e8,0,2\n0,1e8,3\n0,-1e8,4\n5,5,7\n",
       {"the sites lie within 2e+08 mm, as on no standard wafer; scale them, or give their "
        "--diameter "
        "if that is right"}},
      {"X,Y,Q\n-300,0,9\n300,0,2\n0,300,3\n0,-300,4\n5,5,7\n",
       {"the sites lie within 600 mm, as on no standard wafer; scale them, or give their "
        "--diameter "
        "if that is right"}},
      {"X,Y,Q nm\n-90,0,9\n90,0,9999\n0,90,3\n0,-90,4\n5,5,7\n",
       {"values of 'Q' are 9999, far from the others; if that stands for missing ones, use --where "
        "\"Q < 9999\""}},
      {"X,Y,Q\n-90,0,9\n90,0,-999\n0,90,3\n0,-90,-999\n5,5,7\n",
       {"values of 'Q' are -999, far from the others; if that stands for missing ones, use --where "
        "\"Q > -999\""}},
      {"X,Y,Q\n-90,0,9\n90,0,3.4e38\n0,90,3\n0,-90,4\n5,5,7\n",
       {"values of 'Q' are beyond 1e30, far from the others; if that stands for missing ones, use "
        "--where \"Q < 1e30\""}},
      {"X,Y,Q # 1\n-90,0,9\n90,0,9999\n0,90,3\n0,-90,4\n5,5,7\n",
       {"values of 'Q # 1' are 9999, far from the others; if that stands for missing ones, use "
        "--where '`Q # 1` < 9999'"}},
      {"X,Y,Q\n-90,0,501\n90,0,503.5\n0,90,0\n0,-90,502\n5,5,507\n",
       {"values of 'Q' are 0, far from the others; if that stands for missing ones, use --where "
        "\"Q > 0\""}},
      {"X,Y,Q\n-90,0,-51\n90,0,-53.5\n0,90,0\n0,-90,-52\n5,5,-57\n",
       {"values of 'Q' are 0, far from the others; if that stands for missing ones, use --where "
        "\"Q < 0\""}},
      // Flags, counts, and values that reach down to zero.
      {"X,Y,Q\n-90,0,1\n90,0,1\n0,90,0\n0,-90,1\n5,5,1\n", {}},
      {"X,Y,Q\n-90,0,0\n90,0,7\n0,90,0\n0,-90,8\n5,5,7\n", {}},
      {"X,Y,Q\n-90,0,3\n90,0,7\n0,90,0\n0,-90,8\n5,5,7\n", {}},
      {"X,Y,Q\n-90,0,990\n90,0,999\n0,90,980\n0,-90,1005\n5,5,7\n", {}},
      {"X,Y,Q\n-90,0,990\n90,0,999\n0,90,980\n0,-90,985\n5,5,981\n", {}},
      {"X,Y,Q\n3,150,9\n297,150,2\n150.5,3,3\n150,297,4\n150,150,7\n",
       {"all sites lie in the quadrant right above the centre; if they are counted from a corner, "
        "use --origin corner"}},
      {"X,Y,Q\n1,1,9\n2,1,2\n1,2,3\n2,2,4\n3,2,7\n",
       {"all sites lie in the quadrant right above the centre; if they are counted from a corner, "
        "use --origin corner, and if they are numbers of dies, --pitch WIDTH HEIGHT with it"}},
      {counted + "-70,-70,9\n",
       {"the value 'Q' only counts the sites; choose another with --parameter"}},
      {counted + "-70,-70,9.5\n", {}},
      {counted, {"the value 'Q' only counts the sites; choose another with --parameter"}},
      {"X,Y,Q\n0,0,0\n-90,0,1\n90,0,2\n0,90,3\n0,-90,4\n",
       {"the value 'Q' only counts the sites; choose another with --parameter"}},
      {"X,Y,Q\n0,0,2\n-90,0,3\n90,0,4\n0,90,5\n0,-90,6\n", {}},
      {"X,Y,Q\n-90,0,1\n90,0,2\n0,90,3\n0,-90,4\n", {}},
      {"R,Theta,Q\n90,0,9\n90,1.5708,2\n90,3.1416,3\n90,4.7124,4\n0,0,7\n",
       {"all angles lie within 4.71 degrees; if they are radians, write so in the header, as in "
        "theta (rad)"}},
      {"R,Theta,Q\n90,-3.14159,9\n90,-1.5708,2\n90,0,3\n90,1.5708,4\n0,0,7\n",
       {"all angles lie within 4.71 degrees; if they are radians, write so in the header, as in "
        "theta (rad)"}},
      {"R,Theta (deg),Q\n90,0,9\n90,1.5708,2\n90,3.1416,3\n90,4.7124,4\n0,0,7\n", {}},
      {"R,Theta (rad),Q\n90,0,9\n90,1.5708,2\n90,3.1416,3\n90,4.7124,4\n0,0,7\n", {}},
      {"R,Theta,Q\n90,0,9\n90,90,2\n90,180,3\n90,270,4\n0,0,7\n", {}},
      {"R,Theta,Q\n10,0,9\n20,0,2\n60,0,3\n90,0,4\n0,0,7\n", {}},
      {"X,Y,Q\n-90,0,1000000000.001\n90,0,1000000000.003\n0,90,1000000000.002\n"
       "0,-90,1000000000.002\n0,0,1000000000.001\n",
       {"3 of 5 values of 'Q' are the same as the one before when rounded to a 32-bit float, and "
        "differ in the file; subtract an offset from all of them"}},
      {"X,Y,Q\n-90,0,0.1\n90,0,0.1\n0,90,0.1\n0,-90,0.1\n0,0,0.1\n", {}},
      {"X,Y,Q\n-90,0,99.1234567891\n90,0,99.1234767891\n0,90,99.2\n0,-90,99.123\n0,0,99.1\n", {}},
      // A site in the corner itself would lie beside the wafer.
      {"X,Y,Q\n0,0,9\n90,0,2\n0,90,3\n60,60,4\n30,30,7\n", {}},
  };
  const TemporaryFolder folder;
  for (const DoubtCase& test : cases) {
    SCOPED_TRACE(test.content);
    EXPECT_EQ(Read({.path = folder.Write("a.csv", test.content)}).warnings, test.warnings);
  }
}

}  // namespace
}  // namespace discoplan::data
