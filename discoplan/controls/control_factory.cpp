// SPDX-License-Identifier: MIT
#include "discoplan/controls/control_factory.h"

#include <algorithm>
#include <array>

#include "discoplan/controls/histo.h"
#include "discoplan/controls/line_scan.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2dn.h"
#include "discoplan/controls/plot2ds.h"
#include "discoplan/controls/plot3d.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/plot3ds.h"

namespace discoplan {
namespace {

struct Row {
  std::string_view class_name;
  std::unique_ptr<PlotControl> (*make)(Platform&, Container*);
};

template <class Control>
std::unique_ptr<PlotControl> Make(Platform& platform, Container* container) {
  return std::make_unique<Control>(platform, container);
}

constexpr std::array kControls = {
    Row{"Plot2D", Make<Plot2D>},   Row{"Plot2DS", Make<Plot2DS>}, Row{"Plot2DC", Make<Plot2DC>},
    Row{"Plot2DN", Make<Plot2DN>}, Row{"Plot3D", Make<Plot3D>},   Row{"Plot3DS", Make<Plot3DS>},
    Row{"Plot3DB", Make<Plot3DB>}, Row{"Histo", Make<Histo>},     Row{"LineScan", Make<LineScan>},
};

}  // namespace

std::unique_ptr<PlotControl> NewControl(std::string_view class_name, Platform& platform,
                                        Container* container) {
  const auto row = std::ranges::find(kControls, class_name, &Row::class_name);
  return row == kControls.end() ? nullptr : row->make(platform, container);
}

std::vector<std::string_view> ControlClasses() {
  std::vector<std::string_view> names;
  for (const Row& row : kControls) names.push_back(row.class_name);
  return names;
}

}  // namespace discoplan
