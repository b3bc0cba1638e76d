// SPDX-License-Identifier: MIT
#include "discoplan/forms/painter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

/// Each character is 2 pixels wide and 4 high; texts are kept with their upper left corners.
class Notes final : public TextPainter {
 public:
  struct Note {
    std::string text;
    double x, y;
    Colour colour;

    bool operator==(const Note&) const = default;
  };

  double Width(const Font&, double, std::string_view text) const override {
    return 2 * static_cast<double>(text.size());
  }
  double Height(const Font&, double) const override { return 4; }
  void Paint(Canvas&, const Font&, const TextPlacement& at, std::string_view text) const override {
    if (!text.empty()) notes.push_back({std::string(text), at.x, at.y, at.colour});
  }

  mutable std::vector<Note> notes;
};

constexpr Colour kRedColour = 0x0000FF;

class Painter : public testing::Test {
 protected:
  /// The root covers so many pixels at 15 twips each.
  Node& Root(float across, float down, NodeKind kind = NodeKind::Control) {
    root_ = std::make_unique<Node>(kind, "root", TwipsBox{0, 0, across * 15, down * 15});
    root_->BackColor(kWhite);
    return *root_;
  }
  /// Place in pixels.
  static TwipsBox At(float left, float top, float width, float height) {
    return {left * 15, top * 15, width * 15, height * 15};
  }
  Rows Painted(int width, int height, bool buttons = true) {
    Canvas canvas(width, height, kWhitePixel);
    notes_.notes.clear();
    PaintTree(*root_, canvas, {.resolution = screen_, .text = notes_, .buttons = buttons});
    return Show(canvas);
  }

  bool IsBlackAt(int width, int height, int x, int y) {
    Canvas canvas(width, height, kWhitePixel);
    notes_.notes.clear();
    PaintTree(*root_, canvas, {.resolution = screen_, .text = notes_});
    return canvas.Pixels()[static_cast<std::size_t>(y * width + x)] == 0xFF000000;
  }

  Screen screen_;
  Notes notes_;
  std::unique_ptr<Node> root_;
};

using Note = Notes::Note;

TEST_F(Painter, FillsTheGroundOfItsKindsWithTheirColour) {
  for (const NodeKind kind :
       {NodeKind::Control, NodeKind::Form, NodeKind::Panel, NodeKind::Frame, NodeKind::Label}) {
    Root(3, 2, kind).BackColor(kRedColour);
    EXPECT_EQ(Painted(4, 3), (Rows{"rrr.", "rrr.", "...."})) << NameOf(kind);
  }
}

TEST_F(Painter, PlacesChildrenWithinTheirParents) {
  Node& panel = Root(6, 4).Add(NodeKind::Panel, "panel", At(1, 1, 4, 3));
  panel.BackColor(kRedColour);
  Node& inner = panel.Add(NodeKind::Label, "chip", At(1, 1, 2, 1));
  inner.BackColor(kBlack);
  EXPECT_EQ(Painted(6, 4), (Rows{"......", ".rrrr.", ".r##r.", ".rrrr."}));
  inner.Visible(false);
  EXPECT_EQ(Painted(6, 4), (Rows{"......", ".rrrr.", ".rrrr.", ".rrrr."}));
  inner.Visible(true);
  panel.Visible(false);  // takes its children with it
  EXPECT_EQ(Painted(6, 4), Filled(6, 4, '.'));
}

TEST_F(Painter, LaterChildrenLieOnTop) {
  Root(3, 1).Add(NodeKind::Label, "below", At(0, 0, 2, 1)).BackColor(kRedColour);
  root_->Add(NodeKind::Label, "above", At(1, 0, 2, 1)).BackColor(kBlack);
  EXPECT_EQ(Painted(3, 1), (Rows{"r##"}));
}

TEST_F(Painter, AbuttingBoxesShareNoPixel) {
  // 22 twips are 1.47 pixels, 52 are 3.47, 68 are 4.53.
  Root(6, 1).Add(NodeKind::Label, "a", {22, 0, 30, 15}).BackColor(kRedColour);
  root_->Add(NodeKind::Label, "b", {52, 0, 16, 15}).BackColor(kBlack);
  EXPECT_EQ(Painted(6, 1), (Rows{".rr##."}));
}

TEST_F(Painter, CountsByTheResolutionOfTheTarget) {
  screen_ = {30, 7.5F};
  Root(4, 1).BackColor(kRedColour);
  EXPECT_EQ(Painted(3, 3), (Rows{"rr.", "rr.", "..."}));
}

TEST_F(Painter, ClipsAtTheCanvas) {
  Root(2, 2).Add(NodeKind::Label, "wide", At(-5, 1, 50, 50)).BackColor(kRedColour);
  root_->Add(NodeKind::Label, "gone", At(-5, -5, 3, 3)).BackColor(kBlack);
  root_->Add(NodeKind::Label, "empty", At(0, 0, 0, 0)).BackColor(kBlack);
  root_->Add(NodeKind::Label, "negative", At(1, 1, -1, -1)).BackColor(kBlack);
  EXPECT_EQ(Painted(2, 2), (Rows{"..", "rr"}));
}

TEST_F(Painter, CopiesAPictureAndStretchesAnImage) {
  Screen screen;
  Node& copied = Root(6, 4).Add(NodeKind::Picture, "picture", At(0, 0, 2, 2));
  copied.Picture(std::make_unique<Picture>(
      Picture::Setting{.screen = screen, .resolution = screen, .text = notes_}, 30.0F, 30.0F));
  copied.Picture()->Line(
      {.from = SurfacePoint{0, 0}, .to = {0, 0}, .colour = 0, .shape = LineShape::FilledBox});
  Node& stretched = root_->Add(NodeKind::Image, "image", At(2, 0, 4, 4));
  EXPECT_EQ(Painted(6, 4)[0], "#.....");  // no image yet
  stretched.Image(std::make_shared<Canvas>(copied.Picture()->canvas()));
  EXPECT_EQ(Painted(6, 4), (Rows{"#.##..", "..##..", "......", "......"}));
  // A picture is never stretched.
  copied.Move({copied.Box().left, copied.Box().top, 75, copied.Box().height});
  stretched.Visible(false);
  EXPECT_EQ(Painted(6, 4)[0], "#.....");
  stretched.Visible(true);
  stretched.Image(std::make_shared<Canvas>(0, 0, kBlackPixel));
  EXPECT_EQ(Painted(6, 4)[0], "#.....");
}

TEST_F(Painter, CopiesAnImageOfItsOwnSize) {
  Node& image = Root(6, 4).Add(NodeKind::Image, "image", At(3, 1, 2, 2));
  image.Image(std::make_shared<Canvas>(2, 2, kRedPixel));
  std::const_pointer_cast<Canvas>(image.Image())->FillBox({1, 1, 1, 1}, kBlackPixel);
  EXPECT_EQ(Painted(6, 4), (Rows{"......", "...rr.", "...r#.", "......"}));
  image.Move(At(-1, 3, 2, 2));
  EXPECT_EQ(Painted(6, 4), (Rows{"......", "......", "......", "r....."}));
  image.Move(At(-1, -1, 2, 2));
  EXPECT_EQ(Painted(6, 4), (Rows{"#.....", "......", "......", "......"}));
}

TEST_F(Painter, AFrameHasItsTitleInItsLine) {
  Node& frame = Root(40, 20, NodeKind::Frame);
  frame.Text("ab");
  Painted(40, 20);
  EXPECT_TRUE(notes_.notes.empty());  // no line, no title
  frame.Bordered(true);
  const Rows rows = Painted(40, 20);
  EXPECT_EQ(notes_.notes, (std::vector<Note>{{"ab", 8, 0, 0}}));  // 120 twips from the corner
  EXPECT_EQ(rows[1], std::string(40, '.'));
  // The line runs half a text below the top and leaves 30 twips around the title.
  EXPECT_EQ(rows[2], "??????.........?????????????????????????");
  EXPECT_EQ(rows[3], std::string(1, '?').append(38, '.').append(1, '?'));
  EXPECT_EQ(rows[19], std::string(40, '?'));
  frame.Text("");
  EXPECT_EQ(Painted(40, 20)[2], std::string(40, '?'));
  EXPECT_TRUE(notes_.notes.empty());
}

struct AlignCase {
  Alignment alignment;
  double x;
};

TEST_F(Painter, AlignsTheTextOfALabel) {
  Node& label = Root(20, 12, NodeKind::Label);
  label.Text("abc");  // 6 pixels of 20, 4 of 12
  label.ForeColor(7);
  label.BackColor(kRedColour);
  for (const AlignCase& row : {AlignCase{Alignment::Left, 0}, AlignCase{Alignment::Centre, 7},
                               AlignCase{Alignment::Right, 14}}) {
    label.Alignment(row.alignment);
    EXPECT_EQ(Painted(20, 12), Filled(20, 12, '.'));  // a text has no ground
    EXPECT_EQ(notes_.notes, (std::vector<Note>{{"abc", row.x, 4, 7}}));
  }
  label.BreakBefore("c");
  Painted(20, 12);
  EXPECT_EQ(notes_.notes, (std::vector<Note>{{"ab", 16, 2, 7}, {"c", 18, 6, 7}}));
  label.BreakBefore("x");
  Painted(20, 12);
  EXPECT_EQ(notes_.notes.size(), 1U);
}

TEST_F(Painter, PaintsButtonsUnlessTheyAreLeftOut) {
  Node& button = Root(20, 10).Add(NodeKind::Button, "button", At(2, 2, 12, 6));
  button.Text("abc");
  const Rows rows = Painted(20, 10);
  EXPECT_EQ(notes_.notes, (std::vector<Note>{{"abc", 5, 3, 0}}));
  EXPECT_EQ(rows[1], std::string(20, '.'));
  EXPECT_EQ(rows[5], "..????????????......");
  EXPECT_EQ(Painted(20, 10, false), Filled(20, 10, '.'));
  EXPECT_TRUE(notes_.notes.empty());
}

TEST_F(Painter, PaintsTheTextOfAField) {
  Node& field = Root(20, 10).Add(NodeKind::Text, "field", At(2, 2, 12, 6));
  field.Text("5");
  const Rows rows = Painted(20, 10);
  EXPECT_EQ(notes_.notes, (std::vector<Note>{{"5", 6, 3, 0}}));  // 60 twips from the edge
  EXPECT_EQ(rows[2], "..????????????......");
  EXPECT_EQ(rows[3], "..?..........?......");
}

TEST_F(Painter, TakesPlacesOfAnySize) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float value : {std::nanf(""), infinity, -infinity, 3e38F, -3e38F, 3e10F, -3e10F}) {
    for (const NodeKind kind : {NodeKind::Control, NodeKind::Frame, NodeKind::Label,
                                NodeKind::Image, NodeKind::Button, NodeKind::Text}) {
      for (const TwipsBox& box : {TwipsBox{value, 0, 90, 90}, TwipsBox{0, 0, value, value},
                                  TwipsBox{value, value, value, value}}) {
        Node& node = Root(8, 8).Add(kind, "node", box);
        node.Bordered(true);
        node.Text("x");
        node.Image(std::make_shared<Canvas>(3, 3, kRedPixel));
        Painted(8, 8);
      }
    }
  }
  for (const float value : {0.0F, -15.0F, std::nanf(""), infinity, 1e-30F}) {
    screen_ = {value, value};
    Root(8, 8, NodeKind::Frame).Bordered(true);
    root_->Text("x");
    Painted(8, 8);
  }
}

TEST_F(Painter, AnEndlessBoxCoversTheCanvas) {
  Root(4, 2).Add(NodeKind::Label, "sky", {-3e38F, -3e38F, 3e38F, 3e38F}).BackColor(kRedColour);
  EXPECT_EQ(Painted(4, 2), Filled(4, 2, '.'));  // ends at the corner
  Root(4, 2).Add(NodeKind::Label, "sky", {15, 0, 3e38F, 3e38F}).BackColor(kRedColour);
  EXPECT_EQ(Painted(4, 2), (Rows{".rrr", ".rrr"}));
}

// A box is 12 pixels wide and lies a pixel below the row's top; its tick fills the middle.
TEST_F(Painter, TicksBoxesAndChoosesOptions) {
  Node& root = Root(60, 80);
  Node& box = root.Add(NodeKind::Check, "box", At(2, 2, 50, 19));
  box.Text("Box");
  Node& group = root.Add(NodeKind::Options, "group", At(2, 20, 50, 58));
  group.Text("Group");
  group.Options({"One", "Two"});
  const auto dark = [&](int x, int y) { return IsBlackAt(60, 80, x, y); };
  EXPECT_FALSE(dark(8, 9));
  box.Value(1);
  EXPECT_TRUE(dark(8, 9));
  // Options stand 16 pixels below the group's top, 18 pixels apart.
  EXPECT_TRUE(dark(16, 43));
  EXPECT_FALSE(dark(16, 61));
  group.Value(1);
  EXPECT_FALSE(dark(16, 43));
  EXPECT_TRUE(dark(16, 61));
  std::vector<std::string> texts;
  for (const Notes::Note& note : notes_.notes) texts.push_back(note.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Box", "Group", "One", "Two"}));
}

TEST_F(Painter, GivesASpinnerTwoArrows) {
  Root(20, 30).Add(NodeKind::Spinner, "spinner", At(0, 0, 19, 29));
  int above = 0, below = 0;
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 20; ++x) {
      if (IsBlackAt(20, 30, x, y)) ++(y < 14 ? above : below);
    }
  }
  EXPECT_GT(above, 5);
  EXPECT_EQ(above, below);
}

/// A text is a box as wide and as high as it is.
class Boxes final : public TextPainter {
 public:
  double Width(const Font&, double, std::string_view text) const override {
    return 2 * static_cast<double>(text.size());
  }
  double Height(const Font&, double) const override { return 4; }
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& at,
             std::string_view text) const override {
    const int left = static_cast<int>(std::lround(at.x));
    const int top = static_cast<int>(std::lround(at.y)) - at.canvas_top;
    const int width = static_cast<int>(Width(font, 1, text));
    if (width > 0) canvas.FillBox({left, top, left + width - 1, top + 3}, PixelOf(at.colour));
  }
};

TEST_F(Painter, StripsAreTheWhole) {
  Node& root = Root(60, 50);
  Node& frame = root.Add(NodeKind::Frame, "frame", At(1, 1, 50, 45));
  frame.Bordered(true);
  frame.Text("a frame");
  frame.Add(NodeKind::Button, "button", At(3, 9, 30, 9)).Text("press");
  Node& image = frame.Add(NodeKind::Image, "image", At(35, 5, 13, 17));
  Canvas canvas(6, 5, kWhitePixel);
  canvas.Ellipse({0, 0, 5, 4}, kPen, kBrush);
  image.Image(std::make_shared<Canvas>(canvas));
  image.Visible(true);
  Node& line = frame.Add(NodeKind::Line, "line", At(2, 40, 40, -35));
  line.ForeColor(kRedColour);
  Node& check = frame.Add(NodeKind::Check, "check", At(2, 20.3F, 40, 12));
  check.Value(1);
  check.Text("ticked");
  Node& options = frame.Add(NodeKind::Options, "options", At(4, 22.7F, 40, 20));
  options.Text("options");
  options.Options({"one", "two"});
  frame.Add(NodeKind::Spinner, "spinner", At(44, 24, 5, 20));
  const Boxes boxes;
  Canvas whole(64, 53, kBlackPixel);
  PaintTree(root, whole, {.resolution = screen_, .text = boxes});
  for (const int rows : {1, 2, 7, 53}) {
    Rows joined;
    for (int top = 0; top < 53; top += rows) {
      Canvas strip(64, std::min(rows, 53 - top), kBlackPixel);
      PaintTree(root, strip, {.resolution = screen_, .text = boxes, .top = top});
      const Rows part = Show(strip);
      joined.insert(joined.end(), part.begin(), part.end());
    }
    EXPECT_EQ(joined, Show(whole)) << rows;
  }
}

}  // namespace
}  // namespace discoplan
