// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "data/read.h"
#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

struct TableCase {
  const char* shows;
  std::string content;
  std::string outcome;
  std::string columns = {};
  bool skip_invalid = false;
};

void Check(const TableCase& test) {
  SCOPED_TRACE(test.shows);
  const TemporaryFolder folder;
  ReadRequest request;
  request.path = folder.Write("a.csv", test.content);
  request.columns = test.columns;
  request.skip_invalid = test.skip_invalid;
  EXPECT_EQ(Outcome(request), test.outcome);
}

TEST(DataTable, ReadsAllWaysToWriteATable) {
  const TableCase cases[] = {
      {"commas", "1,2,3\n4,5,6\n", "1,2,3 4,5,6"},
      {"no line end at the end", "1,2,3\n4,5,6", "1,2,3 4,5,6"},
      {"semicolons", "1;2;3\n4;5;6\n", "1,2,3 4,5,6"},
      {"tabs", "1\t2\t3\n4\t5\t6\n", "1,2,3 4,5,6"},
      {"runs of blanks", "  1 2   3  \n4  5 6\n", "1,2,3 4,5,6"},
      {"blanks around commas", "1 , 2,  3\n4 ,5 , 6\n", "1,2,3 4,5,6"},
      {"blanks around commas below a header", "X , Y , Value\n4 , 5 , 6\n", "4,5,6"},
      {"tabs behind commas", "1,\t2,\t3\n", "1,2,3"},
      {"CRLF", "X,Y,Z\r\n1,2,3\r\n\r\n", "1,2,3"},
      {"CR alone", "X,Y,Z\r1,2,3\r4,5,6\r", "1,2,3 4,5,6"},
      {"byte order mark", "\xEF\xBB\xBFX,Y,Z\n1,2,3\n", "1,2,3"},
      {"comments", "# lot 5\n1,2,3\n  # 9,9,9\n4,5,6\n", "1,2,3 4,5,6"},
      {"a column called #", "#,X,Y,Value\n7,1,2,3\n", "1,2,3"},
      {"a title above the table", "Lot\nX,Y,Z\n1,2,3\n", "1,2,3"},
      {"a sign for number is no comment", "Site #,X,Y,Value\n7,1,2,3\n", "1,2,3"},
      {"quotes", "\"X\",\"Y\",\"Value\"\n\"1\",2 , \"3\" \n", "1,2,3"},
      {"a separator in quotes", "X,Y,Z,Note\n1,2,3,\"a,b\"\n", "1,2,3"},
      {"quotes in quotes", "X,Y,Z,Note\n1,2,3,\"a \"\"b\"\", c\"\n", "1,2,3"},
      {"no comment that a spreadsheet wrote for a number", "Site,X,Y,V\n#N/A,1,2,3\n#NAME?,4,5,6\n",
       "1,2,3 4,5,6"},
      {"no comment in quotes", "X,Y,Z,Note\n1,2,3,\"a # b\"\n", "1,2,3"},
      {"blank lines and empty rows", "\n\nX,Y,Z\n\n1,2,3\n,,\n4,5,6\n,,,\n", "1,2,3 4,5,6"},
      {"empty fields at the end", "X,Y,Z,\n1,2,3,\n4,5,6\n", "1,2,3 4,5,6"},
      {"Latin-1 in a comment", "# \xB5m and \xC5, both in a comment\n1,2,3\n", "1,2,3"},
      {"decimal comma with semicolons", "1,5;2;-3,25\n", "1.5,2,-3.25"},
      {"decimal comma with tabs", "1,5\t2\t3,25\n", "1.5,2,3.25"},
      {"decimal comma with blanks", "1,5 2 3,25\n", "1.5,2,3.25"},
      {"decimal comma in quotes", "\"1,5\",2,\"3,25\"\n", "1.5,2,3.25"},
      {"decimal point with semicolons", "1.5;2;3.125\n", "1.5,2,3.125"},
      {"three decimals, proven by a zero", "0,000;2,125;3,250\n", "0,2.125,3.25"},
      {"three decimals, proven by four digits", "1,500;2,125;5722,250\n", "1.5,2.125,5722.25"},
      {"signs and exponents", "+1.5,-2E1,+3e+2\n", "1.5,-20,300"},
      {"points at the ends", ".5,2.,-.25\n", "0.5,2,-0.25"},
      {"largest float", "1,2,3.4028234663852886e38\n", "1,2,3.40282347e+38"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, FindsTheColumns) {
  const TableCase cases[] = {
      {"an index without a name", ",X,Y,V\n0,1,2,3\n1,4,5,6\n", "1,2,3 4,5,6"},
      {"the number of a wafer is no value", "X,Y,Slot,Rs\n1,2,7,3\n4,5,7,6\n", "1,2,3 4,5,6"},
      {"one value for its own position", "X,Y,V\n1,2,3\n", "1,2,1", "X,Y,X"},
      {"names in any order and case", "thickness,Y,x\n3,2,1\n", "1,2,3"},
      {"names with a unit", "X (mm),Y [mm],Value\n1,2,3\n", "1,2,3"},
      {"the only column left", "Site,X,Y,Rs\n9,1,2,3\n", "1,2,3"},
      {"a usual name among others", "X,Y,GOF,Value\n1,2,0.9,3\n", "1,2,3"},
      {"numbers as names of other columns", "X,Y,1,Value\n1,2,9,3\n", "1,2,3"},
      {"chosen by name", "X,Y,slot1,slot2\n1,2,3,4\n", "1,2,4", " x , Y,SLOT2 "},
      {"chosen by number", "X,Y,slot1,slot2\n1,2,3,4\n", "2,1,4", "2,1,4"},
      {"chosen by name and number", "X,Y,slot1,slot2\n1,2,3,4\n", "1,2,4", "X,2,slot2"},
      {"chosen by a quoted name", "X,Y,\"T, nm\",\"T, A\"\n1,2,3,30\n", "1,2,30", "X,Y,\"T, A\""},
      {"chosen of equal names by number", "X,Y,V,V\n1,2,3,4\n", "1,2,4", "1,2,4"},
      {"chosen without a header", "OK,1,2,3\nOK,4,5,6\n", "1,2,3 4,5,6", "2,3,4"},
      {"equal names that aren't chosen", "X,Y,Z,note,note\n1,2,3,a,b\n", "1,2,3"},
      {"the value without a header", "1,2,3,4\n", "1,2,3", "1,2,Value"},
      {"a column without a header", "1,2,3,4\n", "1,2,4", "1,2,column 4"},
      {"the first three without a header", "1,2,3,4,ok\n", "1,2,3"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, RefusesWhatHasNoClearColumns) {
  const TableCase cases[] = {
      {"several values", "X,Y,slot1,slot 2\n1,2,3,4\n",
       "a.csv:1: the value may be any of 'slot1', 'slot 2'; "
       "choose one, as in --parameter slot1"},
      {"several values that need a number", "X (mm),Y,\"a,b\",c\n1,2,3,4\n",
       "a.csv:1: the value may be any of 'a,b', 'c'; choose one, as in --parameter 3"},
      {"several values of one name", "X,Y,a,A\n1,2,3,4\n",
       "a.csv:1: the value may be any of 'a', 'A'; choose one, as in --parameter 3"},
      {"Z beside others", "X,Y,Z,Rs\n1,2,9,3\n",
       "a.csv:1: the value may be any of 'Z', 'Rs'; choose one, as in --parameter Z"},
      {"several usual names", "X,Y,Value,Z\n1,2,3,4\n",
       "a.csv:1: the value may be any of 'Value', 'Z'; choose one, as in --parameter Value"},
      {"no value", "Site,X,Y\n1,2,3\n",
       "a.csv:1: no column is left for the value among 'Site', 'X', 'Y'; "
       "add one, or choose three with --columns X,Y,VALUE"},
      {"no X", "row,col,V\n1,2,3\n",
       "a.csv:1: no column is called X among 'row', 'col', 'V'; "
       "choose three with --columns X,Y,VALUE"},
      {"two X", "X,x,Y,V\n1,2,3,4\n",
       "a.csv:1: several columns are called X among 'X', 'x', 'Y', 'V'; "
       "choose three with --columns X,Y,VALUE"},
      {"unknown name", "X,Y,V\n1,2,3\n",
       "a.csv:1: there is no column 'slot1'; choose from 'X', 'Y', 'V'", "X,Y,slot1"},
      {"name of two columns", "X,Y,V,v\n1,2,3,4\n",
       "a.csv:1: columns 3 and 4 are both called 'V'; choose one by its number", "X,Y,V"},
      {"number too large", "X,Y,V\n1,2,3\n",
       "a.csv:1: there is no column number '4'; choose from 1 to 3", "X,Y,4"},
      {"number zero", "X,Y,V\n1,2,3\n",
       "a.csv:1: there is no column number '0'; choose from 1 to 3", "0,1,2"},
      {"number beyond all integers", "X,Y,V\n1,2,3\n",
       "a.csv:1: there is no column number '99999999999999999999'; choose from 1 to 3",
       "1,2,99999999999999999999"},
      {"name without a header", "1,2,3\n",
       "a.csv:1: there is no header line with a column 'X'; "
       "choose columns by number, as in --columns 1,2,3",
       "X,Y,Z"},
      {"one column for X and Y", "X,Y,V\n1,2,3\n",
       "a.csv:1: column 1 is chosen for both X and Y; choose two", "X,1,V"},
      {"one column for two values", "X,Y,V\n1,2,3\n",
       "a.csv:1: column 3 is chosen twice for a value; choose it once", "X,Y,V,3"},
      {"one entry", "1,2,3\n",
       "a.csv: --columns '1' doesn't name two or more columns; write it like --columns X,Y,VALUE",
       "1"},
      {"an empty entry", "1,2,3\n",
       "a.csv: --columns '1,,2' doesn't name two or more columns; write it like --columns "
       "X,Y,VALUE",
       "1,,2"},
      {"either separator would do", "x,x,x,1,2,3,y;y;y;4;5;6\n",
       "a.csv: the columns may be separated by commas or by semicolons; "
       "put quotes around the fields that hold either",
       "4,5,6"},
      {"two columns", "1,2\n3,4\n",
       "a.csv:1: 2 columns where at least 3 are due; "
       "separate X, Y and value by commas, semicolons, tabs or blanks"},
      {"only empty fields", ",,,\n,,,\n",
       "a.csv: no column where at least 3 are due; "
       "separate X, Y and value by commas, semicolons, tabs or blanks"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, RefusesBadRows) {
  const std::string mend = "; mend the value or use --skip-invalid";
  const std::string complete = " are due; complete the line or use --skip-invalid";
  const std::string quote = "; put quotes around a field that holds a separator or a decimal comma";
  const std::string mixed =
      " has another decimal mark than the numbers before it; write all of them with a point";
  const std::string doubtful =
      " may have a decimal comma or a thousands separator; "
      "write decimals with a point and thousands without a mark";
  const TableCase cases[] = {
      {"text", "1,2,3\n4,5,abc\n", "a.csv:2:3: 'abc' is no number" + mend},
      {"text that is a column's name elsewhere", "1,2,x\n", "a.csv:1:3: 'x' is no number" + mend},
      {"text in the only row", "X,Y,Z\n1,abc,3\n", "a.csv:2:2: 'abc' is no number" + mend},
      {"comments and blank lines count", "# a\n\n1,2,3\n\nx,5,6\n",
       "a.csv:5:1: 'x' is no number" + mend},
      {"a lone CR counts as a line", "1,2,3\r4,5,b\r", "a.csv:2:3: 'b' is no number" + mend},
      {"40 characters", "1,2," + std::string(40, 'a') + "\n",
       "a.csv:1:3: '" + std::string(40, 'a') + "' is no number" + mend},
      {"41 characters", "1,2," + std::string(41, 'a') + "\n",
       "a.csv:1:3: '" + std::string(40, 'a') + "...' is no number" + mend},
      {"control characters", "# at most one foreign byte in ten\n1,2,3\n1,2,a\x1B[2J\x7F\xC2\x9B\n",
       "a.csv:3:3: 'a?[2J??\?' is no number" + mend},
      {"letters beyond ASCII", "1,2,\xC2\xB5m\n", "a.csv:1:3: '\xC2\xB5m' is no number" + mend},
      {"two numbers in a field", "1,2,3\n4,5,6 7\n", "a.csv:2:3: '6 7' is no number" + mend},
      {"hexadecimal", "1,2,0x10\n", "a.csv:1:3: '0x10' is no number" + mend},
      {"two signs", "1,2,+-3\n", "a.csv:1:3: '+-3' is no number" + mend},
      {"a sign alone", "1,2,-\n", "a.csv:1:3: '-' is no number" + mend},
      {"thousands", "1;2;1,234.5\n", "a.csv:1:3: '1,234.5' is no number" + mend},
      {"empty", "1,2,3\n4,,6\n", "a.csv:2:2: the field is empty where a number is due" + mend},
      {"nan", "1,2,nan\n", "a.csv:1:3: 'nan' is not finite" + mend},
      {"inf", "1,-inf,3\n", "a.csv:1:2: '-inf' is not finite" + mend},
      {"more than a float", "1,2,1e39\n",
       "a.csv:1:3: '1e39' is out of a 32-bit float's range" + mend},
      {"more than a double", "1,2,1e999\n",
       "a.csv:1:3: '1e999' is out of a 32-bit float's range" + mend},
      {"too few columns", "1,2,3\n4,5\n", "a.csv:2: 2 columns where 3" + complete},
      {"fewer columns than the header", "X,Y,Value,A,B\n1,2,3,4\n",
       "a.csv:2: 4 columns where 5" + complete},
      {"a title above a table without X", "Lot\nA,B,C\n1,2,3\n",
       "a.csv:2: no column is called X among 'A', 'B', 'C'; choose three with --columns X,Y,VALUE"},
      {"a comment behind a row", "1,2,3\n1,2,3 # centre\n",
       "a.csv:2:3: '3 # centre' is no number" + mend},
      {"decimal commas between commas", "X,Y,Z\n1,5,2,5,3,5\n",
       "a.csv:2: 6 columns where line 1 has 3" + quote},
      {"more columns than the first row", "1,2,3\n4,5,6,7\n",
       "a.csv:2: 4 columns where line 1 has 3" + quote},
      {"thousands in the only value", "X;Y;V\n1;2;1.234,5\n",
       "a.csv:2:3: '1.234,5' is no number" + mend},
      {"a unit behind the only value", "X,Y,V\n1,2,99.5 nm\n",
       "a.csv:2:3: '99.5 nm' is no number" + mend},
      {"a line end in quotes", "X,Y,Value,Note\n1,2,3,\"a\nb\"\n",
       "a.csv:2:4: a quote is opened and not closed on this line; close it or remove it"},
      {"a line end in quotes of the header", "X,Y,\"V\n(nm)\"\n1,2,3\n",
       "a.csv:1:3: a quote is opened and not closed on this line; close it or remove it"},
      {"statistics below the rows", "X,Y,V\n1,2,3\n4,5,6\nMean,,4.5\n",
       "a.csv:4:1: 'Mean' is no number" + mend},
      {"statistics below the rows, at the centre", "Site,X,Y,V\n1,1,2,3\nMean,0,0,3\n",
       "a.csv:3:1: 'Mean' is no number" + mend},
      {"a spreadsheet's error in front", "X,Y,V\n1,2,3\n#REF!,5,6\n",
       "a.csv:3:1: '#REF!' is no number" + mend},
      {"a number too wide for its column in front", "X,Y,V\n1,2,3\n####,5,6\n",
       "a.csv:3:1: '####' is no number" + mend},
      {"a second table", "X,Y,V\n1,2,3\n\nX,Y,V\n1,2,7\n", "a.csv:4:1: 'X' is no number" + mend},
      {"a minus sign of typography",
       "X,Y,V\n\xE2\x88\x92"
       "1,2,3\n",
       "a.csv:2:1: '\xE2\x88\x92"
       "1' is no number" +
           mend},
      {"both decimal marks", "1.5;2;3\n1;2;3,25\n", "a.csv:2:3: '3,25'" + mixed},
      {"only three decimals", "1;2;3\n1,500;2,250;3\n", "a.csv:2:1: '1,500'" + doubtful},
      {"open quote", "1,2,3\n4,5,\"6\n",
       "a.csv:2:3: a quote is opened and not closed on this line; close it or remove it"},
      {"a header alone", "X,Y,Z\n",
       "a.csv:1: no valid site is left; check the rows and the columns chosen"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, LeavesOutOnlyRowsWithFewColumnsOrBadNumbers) {
  const TableCase cases[] = {
      {"each reason", "X,Y,Z\n1,2,3\n1,2\n1,,3\n1,2,x\n1,nan,3\n1,2,1e39\n4,5,6\n", "1,2,3 4,5,6",
       "", true},
      {"statistics below the rows", "#,X,Y,V\n1,1,2,3\n1a,4,5,6\nAVG,0,0,3\n Std. Dev.,0,0,1\n",
       "1,2,3 4,5,6", "", true},
      {"a short first row", "1,2\n1,2,3\n", "1,2,3", "", true},
      {"a bad first row", "a,2,3\n1,2,3\n", "1,2,3", "", true},
      {"too many columns stay an error", "1,2,3\n1,2,3,4\n",
       "a.csv:2: 4 columns where line 1 has 3; "
       "put quotes around a field that holds a separator or a decimal comma",
       "", true},
      {"a second table stays an error", "X,Y,V\n1,2,3\n4,5,6\n\nX,Y,V\n1,2,7\n4,5,8\n",
       "a.csv: 2 of 4 sites repeat a position; name the columns that tell the wafers apart with "
       "--by, or split the file",
       "", true},
      {"nothing remains", "X,Y,Z\n1,2,\n",
       "a.csv:1: no valid site is left; check the rows and the columns chosen", "", true},
      {"nothing remains without a header", "1,2,\n",
       "a.csv: no valid site is left; check the rows and the columns chosen", "", true},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, CountsWhatItLeavesOutByReason) {
  const TemporaryFolder folder;
  ReadRequest request;
  request.path =
      folder.Write("a.csv", "X,Y,Z\n1,2,3\n1,,3\n1,2\n1,2,x\n,2,x\n1,nan,3\n1,2,1e39\n4,5,6\n");
  request.skip_invalid = true;
  const Lot result = Read(request);
  EXPECT_EQ(result.kind, FileKind::Table);
  EXPECT_EQ(result.skipped, (std::vector<SkippedRows>{{Reason::Empty, 2, 3},
                                                      {Reason::TooFewColumns, 1, 4},
                                                      {Reason::Text, 1, 5},
                                                      {Reason::NotFinite, 2, 7}}));
}

TEST(DataTable, RefusesNumbersOfRowsForX) {
  const std::string rows = "1,0,0,9\n2,9,0,8\n3,0,9,7\n4,-9,0,6\n5,0,-9,5\n";
  const TableCase cases[] = {
      {"numbers in front", rows,
       "a.csv:1: there is no header line, and the first column only counts the rows; choose X, Y "
       "and value by number, as in --columns 2,3,4"},
      {"from 0", "0 0 0 9\n1 9 0 8\n2 0 9 7\n3 -9 0 6\n4 0 -9 5\n",
       "a.csv:1: there is no header line, and the first column only counts the rows; choose X, Y "
       "and value by number, as in --columns 2,3,4"},
      {"if they are chosen", rows, "1,0,0 2,9,0 3,0,9 4,-9,0 5,0,-9", "1,2,3"},
      {"if they aren't", rows, "0,0,9 9,0,8 0,9,7 -9,0,6 0,-9,5", "2,3,4"},
      {"below a header", "X,Y,V,W\n" + rows, "1,0,0 2,9,0 3,0,9 4,-9,0 5,0,-9", "X,Y,V"},
      {"without another column", "1,0,9\n2,0,8\n3,0,7\n4,0,6\n5,0,5\n",
       "1,0,9 2,0,8 3,0,7 4,0,6 5,0,5"},
      {"of few rows", "1,0,0,9\n2,9,0,8\n3,0,9,7\n4,-9,0,6\n", "1,0,0 2,9,0 3,0,9 4,-9,0"},
      {"from 2", "2,0,0,9\n3,9,0,8\n4,0,9,7\n5,-9,0,6\n6,0,-9,5\n",
       "2,0,0 3,9,0 4,0,9 5,-9,0 6,0,-9"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, TellsOfRowsThatAreTakenForComments) {
  const TableCase cases[] = {
      {"all of them", "#,X,Y,V\n#1,0,0,5\n#2,9,0,6\n",
       "a.csv:2: 2 rows begin with '#', as comments do, and no other site is left; take it away"},
      {"the only one", "Site,X,Y,V\n# note\n#1,0,0,5\n",
       "a.csv:3: 1 row begins with '#', as comments do, and no other site is left; take it away"},
      {"all of them without a header", "#1,0,0,5\n#2,9,0,6\n",
       "a.csv: all lines begin with '#', as comments do; take it away from rows, or choose another "
       "file"},
  };
  for (const TableCase& test : cases) Check(test);
}

TEST(DataTable, CountsRowsThatAreTakenForComments) {
  const auto skipped = [](const std::string& table, bool skips = false) {
    std::istringstream stream(table);
    return Read({.path = "a.csv", .skip_invalid = skips}, stream).skipped;
  };
  using Rows = std::vector<SkippedRows>;
  EXPECT_EQ(skipped("Site,X,Y,V\n#1,0,0,5\n2,9,0,6\n#3,0,9,7\n"),
            (Rows{{Reason::Commented, 2, 2}}));
  EXPECT_EQ(skipped("# X,Y,V\n0,0,5\n#9,0,6\n  ## -9,0,7\n"), (Rows{{Reason::Commented, 2, 3}}));
  EXPECT_EQ(skipped("X;Y;V\n0;0;5\n# 9;0;6,5\n0;9;x\n", true),
            (Rows{{Reason::Commented, 1, 3}, {Reason::Text, 1, 4}}));
  EXPECT_EQ(skipped("X,Y,V\n0,0,x\n#9,0,6\n0,9,4\n", true),
            (Rows{{Reason::Text, 1, 2}, {Reason::Commented, 1, 3}}));
  // Other comments are none of it: above the header, of another width, and with texts.
  EXPECT_EQ(skipped("# 1,2,3\nX,Y,V\n# 1,2\n# 1,2,3,4\n# 1,2,x\n# \"1,2,3\n1,2,3\n"), Rows{});
  // Far behind what is looked through for the header.
  std::string rows;
  for (int i = 0; i < 300; ++i)
    rows += std::to_string(i) + ",2,3\n#" + std::to_string(i) + ",2,3\n";
  EXPECT_EQ(skipped("X,Y,V\n" + rows), (Rows{{Reason::Commented, 300, 3}}));
}

TEST(DataTable, NamesTheWaferAfterTheFile) {
  const TemporaryFolder folder;
  const Lot result = Read({.path = folder.Write("lot 5.csv", "1,2,3\n")});
  ASSERT_EQ(result.wafers.size(), 1U);
  EXPECT_EQ(result.wafers[0].name, "lot 5");
  EXPECT_FALSE(result.wafers[0].slot);
  EXPECT_FALSE(result.wafers[0].reported);
}

TEST(DataTable, TellsThePlaceOfAnError) {
  const TemporaryFolder folder;
  const auto path = folder.Write("a.csv", "1,2,3\n4,abc,6\n");
  try {
    Read({.path = path});
    FAIL();
  } catch (const DataError& error) {
    EXPECT_EQ(error.file(), path.string());
    EXPECT_EQ(error.line(), 2);
    EXPECT_EQ(error.column(), 2);
    EXPECT_EQ(error.sentence(), "'abc' is no number; mend the value or use --skip-invalid");
  }
}

TEST(DataTable, HoldsAtMost32767Sites) {
  const TemporaryFolder folder;
  for (const std::size_t sites : {32766U, 32767U, 32768U, 40000U}) {
    std::string content = "X,Y,Z\n";
    for (std::size_t i = 0; i < sites; ++i) content += std::to_string(i) + ",2,3\n";
    const ReadRequest request{.path = folder.Write("a.csv", content)};
    if (sites <= 32767) {
      EXPECT_EQ(Read(request).wafers[0].x.size(), sites);
    } else {
      EXPECT_EQ(
          Outcome(request),
          "a.csv:32769: a wafer holds at most 32767 sites; use --thin for a regular subset of "
          "them, or split the file");
    }
  }
}

TEST(DataTable, ReadsLinesUpTo1MiB) {
  const std::size_t mib = std::size_t{1} << 20;
  Check({"on the limit", "1,2,3\n#" + std::string(mib - 1, 'a') + "\n4,5,6\n", "1,2,3 4,5,6"});
  const std::string refused = ": the line is longer than 1 MiB; a table has one site on a line";
  Check({"one above", "4,5,6\n#" + std::string(mib, 'a'), "a.csv:2" + refused});
  Check({"100 MB", std::string(100'000'000, '1'), "a.csv:1" + refused});
}

TEST(DataTable, ReadsLineEndsThatFallOnTheEdgeOfABlock) {
  for (const std::size_t edge : {65534U, 65535U, 65536U, 65537U}) {
    const std::string comment = '#' + std::string(edge - 1, 'a');
    Check({"CRLF", comment + "\r\n1,2,x\r\n",
           "a.csv:2:3: 'x' is no number; mend the value or use --skip-invalid"});
  }
}

}  // namespace
}  // namespace discoplan::data
