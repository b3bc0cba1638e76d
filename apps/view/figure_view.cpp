// SPDX-License-Identifier: MIT
#include "apps/view/figure_view.h"

#include <QFileInfo>
#include <QMouseEvent>
#include <QPainter>
#include <array>

#include "apps/discoplan/figure_plots.h"
#include "apps/view/pointed_site.h"
#include "hosts/headless/save_figure.h"
#include "hosts/qt/qt_figure.h"

namespace discoplan::app {

WaferFigures::WaferFigures(ShownWafer wafer, const ViewLook& look,
                           const std::optional<Limits>& limits)
    : wafer_(std::move(wafer)) {
  Look(look, limits);
}

void WaferFigures::Look(const ViewLook& look, const std::optional<Limits>& limits) {
  look_ = look.look;
  ReadRequest reading;
  reading.path = wafer_.file.toStdString();
  plot_ = WaferPlotOf({reading, wafer_.parameter, *wafer_.measured}, look_, look.mark);
  if (limits) {
    plot_.low = limits->low;
    plot_.high = limits->high;
  }
  plot_.field = [fields = fields_, sites = plot_.sites,
                 radius = plot_.diameter / 2](figures::Interpolation interpolation) {
    auto& kept = (*fields)[interpolation];
    if (kept == nullptr) kept = MakeField(sites, radius, interpolation);
    return kept;
  };
}

figures::Style WaferFigures::StyleFor(double width, double height) const {
  return StyleOf(look_, {}, {width, height});
}

figures::Figure WaferFigures::Make(figures::PlotKind kind, const figures::Style& style,
                                   const figures::TextMeasure& text) const {
  return MakeFigure(kind, plot_, style, text);
}

figures::Figure WaferFigures::MakePage(figures::PlotKind kind, const figures::Style& style,
                                       const figures::TextMeasure& text) const {
  const figures::PageHead head{
      .title = wafer_.measured->Title(),
      .facts = {QFileInfo(wafer_.file).fileName().toStdString(), wafer_.parameter.Caption()},
      .foot = ""};
  return MakeWaferPage(head, std::array{kind}, plot_, style, text);
}

float WaferFigures::ValueAt(figures::Point place) const {
  std::array<float, 1> value{};
  const figures::Lattice point{.x0 = place.x, .y0 = place.y, .step = 1, .columns = 1, .rows = 1};
  plot_.field(StyleFor(1, 1).interpolation)->Evaluate(point, plot_.diameter / 2, value);
  return value[0];
}

FigureView::FigureView(figures::PlotKind kind, QWidget* parent) : QWidget(parent), kind_(kind) {
  setMouseTracking(true);
  setMinimumSize(200, 150);
}

void FigureView::Show(std::shared_ptr<const WaferFigures> figures) {
  figures_ = std::move(figures);
  image_ = {};
  wafer_.reset();
  update();
}

QImage FigureView::Image() {
  const QSize size = this->size() * devicePixelRatio();
  if (!image_.isNull() && image_.size() == size) return image_;
  image_ = QImage(size, QImage::Format_ARGB32_Premultiplied);
  image_.fill(Qt::white);
  if (figures_ == nullptr) return image_;
  const FigureSize page = FigureSize::Pixels(width(), height());
  const figures::Style style = figures_->StyleFor(page.width, page.height);
  const figures::Figure figure = figures_->Make(kind_, style, qt::QtFigureText(style.font));
  wafer_ = figure.wafer;
  pixels_per_point_ = page.pixels_per_point;
  if (style.transparent) image_.fill(Qt::transparent);
  QPainter painter(&image_);
  qt::PaintFigure(painter, figure, image_.rect());
  return image_;
}

std::vector<std::uint8_t> FigureView::Encode(const std::string& file) const {
  const FigureSize page = FigureSize::Pixels(width(), height());
  const figures::Style style = figures_->StyleFor(page.width, page.height);
  const FigureText text(style.font);
  return EncodeFigure(figures_->Make(kind_, style, text), FigureFormatOf(file),
                      page.pixels_per_point * devicePixelRatio(), text);
}

void FigureView::paintEvent(QPaintEvent*) { QPainter(this).drawImage(rect(), Image()); }

void FigureView::mouseMoveEvent(QMouseEvent* event) {
  if (figures_ == nullptr || !wafer_) return;
  const QPointF place = event->position() / pixels_per_point_;
  const figures::Point at = wafer_->MillimetresAt({place.x(), place.y()});
  const figures::WaferPlot& plot = figures_->Plot();
  Q_EMIT Pointed(Describe({.count = plot.sites.Size(),
                           .diameter = plot.diameter - 2 * plot.edge_exclusion,
                           .site =
                               [&sites = plot.sites](std::size_t i) {
                                 return Site{.x = sites.x[i], .y = sites.y[i], .z = sites.value[i]};
                               },
                           .between =
                               [this](QPointF mm) {
                                 return figures_->ValueAt({mm.x(), mm.y()});
                               }},
                          {at.x, at.y}));
}

void FigureView::leaveEvent(QEvent*) { Q_EMIT Pointed({}); }

}  // namespace discoplan::app
