// SPDX-License-Identifier: MIT
#pragma once

/// The calls that a surface received, in order, each as a JSON list such as
/// ["Line", 1, 2, 3, 4, 255, "line"].

#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string_view>

#include "discoplan/render/surface.h"
#include "hosts/json/json_number.h"

namespace discoplan {

class Trace {
 public:
  void State(const Surface& surface, SurfaceState which);
  void Operation(std::string_view name);
  void Line(const LineCall& call);
  void Circle(const CircleCall& call);
  void Print(std::string_view text);
  void Polygon(std::span<const PixelPoint> points);
  void FloodFill(PixelPoint start, Colour boundary);

  /// The calls since they were last taken.
  nlohmann::json Take();

 private:
  nlohmann::json calls_ = nlohmann::json::array();
};

/// Any surface that records can be asked for its trace.
class Traced {
 public:
  virtual ~Traced() = default;
  nlohmann::json TakeTrace() { return trace_.Take(); }

 protected:
  Trace trace_;
};

/// A surface of type `Base` that records what it is told before it does it.
template <class Base>
class Recording final : public Base, public Traced {
 public:
  using Base::Base;

  void Cls() override {
    trace_.Operation("Cls");
    Base::Cls();
  }
  void Refresh() override {
    trace_.Operation("Refresh");
    Base::Refresh();
  }
  void Circle(const CircleCall& call) override {
    trace_.Circle(call);
    Base::Circle(call);
  }
  void Print(std::string_view text) override {
    trace_.Print(text);
    Base::Print(text);
  }
  void Polygon(std::span<const PixelPoint> points) override {
    trace_.Polygon(points);
    Base::Polygon(points);
  }
  void FloodFill(PixelPoint start, Colour boundary) override {
    trace_.FloodFill(start, boundary);
    Base::FloodFill(start, boundary);
  }
  void KeepImageAsPicture() override {
    trace_.Operation("Picture");
    Base::KeepImageAsPicture();
  }

 protected:
  void StateWritten(SurfaceState which) override {
    trace_.State(*this, which);
    Base::StateWritten(which);
  }
  void DrawLine(const LineCall& call) override {
    trace_.Line(call);
    Base::DrawLine(call);
  }
};

}  // namespace discoplan
