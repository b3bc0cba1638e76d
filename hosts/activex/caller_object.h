// SPDX-License-Identifier: MIT
#pragma once

/// An object of the caller's, such as a printer: its members are called by their names. Those of
/// `Surface` draw on it; polygons and fills go to its `hdc`, or where that is 0 to members
/// `Polygon` and `FloodFill` of its own. Lines, circles and text go there too where its members
/// take them in another form. What fails there is a run-time error here.

#include <array>

#include "discoplan/platform/screen.h"
#include "discoplan/render/surface.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

class CallerObject final : public Surface {
 public:
  /// The screen outlives the object.
  CallerObject(IDispatch& object, const Screen& screen) : object_(&object), screen_(screen) {}

  IDispatch* object() const { return object_.Get(); }

  /// A printer is what tells twips per pixel of its own.
  Kind kind() const override { return Offers(L"TwipsPerPixelX") ? Kind::Printer : Kind::Other; }
  void Cls() override;
  void Refresh() override;
  void Circle(const CircleCall& call) override;
  void Print(std::string_view text) override;
  void Polygon(std::span<const PixelPoint> points) override;
  void FloodFill(PixelPoint start, Colour boundary) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  float TwipsPerPixelX() const override;
  float TwipsPerPixelY() const override;
  float ScreenTwipsPerPixelX() const override { return screen_.twips_per_pixel_x; }
  float ScreenTwipsPerPixelY() const override { return screen_.twips_per_pixel_y; }

 protected:
  void StateWritten(SurfaceState which) override;
  void DrawLine(const LineCall& call) override;

 private:
  bool Offers(const wchar_t* name) const;
  /// The device, or 0; a plot asks for it again with each polygon, as a new page may have another.
  HDC Device() const;
  HDC DeviceOrNone() const;

  enum class Operation { Line, Circle, Print };
  enum class Manner { Unknown, Own, Device };
  template <class Draw>
  void CallOrDraw(Operation which, const wchar_t* name, std::span<const VARIANT> args,
                  const Draw& draw);

  std::array<Manner, 3> manners_{};
  ComPtr<IDispatch> object_;
  const Screen& screen_;
};

}  // namespace discoplan::activex
