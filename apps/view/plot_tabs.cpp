// SPDX-License-Identifier: MIT
#include "apps/view/plot_tabs.h"

#include <QMouseEvent>
#include <QPointer>
#include <QStackedWidget>
#include <QTimer>

#include "apps/discoplan/figure_plots.h"
#include "apps/discoplan/plot_request.h"
#include "apps/view/pointed_site.h"
#include "apps/view/settings_bag.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"
#include "hosts/headless/classic_look.h"
#include "hosts/qt/plot_widgets.h"

namespace discoplan::app {
namespace {

QString ToText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString GroupOf(const PlotControl& control) {
  return QStringLiteral("plots/") + ToText(control.root().name);
}

/// The surface of a plot, and the picture that is stretched over it.
constexpr std::array kMaps = {"PLOTA", "RePlot"};

}  // namespace

PlotTabs::PlotTabs(QWidget* parent) : QTabWidget(parent) {
  for (const ControlClass* kind : ControlClasses()) {
    qt::PlotWidget* plot = qt::NewPlotWidget(kind->name, this);
    const SettingsBag kept(GroupOf(plot->Control()));
    // Settings that no control would have written are forgotten.
    const bool has_look = !kept.IsEmpty() && Attempt([&] { plot->Control().ReadProperties(kept); });
    if (!has_look) plot->Control().InitProperties();
    auto* pages = new QStackedWidget(this);
    auto* figure = new FigureView(FigureKindOf(kind), pages);
    pages->addWidget(figure);
    pages->addWidget(plot);
    Tab& tab = *tabs_.emplace_back(std::make_unique<Tab>(Tab{plot, figure, pages, has_look}));
    addTab(pages, ToText(kind->title));
    Track(*plot);
    connect(figure, &FigureView::Pointed, this, &PlotTabs::Pointed);
    connect(plot, &qt::PlotWidget::PropertyChanged, this, [this, &tab] {
      if (!drawing_) DrawSoon(tab);
    });
  }
  connect(this, &QTabWidget::currentChanged, this, [this](int tab) {
    Q_EMIT Pointed({});
    if (!tabs_[static_cast<std::size_t>(tab)]->drawn) Draw(*tabs_[static_cast<std::size_t>(tab)]);
  });
}

// The tabs' handlers go before the tabs.
PlotTabs::~PlotTabs() {
  disconnect(this, nullptr, this, nullptr);
  for (const auto& tab : tabs_) delete tab->plot;
}

qt::PlotWidget& PlotTabs::At(int tab) const {
  return *tabs_.at(static_cast<std::size_t>(tab))->plot;
}

qt::PlotWidget& PlotTabs::Current() const { return At(currentIndex()); }

FigureView& PlotTabs::CurrentFigure() const {
  return *tabs_.at(static_cast<std::size_t>(currentIndex()))->figure;
}

void PlotTabs::Show(ShownWafer wafer) {
  wafer_ = std::move(wafer);
  figures_.reset();
  if (wafer_.measured != nullptr) FitControls();
  DrawAll();
}

void PlotTabs::SetLook(const ViewLook& look) {
  look_ = look;
  DrawAll();
}

void PlotTabs::FitControls() {
  const Wafer& measured = *wafer_.measured;
  const data::WaferSize size = {measured.diameter, measured.test_diameter};
  const bool is_same_size =
      size_ && size_->diameter == size.diameter && size_->test_diameter == size.test_diameter;
  drawing_ = true;
  for (const auto& tab : tabs_) {
    PlotControl& control = tab->plot->Control();
    // Sizes that the user chose stay for wafers of one size.
    if (is_same_size) {
      FitCaption(control, measured);
    } else {
      FitSize(control, measured);
    }
    if (!tab->fitted) FitLook(control, measured.value);
    tab->fitted = true;
  }
  drawing_ = false;
  size_ = size;
}

/// Anew with another look, of the same wafer with the values that were found.
void PlotTabs::MakeFigures() {
  if (IsClassic() || wafer_.measured == nullptr) return figures_.reset();
  try {
    const auto made = figures_ ? std::make_shared<WaferFigures>(*figures_)
                               : std::make_shared<WaferFigures>(wafer_, look_, limits_);
    made->Look(look_, limits_);
    figures_ = made;
  } catch (const std::exception& error) {
    figures_.reset();
    Q_EMIT Refused(QString::fromUtf8(error.what()));
  }
}

void PlotTabs::DrawAll() {
  MakeFigures();
  for (const auto& tab : tabs_) tab->drawn = false;
  Draw(*tabs_[static_cast<std::size_t>(currentIndex())]);
}

/// Settings change several at a time.
void PlotTabs::DrawSoon(Tab& tab) {
  if (!tab.drawn) return;
  tab.drawn = false;
  QTimer::singleShot(0, tab.plot, [this, &tab] {
    if (&Current() == tab.plot && !tab.drawn) Draw(tab);
  });
}

void PlotTabs::Draw(Tab& tab) {
  if (drawing_) return;
  if (IsClassic()) {
    tab.pages->setCurrentWidget(tab.plot);
    return DrawControl(tab);
  }
  tab.drawn = true;
  tab.figure->Show(figures_);
  tab.pages->setCurrentWidget(tab.figure);
}

void PlotTabs::DrawControl(Tab& tab) {
  const QPointer<PlotTabs> self(this);
  drawing_ = true;
  tab.drawn = true;
  PlotControl& control = tab.plot->Control();
  if (wafer_.measured == nullptr) {
    control.clear();
    tab.plot->Sync();
  } else {
    const std::shared_ptr<const Wafer> kept = wafer_.measured;
    if (tab.plot->SetWaferData(kept->x, kept->y, kept->value) != LoadResult::Loaded) {
      Q_EMIT Refused(tr("%1: the sites don't fit a wafer of %2 mm; give it a larger diameter in "
                        "its properties")
                         .arg(QString::fromStdString(kept->name))
                         .arg(static_cast<double>(control.WaferDiameter())));
    } else {
      if (limits_) {
        control.SetPlotLimit(static_cast<float>(limits_->low), static_cast<float>(limits_->high));
      } else {
        control.ReleasePlotLimit();
      }
      tab.plot->Plot();
    }
  }
  if (self) drawing_ = false;
}

void PlotTabs::SetLimits(std::optional<Limits> limits) {
  limits_ = limits;
  DrawAll();
}

Limits PlotTabs::LimitsOrData() const {
  if (limits_) return *limits_;
  if (wafer_.measured == nullptr || wafer_.measured->value.empty()) return {};
  const auto [low, high] = MinMax(wafer_.measured->value);
  return {low, high};
}

void PlotTabs::SaveSettings() const {
  for (const auto& tab : tabs_) {
    if (!tab->fitted) continue;
    SettingsBag bag(GroupOf(tab->plot->Control()));
    tab->plot->Control().WriteProperties(bag);
  }
}

void PlotTabs::Track(qt::PlotWidget& plot) {
  for (const char* name : kMaps) {
    auto* map = plot.findChild<QWidget*>(QLatin1String(name));
    if (map == nullptr) continue;
    map->setMouseTracking(true);
    map->installEventFilter(this);
  }
}

bool PlotTabs::eventFilter(QObject* object, QEvent* event) {
  auto* map = qobject_cast<QWidget*>(object);
  if (map == nullptr || wafer_.measured == nullptr) return QTabWidget::eventFilter(object, event);
  if (event->type() == QEvent::Leave) Q_EMIT Pointed({});
  if (event->type() == QEvent::MouseMove) {
    const QPointF place = static_cast<QMouseEvent*>(event)->position();
    const QPointF share(place.x() / map->width(), place.y() / map->height());
    const auto point = PointOnWafer(Current().Control(), share);
    Q_EMIT Pointed(point ? Describe(Current().Control(), *point) : QString());
  }
  return QTabWidget::eventFilter(object, event);
}

}  // namespace discoplan::app
