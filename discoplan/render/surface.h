// SPDX-License-Identifier: MIT
#pragma once

/// The drawing surface: the abstract target of every plot, and the contract of its adapters.
///
/// A plot sets drawing state and calls drawing operations; both stay in force and in order. The
/// state is data of this class. An adapter implements the operations and the metrics, reads the
/// state when it draws, and may watch its writes through `StateWritten`.
///
///     surface.FillColor(0x00FF00);
///     surface.FillStyle(0);
///     surface.Polygon(corners);
///
/// Coordinates are in surface units: whole pixels where `ScaleMode` is 3, twips where it is 1,
/// with X to the right and Y downward. `Polygon` and `FloodFill` are always in device pixels.
/// A surface clips what lies outside, however far away. A member that a kind of surface doesn't
/// offer raises `RunTimeError` with `Fault::MemberNotOffered`. One thread uses a surface.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "discoplan/base/colour.h"
#include "discoplan/base/points.h"
#include "discoplan/export.h"
#include "discoplan/platform/object.h"

namespace discoplan {

struct Font {
  std::string name = "Arial";
  float size = 8;  ///< Points.
  bool bold = false;
  bool underline = false;

  bool operator==(const Font&) const = default;
};

enum class LineShape { Line, Box, FilledBox };

struct LineCall {
  std::optional<SurfacePoint> from = {};  ///< Where the previous line ended, unless given.
  SurfacePoint to = {};
  std::optional<Colour> colour = {};  ///< `ForeColor`, unless given.
  LineShape shape = LineShape::Line;
};

struct CircleCall {
  SurfacePoint centre;
  float radius = 0;
  std::optional<Colour> colour = {};  ///< `ForeColor`, unless given.
  std::optional<float> start = {};    ///< Radians, counter-clockwise from the positive X axis.
  std::optional<float> end = {};
  std::optional<float> aspect = {};  ///< Vertical half axis over horizontal half axis, 0 to 1.
};

/// The state values, in the names of their writes.
enum class SurfaceState {
  ForeColor,
  BackColor,
  FillColor,
  FillStyle,
  DrawStyle,
  DrawWidth,
  CurrentX,
  CurrentY,
  FontTransparent,
  ScaleMode,
  ScaleLeft,
  ScaleTop,
  ScaleWidth,
  ScaleHeight,
  Width,
  Height,
  Font,
  FontName,
  FontSize,
  FontBold,
  FontUnderline,
};

class DISCOPLAN_EXPORT Surface : public Object {
 public:
  enum class Kind { Picture, Printer, Other };

  // Values of `ScaleMode`.
  static constexpr std::int16_t kTwips = 1;
  static constexpr std::int16_t kPixels = 3;

  virtual Kind kind() const = 0;
  bool IsPicture() const { return kind() == Kind::Picture; }
  bool IsPrinter() const { return kind() == Kind::Printer; }

  // Drawing state: each value is read, and written with one `StateWritten`.
  Colour ForeColor() const { return state_.fore_color; }
  void ForeColor(Colour value) { Write(state_.fore_color, value, SurfaceState::ForeColor); }
  Colour BackColor() const { return state_.back_color; }
  void BackColor(Colour value) { Write(state_.back_color, value, SurfaceState::BackColor); }
  Colour FillColor() const { return state_.fill_color; }
  void FillColor(Colour value) { Write(state_.fill_color, value, SurfaceState::FillColor); }
  /// 0 solid, 1 none.
  std::int16_t FillStyle() const { return state_.fill_style; }
  void FillStyle(std::int16_t value) { Write(state_.fill_style, value, SurfaceState::FillStyle); }
  /// 0 solid, 5 no line and no outline at all.
  std::int16_t DrawStyle() const { return state_.draw_style; }
  void DrawStyle(std::int16_t value) { Write(state_.draw_style, value, SurfaceState::DrawStyle); }
  /// Pixels.
  std::int16_t DrawWidth() const { return state_.draw_width; }
  void DrawWidth(std::int16_t value) { Write(state_.draw_width, value, SurfaceState::DrawWidth); }
  float CurrentX() const { return state_.current.x; }
  void CurrentX(float value) { Write(state_.current.x, value, SurfaceState::CurrentX); }
  float CurrentY() const { return state_.current.y; }
  void CurrentY(float value) { Write(state_.current.y, value, SurfaceState::CurrentY); }
  bool FontTransparent() const { return state_.font_transparent; }
  void FontTransparent(bool value) {
    Write(state_.font_transparent, value, SurfaceState::FontTransparent);
  }
  std::int16_t ScaleMode() const { return state_.scale_mode; }
  void ScaleMode(std::int16_t value) { Write(state_.scale_mode, value, SurfaceState::ScaleMode); }
  float ScaleLeft() const { return state_.scale_left; }
  void ScaleLeft(float value) { Write(state_.scale_left, value, SurfaceState::ScaleLeft); }
  float ScaleTop() const { return state_.scale_top; }
  void ScaleTop(float value) { Write(state_.scale_top, value, SurfaceState::ScaleTop); }
  float ScaleWidth() const { return state_.scale_width; }
  void ScaleWidth(float value) { Write(state_.scale_width, value, SurfaceState::ScaleWidth); }
  float ScaleHeight() const { return state_.scale_height; }
  void ScaleHeight(float value) { Write(state_.scale_height, value, SurfaceState::ScaleHeight); }
  /// Outer size in twips.
  float Width() const { return state_.width; }
  void Width(float value) { Write(state_.width, value, SurfaceState::Width); }
  float Height() const { return state_.height; }
  void Height(float value) { Write(state_.height, value, SurfaceState::Height); }
  const discoplan::Font& Font() const { return state_.font; }
  void Font(const discoplan::Font& value) { Write(state_.font, value, SurfaceState::Font); }
  const std::string& FontName() const { return state_.font.name; }
  void FontName(const std::string& value) {
    Write(state_.font.name, value, SurfaceState::FontName);
  }
  float FontSize() const { return state_.font.size; }
  void FontSize(float value) { Write(state_.font.size, value, SurfaceState::FontSize); }
  bool FontBold() const { return state_.font.bold; }
  void FontBold(bool value) { Write(state_.font.bold, value, SurfaceState::FontBold); }
  bool FontUnderline() const { return state_.font.underline; }
  void FontUnderline(bool value) {
    Write(state_.font.underline, value, SurfaceState::FontUnderline);
  }

  // Operations.

  /// Clears the surface to `BackColor`.
  virtual void Cls() = 0;
  /// Makes visible what was drawn so far; picture surfaces only.
  virtual void Refresh() = 0;
  /// Line, box outline or filled box, both corners belonging to a box. The end becomes the current
  /// position.
  void Line(const LineCall& call);
  /// Circle, ellipse or arc with outline, filled with `FillColor` where `FillStyle` is 0.
  virtual void Circle(const CircleCall& call) = 0;
  /// Writes the text with its upper left corner at the current position.
  virtual void Print(std::string_view text) = 0;
  /// Closed polygon, filled and outlined.
  virtual void Polygon(std::span<const PixelPoint> points) = 0;
  /// Fills from the pixel outward, up to a boundary of the given colour.
  virtual void FloodFill(PixelPoint start, Colour boundary) = 0;
  /// Keeps what is drawn as the persistent background; picture surfaces only.
  virtual void KeepImageAsPicture();

  // Metrics, in surface units.
  virtual float TextWidth(std::string_view text) const = 0;
  virtual float TextHeight(std::string_view text) const = 0;
  /// Of the device itself; printers only.
  virtual float TwipsPerPixelX() const;
  virtual float TwipsPerPixelY() const;
  /// Of the screen in front of which the plot is made.
  virtual float ScreenTwipsPerPixelX() const = 0;
  virtual float ScreenTwipsPerPixelY() const = 0;

  const MemberTable& Members() const override;

 protected:
  struct State {
    Colour fore_color = 0;
    Colour back_color = 0xFFFFFF;
    Colour fill_color = 0;
    std::int16_t fill_style = 1;
    std::int16_t draw_style = 0;
    std::int16_t draw_width = 1;
    std::int16_t scale_mode = kPixels;
    bool font_transparent = true;
    SurfacePoint current;
    float scale_left = 0;
    float scale_top = 0;
    float scale_width = 0;
    float scale_height = 0;
    float width = 0;
    float height = 0;
    discoplan::Font font;
  };

  /// Called after each write, also when it changed nothing.
  virtual void StateWritten(SurfaceState) {}
  virtual void DrawLine(const LineCall& call) = 0;

  State state_;

 private:
  template <class T>
  void Write(T& field, const T& value, SurfaceState which) {
    field = value;
    StateWritten(which);
  }
};

}  // namespace discoplan
