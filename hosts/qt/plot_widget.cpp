// SPDX-License-Identifier: MIT
#include "hosts/qt/plot_widget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMetaProperty>
#include <QPointer>
#include <QResizeEvent>
#include <QTimer>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <string_view>
#include <utility>

#include "discoplan/base/numbers.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/forms/painter.h"
#include "discoplan/raster/picture.h"
#include "hosts/qt/form_view.h"
#include "hosts/qt/qt_paper.h"
#include "hosts/qt/qt_platform.h"

namespace discoplan::qt {
namespace {

constexpr qint64 kFrame = 16;  // milliseconds between two looks at a growing plot
constexpr std::int16_t kHourglass = 11;

/// By the events of the control.
const std::map<std::string_view, void (PlotWidget::*)()> kBareSignals = {
    {"Click", &PlotWidget::Click},
    {"DblClick", &PlotWidget::DblClick},
};
const std::map<std::string_view, void (PlotWidget::*)(int, int, float, float)> kMouseSignals = {
    {"MouseDown", &PlotWidget::MouseDown},
    {"MouseMove", &PlotWidget::MouseMove},
    {"MouseUp", &PlotWidget::MouseUp},
};

/// The double that a person means by a 32-bit float: 0.1 for 0.1F.
double Meant(float value) {
  if (!std::isfinite(value)) return value;
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
  double meant = 0;
  std::from_chars(text.data(), end, meant);
  return meant;
}

QVariant ToQVariant(const Variant& value) {
  return std::visit(
      [](const auto& held) -> QVariant {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::int16_t> || std::is_same_v<T, std::int32_t>) {
          return QVariant(static_cast<int>(held));
        } else if constexpr (std::is_same_v<T, Colour>) {
          return QVariant(ColourOf(held));
        } else if constexpr (std::is_same_v<T, float>) {
          return QVariant(Meant(held));
        } else if constexpr (std::is_same_v<T, double>) {
          return QVariant(held);
        } else if constexpr (std::is_same_v<T, std::string>) {
          return QVariant(QString::fromStdString(held));
        } else {
          return {};
        }
      },
      value.value());
}

Variant FromQVariant(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::QString:
      return Variant(value.toString().toStdString());
    case QMetaType::Bool:
      return BooleanVariant(value.toBool());
    case QMetaType::QColor: {
      const QColor colour = value.value<QColor>();
      return Variant(static_cast<Colour>(colour.blue() << 16 | colour.green() << 8 | colour.red()));
    }
    default:
      return Variant(value.toDouble());
  }
}

}  // namespace

/// The control with all that it asks. It outlives its widget by as long as it is in the middle of
/// something.
class PlotHost final : public QtPlatform,
                       public Container,
                       public std::enable_shared_from_this<PlotHost> {
 public:
  explicit PlotHost(PlotWidget& widget) : QtPlatform(&widget), widget_(&widget) {}

  void Create(const char* class_name) { control = NewControl(class_name, *this, this); }

  /// Runs something that may let events pass; the widget may be gone behind it.
  template <class Action>
  void Guarded(Action&& action) {
    const std::shared_ptr<PlotHost> keep = shared_from_this();
    action();
  }

  // A widget that dies meanwhile leaves its host to the event loop below: what called this still
  // has to return through the control.
  void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) override {
    const std::shared_ptr<PlotHost> keep = shared_from_this();
    QtPlatform::ShowModal(form, done);
    LeaveToLoop(keep);
  }
  void Show(const Message& message) override {
    const std::shared_ptr<PlotHost> keep = shared_from_this();
    QtPlatform::Show(message);
    LeaveToLoop(keep);
  }
  void RunPendingEvents() override {
    const std::shared_ptr<PlotHost> keep = shared_from_this();
    QtPlatform::RunPendingEvents();
    LeaveToLoop(keep);
  }

  void PropertyChanged(std::string_view name) override {
    if (!widget_) return;
    const std::string text(name);
    const QMetaObject& meta = *widget_->metaObject();
    if (name == "PlotCaption") widget_->ShowCaption();
    const int index = meta.indexOfProperty(PropertyAnnouncedAs(name).c_str());
    if (index >= 0) meta.property(index).notifySignal().invoke(widget_);
    if (widget_) Q_EMIT widget_->PropertyChanged(QString::fromStdString(text));
  }
  void EventRaised(std::string_view name, std::span<const Variant> args) override {
    if (!widget_) return;
    if (const auto bare = kBareSignals.find(name); bare != kBareSignals.end()) {
      return Q_EMIT(widget_->*bare->second)();
    }
    Q_EMIT(widget_->*kMouseSignals.at(name))
    (args[0].AsInt16(), args[1].AsInt16(), args[2].AsFloat(), args[3].AsFloat());
  }
  void ResizeRequested(float width, float height,
                       const std::function<void(float, float)>& take) override {
    if (!widget_) return;
    const QSize wanted(qCeil(width / kTwipsPerPixel), qCeil(height / kTwipsPerPixel));
    // Another minimum than the one asked for last is the program's own.
    if (widget_->minimumSize() != asked_minimum_) own_minimum_ = widget_->minimumSize();
    asked_minimum_ = wanted.expandedTo(own_minimum_);
    widget_->setMinimumSize(asked_minimum_);
    if (widget_->size() != wanted) widget_->resize(wanted);
    take(width, height);
  }
  /// With and without its legend a control has another least size, which it asks for anew.
  void Repaint() override {
    if (!widget_ || !control || control->HideLegend() == hides_legend_) return;
    hides_legend_ = control->HideLegend();
    if (widget_->minimumSize() == asked_minimum_) widget_->setMinimumSize(own_minimum_);
  }
  void PointerChanged(std::int16_t pointer) override {
    if (!widget_) return;
    pointer == kHourglass ? widget_->setCursor(Qt::WaitCursor) : widget_->unsetCursor();
  }

  /// Shows the growing picture, but not more often than a screen does.
  void ShowGrowing(QWidget& picture) {
    if (!widget_ || (clock_.isValid() && clock_.elapsed() < kFrame)) return;
    clock_.start();
    picture.repaint();
  }

  /// A button that goes up clicks, unless it ends a double click.
  void TakeMouse(Node& node, MouseAction action) {
    control->Mouse(node, action);
    if (action.event == MouseEvent::DblClick) clicked_twice_ = true;
    if (action.event != MouseEvent::MouseUp) return;
    if (std::exchange(clicked_twice_, false)) return;
    action.event = MouseEvent::Click;
    control->Mouse(node, action);
  }

  /// The widget may have come to a screen of another resolution.
  void TakeScreen() {
    if (FollowScreen()) control->ScreenChanged();
  }

  std::unique_ptr<PlotControl> control;

 private:
  /// Some properties are announced by another name than their own.
  std::string PropertyAnnouncedAs(std::string_view name) const {
    for (const Member& member : control->Members()) {
      if (member.announced == name) return std::string(member.name);
    }
    return std::string(name);
  }
  void LeaveToLoop(const std::shared_ptr<PlotHost>& keep) const {
    if (!widget_) QTimer::singleShot(0, qApp, [keep] {});
  }

  QPointer<PlotWidget> widget_;
  QElapsedTimer clock_;
  QSize own_minimum_;    // as the program wants it
  QSize asked_minimum_;  // as the control does
  bool hides_legend_ = false;
  bool clicked_twice_ = false;
};

PlotWidget::PlotWidget(const char* class_name, QWidget* parent)
    : QWidget(parent), host_(std::make_shared<PlotHost>(*this)) {
  setFocusPolicy(Qt::StrongFocus);
  host_->Create(class_name);
  PlotControl& control = *host_->control;
  control.InitProperties();
  view_ = new FormView(control.root(), this);
  view_->OnAct(
      [this](const std::function<void()>& handler) { host_->Guarded([&] { handler(); }); });
  view_->OnMouse([this](Node& node, const MouseOnNode& mouse) {
    static const std::map<QEvent::Type, MouseEvent> kEvents = {
        {QEvent::MouseButtonPress, MouseEvent::MouseDown},
        {QEvent::MouseButtonRelease, MouseEvent::MouseUp},
        {QEvent::MouseButtonDblClick, MouseEvent::DblClick},
        {QEvent::MouseMove, MouseEvent::MouseMove}};
    MouseAction action{.event = kEvents.at(mouse.type),
                       .button = static_cast<std::int16_t>(mouse.button),
                       .shift = static_cast<std::int16_t>(mouse.shift),
                       .x = mouse.x,
                       .y = mouse.y};
    const std::shared_ptr<PlotHost> keep = host_;
    keep->TakeMouse(node, action);
  });
  view_->OnGrowth([this](QWidget& picture) { host_->ShowGrowing(picture); });
  ShowCaption();
  resize(sizeHint());
}

// Nothing of the control may call this widget any more.
PlotWidget::~PlotWidget() { delete view_; }

PlotControl& PlotWidget::Control() const { return *host_->control; }

LoadResult PlotWidget::SetWaferData(std::span<const float> x, std::span<const float> y,
                                    std::span<const float> values) {
  const LoadResult result = host_->control->SetWaferData(x, y, values);
  Sync();
  return result;
}

PlotResult PlotWidget::Plot() {
  const QPointer<PlotWidget> self(this);
  const std::shared_ptr<PlotHost> keep = host_;
  const PlotResult result = keep->control->Plot();
  if (self) Sync();
  return result;
}

void PlotWidget::Sync() { view_->Sync(); }

QImage PlotWidget::Image() const {
  const TwipsBox& box = Control().root().Box();
  const Screen& screen = host_->screen();
  const int width = WholePixels(box.width / screen.twips_per_pixel_x);
  const int height = WholePixels(box.height / screen.twips_per_pixel_y);
  Canvas canvas(width, height, PixelOf(kWhite));
  PaintTree(Control().root(), canvas,
            {.resolution = screen, .text = host_->text(), .buttons = false});
  const QImage seen(reinterpret_cast<const uchar*>(canvas.Pixels().data()), width, height,
                    QImage::Format_RGB32);
  return seen.copy();
}

void PlotWidget::ShowCaption() {
  setAccessibleName(QString::fromStdString(Control().PlotCaption()));
}

QSize PlotWidget::minimumSizeHint() const { return {200, 120}; }

QVariant PlotWidget::Value(const char* property) const {
  return ToQVariant(Control().Members().At(property).Get(Control()));
}

void PlotWidget::SetValue(const char* property, const QVariant& value) {
  const QPointer<PlotWidget> self(this);
  const std::shared_ptr<PlotHost> keep = host_;
  const Member& member = keep->control->Members().At(property);
  Attempt([&] { member.Set(*keep->control, FromQVariant(value)); });
  if (self) Sync();
}

void PlotWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  view_->resize(size());
  const QPointer<PlotWidget> self(this);
  const std::shared_ptr<PlotHost> keep = host_;
  keep->control->SetSize(static_cast<float>(width()) * kTwipsPerPixel,
                         static_cast<float>(height()) * kTwipsPerPixel);
  if (self) Sync();
}

bool PlotWidget::event(QEvent* event) {
  if (event->type() == QEvent::ScreenChangeInternal) host_->TakeScreen();
  return QWidget::event(event);
}

void PlotWidget::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  host_->TakeScreen();
  host_->control->Shown();
  Sync();
}

void PlotWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (QWidget* child = view_->WidgetOf(host_->control->Focused())) child->setFocus();
}

}  // namespace discoplan::qt
