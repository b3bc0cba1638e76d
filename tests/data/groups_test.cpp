// SPDX-License-Identifier: MIT
// Wafers of one table, and rows that are asked for.

#include <gtest/gtest.h>

#include <sstream>

#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

constexpr const char* kTwo = "X,Y,Slot,V\n0,0,1,5\n1,0,1,6\n0,0,2,7\n1,0,2,8\n";
constexpr const char* kFour =
    "X,Y,Lot,Slot,V\n0,0,A,1,5\n1,0,A,1,6\n0,0,A,2,7\n1,0,A,2,8\n"
    "0,0,B,1,5\n1,0,B,1,6\n0,0,B,2,7\n1,0,B,2,8\n";

struct GroupCase {
  const char* shows;
  std::string content;
  std::string outcome;
  ReadRequest options = {};
};

void Check(GroupCase test) {
  SCOPED_TRACE(test.shows);
  const TemporaryFolder folder;
  ReadRequest request = test.options;
  if (request.columns.empty()) request.columns = "X,Y,V";
  request.path = folder.Write("a.csv", test.content);
  EXPECT_EQ(Outcome(request), test.outcome);
}

TEST(Groups, AreWafersOfATable) {
  const GroupCase cases[] = {
      {"by one column", kTwo, "0,0,5 1,0,6 | 0,0,7 1,0,8", {.by = {"Slot"}}},
      {"by two",
       kFour,
       "0,0,5 1,0,6 | 0,0,7 1,0,8 | 0,0,5 1,0,6 | 0,0,7 1,0,8",
       {.by = {"Lot", "4"}}},
      {"in rows of any order",
       "X,Y,W,V\n0,0,b,1\n0,0,a,2\n1,0,b,3\n",
       "0,0,1 1,0,3 | 0,0,2",
       {.by = {"w"}}},
      {"chosen by slot", kTwo, "0,0,7 1,0,8", {.by = {"Slot"}, .wafers = {"2"}}},
      {"chosen by range", kTwo, "0,0,5 1,0,6 | 0,0,7 1,0,8", {.by = {"Slot"}, .wafers = {"1-2"}}},
      {"chosen by name", kFour, "0,0,7 1,0,8", {.by = {"Lot", "Slot"}, .wafers = {"b, 2"}}},
      {"rows of others aren't looked at",
       "X,Y,W,V\n0,0,b,x\n0,0,a,2\n",
       "0,0,2",
       {.by = {"W"}, .wafers = {"a"}}},
      {"no such slot",
       kTwo,
       "a.csv: there is no slot 3-9; choose from 1, 2",
       {.by = {"Slot"}, .wafers = {"3-9"}}},
      {"a range that runs backwards",
       kTwo,
       "a.csv: --wafer '2-1' runs backwards; write the lower slot first",
       {.by = {"Slot"}, .wafers = {"2-1"}}},
      {"a name that looks like a range that runs backwards",
       "X,Y,W,V\n0,0,3-1,5\n0,0,3-2,7\n",
       "0,0,5",
       {.by = {"W"}, .wafers = {"3-1"}}},
      {"no such wafer",
       kTwo,
       "a.csv: there is no wafer 'x'; choose from '1', '2'",
       {.by = {"Slot"}, .wafers = {"x"}}},
      {"an open range",
       kTwo,
       "a.csv: there is no wafer '3-'; choose from '1', '2'",
       {.by = {"Slot"}, .wafers = {"3-"}}},
      {"a column twice", kTwo, "0,0,5 1,0,6", {.by = {"Slot", "3"}, .wafers = {"1"}}},
      {"by nothing",
       kTwo,
       "a.csv:1: there is no column ''; choose from 'X', 'Y', 'Slot', 'V'",
       {.by = {""}}},
      {"an empty name",
       "X,Y,W,V\n0,0,a,1\n1,0,,2\n",
       "a.csv:3:3: the field is empty where the name of a wafer is due; if one cell names the rows "
       "below it, unmerge it and fill it down, or else use --skip-invalid",
       {.by = {"W"}}},
      {"an empty name left out",
       "X,Y,W,V\n0,0,a,1\n1,0,,2\n",
       "0,0,1",
       {.by = {"W"}, .skip_invalid = true}},
      {"an empty name that isn't asked for",
       "X,Y,W,V\n0,0,a,1\n1,0,,2\n",
       "0,0,1",
       {.by = {"W"}, .where = "W != ''"}},
      {"no such column",
       kTwo,
       "a.csv:1: there is no column 'Lot'; choose from 'X', 'Y', 'Slot', 'V'",
       {.by = {"Lot"}}},
  };
  for (const GroupCase& test : cases) Check(test);
}

TEST(Groups, AreNoValues) {
  const TemporaryFolder folder;
  const auto path = folder.Write("a.csv", kTwo);
  for (const char* by : {"slot", "3"}) {
    EXPECT_EQ(Read({.path = path, .by = {by}}).parameters, (std::vector<Parameter>{{"V", ""}}));
    EXPECT_EQ(Read({.path = path, .parameters = {"all"}, .by = {by}}).parameters.size(), 1U);
  }
  const Lot asked = Read({.path = path, .parameters = {"Slot"}, .by = {"Slot"}});
  EXPECT_EQ(asked.parameters, (std::vector<Parameter>{{"Slot", ""}}));
}

TEST(Groups, AreAskedForWherePositionsRepeat) {
  const GroupCase cases[] = {
      {"one column tells", kTwo,
       "a.csv: 2 of 4 sites repeat a position; tell the wafers apart with --by Slot"},
      {"two columns tell", kFour,
       "a.csv: 6 of 8 sites repeat a position; tell the wafers apart with --by Lot,Slot"},
      {"a column whose name isn't plain", "X,Y,Lot ID,V\n0,0,A,5\n1,0,A,6\n0,0,B,7\n1,0,B,8\n",
       "a.csv: 2 of 4 sites repeat a position; tell the wafers apart with --by 3 ('Lot ID')"},
      {"a column whose name is a number", "X,Y,7,V\n0,0,A,5\n1,0,A,6\n0,0,B,7\n1,0,B,8\n",
       "a.csv: 2 of 4 sites repeat a position; tell the wafers apart with --by 3 ('7')"},
      {"too few columns given",
       kFour,
       "a.csv: 2 of 4 sites of wafer 'A' repeat a position; name the columns that tell the wafers "
       "apart with --by, or split the file",
       {.by = {"Lot"}}},
      {"no column tells", "X,Y,V\n0,0,5\n1,0,6\n0,0,5\n1,0,6\n",
       "a.csv: 2 of 4 sites repeat a position; name the columns that tell the wafers apart with "
       "--by, or split the file"},
      {"numbers of sites don't tell", "Site,X,Y,V\n1,0,0,5\n2,1,0,6\n3,0,0,5\n4,1,0,6\n",
       "a.csv: 2 of 4 sites repeat a position; name the columns that tell the wafers apart with "
       "--by, or split the file"},
  };
  for (const GroupCase& test : cases) Check(test);
  std::istringstream centre("X,Y,V\n0,0,5\n1,0,6\n0,1,7\n0,-1,7\n-0,0,5.1\n");
  EXPECT_EQ(Read({.path = "a.csv"}, centre).warnings.at(0),
            "1 of 5 sites repeats a position; each of them is taken for a site of its own");
}

TEST(Groups, AreAskedForWhereTheirColumnsDiffer) {
  // Where stages didn't go to quite the same place again.
  const std::string near =
      "X,Y,Lot ID,Slot,V\n0,0,A,1,5\n90,0,A,1,6\n0.05,0,A,2,7\n90,0.06,A,2,8\n";
  const std::string far = "X,Y,Slot,V\n0,0,1,5\n90,0,1,6\n0.5,0,2,7\n90,0.6,2,8\n";
  const std::string one = "X,Y,Slot,V\n0,0,1,5\n90,0,1,6\n0,90,1,7\n";
  const GroupCase cases[] = {
      {"sites that are nearly the same", near,
       "a.csv: 4 of 4 sites lie within 0.1 mm of another; tell the wafers apart with --by Slot"},
      {"those of one wafer", near, "0,0,5 90,0,6", {.where = "Slot = 1"}},
      {"as asked for", far, "0,0,5 90,0,6 | 0.5,0,7 90,0.600000024,8", {.by = {"Slot"}}},
      {"other sites", far, "0,0,5 90,0,6 0.5,0,7 90,0.600000024,8"},
  };
  for (const GroupCase& test : cases) Check(test);
  const auto warnings = [](const std::string& content, ReadRequest request) {
    std::istringstream stream(content);
    request.path = "a.csv";
    return Read(request, stream).warnings;
  };
  const std::string told =
      "all rows are taken for one wafer; --by Slot makes one of each text there";
  EXPECT_EQ(warnings(far, {}), (std::vector<std::string>{told}));
  EXPECT_EQ(warnings(far, {.parameters = {"all"}}), (std::vector<std::string>{told}));
  EXPECT_TRUE(warnings(far, {.by = {"Slot"}}).empty());
  EXPECT_TRUE(warnings(far, {.columns = "X,Y,Slot"}).empty());
  EXPECT_TRUE(warnings(one, {}).empty());
}

TEST(Groups, CarryTheirTexts) {
  std::istringstream stream(kFour);
  const Lot lot = Read({.path = "a.csv", .columns = "X,Y,V", .by = {"Lot", "Slot"}}, stream);
  EXPECT_EQ(lot.keys, (std::vector<std::string>{"Lot", "Slot"}));
  EXPECT_EQ(lot.wafers[3].name, "B, 2");
  EXPECT_EQ(lot.wafers[3].keys, (std::vector<std::string>{"B", "2"}));
}

TEST(Condition, TakesTheRowsAskedFor) {
  const std::string rows =
      "X,Y,V,Goodness of fit (%),S\n0,0,1,50,ok\n1,0,2,60,ok\n2,0,3,70,bad\n3,0,4,,OK\n";
  const auto only = [&](const std::string& where, const std::string& sites) {
    Check({"a condition", rows, sites, {.where = where}});
  };
  only("V < 2", "0,0,1");
  only("V<=2 and V>1", "1,0,2");
  only("not V <= 2 and S != 'ok'", "2,0,3");
  only("not (V <= 2 and S = 'ok')", "2,0,3 3,0,4");
  only("V = 1 or V = 3 and X == 2", "0,0,1 2,0,3");
  only("`Goodness of fit` >= 60 AND V<3",
       "a.csv:5:4: the field is empty where a number is due; "
       "mend the value or use --skip-invalid");
  only("V<3 and `Goodness of fit` >= 60", "1,0,2");
  only("V > X and V <> 4", "0,0,1 1,0,2 2,0,3");
  only("V = 1e0 or V = -2 or 4 <= V", "0,0,1 3,0,4");
  only("5 < 3", "--where: character 1 of 5 < 3: no column is compared; name one");
  only("V >", "--where: character 4 of V >: a column, a number or a text in quotes is due");
  only("V 3", "--where: character 3 of V 3: one of <, <=, >, >=, = and != is due");
  only("V > 3 V", "--where: character 7 of V > 3 V: 'and', 'or' or the end is due");
  only("(V > 3", "--where: character 7 of (V > 3: a closing parenthesis is due");
  only("V < 'a'", "--where: character 1 of V < 'a': texts have no order; compare them by = or !=");
  only("Q < 1",
       "--where: character 1 of Q < 1: there is no column 'Q'; choose from 'X', 'Y', 'V', "
       "'Goodness of fit (%)', 'S', with backquotes around a number or several words and quotes "
       "around a text");
  only("`Q` < 1",
       "--where: character 1 of `Q` < 1: there is no column 'Q'; choose from 'X', 'Y', 'V', "
       "'Goodness of fit (%)', 'S'");
  only("`9` < 1",
       "--where: character 1 of `9` < 1: there is no column number '9'; choose from 1 to 5");
  only("V < 4)", "--where: character 6 of V < 4): 'and', 'or' or the end is due");
  only("S < 3", "a.csv:2:5: 'ok' is no number; mend the value or use --skip-invalid");
  only("V << 3", "--where: character 4 of V << 3: a column, a number or a text in quotes is due");
  only("1 < V < 3", "--where: character 7 of 1 < V < 3: 'and', 'or' or the end is due");
  only("V = 1 && X = 2", "--where: character 7 of V = 1 && X = 2: 'and', 'or' or the end is due");
  only("not", "--where: character 4 of not: a column, a number or a text in quotes is due");
  only(" ", "--where: character 2 of  : a column, a number or a text in quotes is due");
  Check(
      {"names in Latin-1", "X,Y,G\xFC,V\n1,2,3,4\n1,3,5,6\n", "1,2,4", {.where = "G\xC3\xBC < 5"}});
  const ReadRequest by_number = {.columns = "1,2,3", .where = "`3` > 3"};
  Check({"without a header", "1,2,3\n4,5,6\n", "4,5,6", by_number});
  const ReadRequest by_given = {.columns = "1,2,4", .where = "value < 9"};
  Check({"the value without a header", "1,2,3,9\n4,5,6,8\n", "4,5,8", by_given});
  const ReadRequest by_place = {.columns = "1,2,3", .where = "`Column 4` < 9"};
  Check({"a column without a header", "1,2,3,9\n4,5,6,8\n", "4,5,6", by_place});
  const ReadRequest by_name = {.columns = "1,2,3", .where = "V > 3"};
  Check({"a name without a header", "1,2,3\n4,5,6\n",
         "--where: character 1 of V > 3: there is no header line with a column 'V'; choose columns "
         "by number in backquotes, as in `1`",
         by_name});
  only("`V < 4", "--where: character 1 of `V < 4: a quote is opened and not closed");
  only("V > 9", "a.csv: no row is left that --where asks for; loosen it");
}

TEST(LeftOut, IsRefusedWhereNothingStays) {
  const std::string rows = "X,Y,V\n-100,0,5\n100,0,6\n0,100,7\n";
  const GroupCase cases[] = {
      {"an area without sites",
       rows,
       "a.csv: no site lies in the area that is looked at; give a larger --test-diameter or a "
       "smaller --edge-exclusion, and check the positions",
       {.test_diameter = 100}},
      {"no area",
       rows,
       "a.csv: nothing is left of a wafer inside its --edge-exclusion; give less",
       {.edge_exclusion = 100}},
      {"an area beyond the wafer",
       rows,
       "a.csv: --test-diameter: 301 mm is more than the wafer's 200 mm; give less, or a larger "
       "--diameter",
       {.test_diameter = 301}},
  };
  for (const GroupCase& test : cases) Check(test);
}

/// Gives some bytes and then fails.
class FailingBuffer : public std::streambuf {
 public:
  explicit FailingBuffer(std::string bytes) : bytes_(std::move(bytes)) {
    setg(bytes_.data(), bytes_.data(), bytes_.data() + bytes_.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("the disk is gone"); }

 private:
  std::string bytes_;
};

TEST(ReadError, InMidFileIsToldAndNothingIsRead) {
  FailingBuffer buffer("X,Y,V\n1,2,3\n4,5,6\n");
  std::istream stream(&buffer);
  try {
    Read({.path = "a.csv"}, stream);
    FAIL();
  } catch (const DataError& error) {
    EXPECT_NE(error.sentence().find("the file can't be read"), std::string::npos);
  }
}

}  // namespace
}  // namespace discoplan::data
