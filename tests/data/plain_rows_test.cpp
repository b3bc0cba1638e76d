// SPDX-License-Identifier: MIT
// Ordinary rows and numbers are read in a shorter way, with the results of the general one.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <random>
#include <set>

#include "data/fields.h"
#include "data/number_text.h"
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
