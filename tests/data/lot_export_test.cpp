// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "data/left_out.h"
#include "data/read.h"
#include "tests/data/data_files.h"
#include "tests/places.h"

namespace discoplan::data {
namespace {

const std::filesystem::path kExamples = Example("");

TEST(LotExport, ReadsAll25WafersOfTheExample) {
  const Lot result = Read({.path = kExamples / "native_oxide_lot.csv"});
  ASSERT_EQ(result.wafers.size(), 25U);
  EXPECT_TRUE(result.skipped.empty());
  for (int slot = 1; slot <= 25; ++slot) {
    const Wafer& wafer = result.wafers[static_cast<std::size_t>(slot - 1)];
    EXPECT_EQ(wafer.slot, slot);
    EXPECT_EQ(wafer.name, (slot < 10 ? "Slot0" : "Slot") + std::to_string(slot));
    ASSERT_EQ(wafer.value.size(), 49U);
    ASSERT_TRUE(wafer.reported);
    // The instrument prints four decimals.
    double sum = 0;
    for (const float value : wafer.value) sum += static_cast<double>(value);
    EXPECT_NEAR(sum / 49, wafer.reported->mean, 1e-4);
    EXPECT_EQ(std::ranges::min(wafer.value), static_cast<float>(wafer.reported->min));
    EXPECT_EQ(std::ranges::max(wafer.value), static_cast<float>(wafer.reported->max));
  }
}

TEST(LotExport, ReadsOneSlotOfTheExample) {
  const Lot result = Read({.path = kExamples / "native_oxide_lot.csv", .wafers = {"1"}});
  ASSERT_EQ(result.wafers.size(), 1U);
  const Wafer& wafer = result.wafers[0];
  EXPECT_EQ(wafer.slot, 1);
  EXPECT_EQ(wafer.x[2], -34.6483F);
  EXPECT_EQ(wafer.y[2], 34.648F);
  EXPECT_EQ(wafer.value[2], 9.5519F);
  EXPECT_EQ(wafer.reported, (ReportedStatistics{9.7878, 9.5002, 10.6835, 0.2442, 1.1833}));
}

TEST(LotExport, ReadsAnotherColumnWithItsStatistics) {
  const Lot result =
      Read({.path = kExamples / "native_oxide_lot.csv", .columns = "x,y,3", .wafers = {"1"}});
  EXPECT_EQ(result.wafers[0].value[2], 0.9916F);
  EXPECT_EQ(result.wafers[0].reported,
            (ReportedStatistics{0.9913, 0.9895, 0.9919, 0.0004, 0.0024}));
}

TEST(LotExport, TellsWhichSlotsThereAre) {
  EXPECT_EQ(Outcome({.path = kExamples / "native_oxide_lot.csv", .wafers = {"26"}}),
            "native_oxide_lot.csv: there is no slot 26; choose from 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, "
            "11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25");
}

TEST(ExampleTables, AskWhichOfTheirColumnsIsMeant) {
  const ReadRequest request{.path = kExamples / "thick_film_lot.csv"};
  EXPECT_EQ(Outcome(request),
            "thick_film_lot.csv:1: the value may be any of 'slot1', 'slot2', 'slot3', 'slot4', "
            "'slot5', 'slot6', 'slot7', 'slot8', 'slot9', 'slot10'; "
            "choose one, as in --parameter slot1");
  ReadRequest chosen = request;
  chosen.columns = "X,Y,slot10";
  const Wafer wafer = Read(chosen).wafers.at(0);
  ASSERT_EQ(wafer.x.size(), 55U);
  EXPECT_EQ(wafer.y[1], -132.0F);
  EXPECT_EQ(wafer.value[1], 5604.741F);
}

TEST(ExampleTables, ReadTheProbedDies) {
  const std::filesystem::path path = kExamples / "probe_dies.csv";
  EXPECT_EQ(Read({.path = path, .columns = "MAP_COL,MAP_ROW,HR"}).wafers.at(0).x.size(), 6428U);

  ReadRequest request{.path = path, .columns = "MAP_COL,MAP_ROW,MR"};
  EXPECT_EQ(Outcome(request),
            "probe_dies.csv:296:8: the field is empty where a number is due; "
            "mend the value or use --skip-invalid");
  request.skip_invalid = true;
  const Lot result = Read(request);
  EXPECT_EQ(result.wafers.at(0).x.size(), 6428U - 485U);
  EXPECT_EQ(SkipReport(result).substr(kExamples.string().size()),
            "probe_dies.csv: left out 485 rows: 485 empty values (first on line 296)");
}

const std::string kHead = "Cassette: ,300mm,,,\n,,,,\n";
const std::string kKeys = "WAFER ID,A,,,\nSLOT,1,,,\n";
const std::string kTable = "Site #,Value,Value, X , Y \n1,7,0.9,1,2\n";
const std::string kSecond = ",,,,\nWAFER ID,B,,,\nSLOT,2,,,\n" + kTable;

struct LotCase {
  const char* shows;
  std::string content;
  std::string outcome;
  ReadRequest options = {};
};

void Check(const LotCase& test) {
  SCOPED_TRACE(test.shows);
  const TemporaryFolder folder;
  ReadRequest request = test.options;
  request.path = folder.Write("lot.csv", test.content);
  EXPECT_EQ(Outcome(request), test.outcome);
}

TEST(LotExport, ReadsItsBlocks) {
  const LotCase cases[] = {
      {"two blocks", kHead + kKeys + kTable + kSecond, "1,2,7 | 1,2,7"},
      {"no empty line between them", kKeys + kTable + kSecond.substr(5), "1,2,7 | 1,2,7"},
      {"words below a table", kKeys + kTable + "\nEND OF LOT,,,,\n", "1,2,7"},
      {"a block without a slot", "WAFER ID,A\n" + kTable, "1,2,7"},
      {"semicolons and decimal commas", "WAFER ID;A\nSLOT;1\nSite #;Value;X;Y\n1;7,5;1,25;2\n",
       "1.25,2,7.5"},
      {"a number sign in the name", "WAFER ID,A #1\n" + kTable, "1,2,7"},
      {"damage in another slot",
       kKeys + "Site #,Value,X,Y\n1,x\n" + kSecond,
       "1,2,7",
       {.wafers = {"2"}}},
      {"invalid rows left out",
       kKeys + kTable + "2,x,0.9,1,2\n3,8\n",
       "1,2,7",
       {.skip_invalid = true}},
      {"a table with a column of that name", "WAFER ID,X,Y,Value\nA,1,2,7\n", "1,2,7"},
  };
  for (const LotCase& test : cases) Check(test);
}

TEST(LotExport, RefusesDamagedBlocks) {
  const std::string complete = " are due; complete the line or use --skip-invalid";
  const LotCase cases[] = {
      {"no table", kKeys + kSecond,
       "lot.csv:1: wafer 'A' has no table of sites; complete or remove it"},
      {"no table in the last block", kKeys + kTable + ",,,,\nWAFER ID,B,,,\n",
       "lot.csv:6: wafer 'B' has no table of sites; complete or remove it"},
      {"no rows", kKeys + "Site #,Value,X,Y\n",
       "lot.csv:3: no valid site is left; check the rows and the columns chosen"},
      {"truncated row", kKeys + kTable + "2,7,0.9\n", "lot.csv:5: 3 columns where 5" + complete},
      {"text in a row", kKeys + kTable + "2,x,0.9,1,2\n",
       "lot.csv:5:2: 'x' is no number; mend the value or use --skip-invalid"},
      {"no head of the table", kKeys + "1,7,0.9,1,2\n",
       "lot.csv:3: a row stands outside the table of sites; mend the lines before it"},
      {"an empty line in the table", kKeys + kTable + ",,,,\n2,7,0.9,1,2\n",
       "lot.csv:6: a row stands outside the table of sites; mend the lines before it"},
      {"two tables", kKeys + kTable + ",,,,\n" + kTable,
       "lot.csv:6: wafer 'A' has a second table of sites; put a WAFER ID line above it"},
      {"no column X", kKeys + "Site #,Value,Value\n1,7,8\n",
       "lot.csv:3: no column is called X among 'Site #', 'Value', 'Value'; "
       "choose three with --columns X,Y,VALUE"},
      {"slot in words", "WAFER ID,A\nSLOT,one\n" + kTable,
       "lot.csv:2:2: 'one' is no number; mend the value or empty the field"},
      {"half a slot", "WAFER ID,A\nSLOT,1.5\n" + kTable,
       "lot.csv:2:2: '1.5' is no slot; write a whole number"},
      {"an enormous slot", "WAFER ID,A\nSLOT,1e30\n" + kTable,
       "lot.csv:2:2: '1e30' is no slot; write a whole number"},
      {"statistics in words", kKeys + "MEAN,x\n" + kTable,
       "lot.csv:3:2: 'x' is no number; mend the value or empty the field"},
      {"a slot twice",
       kKeys + kTable + kKeys + kTable,
       "lot.csv:5: slot 1 is here a second time; remove one of the two",
       {.wafers = {"1"}}},
      {"a condition that no row meets",
       kKeys + kTable,
       "lot.csv: no row is left that --where asks for; loosen it",
       {.where = "`2` > 70"}},
      {"a condition on one of two columns",
       kKeys + kTable,
       "--where: character 1 of Value > 7: columns 2 and 3 are both called 'Value'; choose one by "
       "its number, with backquotes around a number or several words and quotes around a text",
       {.where = "Value > 7"}},
      {"a unit of one position", kKeys + "Site #,Value,X (cm),Y\n1,7,1,2\n",
       "lot.csv:3: one of X and Y has a unit and the other one has none; mend the header"},
      {"options for tables",
       kKeys + kTable,
       "lot.csv: a lot export tells its wafers apart itself; leave out --by",
       {.by = {"Slot"}}},
      {"a slot of none",
       "WAFER ID,A\n" + kTable,
       "lot.csv: there is no wafer '1'; choose from 'A'",
       {.wafers = {"1"}}},
      {"an ambiguous column",
       kKeys + kTable,
       "lot.csv:3: columns 2 and 3 are both called 'Value'; choose one by its number",
       {.columns = "X,Y,Value"}},
  };
  for (const LotCase& test : cases) Check(test);
}

TEST(LotExport, ReportsStatisticsOnlyIfAllFiveAreGiven) {
  const std::string four = kKeys + "MEAN,7\nMIN,6\nMAX,8\nSTDDEV,0.5\n";
  const TemporaryFolder folder;
  const auto reported = [&](const std::string& content) {
    return Read({.path = folder.Write("lot.csv", content)}).wafers.at(0).reported;
  };
  EXPECT_EQ(reported(four + kTable), std::nullopt);
  EXPECT_EQ(reported(four + "RANGE,,\n" + kTable), std::nullopt);
  EXPECT_EQ(reported(four + "RANGE,2,\n" + kTable), (ReportedStatistics{7, 6, 8, 0.5, 2}));
}

TEST(LotExport, TellsOfPositionsThatRepeat) {
  const TemporaryFolder folder;
  const auto warnings = [&](const std::string& content) {
    return Read({.path = folder.Write("lot.csv", content)}).warnings;
  };
  EXPECT_TRUE(warnings(kKeys + kTable).empty());
  EXPECT_EQ(warnings(kKeys + kTable + "2,8,0.9,1,2\n" + kSecond),
            (std::vector<std::string>{"1 of 2 sites of wafer 'A' repeats a position; each of them "
                                      "is taken for a site of its own"}));
  EXPECT_EQ(Read({.path = folder.Write("a.bin", Binary({1, 1, 1, 2, 2, 2, 5, 6, 7}))}).warnings,
            (std::vector<std::string>{
                "2 of 3 sites repeat a position; each of them is taken for a site of its own"}));
}

TEST(BinaryFile, TellsOfValuesThatFloatsDontTellApart) {
  const TemporaryFolder folder;
  const auto path =
      folder.Write("a.bin", Binary({0, 1, 2, 3, 4, 5, 1e9, 1e9 + 0.001, 1e9 + 0.002}));
  EXPECT_EQ(Read({.path = path}).warnings,
            (std::vector<std::string>{
                "2 of 3 values of 'Value' are the same as the one before when rounded to a 32-bit "
                "float, and differ in the file; subtract an offset from all of them"}));
}

TEST(LotExport, HoldsAtMost32767SitesAWafer) {
  std::string rows;
  for (int i = 0; i < 32766; ++i) rows += "1,7,0.9,1,2\n";
  const TemporaryFolder folder;
  const ReadRequest full{.path = folder.Write("full.csv", kKeys + kTable + rows + kSecond + rows)};
  EXPECT_EQ(Read(full).wafers.at(1).x.size(), 32767U);
  const std::string above = kKeys + kTable + rows + "1,7,0.9,1,2\n";
  // Three lines of head and 32767 rows stand before it.
  EXPECT_EQ(Outcome({.path = folder.Write("lot.csv", above)}),
            "lot.csv:32771: a wafer holds at most 32767 sites; use --thin for a regular "
            "subset of them, or split the file");
}

TEST(LotExport, EndsCleanlyWhereverTheExampleIsCutOff) {
  std::ifstream stream(kExamples / "native_oxide_lot.csv", std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(stream), {}};
  const TemporaryFolder folder;
  for (std::size_t size = 1; size < 5000; size += 7) {
    try {
      Read({.path = folder.Write("lot.csv", whole.substr(0, size))});
    } catch (const DataError& error) {
      EXPECT_FALSE(error.sentence().empty());
    }
  }
}

}  // namespace
}  // namespace discoplan::data
