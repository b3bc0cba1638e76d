// SPDX-License-Identifier: MIT
// Plots whose memory runs out in the middle, and come again when there is some.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "discoplan/controls/control_class.h"
#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace {

/// How many allocations of this thread still go well; all of them if negative.
thread_local long remaining_allocations = -1;

void* TryToAllocate(std::size_t bytes) {
  if (remaining_allocations == 0) return nullptr;
  if (remaining_allocations > 0) --remaining_allocations;
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void* Allocate(std::size_t bytes) {
  if (void* memory = TryToAllocate(bytes)) return memory;
  throw std::bad_alloc();
}

}  // namespace

// Every form of each pair, since a sanitizer brings the forms that are missing and then meets pairs
// that don't belong together.
void* operator new(std::size_t bytes) { return Allocate(bytes); }
void* operator new[](std::size_t bytes) { return Allocate(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return TryToAllocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return TryToAllocate(bytes);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace discoplan {
namespace {

/// Pictures without recordings.
class PlainHost final : public Platform {
 public:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message&) override {}

 private:
  Screen screen_;
  FixedText text_;
};

class ShortMemory : public testing::TestWithParam<const ControlClass*> {
 protected:
  std::unique_ptr<PlotControl> Plotted() {
    const std::vector<float> x = {0, 60, 0, -60, 0, 80, -80}, y = {0, 0, 60, 0, -60, 40, -40},
                             z = {10, 12, 14, 16, 18, 11, 17};
    auto control = NewControl(GetParam()->name, host_, nullptr);
    control->InitProperties();
    control->SetSize(4600, 3300);
    EXPECT_EQ(control->SetWaferData(x, y, z), LoadResult::Loaded);
    control->Plot();
    return control;
  }
  static void Grow(PlotControl& control) {
    control.SetSize(5200, 3700);
    control.SetPlotNotVaild();
    control.Plot();
  }
  /// Of all pictures that the control shows.
  static std::vector<std::vector<Pixel>> Pixels(PlotControl& control) {
    std::vector<std::vector<Pixel>> pixels;
    ForEachNode(control.root(), [&](Node& node) {
      if (!node.Picture()) return;
      const auto span = std::as_const(*node.Picture()).canvas().Pixels();
      pixels.emplace_back(span.begin(), span.end());
    });
    return pixels;
  }

  PlainHost host_;
};

TEST_P(ShortMemory, LeavesNothingWrongForTheNextPlot) {
  const auto untroubled = Plotted();
  Grow(*untroubled);
  const auto expected = Pixels(*untroubled);
  bool failed = true;
  long allowed = 0;
  while (failed) {
    const auto control = Plotted();
    failed = false;
    remaining_allocations = allowed;
    try {
      Grow(*control);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    remaining_allocations = -1;
    Grow(*control);
    ASSERT_EQ(Pixels(*control), expected) << "without allocation " << allowed;
    ++allowed;
  }
  EXPECT_GT(allowed, 5) << "or nothing was tried";
}

INSTANTIATE_TEST_SUITE_P(Kinds, ShortMemory, testing::ValuesIn(ControlClasses()),
                         [](const auto& kind) { return std::string(kind.param->name); });

}  // namespace
}  // namespace discoplan
