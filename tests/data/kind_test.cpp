// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <random>

#include "data/left_out.h"
#include "data/read.h"
#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

TEST(BinaryData, ReadsThreeBlocksAsFloats) {
  const TemporaryFolder folder;
  // Two sites: X 0 and 49.1, Y -0.25 and 147, values 9.5 and 0.1.
  const ReadRequest request{.path = folder.Write("a.bin", Binary({0, 49.1, -0.25, 147, 9.5, 0.1}))};
  const Lot result = Read(request);
  EXPECT_EQ(result.kind, FileKind::Binary);
  ASSERT_EQ(result.wafers.size(), 1U);
  EXPECT_EQ(result.wafers[0].name, "a");
  EXPECT_EQ(result.wafers[0].x, (std::vector<float>{0.0F, 49.1F}));
  EXPECT_EQ(result.wafers[0].y, (std::vector<float>{-0.25F, 147.0F}));
  EXPECT_EQ(result.wafers[0].value, (std::vector<float>{9.5F, 0.1F}));
}

struct BinaryCase {
  const char* shows;
  std::string content;
  std::string outcome;
  std::optional<std::int64_t> sites = {};
  bool skip_invalid = false;
};

TEST(BinaryData, GoesByTheSizeOrTheNumberOfSites) {
  const std::string most =
      "a.bin: a wafer holds at most 32767 sites; check that this is a data file, and --sites, or "
      "use --thin for a regular subset of them";
  const std::string two = Binary({1, 2, 3, 4, 5, 6});
  const double nan = std::nan("");
  const BinaryCase cases[] = {
      {"from the size", two, "1,3,5 2,4,6"},
      {"given", two, "1,3,5 2,4,6", 2},
      {"bytes behind", two + "\x01\x02\x03", "1,3,5 2,4,6", 2},
      {"fewer sites", two, "1,2,3", 1},
      {"one byte too few", two.substr(0, 47),
       "a.bin: the size of 47 bytes is no multiple of 24; check that this is a data file, "
       "or give the number of sites with --sites"},
      {"one byte too many", two + '\x01',
       "a.bin: the size of 49 bytes is no multiple of 24; check that this is a data file, "
       "or give the number of sites with --sites"},
      {"one byte too few for the sites", two.substr(0, 47),
       "a.bin: 47 bytes where 2 sites take 48; complete the file or give fewer --sites", 2},
      {"no sites", two, "a.bin: --sites is out of range; give 1 or more", 0},
      {"negative", two, "a.bin: --sites is out of range; give 1 or more", -1},
      {"too many sites given", two, most, 32768},
      {"not finite", Binary({1, 2, 3, nan, 5, 6}),
       "a.bin: Y of site 2 is not finite or out of a 32-bit float's range; "
       "check --sites and the order of bytes, or use --skip-invalid"},
      {"more than a float", Binary({1, 2, 3, 4, -1e39, 6}),
       "a.bin: the value of site 1 is not finite or out of a 32-bit float's range; "
       "check --sites and the order of bytes, or use --skip-invalid"},
      {"bytes in another order", Binary({1, std::bit_cast<double>(std::uint64_t{0xF03F}), 3}),
       "a.bin: Y of site 1 is not finite or out of a 32-bit float's range; "
       "check --sites and the order of bytes, or use --skip-invalid"},
      {"left out", Binary({1, 2, 3, nan, 5, 6}), "1,3,5", {}, true},
      {"nothing remains",
       Binary({nan, 2, 3}),
       "a.bin: no valid site is left; check the file and --sites",
       {},
       true},
  };
  const TemporaryFolder folder;
  for (const BinaryCase& test : cases) {
    SCOPED_TRACE(test.shows);
    EXPECT_EQ(Outcome({.path = folder.Write("a.bin", test.content),
                       .sites = test.sites,
                       .skip_invalid = test.skip_invalid}),
              test.outcome);
  }
}

TEST(BinaryData, HoldsAtMost32767Sites) {
  const TemporaryFolder folder;
  for (const std::size_t sites : {32766U, 32767U, 32768U, 500000U}) {
    const ReadRequest request{
        .path = folder.Write("a.bin", Binary(std::vector<double>(3 * sites, 1.5)))};
    if (sites <= 32767) {
      EXPECT_EQ(Read(request).wafers[0].value, std::vector<float>(sites, 1.5F));
    } else {
      EXPECT_EQ(Outcome(request),
                "a.bin: a wafer holds at most 32767 sites; check that this is a data file, and "
                "--sites, or use --thin for a regular subset of them");
    }
  }
}

TEST(BinaryData, IsThinnedAsATableIs) {
  std::vector<double> numbers;
  std::string table;
  std::mt19937 random(9);
  constexpr std::size_t kSites = 50000;
  std::vector<std::array<int, 3>> sites(kSites);
  for (auto& site : sites) {
    site = {static_cast<int>(random() % 300) - 150, static_cast<int>(random() % 3000) - 1500,
            static_cast<int>(random() % 100)};
    for (const int number : site) table += std::to_string(number) + ' ';
    table += '\n';
  }
  for (std::size_t block = 0; block < 3; ++block) {
    for (const auto& site : sites) numbers.push_back(site[block]);
  }
  const TemporaryFolder folder;
  const auto binary = folder.Write("a.bin", Binary(numbers));
  const auto text = folder.Write("a.csv", table);
  const Wafer thinned = Read({.path = binary, .thin = true}).wafers.at(0);
  EXPECT_EQ(Sites(thinned), Sites(Read({.path = text, .thin = true}).wafers.at(0)));
  EXPECT_LE(thinned.x.size(), 32767U);
  EXPECT_EQ(thinned.left_out,
            (std::vector<LeftOut>{
                {Reason::Thinned, static_cast<std::int64_t>(kSites - thinned.x.size())}}));
  // Others that leave sites out make room as well, or too little of it.
  EXPECT_LE(Read({.path = binary, .diameter = 4000, .test_diameter = 1000}).wafers[0].x.size(),
            32767U);
  EXPECT_EQ(Outcome({.path = binary, .diameter = 4000, .test_diameter = 4000}),
            "a.bin: a wafer holds at most 32767 sites; use --thin for a regular subset of them, or "
            "split the file");
  EXPECT_EQ(Read({.path = binary, .thin = true, .sites = 100}).wafers[0].SitesText(), "100 sites");
  EXPECT_EQ(Outcome({.path = binary, .thin = true, .sites = 50001}),
            "a.bin: 1200000 bytes where 50001 sites take 1200024; complete the file or give fewer "
            "--sites");
}

TEST(DataKind, TellsBinaryFromTextForAnyMeasuredNumbers) {
  const TemporaryFolder folder;
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> position(-150, 150);
  for (int repeat = 0; repeat < 300; ++repeat) {
    // From four sites on, bytes as random as these never lack a control character.
    std::vector<double> numbers(12 + 3 * static_cast<std::size_t>(repeat % 20));
    for (double& number : numbers) number = position(random);
    EXPECT_EQ(Read({.path = folder.Write("a", Binary(numbers))}).kind, FileKind::Binary) << repeat;
  }
}

struct KindCase {
  const char* shows;
  std::string content;
  std::string outcome;
  ReadRequest options = {};
};

TEST(DataKind, RefusesWhatIsNeitherAndOptionsThatDontFit) {
  using std::string_literals::operator""s;
  const std::string unclear =
      "a: this is neither clearly text nor clearly binary; save text as UTF-8, "
      "or give the number of sites of binary data with --sites";
  const KindCase cases[] = {
      {"no bytes", "", "a: the file is empty; choose another one"},
      {"blank lines", "\n \t\n\r\n",
       "a: the file holds nothing but blank lines; choose another one"},
      {"comments", "# a\n\n  # b\n",
       "a: all lines begin with '#', as comments do; take it away from rows, or choose another "
       "file"},
      {"a byte order mark", "\xEF\xBB\xBF",
       "a: the file holds nothing but blank lines; choose another one"},
      {"text with a NUL", "1,2,3\n4,5,6\n\0"s, unclear},
      {"text in another coding", "\xB2\xE2\xC1\xBF\xB5\xE3,x,y\n1,2,3\n", unclear},
      {"UTF-16, little-endian",
       "\xFF\xFE"
       "1\0,\0"
       "2\0,\0"
       "3\0"s,
       "1,2,3"},
      {"UTF-16, big-endian",
       "\xFE\xFF"
       "\0001\0,\0002\0,\0003"s,
       "1,2,3"},
      {"UTF-16 without its mark, as long as a site of a binary file",
       "X\0,\0Y\0,\0V\0\n\0001\0,\0002\0,\0003\0\n\0"s, "1,2,3"},
      {"UTF-16 without its mark, big-endian", "\0X\0,\0Y\0,\0V\0\n\0001\0,\0002\0,\0003\0\n"s,
       "1,2,3"},
      {"UTF-16 without its mark and with other letters",
       "X\0 \0(\0\xB5\0m\0)\0,\0Y\0 \0(\0\xB5\0m\0)\0,\0V\0\n\0001\0,\0002\0,\0003\0\n\0"s,
       "0.00100000005,0.00200000009,3"},
      {"UTF-16 that begins with Chinese letters",
       "\xFF\xFE\x4B\x6D\xCF\x91\n\0X\0,\0Y\0,\0V\0\n\0001\0,\0002\0,\0003\0\n\0"s, "1,2,3"},
      {"UTF-16 cut off inside a letter",
       "\xFF\xFE"
       "1\0,\0002\0,\0003\0\n"s,
       "a: the text in UTF-16 ends inside a character; save it again"},
      {"a mark of UTF-16 alone", "\xFF\xFE", "a: the file is empty; choose another one"},
      {"sites of a text",
       "1,2,3\n",
       "a: the file is a text; leave out --sites, it's for binary files",
       {.sites = 1}},
      {"slot of a table",
       "1,2,3\n",
       "a: the table is taken for one wafer; name the columns that tell its wafers apart with "
       "--by, "
       "or leave out --wafer",
       {.wafers = {"1"}}},
      {"slot of a binary file",
       Binary({1, 2, 3}),
       "a: the file has one wafer without a slot; leave out --wafer",
       {.wafers = {"1"}}},
      {"columns of a binary file",
       Binary({1, 2, 3}),
       "a: the file is binary and has no columns; leave out --columns",
       {.columns = "1,2,3"}},
  };
  const TemporaryFolder folder;
  for (const KindCase& test : cases) {
    SCOPED_TRACE(test.shows);
    ReadRequest request = test.options;
    request.path = folder.Write("a", test.content);
    EXPECT_EQ(Outcome(request), test.outcome);
  }
}

TEST(DataKind, TakesTheNumberOfSitesForBinaryWhereTheBytesAreUnclear) {
  // 0x40 and 0xC0 stand in no control character: 34.5... in bytes A1 A2 A3 A4 A5 41 41 40.
  const std::string number = "\xA1\xA2\xA3\xA4\xA5\x41\x41\x40";
  const TemporaryFolder folder;
  const auto path = folder.Write("a", number + number + number);
  EXPECT_THROW(Read({.path = path}), DataError);
  EXPECT_EQ(Read({.path = path, .sites = 1}).kind, FileKind::Binary);
}

TEST(DataKind, TellsWhyAFileCantBeRead) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  EXPECT_EQ(Outcome({.path = folder.path() / "none.csv"}),
            "none.csv: there is no such file; check the path");
  EXPECT_EQ(Outcome({.path = folder.path() / "a\nb\x1B.csv"}),
            "a?b?.csv: there is no such file; check the path");
  fs::create_directory(folder.path() / "sub");
  EXPECT_EQ(Outcome({.path = folder.path() / "sub"}), "sub: this is a folder; name a file in it");
  fs::create_symlink("loop", folder.path() / "loop");
  EXPECT_EQ(Outcome({.path = folder.path() / "loop"}),
            "loop: the file can't be read (Too many levels of symbolic links); "
            "check the path and its permissions");
}

TEST(DataKind, TellsThatAFileIsClosedToTheUser) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  const auto closed = folder.Write("closed.csv", "1,2,3\n");
  fs::permissions(closed, fs::perms::none);
  if (std::ifstream(closed)) GTEST_SKIP() << "this user may read everything";
  EXPECT_EQ(Outcome({.path = closed}),
            "closed.csv: the file can't be read (Permission denied); "
            "check the path and its permissions");
}

TEST(DataKind, EndsWithSitesOrAnErrorOfOneLineOnDamagedFiles) {
  const TemporaryFolder folder;
  const std::string seed =
      "WAFER ID,A\nSLOT,1\nMEAN,1.5\nSite #,Value,X,Y\n1,\"2,5\",3 # c\n,,,\nX;Y\tZ\r\n1e39 nan\n";
  std::mt19937 random(11);
  for (int repeat = 0; repeat < 3000; ++repeat) {
    std::string content = seed.substr(0, random() % (seed.size() + 1));
    for (std::size_t i = random() % 8; i > 0 && !content.empty(); --i) {
      const char byte =
          repeat % 2 == 0 ? seed[random() % seed.size()] : static_cast<char>(random() % 256);
      content[random() % content.size()] = byte;
    }
    ReadRequest request{.path = folder.Write("a", content), .skip_invalid = repeat % 3 == 0};
    if (repeat % 5 == 0) request.columns = "X,Y,Value";
    try {
      EXPECT_FALSE(Read(request).wafers.at(0).x.empty());
    } catch (const DataError& error) {
      EXPECT_EQ(std::string_view(error.what()).find_first_of("\n\r\t\x1B"), std::string::npos);
    }
  }
}

TEST(SkipReport, TellsTheCountsAndTheFirstOfEachReason) {
  struct ReportCase {
    std::vector<SkippedRows> skipped;
    bool binary;
    const char* report;
  };
  const ReportCase cases[] = {
      {{}, false, ""},
      {{{Reason::Empty, 485, 12}},
       false,
       "dies.csv: left out 485 rows: 485 empty values (first on line 12)"},
      {{{Reason::Commented, 2, 3}},
       false,
       "dies.csv: left out 2 rows: 2 rows that begin with '#' (first on line 3)"},
      {{{Reason::TooFewColumns, 1, 3}},
       false,
       "dies.csv: left out 1 row: 1 row with too few columns (first on line 3)"},
      {{{Reason::Text, 2, 3}, {Reason::NotFinite, 1, 9}, {Reason::Empty, 1, 11}},
       false,
       "dies.csv: left out 4 rows: 2 texts in place of numbers (first on line 3), "
       "1 value that is not finite (first on line 9), 1 empty value (first on line 11)"},
      {{{Reason::NotFinite, 2, 7}},
       true,
       "dies.csv: left out 2 sites: 2 values that are not finite (first at site 7)"},
  };
  for (const ReportCase& test : cases) {
    Lot result;
    result.skipped = test.skipped;
    result.kind = test.binary ? FileKind::Binary : FileKind::Table;
    result.source = "dies.csv";
    EXPECT_EQ(SkipReport(result), test.report);
  }
}

}  // namespace
}  // namespace discoplan::data
