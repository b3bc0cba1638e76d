// SPDX-License-Identifier: MIT
// Scenes drawn with the desktop platform's graphics device interface, and the pixels it gave.

#include <gtest/gtest.h>
#include <png.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "tests/places.h"

namespace discoplan {
namespace {

const std::string kScenes = TestData("raster/scenes/");

struct Call {
  std::string name;
  std::vector<std::int32_t> arguments;
};

struct Scene {
  std::string name;
  int width;
  int height;
  std::vector<Call> calls;
};

void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.name; }

/// Blocks of "scene NAME WIDTH HEIGHT", "CALL COUNT ARGUMENTS" a line, "end 0".
std::vector<Scene> ReadScenes() {
  std::vector<Scene> scenes;
  std::ifstream file(kScenes + "scenes.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "scene") {
      Scene& scene = scenes.emplace_back();
      words >> scene.name >> scene.width >> scene.height;
    } else if (word != "end") {
      std::size_t count = 0;
      words >> count;
      std::vector<std::int32_t> arguments(count);
      for (std::int32_t& argument : arguments) words >> argument;
      EXPECT_FALSE(words.fail()) << line;
      scenes.back().calls.push_back({word, std::move(arguments)});
    }
  }
  return scenes;
}

std::vector<Pixel> ReadPng(const Scene& scene) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  std::vector<Pixel> pixels;
  if (png_image_begin_read_from_file(&image, (kScenes + scene.name + ".png").c_str()) == 0) {
    ADD_FAILURE() << image.message;
    return pixels;
  }
  EXPECT_EQ(static_cast<int>(image.width), scene.width);
  EXPECT_EQ(static_cast<int>(image.height), scene.height);
  image.format = PNG_FORMAT_RGBA;
  std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
  EXPECT_NE(png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr), 0) << image.message;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    const auto channel = [&](std::size_t k) { return Pixel{bytes[i + k]}; };
    pixels.push_back(channel(3) << 24 | channel(0) << 16 | channel(1) << 8 | channel(2));
  }
  return pixels;
}

/// From 0x00BBGGRR.
Pixel PixelOf(std::int32_t colour) {
  const auto bits = static_cast<Pixel>(colour);
  return 0xFF000000 | (bits & 0xFF) << 16 | (bits & 0xFF00) | bits >> 16;
}

class Painter {
 public:
  Painter(int width, int height) : canvas_(width, height, PixelOf(0)) {}

  void Draw(const Call& call) {
    static const std::map<std::string, void (Painter::*)(const Arguments&)> kCalls = {
        {"cls", &Painter::Cls},
        {"fore", &Painter::Fore},
        {"fill", &Painter::Fill},
        {"fillstyle", &Painter::FillStyle},
        {"drawstyle", &Painter::DrawStyle},
        {"width", &Painter::DrawWidth},
        {"polygon", &Painter::Polygon},
        {"line", &Painter::Line},
        {"rect", &Painter::Rectangle},
        {"fillrect", &Painter::FilledBox},
        {"ellipse", &Painter::Ellipse},
        {"arc", &Painter::Arc},
        {"flood", &Painter::Flood},
    };
    const auto found = kCalls.find(call.name);
    ASSERT_NE(found, kCalls.end()) << call.name;
    (this->*found->second)(call.arguments);
  }

  const Canvas& Picture() const { return canvas_; }

 private:
  using Arguments = std::vector<std::int32_t>;

  /// The scenes' boxes leave out their right and bottom.
  static PixelBox Box(const Arguments& a) { return {a[0], a[1], a[2] - 1, a[3] - 1}; }
  static bool IsEmpty(const Arguments& a) { return a[0] == a[2] || a[1] == a[3]; }

  void Cls(const Arguments& a) { canvas_.Clear(PixelOf(a[0])); }
  void Fore(const Arguments& a) { pen_.pixel = PixelOf(a[0]); }
  void Fill(const Arguments& a) { brush_.pixel = PixelOf(a[0]); }
  void FillStyle(const Arguments& a) { brush_.visible = a[0] == 0; }
  void DrawStyle(const Arguments& a) { pen_.visible = a[0] != 5; }
  void DrawWidth(const Arguments& a) { pen_.width = a[0]; }
  void Polygon(const Arguments& a) {
    std::vector<PixelPoint> points;
    for (std::size_t i = 0; i < a.size(); i += 2) points.push_back({a[i], a[i + 1]});
    canvas_.Polygon(points, pen_, brush_);
  }
  void Line(const Arguments& a) {
    Pen pen = pen_;
    pen.pixel = PixelOf(a[4]);
    canvas_.Line({a[0], a[1]}, {a[2], a[3]}, pen);
  }
  void Rectangle(const Arguments& a) {
    if (!IsEmpty(a)) canvas_.Rectangle(Box(a), pen_, brush_);
  }
  void FilledBox(const Arguments& a) {
    if (!IsEmpty(a)) canvas_.FillBox(Box(a), PixelOf(a[4]));
  }
  void Ellipse(const Arguments& a) { canvas_.Ellipse(Box(a), pen_, brush_); }
  void Arc(const Arguments& a) { canvas_.Arc(Box(a), {a[4], a[5]}, {a[6], a[7]}, pen_); }
  void Flood(const Arguments& a) { canvas_.FloodFill({a[0], a[1]}, PixelOf(a[2]), brush_); }

  Canvas canvas_;
  Pen pen_;
  Brush brush_;
};

std::string Differences(const Scene& scene, const Canvas& canvas,
                        const std::vector<Pixel>& expected) {
  std::ostringstream text;
  int count = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (canvas.Pixels()[i] == expected[i] || ++count > 10) continue;
    const auto columns = static_cast<std::size_t>(scene.width);
    text << "(" << std::dec << i % columns << ", " << i / columns << "): expected " << std::hex
         << expected[i] << ", got " << canvas.Pixels()[i] << "\n";
  }
  if (count > 10) text << std::dec << count << " differ in all\n";
  return text.str();
}

class PixelScenesTest : public testing::TestWithParam<Scene> {};

TEST_P(PixelScenesTest, GivesEveryPixel) {
  const Scene& scene = GetParam();
  Painter painter(scene.width, scene.height);
  for (const Call& call : scene.calls) painter.Draw(call);
  const std::vector<Pixel> expected = ReadPng(scene);
  ASSERT_EQ(painter.Picture().Pixels().size(), expected.size());
  EXPECT_EQ(Differences(scene, painter.Picture(), expected), "");
}

INSTANTIATE_TEST_SUITE_P(Scenes, PixelScenesTest, testing::ValuesIn(ReadScenes()),
                         [](const auto& test) { return test.param.name; });

TEST(PixelScenesFileTest, HoldsAllScenes) { EXPECT_EQ(ReadScenes().size(), 76u); }

}  // namespace
}  // namespace discoplan
