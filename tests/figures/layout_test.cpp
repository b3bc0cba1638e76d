// SPDX-License-Identifier: MIT
// No text of a figure lies on another or is cut, whatever the page, the data and the words.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "discoplan/figures/lot_figure.h"
#include "discoplan/figures/ticks.h"
#include "discoplan/figures/wafer_figure.h"

namespace discoplan::figures {
namespace {

/// Letters of different widths, as wide as those of a sans serif.
class PlainMeasure final : public TextMeasure {
 public:
  double Width(std::string_view text, double size, bool bold) const override {
    double width = 0;
    for (const char c : text) {
      if ((c & 0xC0) == 0x80) continue;
      width += c == ' ' || c == '.' || c == 'i' ? 0.28 : c == 'm' || c == 'W' ? 0.9 : 0.56;
    }
    return width * size * (bold ? 1.08 : 1);
  }
};

struct Scene {
  std::vector<float> x, y, value;
  WaferPlot plot;
  Style style;
  PlotKind kind = PlotKind::Map;
};

std::string RandomText(std::mt19937& random, int most) {
  static const std::vector<std::string> kWords = {
      "Oxide", "thickness", "WWWW", "\u00B5m", "slot 7", "a", "Long-term-repeatability"};
  std::string text;
  for (int i = static_cast<int>(random() % static_cast<unsigned>(most + 1)); i > 0; --i) {
    text += kWords[random() % kWords.size()] + " ";
  }
  return text;
}

Scene RandomScene(unsigned seed) {
  std::mt19937 random(seed);
  const auto uniform = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  Scene scene;
  static constexpr int kCounts[] = {1, 2, 5, 13, 49, 49, 121, 400};
  const double radius = random() % 2 == 0 ? 100 : 150;
  const double level = std::pow(10, uniform(-5, 7)) * (random() % 3 == 0 ? -1 : 1);
  const double spread = std::abs(level) * std::pow(10, uniform(-6, 0.5));
  const double half = random() % 4 == 0 ? 0.4 : 1;  // sites on a part of the wafer alone
  for (int i = kCounts[random() % 8]; i > 0; --i) {
    const double r = radius * 0.97 * std::sqrt(uniform(0, 1)) * half;
    const double angle = uniform(0, 6.283);
    scene.x.push_back(static_cast<float>(r * std::cos(angle)));
    scene.y.push_back(static_cast<float>(r * std::sin(angle)));
    scene.value.push_back(static_cast<float>(level + spread * uniform(-1, 1)));
  }
  scene.kind = static_cast<PlotKind>(random() % 9);
  WaferPlot& plot = scene.plot;
  plot.diameter = 2 * radius;
  plot.title = RandomText(random, 9);
  plot.quantity = RandomText(random, 5);
  plot.unit = random() % 3 == 0 ? RandomText(random, 2) : "nm";
  plot.left_out = random() % 3 == 0 ? RandomText(random, 6) : "";
  plot.notch = static_cast<Side>(random() % 4);
  plot.orientation = static_cast<Orientation>(random() % 3);
  plot.edge_exclusion = uniform(0, 10);
  if (random() % 4 == 0) plot.low = level - spread, plot.high = level + 0.3 * spread;
  if (random() % 4 == 0) plot.upper_control = level + 1.5 * spread;
  if (random() % 3 == 0) plot.cut = Cut{{uniform(-90, 90), uniform(-90, 90)}, {5, 7}};
  Style& style = scene.style;
  // What pictures of 300 to 4000 pixels are in points, and the sides of pages.
  style.width = uniform(170, 900);
  style.height = uniform(130, 900);
  style.letters = uniform(6, 14);
  style.bands = random() % 2 == 0 ? 0 : static_cast<int>(2 + random() % 20);
  style.site_values = random() % 3 == 0;
  style.dark = random() % 2 == 0;
  static const char* const kColours[] = {"viridis", "vik", "classic", "grey_r"};
  style.colours = *FindColourMap(kColours[random() % 4]);
  style.interpolation = random() % 4 == 0 ? Interpolation::Idw4 : Interpolation::Smooth;
  return scene;
}

/// Looks at every pair; the number of texts.
int CheckTexts(const Figure& figure, const TextMeasure& measure, const std::string& where) {
  std::vector<const TextShape*> shown;
  for (const Shape& shape : figure.shapes) {
    if (const auto* text = std::get_if<TextShape>(&shape)) shown.push_back(text);
  }
  const Box page = {0, 0, figure.width, figure.height};
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const TextShape& a = *shown[i];
    EXPECT_TRUE(page.Holds(a.box)) << where << ": '" << a.text << "' is cut";
    EXPECT_GE(a.box.Width() + a.box.Height(), measure.Width(a.text, a.size, a.bold) - 1e-9);
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_FALSE(a.box.Meets(shown[j]->box))
          << where << ": '" << a.text << "' on '" << shown[j]->text << "'";
    }
  }
  return static_cast<int>(shown.size());
}

TEST(FigureLayout, KeepsTextsApartAndOnThePage) {
  const PlainMeasure measure;
  int texts = 0;
  std::array<int, 9> of_kind = {};
  for (unsigned seed = 1; seed <= 500; ++seed) {
    Scene scene = RandomScene(seed);
    scene.plot.sites = {scene.x, scene.y, scene.value};
    scene.style.small = seed % 10 == 0;
    ++of_kind[static_cast<std::size_t>(scene.kind)];
    texts += CheckTexts(MakeFigure(scene.kind, scene.plot, scene.style, measure), measure,
                        "seed " + std::to_string(seed));
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(texts, 500 * 5);
  for (const int count : of_kind) EXPECT_GT(count, 30);
}

// Sheets, covers, galleries and pages of wafers, of one wafer to some cassettes.
TEST(FigureLayout, KeepsTextsOfLotsApartAndOnThePage) {
  const PlainMeasure measure;
  int texts = 0;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    std::mt19937 random(seed);
    const std::size_t count = std::array<std::size_t, 6>{1, 2, 5, 13, 25, 60}[seed % 6];
    std::vector<Scene> scenes;
    for (unsigned i = 0; i < count; ++i) scenes.push_back(RandomScene(1000 * seed + i));
    LotPlot lot;
    for (Scene& scene : scenes) {
      scene.plot.sites = {scene.x, scene.y, scene.value};
      if (random() % 5 == 0) scene.plot.flag = "mean and sigma";
      lot.wafers.push_back(scene.plot);
      lot.labels.push_back(random() % 3 == 0 ? RandomText(random, 2)
                                             : std::to_string(lot.wafers.size()));
      lot.table.rows.push_back({{scene.plot.title, "49", "1.234", "12345.678", "0.1"}});
    }
    lot.table.titles = {"Wafer", "Sites", "Mean", RandomText(random, 3), "s"};
    lot.table.rows.push_back({.texts = {"Sigma between wafers", "", "1.5"}, .total = true});
    lot.title = RandomText(random, 9);
    lot.facts = {RandomText(random, 9), RandomText(random, 4)};
    for (int i = 0; i < 5; ++i) lot.notes.push_back(RandomText(random, 9));
    lot.label_title = RandomText(random, 3);
    Style style = scenes.front().style;
    style.width = std::max(style.width, 300.0);
    const auto kind = static_cast<PlotKind>(seed % 9);
    const std::string where = "seed " + std::to_string(seed);
    const std::size_t first = count > kWafersOnPage && seed % 2 == 0 ? kWafersOnPage : 0;
    texts += CheckTexts(MakeLotSheet(kind, lot, first, style, measure), measure, where + " sheet");
    texts += CheckTexts(MakeLotCover(lot, style, measure), measure, where + " cover");
    texts +=
        CheckTexts(MakeLotGallery(kind, lot, first, style, measure), measure, where + " gallery");
    std::vector<PlotKind> kinds;
    for (unsigned i = 0; i <= seed % 9; ++i) kinds.push_back(static_cast<PlotKind>(i));
    const PageHead head = {lot.title, lot.facts, "Page 3 of 27"};
    texts += CheckTexts(MakeWaferPage(head, kinds, lot.wafers.front(), style, measure), measure,
                        where + " page");
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(texts, 60 * 40);
}

// Ticks of the colour bar, which are the texts whose words are numbers.
std::vector<double> TicksOf(const Figure& figure) {
  std::vector<double> ticks;
  for (const Shape& shape : figure.shapes) {
    const auto* text = std::get_if<TextShape>(&shape);
    if (text == nullptr) continue;
    std::string number = text->text;
    if (const auto minus = number.find("\u2212"); minus == 0) number.replace(0, 3, "-");
    char* end = nullptr;
    const double value = std::strtod(number.c_str(), &end);
    if (end != number.c_str() && *end == 0) ticks.push_back(value);
  }
  return ticks;
}

TEST(FigureLayout, CentresDifferencesOnZeroEvenWhereAllAreNegative) {
  std::vector<float> x, y, value;
  for (int i = 0; i < 9; ++i) {
    x.push_back(static_cast<float>(i % 3 * 40 - 40));
    y.push_back(static_cast<float>(i / 3 * 40 - 40));
    value.push_back(static_cast<float>(-5 + 0.3 * i));
  }
  WaferPlot plot;
  plot.sites = {x, y, value};
  plot.diameter = 200;
  Style style = {.colours = *FindColourMap("vik"), .difference = true};
  style.isolines = false;
  const PlainMeasure measure;
  const std::vector<double> ticks = TicksOf(MakeFigure(PlotKind::Map, plot, style, measure));
  ASSERT_FALSE(ticks.empty());
  const auto [low, high] = std::minmax_element(ticks.begin(), ticks.end());
  EXPECT_LE(*low, -4);
  EXPECT_EQ(*high, -*low);
  style.difference = false;
  for (const double tick : TicksOf(MakeFigure(PlotKind::Map, plot, style, measure))) {
    EXPECT_LT(tick, -2);
  }
}

TEST(FigureLayout, SaysWhatAGalleryHasNoRoomFor) {
  std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50}, value = {1, 2, 3, 4, 5};
  LotPlot lot;
  lot.title = "Lot";
  for (int i = 0; i < 25; ++i) {
    WaferPlot plot;
    plot.sites = {x, y, value};
    lot.wafers.push_back(plot);
    lot.labels.push_back(std::to_string(i + 1));
  }
  const PlainMeasure measure;
  std::size_t told = 0;
  const Figure figure =
      MakeLotGallery(PlotKind::Map, lot, 0, {.width = 160, .height = 130}, measure);
  CheckTexts(figure, measure, "narrow");
  for (const Shape& shape : figure.shapes) {
    const auto* text = std::get_if<TextShape>(&shape);
    if (text != nullptr && text->text.starts_with("no room for "))
      told = std::stoul(text->text.substr(12));
  }
  EXPECT_EQ(told, 25u);
}

struct WrittenValues {
  std::size_t shown = 0;
  std::size_t told = 0;  ///< As not written.
};
WrittenValues ValuesOf(int count) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> place(-60, 60);
  std::vector<float> x, y, value;
  for (int i = 0; i < count; ++i) {
    x.push_back(place(random));
    y.push_back(place(random));
    value.push_back(100 + place(random));
  }
  WaferPlot plot;
  plot.sites = {x, y, value};
  plot.diameter = 200;
  const PlainMeasure measure;
  const Figure figure = MakeFigure(PlotKind::Values, plot, {.width = 240, .height = 200}, measure);
  WrittenValues written;
  for (const Shape& shape : figure.shapes) {
    const auto* text = std::get_if<TextShape>(&shape);
    if (text == nullptr) continue;
    if (text->halo > 0) ++written.shown;
    if (text->text.find("not written") != std::string::npos) written.told = std::stoul(text->text);
  }
  return written;
}

TEST(FigureLayout, CountsTheValuesThatFindNoRoom) {
  const WrittenValues some = ValuesOf(60);
  EXPECT_GT(some.shown, 30u);
  EXPECT_GT(some.told, 0u);
  EXPECT_EQ(some.shown + some.told, 60u);
  const WrittenValues few = ValuesOf(500);
  EXPECT_EQ(few.shown, 0u) << "of a few among many nobody knows why these";
  EXPECT_EQ(few.told, 500u);
}

TEST(FigureLayout, SaysWhichPageIsLargeEnough) {
  std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50}, value = {1, 2, 3, 4, 5};
  LotPlot lot;
  for (int i = 0; i < 25; ++i) {
    WaferPlot plot;
    plot.sites = {x, y, value};
    lot.wafers.push_back(plot);
    lot.labels.push_back(std::to_string(i + 1));
  }
  const PlainMeasure measure;
  const auto times_said = [&](double times) {
    double said = 0;
    for (const Shape& shape : MakeLotGallery(PlotKind::Map, lot, 0,
                                             {.width = 200 * times, .height = 140 * times}, measure)
                                  .shapes) {
      const auto* text = std::get_if<TextShape>(&shape);
      const std::size_t at = text == nullptr ? std::string::npos : text->text.find("a page ");
      if (at != std::string::npos) said = std::stod(text->text.substr(at + 7));
    }
    return said;
  };
  const double times = times_said(1);
  EXPECT_GT(times, 1);
  EXPECT_EQ(times_said(times), 0) << "a page as large as was said has room";
}

TEST(FigureLayout, WritesTicksOfFarNumbersWithOneExponent) {
  const auto texts = [](double low, double high) {
    std::vector<std::string> written;
    const Ticks ticks = RoundTicks(low, high, 6);
    for (const double tick : ticks.values) written.push_back(ticks.Text(tick));
    return written;
  };
  EXPECT_EQ(texts(-0.2e-11, 2.5e-11),
            (std::vector<std::string>{"0", "0.5e-11", "1.0e-11", "1.5e-11", "2.0e-11", "2.5e-11"}));
  EXPECT_EQ(texts(0, 1e-11),
            (std::vector<std::string>{"0", "0.2e-11", "0.4e-11", "0.6e-11", "0.8e-11", "1.0e-11"}));
  EXPECT_EQ(texts(1e12, 1.01e12), (std::vector<std::string>{"1.000e12", "1.002e12", "1.004e12",
                                                            "1.006e12", "1.008e12", "1.010e12"}));
}

TEST(FigureLayout, NamesTheMeanOfSmallValuesInAHistogram) {
  std::vector<float> x, y, value;
  for (int i = 0; i < 20; ++i) {
    x.push_back(static_cast<float>(5 * i - 50));
    y.push_back(static_cast<float>(i % 5));
    value.push_back(static_cast<float>((8 + i % 4) * 1e-12));
  }
  WaferPlot plot;
  plot.sites = {x, y, value};
  std::string mean;
  for (const Shape& shape : MakeFigure(PlotKind::Histogram, plot, {}, PlainMeasure()).shapes) {
    const auto* text = std::get_if<TextShape>(&shape);
    if (text != nullptr && text->text.starts_with("mean ") && text->size < 8) mean = text->text;
  }
  EXPECT_NE(mean.find("e-12"), std::string::npos) << mean;
}

TEST(FigureLayout, KeepsTheUnitOfALongQuantity) {
  std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50}, value = {1, 2, 3, 4, 5};
  WaferPlot plot;
  plot.sites = {x, y, value};
  plot.quantity = "Sheet resistance of the second anneal after the deep implant at 30 keV";
  plot.unit = "ohm/sq";
  std::size_t kept = 0;
  for (const Shape& shape : MakeFigure(PlotKind::Map, plot, {}, PlainMeasure()).shapes) {
    const auto* text = std::get_if<TextShape>(&shape);
    if (text != nullptr && text->text.ends_with("\u2026 (ohm/sq)")) ++kept;
  }
  EXPECT_EQ(kept, 1u);
}

}  // namespace
}  // namespace discoplan::figures
