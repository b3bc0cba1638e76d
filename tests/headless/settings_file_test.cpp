// SPDX-License-Identifier: MIT
#include "hosts/headless/settings_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

#include "discoplan/base/numbers.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/controls/plot2d.h"
#include "hosts/headless/headless_host.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

class SettingsFile : public testing::Test {
 protected:
  SettingsFile() { plot_.InitProperties(); }

  std::string ErrorOf(const std::string& content) {
    try {
      ReadSettings(plot_, folder_.Write("settings.json", content));
    } catch (const FileError& error) {
      const std::string text = error.what();
      const std::string head = "cannot use '" + (folder_.path() / "settings.json").string() + "': ";
      return text.starts_with(head) ? text.substr(head.size()) : text;
    }
    return "none";
  }

  HeadlessHost host_;
  Plot2D plot_{host_};
  const TemporaryFolder folder_;
};

TEST_F(SettingsFile, ComesBackInAnotherControl) {
  plot_.WaferDiameter(300);
  plot_.TestDiameter(290.5F);
  plot_.Resolution(1.25F);
  plot_.IntervalColor(4, 0x0080FF);
  plot_.HideLegend(true);
  plot_.PlotCaption("Oxide \"A\" \u03BC");
  WriteSettings(plot_, folder_.path() / "a.json");
  Plot2D other(host_);
  ReadSettings(other, folder_.path() / "a.json");
  EXPECT_EQ(other.WaferDiameter(), 300);
  EXPECT_EQ(other.TestDiameter(), 290.5F);
  EXPECT_EQ(other.Resolution(), 1.25F);
  EXPECT_EQ(other.IntervalColor(4), 0x0080FFU);
  EXPECT_EQ(other.BackColor(), kButtonFace);
  EXPECT_TRUE(other.HideLegend());
  EXPECT_EQ(other.PlotCaption(), "Oxide \"A\" \u03BC");
}

TEST_F(SettingsFile, HoldsNumbersOfAnySize) {
  const auto bars = NewControl("Plot3DB", host_, nullptr);
  const Member& scale = bars->Members().At("BeamScale");
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::pair<float, const char*> rows[] = {
      {1e30F, "1e+30"},
      {-3.4028235e38F, "-3.4028235e+38"},
      {0.1F, "0.1"},
      {kInfinity, "\"Infinity\""},
      {-kInfinity, "\"-Infinity\""},
      {std::nanf(""), "\"NaN\""},
  };
  for (const auto& [value, text] : rows) {
    bars->InitProperties();
    scale.Set(*bars, Variant(value));
    WriteSettings(*bars, folder_.path() / "a.json");
    std::ifstream file(folder_.path() / "a.json");
    const std::string content(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(content.find(text + std::string(",")), std::string::npos) << text << content;
    bars->InitProperties();
    ReadSettings(*bars, folder_.path() / "a.json");
    const float back = scale.Get(*bars).AsFloat();
    EXPECT_TRUE(back == value || (std::isnan(back) && std::isnan(value))) << back;
  }
}

TEST_F(SettingsFile, NamesAColourThatCannotBeReadBack) {
  const std::string complaint =
      "IntervalColor3 of the Plot2D is a colour that can't be read back; give one of at most 24 "
      "bits";
  EXPECT_EQ(ErrorOf("{\"2DInterCol3\": 2147483647}"), complaint);
  EXPECT_EQ(plot_.IntervalColor(3), 0x00FF00U);
  plot_.IntervalColor(3, 0x7FFFFFFF);
  const auto file = folder_.path() / "a.json";
  try {
    WriteSettings(plot_, file);
    FAIL() << "no error";
  } catch (const FileError& error) {
    EXPECT_EQ(error.what(), "cannot write '" + file.string() + "': " + complaint);
  }
  EXPECT_FALSE(std::filesystem::exists(file));
}

/// What differs between writing and reading.
bool ComesBack(std::string_view control, std::string_view member) {
  const bool colours = control == "Plot3D" || control == "Plot3DB";
  return !(colours && member.starts_with("IntervalColor")) && !member.starts_with("LineEndPoint");
}

TEST_F(SettingsFile, KeepsExtremeValuesOfEachMember) {
  constexpr float kMost = std::numeric_limits<float>::max();
  const double values[] = {0,          -1,          1,     -32768, 32767, 0x7FFFFFFF, 0xFFFFFF,
                           0x80000000, 0xFFFFFFFFU, kMost, -kMost, 1e-45, 0.1,        16777217};
  const auto file = folder_.path() / "a.json";
  for (const ControlClass* row : ControlClasses()) {
    for (const StoredProperty& setting : row->SettingsWritten()) {
      const Member& member = *setting.member;
      if (member.type == Type::String || member.type == Type::Object) continue;
      for (const double value : values) {
        SCOPED_TRACE(std::string(row->name) + ' ' + std::string(member.name) + ' ' +
                     std::to_string(value));
        const auto control = row->make(host_, nullptr);
        control->InitProperties();
        if (!Attempt([&] { member.Set(*control, Variant(value)); })) continue;
        Variant held;
        if (!Attempt([&] { held = member.Get(*control); })) {
          EXPECT_EQ(member.type, Type::Rgb);
          EXPECT_THROW(WriteSettings(*control, file), FileError);
          continue;
        }
        ASSERT_NO_THROW(WriteSettings(*control, file));
        const auto other = row->make(host_, nullptr);
        ASSERT_NO_THROW(ReadSettings(*other, file));
        // What came back has passed through the property once more.
        member.Set(*control, held);
        if (ComesBack(row->name, member.name)) {
          EXPECT_EQ(member.Get(*other), member.Get(*control));
        }
      }
    }
  }
}

TEST_F(SettingsFile, IsReadByEachKindOfControlThatWroteIt) {
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string_view name = own_class->name;
    const auto control = NewControl(name, host_, nullptr);
    control->InitProperties();
    WriteSettings(*control, folder_.path() / "a.json");
    EXPECT_NO_THROW(ReadSettings(*control, folder_.path() / "a.json")) << name;
  }
}

TEST_F(SettingsFile, ThatCannotBeUsedLeavesTheControl) {
  plot_.Resolution(7);
  const std::pair<const char*, const char*> rows[] = {
      {"", "line 1 is no JSON"},
      {"{\n\"2DFLAT\": 2,\n", "line 3 is no JSON"},
      {"{\"StdResx2D\": 1e400}", "a number in it is out of a 64-bit float's range"},
      {"{\"StdResx2D\": [1]}", "'StdResx2D' is a list or object, not a number"},
      {"[1]", "it holds no object of keys and values"},
      {"{\"StdResx2D\": 3, \"StdResx9D\": 3}", "'StdResx9D' is no setting of a Plot2D; remove it"},
      {"{\"StdResx2D\": 3, \"2DFLAT\": \"flat\"}", "'2DFLAT' is \"flat\", not a number"},
      {"{\"StdResx2D\": 3, \"2DLegend\": 1}", "'2DLegend' is 1, not true or false"},
      {"{\"StdResx2D\": 3, \"2DCaption\": null}", "'2DCaption' is null, not a text"},
      {"{\"StdResx2D\": 3, \"2DMouseIcon\": 4}", "'2DMouseIcon' is 4, not null"},
      {"{\"StdResx2D\": 3, \"2DMousePointer\": 40000}",
       "a value doesn't fit its setting (Overflow)"},
      {"{\"StdResx2D\": 3, \"2DTESTDM\": 1e300}", "a value doesn't fit its setting (Overflow)"},
  };
  for (const auto& [content, error] : rows) {
    EXPECT_EQ(ErrorOf(content), error);
    EXPECT_EQ(plot_.Resolution(), 7) << content;
  }
  EXPECT_THROW(ReadSettings(plot_, folder_.path() / "none.json"), FileError);
  EXPECT_THROW(ReadSettings(plot_, folder_.path()), FileError);
}

TEST_F(SettingsFile, RefusesWhatAPropertyRefusesAloud) {
  const auto scan = NewControl("LineScan", host_, nullptr);
  scan->InitProperties();
  try {
    ReadSettings(*scan, folder_.Write("a.json", "{\"RotAngle\": 400}"));
    FAIL() << "no error";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("Angle value must be between 0 and 359"),
              std::string::npos);
  }
}

}  // namespace
}  // namespace discoplan
