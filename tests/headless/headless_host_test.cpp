// SPDX-License-Identifier: MIT
#include "hosts/headless/headless_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>

#include "discoplan/controls/control_factory.h"
#include "hosts/headless/png_file.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

std::vector<std::uint8_t> Read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(file), {});
}

// A picture is saved in strips, and painted as a whole.
TEST(HeadlessHost, SavedPictureIsThePaintedOne) {
  const std::vector<float> x = {0, 60, 0, -60, 0, 80, -80}, y = {0, 0, 60, 0, -60, 40, -40};
  const std::vector<float> z = {101.2F, 99.8F, 100.4F, 98.9F, 102.3F, 97.5F, 100.1F};
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "map.png";
  // From one strip, not quite full, to several of them.
  for (const float height : {3180.0F, 4500.0F, 9007.0F}) {
    for (const char* kind : {"Plot2D", "Plot3D", "Histo", "LineScan"}) {
      HeadlessHost host(Screen{15, 12});
      const auto control = NewControl(kind, host, nullptr);
      control->InitProperties();
      control->PlotCaption("Größe, gj");
      ASSERT_EQ(control->SetWaferData(x, y, z), LoadResult::Loaded);
      control->SetSize(6000, height);
      control->Plot();
      SavePicture(*control, host, file);
      const Canvas painted = PaintPicture(*control, host);
      EXPECT_EQ(Read(file), EncodePng({.pixels = painted.Pixels(),
                                       .width = painted.Width(),
                                       .height = painted.Height()}))
          << kind << ' ' << height;
    }
  }
}

// A plot that is drawn by its size and not by `Plot` is shown by its snapshot.
TEST(HeadlessHost, ShowsASnapshotThatIsNotStretchedAsItWasDrawn) {
  const std::vector<float> x = {0, 60, 0, -60, 0, 80, -80}, y = {0, 0, 60, 0, -60, 40, -40};
  const std::vector<float> z = {101.2F, 99.8F, 100.4F, 98.9F, 102.3F, 97.5F, 100.1F};
  for (const float height : {3180.0F, 3187.0F, 3194.0F, 4507.0F, 4511.0F}) {
    HeadlessHost host;
    const auto picture = [&](bool size_first) {
      const auto control = NewControl("Plot2DC", host, nullptr);
      control->InitProperties();
      if (size_first) control->SetSize(6000, height);
      EXPECT_EQ(control->SetWaferData(x, y, z), LoadResult::Loaded);
      if (!size_first) control->SetSize(6000, height);
      control->Plot();
      EXPECT_EQ(control->root().Find("RePlot")->Visible(), !size_first);
      const Canvas painted = PaintPicture(*control, host);
      return std::vector<Pixel>(painted.Pixels().begin(), painted.Pixels().end());
    };
    EXPECT_EQ(picture(true), picture(false)) << height;
  }
}

TEST(HeadlessHost, RefusesAPictureWithoutPixels) {
  const TemporaryFolder folder;
  HeadlessHost host;
  const auto control = NewControl("Plot2D", host, nullptr);
  for (const TwipsBox& box :
       {TwipsBox{0, 0, 6000, -5}, TwipsBox{0, 0, 7, 4500}, TwipsBox{0, 0, std::nanf(""), 4500}}) {
    control->root().Move(box);
    EXPECT_THROW(SavePicture(*control, host, folder.path() / "map.png"), FileError);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "map.png"));
  }
}

}  // namespace
}  // namespace discoplan
