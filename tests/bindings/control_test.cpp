// SPDX-License-Identifier: MIT
// The nine controls by name, through the C interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <thread>
#include <vector>

#include "tests/bindings/handles.h"

namespace {

struct Heard {
  std::vector<std::string> events;
  discoplan_control* control = nullptr;
};

extern "C" void Hear(void* context, const char* event, const discoplan_value* args, int64_t count) {
  auto& heard = *static_cast<Heard*>(context);
  std::string text = event;
  for (int64_t i = 0; i < count; ++i)
    text += ' ' + std::to_string(static_cast<int>(args[i].number));
  heard.events.push_back(text);
  if (heard.control != nullptr) discoplan_free(heard.control);  // in the midst of its own event
}

discoplan_value NumberValue(double number) {
  discoplan_value value{};
  value.type = DISCOPLAN_DOUBLE;
  value.number = number;
  return value;
}

/// The arrays must outlive them.
std::array<discoplan_value, 3> ArraysOf(const Ramp& ramp) {
  std::array<discoplan_value, 3> args{};
  const std::array<const std::vector<float>*, 3> arrays = {&ramp.x, &ramp.y, &ramp.value};
  for (std::size_t i = 0; i < 3; ++i) {
    args[i].type = DISCOPLAN_NUMBERS;
    args[i].lower = 1;
    args[i].numbers = arrays[i]->data();
    args[i].count = static_cast<int64_t>(arrays[i]->size());
  }
  return args;
}

void Load(discoplan_control* plot) {
  discoplan_value value = NumberValue(300);
  ASSERT_EQ(discoplan_control_set(plot, "WaferDiameter", &value), DISCOPLAN_OK);
  const Ramp ramp;
  std::array<discoplan_value, 3> args = ArraysOf(ramp);
  ASSERT_EQ(discoplan_control_call(plot, "SetWaferData", args.data(), 3, &value), DISCOPLAN_OK)
      << discoplan_error();
  ASSERT_EQ(value.number, 0);
}

TEST(CControl, HasItsMembersByName) {
  discoplan_control* plot = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &plot), DISCOPLAN_OK) << discoplan_error();
  const Ramp ramp;
  Load(plot);
  discoplan_value value{};
  std::array<discoplan_value, 3> args = ArraysOf(ramp);
  ASSERT_EQ(discoplan_control_call(plot, "Plot", nullptr, 0, nullptr), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_get(plot, "Maximum", &value), DISCOPLAN_OK);
  EXPECT_EQ(static_cast<float>(value.number),
            *std::max_element(ramp.value.begin(), ramp.value.end()));
  ASSERT_EQ(discoplan_control_get(plot, "PlotCaption", &value), DISCOPLAN_OK);
  EXPECT_EQ(value.type, DISCOPLAN_TEXT);
  ASSERT_EQ(discoplan_control_call(plot, "GetWaferData", args.data(), 3, &value), DISCOPLAN_OK)
      << discoplan_error();
  EXPECT_EQ(args[2].count, static_cast<int64_t>(ramp.value.size()));
  EXPECT_EQ(args[2].numbers[5], ramp.value[5]);

  EXPECT_EQ(discoplan_control_get(plot, "Nothing", &value), DISCOPLAN_NO_MEMBER);
  value.type = DISCOPLAN_TEXT;
  value.text = "wide";
  EXPECT_EQ(discoplan_control_set(plot, "TestDiameter", &value), DISCOPLAN_BAD_TYPE);
  EXPECT_STREQ(discoplan_error(), "TestDiameter: Type mismatch");
  EXPECT_EQ(discoplan_control_call(plot, "Plot", args.data(), 1, nullptr), DISCOPLAN_BAD_ARGUMENT);
  discoplan_free(plot);
}

TEST(CControl, PrintsItselfOnAPage) {
  discoplan_control* plot = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot3D", 400, 300, &plot), DISCOPLAN_OK);
  discoplan_picture* page = nullptr;
  EXPECT_EQ(discoplan_control_print(plot, 0, 0, &page), DISCOPLAN_BAD_DATA);
  EXPECT_STREQ(discoplan_error(), "there is nothing to print: the control has no data");
  EXPECT_EQ(page, nullptr);
  Load(plot);
  ASSERT_EQ(discoplan_control_print(plot, 0, 0, &page), DISCOPLAN_OK) << discoplan_error();
  const auto svg = [&] {
    const uint8_t* bytes = nullptr;
    int64_t count = 0;
    EXPECT_EQ(discoplan_picture_encode(page, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
    return std::string(bytes, bytes + count);
  };
  EXPECT_NE(svg().find("width=\"300pt\" height=\"225pt\""), std::string::npos);
  discoplan_free(page);
  ASSERT_EQ(discoplan_control_print(plot, 254, 127, &page), DISCOPLAN_OK) << discoplan_error();
  EXPECT_NE(svg().find("width=\"720pt\" height=\"360pt\""), std::string::npos);
  discoplan_free(page);
  EXPECT_EQ(discoplan_control_print(plot, 10, 127, &page), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_STREQ(discoplan_error(), "a width in mm takes 20 to 2000");
  // Small as it may be without its legend, it prints nothing.
  discoplan_value hidden = NumberValue(-1);
  ASSERT_EQ(discoplan_control_set(plot, "HideLegend", &hidden), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_resize(plot, 100, 100), DISCOPLAN_OK);
  EXPECT_EQ(discoplan_control_print(plot, 0, 0, &page), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_STREQ(discoplan_error(),
               "the control is too small to be printed, for which it takes 167 x 117 pixels");
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
  ASSERT_EQ(discoplan_control_picture(plot, &page), DISCOPLAN_OK);
  EXPECT_EQ(discoplan_picture_encode(page, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_STREQ(discoplan_error(),
               "a control's picture has pixels alone; print the control instead");
  discoplan_free(page);
  discoplan_free(plot);
}

TEST(CControl, TellsItsEvents) {
  discoplan_control* plot = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &plot), DISCOPLAN_OK);
  Heard heard;
  ASSERT_EQ(discoplan_control_listen(plot, Hear, &heard), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_mouse(plot, nullptr, "MouseDown", 1, 0, 20, 30), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_mouse(plot, nullptr, "Click", 0, 0, 0, 0), DISCOPLAN_OK);
  EXPECT_EQ(heard.events, (std::vector<std::string>{"MouseDown 1 0 20 30", "Click"}));
  EXPECT_EQ(discoplan_control_mouse(plot, nullptr, "KeyDown", 0, 0, 0, 0), DISCOPLAN_NO_MEMBER);
  EXPECT_EQ(discoplan_control_mouse(plot, "nobody", "Click", 0, 0, 0, 0), DISCOPLAN_NO_MEMBER);
  heard.control = plot;
  EXPECT_EQ(discoplan_control_mouse(plot, nullptr, "Click", 0, 0, 0, 0), DISCOPLAN_OK);
  EXPECT_EQ(discoplan_control_resize(plot, 100, 100), DISCOPLAN_BAD_HANDLE);
}

TEST(CThreads, KeepWhatTheyAreGivenByAControl) {
  discoplan_control* control = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &control), DISCOPLAN_OK);
  const std::string first(100, 'a'), second(100, 'b');
  const auto captioned = [&](const std::string& text) {
    discoplan_value value{};
    value.type = DISCOPLAN_TEXT;
    value.text = text.c_str();
    EXPECT_EQ(discoplan_control_set(control, "PlotCaption", &value), DISCOPLAN_OK);
    EXPECT_EQ(discoplan_control_get(control, "PlotCaption", &value), DISCOPLAN_OK);
    return value.text;
  };
  const char* const given = captioned(first);
  std::thread([&] { EXPECT_EQ(captioned(second), second); }).join();
  EXPECT_EQ(given, first);
  discoplan_free(control);
}

}  // namespace
