// SPDX-License-Identifier: MIT
#pragma once

/// The calls that a surface received, in order, each as a JSON list such as
/// ["Line", 1, 2, 3, 4, 255, "line"].

#include <cstdint>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "discoplan/render/surface.h"
#include "hosts/json/json_number.h"

namespace discoplan {

/// The latest calls, about four million of them: a surface that nobody asks for its trace needn't
/// fill the memory. They also give way where there is no memory for more.
class Trace {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{128} << 20;

  void State(const Surface& surface, SurfaceState which);
  void Operation(std::string_view name);
  void Line(const LineCall& call);
  void Circle(const CircleCall& call);
  void Print(std::string_view text);
  void Polygon(std::span<const PixelPoint> points);
  void FloodFill(PixelPoint start, Colour boundary);

  /// The calls since they were last taken, which it keeps where there is no memory to give them.
  nlohmann::json Take();
  /// The same as the text of a JSON list, which takes far less memory and time.
  std::string TakeText();
  /// How many calls before those were left out, counted since that was last asked.
  std::uint64_t TakeLeftOut() { return std::exchange(left_out_, 0); }

 private:
  /// Calls as JSON, with commas between them.
  struct Part {
    std::string text;
    std::uint64_t calls = 0;
  };

  template <class... Values>
  void Keep(std::string_view name, const Values&... values);
  void LeaveOutOldest();
  void Clear();

  std::deque<Part> parts_;
  std::size_t bytes_ = 0;  // of all parts
  std::uint64_t left_out_ = 0;
};

/// Any surface that records can be asked for its trace.
class Traced {
 public:
  virtual ~Traced() = default;
  nlohmann::json TakeTrace() { return trace_.Take(); }
  std::string TakeTraceText() { return trace_.TakeText(); }
  std::uint64_t TakeLeftOut() { return trace_.TakeLeftOut(); }

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
