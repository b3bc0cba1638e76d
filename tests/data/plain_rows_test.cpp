// SPDX-License-Identifier: MIT
// Ordinary rows and numbers are read in a shorter way, with the results of the general one.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <random>
#include <set>
#include <sstream>

#include "data/fields.h"
#include "data/number_text.h"
#include "data/plain_rows.h"
#include "data/repeats.h"
#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

/// A text of some of the characters of `alphabet`.
std::string AnyText(std::string_view alphabet, std::size_t longest, std::mt19937& random) {
  std::string text(random() % (longest + 1), ' ');
  for (char& c : text) c = alphabet[random() % alphabet.size()];
  return text;
}

/// The same number in the general way, for which a blank is enough.
ParsedNumber Generally(const std::string& text) { return ParseNumber(' ' + text); }

void ExpectSameNumber(const std::string& text) {
  const ParsedNumber plain = ParseNumber(text);
  const ParsedNumber general = Generally(text);
  EXPECT_EQ(plain.fault, general.fault) << text;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(plain.value), std::bit_cast<std::uint64_t>(general.value))
      << text;
  EXPECT_EQ(std::bit_cast<std::uint32_t>(plain.narrowed),
            std::bit_cast<std::uint32_t>(general.narrowed))
      << text;
  EXPECT_EQ(plain.decimal_mark, general.decimal_mark) << text;
  EXPECT_EQ(plain.may_group, general.may_group) << text;
}

TEST(PlainNumbers, AreTheNearestDoubles) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200'000; ++i) {
    std::string text = std::to_string(random() % 10'000'000'000'000'000);
    text.erase(0, random() % text.size());  // zeros at the start stay
    const std::size_t point = random() % (text.size() + 1);
    if (point < text.size()) text.insert(point, ".");
    ExpectSameNumber((random() % 2 == 0 ? "-" : "") + text);
  }
}

TEST(PlainNumbers, EndWhereTheGeneralWayBegins) {
  for (const char* text : {"0",
                           "-0",
                           "-0.0",
                           "00.50",
                           "999999999999999",
                           "1000000000000000",
                           "9999999999999999",
                           "9007199254740993",
                           "99999999999999.9",
                           "9.99999999999999",
                           "9.999999999999999",
                           "0.00000000000001",
                           "0.000000000000001",
                           "0.0000000000000001",
                           "",
                           "-",
                           ".",
                           "-.",
                           "1.",
                           ".1",
                           "-.1",
                           "1.2.3",
                           "1-2",
                           "--1",
                           "1,5",
                           "1e5",
                           "1.5e-3",
                           "0x1",
                           "nan",
                           "1 2"}) {
    ExpectSameNumber(text);
  }
  std::mt19937 random(2);
  for (const char* alphabet : {"0123456789.-,e", "0123456789.", "09./:\x80\xAE\xB0\xB9\xFF"}) {
    for (int i = 0; i < 100'000; ++i) ExpectSameNumber(AnyText(alphabet, 19, random));
    for (int i = 0; i < 100'000; ++i) ExpectSameNumber(AnyText(alphabet, 9, random));
  }
}

TEST(PlainRows, HaveTheFieldsOfTheGeneralWay) {
  std::mt19937 random(3);
  for (int i = 0; i < 100'000; ++i) {
    const std::string line = AnyText("123.-a, ;\t\xAC\xBB", 24, random);
    for (const char separator : {',', ';', '\t', ' '}) {
      // A field in quotes, which only the general way reads.
      const std::string quoted = line + separator + "\"\"";
      std::vector<std::string_view> plain, general;
      ASSERT_EQ(SplitFields(line, {separator}, plain), 0u);
      ASSERT_EQ(SplitFields(quoted, {separator}, general), 0u);
      ASSERT_EQ(general.back(), "");
      general.pop_back();
      ASSERT_EQ(plain, general) << '\'' << line << "' at '" << separator << '\'';
    }
  }
}

TEST(PlainRows, EndInAnyMixtureOfWays) {
  const TemporaryFolder folder;
  std::mt19937 random(4);
  for (int round = 0; round < 20; ++round) {
    std::string mixed, even;
    for (int row = 0; row < 6000; ++row) {  // some blocks' worth
      const std::string sites = std::to_string(row) + ",2," + std::to_string(random() % 100);
      const std::array<const char*, 3> ends = {"\n", "\r", "\r\n"};
      mixed += sites + ends[row % 500 < 250 ? random() % 3 : static_cast<unsigned>(round % 3)];
      even += sites + '\n';
    }
    ReadRequest request;
    request.path = folder.Write("mixed.csv", mixed);
    const std::string outcome = Outcome(request);
    request.path = folder.Write("even.csv", even);
    ASSERT_EQ(outcome, Outcome(request)) << round;
  }
}

/// Numbers as texts, each of the digits, signs and marks that a plain one may have.
std::string PlainNumber(char mark, std::mt19937& random) {
  std::string text = AnyText("0123456789", 7, random) + std::to_string(random() % 10);
  if (random() % 3 > 0) text += mark + AnyText("0123456789", 6, random) + "5";
  return (random() % 2 == 0 ? "-" : "") + text;
}

TEST(PlainRows, AreReadWithTheNumbersOfTheGeneralWay) {
  const RowShape shape = {{1, 3, {4, 5}}, {}, 6, 8, 1, {0}};
  std::mt19937 random(8);
  std::vector<std::string_view> fields;
  for (int i = 0; i < 100'000; ++i) {
    const char separator = ",;\t"[i % 3];
    const char mark = separator != ',' && i % 2 == 0 ? ',' : '.';
    const auto number = [&] { return separator + PlainNumber(mark, random); };
    std::string line = std::to_string(i) + number() + separator + "A1" + number() + number() +
                       number() + (i % 5 == 0 ? std::string(1, separator) : "") +
                       (i % 7 == 0 ? separator + std::string("any text") : "");
    PlainRows rows(shape, {separator}, {2});
    ASSERT_FALSE(rows.Read(line, mark)) << "before there is a row to follow";
    ASSERT_EQ(SplitFields(line, {separator}, fields), 0u);
    rows.Follow(fields);
    ASSERT_TRUE(rows.Read(line, mark)) << line;
    const std::size_t used[] = {1, 3, 4, 5};
    for (std::size_t k = 0; k < 4; ++k) {
      const double expected = ParseNumber(fields[used[k]]).value;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(rows.numbers()[k]),
                std::bit_cast<std::uint64_t>(expected))
          << fields[used[k]];
    }
  }
}

TEST(PlainRows, AreLeftToTheGeneralWayIfThereIsAnyDoubt) {
  const RowShape shape = {{1, 2, {3}}, {}, 5, 6, 1, {0}};
  const std::string line = "7,1,2.5,-3,A,free";
  PlainRows rows(shape, {','}, {4});
  std::vector<std::string_view> fields;
  SplitFields(line, {','}, fields);
  rows.Follow(fields);
  EXPECT_TRUE(rows.Read(line, '.'));
  EXPECT_TRUE(rows.Read("7,1,2.5,-3,A", '.'));
  EXPECT_TRUE(rows.Read("7,1,2.5,-3,A,", '.'));
  EXPECT_TRUE(rows.Read("7,123456789,2.123456789012,-3,A,", '.'));
  EXPECT_FALSE(rows.Read(line, 0)) << "no mark is known yet";
  EXPECT_TRUE(rows.Read("7,1,25,-3,A,free", 0));
  for (const char* other : {"7,1,2.5,-3",
                            "7,1,2.5,-3,B,free",
                            "7,1,2.5,-3,A ,free",
                            "7,1,2.5,-3,A,free,",
                            "",
                            "7,1,2.5,-3,A,\"free\"",
                            "7,1,2.5,-3,A, \"free\"",
                            "Mean,1,2.5,-3,A,",
                            ",1,2.5,-3,A,",
                            "7,1,2.5,,A,",
                            "7,1,2.5,-,A,",
                            "7,+1,2.5,-3,A,",
                            "7, 1,2.5,-3,A,",
                            "7,1 ,2.5,-3,A,",
                            "7,1,2.5,-3e0,A,",
                            "7,1,.5,-3,A,",
                            "7,1,5.,-3,A,",
                            "7,1,2.5.5,-3,A,",
                            "7,1,2.5,--3,A,",
                            "7,1,2.5,nan,A,",
                            "7,1,1234567890123456,-3,A,",
                            "7,1"}) {
    EXPECT_FALSE(rows.Read(other, '.')) << other;
  }
  PlainRows twice({{1, 2, {2}}, {}, 4, 6, 1, {}}, {','}, {});  // a column for two purposes
  twice.Follow(fields);
  EXPECT_FALSE(twice.Read(line, '.'));
  PlainRows blanks(shape, {' '}, {});  // of which several are one separator
  blanks.Follow(fields);
  EXPECT_FALSE(blanks.Read("7 1 2.5 -3 A free", '.'));
}

/// A table of plain rows and of every other kind, with one row to a line.
std::vector<std::string> AnyTable(std::mt19937& random) {
  const char separator = ",;\t"[random() % 3];
  const char mark = separator != ',' && random() % 2 == 0 ? ',' : '.';
  const bool has_site = random() % 2 == 0;
  const bool has_slot = random() % 2 == 0;
  const auto joined = [&](const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields)
      line += (line.empty() ? "" : std::string(1, separator)) + field;
    return line;
  };
  std::vector<std::string> head = {"X", "Y", "Thickness"};
  if (has_site) head.insert(head.begin(), "Site");
  if (has_slot) head.push_back("Slot");
  std::vector<std::string> lines = {joined(head)};
  const unsigned oddities = random() % 4 == 0 ? 0 : random() % 3 == 0 ? 4 : 40;
  std::string slot = "1";
  for (int row = 0; row < 60; ++row) {
    std::vector<std::string> fields;
    const auto decimal = [&](std::string text) {
      std::replace(text.begin(), text.end(), '.', mark);
      return text;
    };
    const auto number = [&](int most) {
      return decimal(
          std::to_string((static_cast<double>(random() % 20'000) - 10'000) / 1e4 * most));
    };
    for (const int most : {150, 150, 900}) {
      fields.push_back(number(most));
      if (random() % 3 == 0) fields.back() += "25";  // more than eight digits
    }
    if (has_site) fields.insert(fields.begin(), std::to_string(row + 1));
    if (has_slot) fields.push_back(slot);
    if (oddities > 0 && random() % oddities == 0) {
      std::string& field = fields[random() % fields.size()];
      const std::string odd[] = {'+' + number(90),
                                 ' ' + field,
                                 field + "  ",
                                 '"' + field + '"',
                                 decimal("1.5e1"),
                                 "nan",
                                 "",
                                 "-",
                                 "1e99",
                                 "1.5",
                                 "1,5",
                                 "\"open",
                                 "Mean",
                                 "\xB5",
                                 "1.2.3",
                                 decimal(".5"),
                                 std::string(1, separator),
                                 "# no comment",
                                 "0x10",
                                 "-0"};
      field = odd[random() % std::size(odd)];
      if (random() % 8 == 0) slot += '1';
    }
    lines.push_back(joined(fields));
    if (oddities == 0) continue;
    if (random() % 9 == 0) lines.back() += separator;
    if (random() % 30 == 0) lines.push_back(random() % 2 == 0 ? "" : "# a comment");
    if (random() % 60 == 0) lines.push_back(std::string(4, separator));
  }
  return lines;
}

/// All that comes of a table as one text.
std::string WholeOutcome(const ReadRequest& request, const std::string& table) {
  std::istringstream stream(table);
  std::string text;
  try {
    const Lot lot = Read(request, stream);
    for (const Wafer& wafer : lot.wafers) {
      text += wafer.name + ", " + wafer.SitesText() + ": " + Sites(wafer) + '\n';
    }
    for (const SkippedRows& rows : lot.skipped) {
      text += std::to_string(static_cast<int>(rows.reason)) + ' ' + std::to_string(rows.count) +
              ' ' + std::to_string(rows.first) + '\n';
    }
    for (const std::string& warning : lot.warnings) text += warning + '\n';
  } catch (const DataError& error) {
    text = error.what();
  }
  return text;
}

/// Behind a blank, no row is plain.
TEST(PlainRows, AmongOthersGiveTheSitesAndErrorsOfTheGeneralWay) {
  std::mt19937 random(9);
  int with_sites = 0;
  int refused = 0;
  for (int round = 0; round < 1000; ++round) {
    const std::vector<std::string> lines = AnyTable(random);
    const char* end = round % 3 == 0 ? "\r\n" : "\n";
    std::string plain, general;
    for (const std::string& line : lines) {
      plain += line + end;
      general += ' ' + line + end;
    }
    ReadRequest request;
    request.path = "table.csv";
    request.columns = "X,Y,Thickness";
    request.skip_invalid = random() % 4 != 0;
    if (random() % 3 == 0) request.unit = LengthUnit::Centimetre;
    if (random() % 3 == 0 && lines[0].ends_with("Slot")) request.by = {"Slot"};
    if (random() % 5 == 0) request.most_sites = 50;
    const std::string outcome = WholeOutcome(request, plain);
    ASSERT_EQ(outcome, WholeOutcome(request, general)) << round << '\n' << plain;
    ++(outcome.starts_with("table.csv:") ? refused : with_sites);
  }
  EXPECT_GT(with_sites, 300);
  EXPECT_GT(refused, 300);
}

TEST(RepeatedSites, AreThoseOfASet) {
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    const unsigned places = round % 3 == 0 ? 8 : round % 3 == 1 ? 60 : 40000;
    std::vector<float> x, y;
    std::set<std::pair<float, float>> seen;
    for (int i = 0; i < 2000; ++i) {
      x.push_back((random() % 2 == 0 ? 1.0F : -1.0F) * static_cast<float>(random() % places));
      y.push_back(static_cast<float>(random() % places) / 7);
      seen.emplace(x.back(), y.back());  // a negative zero is a zero
    }
    ASSERT_EQ(RepeatedSites(x, y), x.size() - seen.size()) << round;
  }
}

/// Long lines are cut by 64 characters; the separators may stand anywhere.
TEST(PlainRows, OfAnyLengthHaveTheFieldsOfTheGeneralWay) {
  std::mt19937 random(6);
  for (int i = 0; i < 20'000; ++i) {
    const std::string line = AnyText(i % 2 == 0 ? "1,.; 5" : "12345678,", 300, random);
    const std::string quoted = line + ",\"\"";
    std::vector<std::string_view> plain, general;
    ASSERT_EQ(SplitFields(line, {','}, plain), 0u);
    ASSERT_EQ(SplitFields(quoted, {','}, general), 0u);
    general.pop_back();
    ASSERT_EQ(plain, general) << line;
  }
}

}  // namespace
}  // namespace discoplan::data
