// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/fields.h"

#include <gtest/gtest.h>

namespace discoplan {
namespace {

class Fields : public testing::Test {
 protected:
  void Type(const char* text) { node_.Type(text); }

  Node node_{NodeKind::Text, "field", {}};
};

TEST_F(Fields, NumbersGiveWayToWhatTheyCameWith) {
  const struct {
    const char* typed;
    const char* decimal;
    const char* whole;
  } rows[] = {{"7", "7", "7"},         {"2.25", "2.25", "12.5"}, {"", "", ""},
              {"1,5", "1,5", "12.5"},  {"abc", "12.5", "12.5"},  {"1e3", "12.5", "12.5"},
              {"-", "12.5", "12.5"},   {"-3", "-3", "-3"},       {"1.2.3", "12.5", "12.5"},
              {"1d2", "12.5", "12.5"}, {" 8 ", " 8 ", " 8 "}};
  for (const auto& row : rows) {
    for (const auto filter : {NumberEntry::Filter::Decimal, NumberEntry::Filter::Whole}) {
      NumberEntry entry(node_, filter);
      entry.Open(12.5F);
      Type(row.typed);
      EXPECT_EQ(node_.Text(), filter == NumberEntry::Filter::Decimal ? row.decimal : row.whole)
          << row.typed;
    }
  }
}

TEST_F(Fields, NumbersAreKeptAsTheyAreTyped) {
  NumberEntry entry(node_, NumberEntry::Filter::Decimal);
  int changes = 0;
  entry.OnChange([&] { ++changes; });
  entry.Open(5);
  EXPECT_EQ(node_.Text(), "5");
  Type("2.5");
  EXPECT_EQ(entry.value(), 2.5F);
  Type("");
  EXPECT_EQ(entry.value(), 0);
  Type("x");
  EXPECT_EQ(entry.value(), 5);
  EXPECT_EQ(entry.opening(), 5);
  EXPECT_EQ(changes, 3);
}

TEST_F(Fields, AnglesStayWithinTheirRange) {
  const struct {
    const char* typed;
    const char* quarter;
    const char* turn;
    const char* strict;
  } rows[] = {{"45", "45", "45", "45"},    {"90", "90", "90", "90"},
              {"91", "90", "91", "91"},    {"100", "90", "100", "100"},
              {"359", "90", "359", "359"}, {"360", "90", "0", "30"},
              {"361", "30", "30", "30"},   {"-1", "30", "30", "30"},
              {"abc", "30", "30", "30"},   {"", "", "", ""},
              {"0", "0", "0", "0"},        {"1e1", "30", "30", "30"}};
  for (const auto& row : rows) {
    const std::pair<AngleEntry::Range, const char*> ranges[] = {
        {AngleEntry::kQuarter, row.quarter},
        {AngleEntry::kTurn, row.turn},
        {AngleEntry::kStrictTurn, row.strict}};
    for (const auto& [range, expected] : ranges) {
      AngleEntry entry(node_, range);
      entry.Open(30);
      Type(row.typed);
      EXPECT_EQ(node_.Text(), expected) << row.typed << " up to " << range.largest;
      EXPECT_EQ(entry.value(), static_cast<int>(NumberIn(node_))) << row.typed;
    }
  }
}

TEST_F(Fields, AnglesThatAreAcceptedAreShown) {
  AngleEntry entry(node_, AngleEntry::kQuarter);
  std::vector<int> shown;
  entry.OnAngle([&] { shown.push_back(entry.value()); });
  entry.Open(91);  // as a property may hold
  Type("20");
  Type("");
  EXPECT_EQ(shown, (std::vector<int>{90, 20, 0}));
}

TEST_F(Fields, GroupsStandForValues) {
  Node node(NodeKind::Options, "group", {});
  OptionGroup group(node, {{"High", 1}, {"Auto", 2}, {"Low", 0}});
  EXPECT_EQ(node.Options(), (std::vector<std::string>{"High", "Auto", "Low"}));
  const std::pair<std::int16_t, int> rows[] = {{1, 0}, {2, 1}, {0, 2}, {9, 2}};
  for (const auto& [value, index] : rows) {
    group.Choose(value);
    EXPECT_EQ(node.Value(), index) << value;
  }
  node.Value(1);
  EXPECT_EQ(group.value(), 2);
}

}  // namespace
}  // namespace discoplan
