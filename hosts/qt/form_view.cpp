// SPDX-License-Identifier: MIT
#include "hosts/qt/form_view.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <algorithm>

#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

constexpr int kOptionPitch = 18;
constexpr int kFirstOption = 16;

int Pixels(float twips) { return qRound(twips / kTwipsPerPixel); }

QString Text(const Node& node) { return ToQString(node.text, node.font); }

/// Shows a picture's own buffer, or a stretched snapshot.
class CanvasView final : public QWidget {
 public:
  CanvasView(const Node& node, QWidget* parent) : QWidget(parent), node_(node) {
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Canvas* canvas = node_.picture ? &node_.picture->canvas() : node_.image.get();
    QPainter painter(this);
    if (canvas == nullptr || canvas->Pixels().empty()) {
      painter.fillRect(rect(), Qt::white);
      return;
    }
    const QImage image(reinterpret_cast<const uchar*>(canvas->Pixels().data()), canvas->Width(),
                       canvas->Height(), QImage::Format_RGB32);
    painter.drawImage(rect(), image);
  }

 private:
  const Node& node_;
};

/// A line over its neighbours, through which they are reached by the mouse.
class LineView final : public QWidget {
 public:
  LineView(const Node& node, QWidget* parent) : QWidget(parent), node_(node) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(ColourOf(node_.fore_color));
    const bool falls = (node_.box.width < 0) == (node_.box.height < 0);
    painter.drawLine(falls ? rect().topLeft() : rect().bottomLeft(),
                     falls ? rect().bottomRight() : rect().topRight());
  }

 private:
  const Node& node_;
};

/// A spin box that only tells how far it was turned.
class StepBox final : public QSpinBox {
 public:
  explicit StepBox(QWidget* parent) : QSpinBox(parent) {
    setRange(-1, 361);
    setFocusPolicy(Qt::NoFocus);
  }
  std::function<void(int)> turned;

  void stepBy(int steps) override {
    if (turned) turned(steps);
  }
};

QWidget* NewWidget(Node& node, QWidget* parent) {
  switch (node.kind) {
    case NodeKind::Frame:
      return node.bordered || !node.text.empty() ? new QGroupBox(parent) : new QWidget(parent);
    case NodeKind::Label:
      return new QLabel(parent);
    case NodeKind::Picture:
    case NodeKind::Image:
      return new CanvasView(node, parent);
    case NodeKind::Button:
      return new QPushButton(parent);
    case NodeKind::Text:
      return new QLineEdit(parent);
    case NodeKind::Check:
      return new QCheckBox(parent);
    case NodeKind::Options:
      return new QGroupBox(parent);
    case NodeKind::Spinner:
      return new StepBox(parent);
    case NodeKind::Line:
      return new LineView(node, parent);
    default:
      return new QWidget(parent);
  }
}

QString LabelText(const Node& node) {
  QString text = Text(node);
  if (!node.break_before.empty()) {
    const QString start = QString::fromStdString(node.break_before);
    text.replace(start, QLatin1Char('\n') + start);
  }
  return text;
}

/// How much of a label's width its text takes.
double ShareOfWidth(const Node& node) {
  const QFontMetricsF metrics(FormFont(node.font));
  double widest = 0;
  for (const QString& line : LabelText(node).split(QLatin1Char('\n'))) {
    widest = std::max(widest, metrics.horizontalAdvance(line));
  }
  return widest * kTwipsPerPixel / std::max(1.0F, std::abs(node.box.width));
}

/// "lblX(" for a member of a control array.
std::string_view ArrayOf(const Node& node) {
  const std::string_view name = node.name;
  const std::size_t bracket = name.find('(');
  return bracket == std::string_view::npos ? name : name.substr(0, bracket + 1);
}

/// The font of a label, smaller where its text or one of its array would be cut.
QFont FittingFont(const Node& node) {
  constexpr double kSmallest = 5;
  double share = ShareOfWidth(node);
  if (node.parent() != nullptr && ArrayOf(node).ends_with('(')) {
    for (const auto& other : node.parent()->children()) {
      if (ArrayOf(*other) == ArrayOf(node)) share = std::max(share, ShareOfWidth(*other));
    }
  }
  QFont font = FormFont(node.font);
  if (share > 1) font.setPointSizeF(std::max(kSmallest, font.pointSizeF() / share));
  return font;
}

void SyncColours(const Node& node, QWidget& widget) {
  const bool is_set = node.back_color != kButtonFace && node.kind != NodeKind::Text;
  widget.setAutoFillBackground(is_set);
  if (!is_set) return;
  QPalette palette = widget.palette();
  palette.setColor(QPalette::Window, ColourOf(node.back_color));
  widget.setPalette(palette);
}

}  // namespace

QFont FormFont(const discoplan::Font& font) {
  QFont result = QApplication::font();
  result.setPointSizeF(static_cast<double>(font.size));
  return result;
}

FormView::FormView(Node& root, QWidget* parent) : QWidget(parent) {
  setFont(FormFont(root.font));
  entries_.push_back({&root, this, {}});
  for (const auto& child : root.children()) Build(*child, this);
  if (root.forwards != 0) installEventFilter(this);
  setMouseTracking(true);
  SetTabOrder();
  Sync();
}

void FormView::Build(Node& node, QWidget* parent) {
  QWidget* widget = NewWidget(node, parent);
  widget->setObjectName(QString::fromStdString(node.name));
  widget->setFont(FormFont(node.font));
  Entry entry{&node, widget, {}};
  if (auto* button = qobject_cast<QPushButton*>(widget)) {
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, &node] { Act(node.on_click); });
  } else if (auto* field = qobject_cast<QLineEdit*>(widget)) {
    field->installEventFilter(this);
    connect(field, &QLineEdit::textEdited, this, [this, &node](const QString& text) {
      node.text = text.toStdString();
      Act(node.on_change);
    });
  } else if (auto* box = qobject_cast<QCheckBox*>(widget)) {
    connect(box, &QCheckBox::clicked, this, [this, &node](bool ticked) {
      node.value = ticked ? 1 : 0;
      Act(node.on_change);
    });
  } else if (auto* steps = dynamic_cast<StepBox*>(widget)) {
    steps->turned = [this, &node](int by) {
      Act([&node, by] {
        if (node.on_spin) node.on_spin(by);
      });
    };
  } else if (node.kind == NodeKind::Options) {
    BuildOptions(node, entry);
  }
  if (node.forwards != 0) widget->installEventFilter(this);
  widget->setMouseTracking(true);  // a child without handlers passes the mouse on
  entries_.push_back(entry);
  for (const auto& child : node.children()) Build(*child, widget);
}

void FormView::BuildOptions(Node& node, Entry& entry) {
  for (std::size_t i = 0; i < node.options.size(); ++i) {
    auto* choice = new QRadioButton(QString::fromStdString(node.options[i]), entry.widget);
    choice->setGeometry(8, kFirstOption + kOptionPitch * static_cast<int>(i),
                        Pixels(node.box.width) - 16, kOptionPitch);
    connect(choice, &QRadioButton::clicked, this, [this, &node, i] {
      if (node.value == static_cast<std::int32_t>(i)) return;
      node.value = static_cast<std::int32_t>(i);
      Act(node.on_change);
    });
    entry.choices.append(choice);
  }
}

void FormView::Act(const std::function<void()>& handler) {
  if (!handler || syncing_) return;
  const QPointer<FormView> self(this);
  const std::function<void()> kept = handler;
  act_ ? act_(kept) : kept();
  if (self) Sync();
}

void FormView::Sync() {
  if (syncing_) return;
  syncing_ = true;
  for (const Entry& entry : entries_) SyncEntry(entry);
  syncing_ = false;
}

void FormView::SyncEntry(const Entry& entry) {
  const Node& node = *entry.node;
  SyncColours(node, *entry.widget);
  SyncValue(entry);
  if (entry.widget == this) return;
  const TwipsBox& box = node.box;
  const int left = Pixels(std::min(box.left, box.left + box.width));
  const int top = Pixels(std::min(box.top, box.top + box.height));
  const int thickness = node.kind == NodeKind::Line ? 1 : 0;
  entry.widget->setGeometry(left, top, Pixels(std::abs(box.width)) + thickness,
                            Pixels(std::abs(box.height)) + thickness);
  entry.widget->setVisible(node.visible);
  if (node.kind == NodeKind::Picture || node.kind == NodeKind::Image ||
      node.kind == NodeKind::Line) {
    entry.widget->update();
  }
}

void FormView::SyncValue(const Entry& entry) {
  const Node& node = *entry.node;
  if (auto* label = qobject_cast<QLabel*>(entry.widget)) {
    label->setText(LabelText(node));
    label->setFont(FittingFont(node));
    constexpr std::array kAlignments = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    label->setAlignment(kAlignments[static_cast<std::size_t>(node.alignment)] | Qt::AlignVCenter);
  } else if (auto* frame = qobject_cast<QGroupBox*>(entry.widget)) {
    frame->setTitle(Text(node));
    frame->setFlat(!node.bordered);
    for (qsizetype i = 0; i < entry.choices.size(); ++i) {
      static_cast<QRadioButton*>(entry.choices[i])->setChecked(node.value == i);
    }
  } else if (auto* button = qobject_cast<QAbstractButton*>(entry.widget)) {
    button->setText(Text(node));
    if (button->isCheckable()) button->setChecked(node.value != 0);
  } else if (auto* field = qobject_cast<QLineEdit*>(entry.widget)) {
    if (field->text() != Text(node)) field->setText(Text(node));
  } else if (auto* steps = qobject_cast<QSpinBox*>(entry.widget)) {
    steps->setValue(node.value);
  }
}

QWidget* FormView::WidgetOf(const Node* node) const {
  const auto entry = std::ranges::find(entries_, node, &Entry::node);
  return entry == entries_.end() ? nullptr : entry->widget;
}

/// Reading order; a label is the buddy of the field behind it.
void FormView::SetTabOrder() {
  QWidget* previous = nullptr;
  QLabel* label = nullptr;
  for (const Entry& entry : entries_) {
    if (auto* text = qobject_cast<QLabel*>(entry.widget)) label = text;
    if (entry.widget->focusPolicy() == Qt::NoFocus) continue;
    if (label != nullptr && qobject_cast<QLineEdit*>(entry.widget) != nullptr) {
      label->setBuddy(entry.widget);
      entry.widget->setAccessibleName(label->text());
      label = nullptr;
    }
    if (previous != nullptr) setTabOrder(previous, entry.widget);
    previous = entry.widget;
  }
}

bool FormView::HandleMouse(Node& node, QEvent* event) {
  const auto* mouse = static_cast<QMouseEvent*>(event);
  const float scale = node.picture ? static_cast<float>(devicePixelRatioF()) : kTwipsPerPixel;
  const Qt::KeyboardModifiers keys = mouse->modifiers();
  const auto bit = [](bool set, int value) { return set ? value : 0; };
  const Qt::MouseButtons buttons =
      event->type() == QEvent::MouseMove ? mouse->buttons() : mouse->button();
  const MouseOnNode heard{
      .type = event->type(),
      .button = bit(buttons & Qt::LeftButton, 1) | bit(buttons & Qt::RightButton, 2) |
                bit(buttons & Qt::MiddleButton, 4),
      .shift = bit(keys & Qt::ShiftModifier, 1) | bit(keys & Qt::ControlModifier, 2) |
               bit(keys & Qt::AltModifier, 4),
      .x = static_cast<float>(mouse->position().x()) * scale,
      .y = static_cast<float>(mouse->position().y()) * scale};
  if (heard_) heard_(node, heard);
  return true;  // what lies behind hears of its own mouse only
}

bool FormView::eventFilter(QObject* object, QEvent* event) {
  const auto entry = std::ranges::find_if(
      entries_, [&](const Entry& candidate) { return candidate.widget == object; });
  if (entry == entries_.end()) return QWidget::eventFilter(object, event);
  Node& node = *entry->node;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return node.forwards != 0 && HandleMouse(node, event);
    case QEvent::KeyPress: {
      if (!node.on_key) return false;
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
      Act([&node, key] { node.on_key(key == Qt::Key_Up ? 38 : 40); });
      return true;
    }
    case QEvent::FocusOut: {
      if (!node.on_leave) return false;
      QPointer<QWidget> field(entry->widget);
      bool left = true;
      Act([&] { left = node.on_leave(); });
      if (!left && field) field->setFocus();
      return false;
    }
    default:
      return QWidget::eventFilter(object, event);
  }
}

}  // namespace discoplan::qt
