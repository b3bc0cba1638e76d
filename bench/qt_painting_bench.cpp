// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "bench/painted_scene.h"
#include "discoplan/raster/picture.h"

namespace discoplan::bench {
namespace {

void Paint(benchmark::State& state, const std::vector<PaintedCell>& cells, const QPen& pen) {
  QImage image(kSide, kSide, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(pen);
  for (auto _ : state) {
    for (const PaintedCell& cell : cells) {
      std::array<QPoint, 4> corners;
      std::ranges::transform(cell.corners, corners.begin(),
                             [](const PixelPoint& point) { return QPoint(point.x, point.y); });
      painter.setBrush(QColor::fromRgb(PixelOf(cell.colour)));
      painter.drawPolygon(corners.data(), static_cast<int>(corners.size()));
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cells.size()));
}

void MapCellsByQt(benchmark::State& state) { Paint(state, MapCells(), Qt::NoPen); }

void FacesByQt(benchmark::State& state) {
  Paint(state, SurfaceFaces(static_cast<float>(state.range(0))), QPen(Qt::black));
}

BENCHMARK(MapCellsByQt)->Unit(benchmark::kMicrosecond);
BENCHMARK(FacesByQt)->Arg(5)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
