// SPDX-License-Identifier: MIT
#include "hosts/qt/form_view.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>
#include <array>
#include <utility>

#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"
#include "hosts/qt/node_widgets.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

constexpr int kOptionPitch = 18;
constexpr int kFirstOption = 16;

int Pixels(float twips) { return qRound(twips / kTwipsPerPixel); }

QString Text(const Node& node) { return ToQString(node.Text(), node.Font()); }

QString LabelText(const Node& node) {
  QString text = Text(node);
  if (!node.BreakBefore().empty()) {
    const QString start = QString::fromStdString(node.BreakBefore());
    text.replace(start, QLatin1Char('\n') + start);
  }
  return text;
}

/// How much of a label's width its text takes.
double ShareOfWidth(const Node& node) {
  const QFontMetricsF metrics(FormFont(node.Font()));
  double widest = 0;
  for (const QString& line : LabelText(node).split(QLatin1Char('\n'))) {
    widest = std::max(widest, metrics.horizontalAdvance(line));
  }
  return widest * kTwipsPerPixel / std::max(1.0F, std::abs(node.Box().width));
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
  QFont font = FormFont(node.Font());
  if (share > 1) font.setPointSizeF(std::max(kSmallest, font.pointSizeF() / share));
  return font;
}

void SyncColours(const Node& node, QWidget& widget) {
  const bool is_set = node.BackColor() != kButtonFace && node.kind != NodeKind::Text;
  widget.setAutoFillBackground(is_set);
  if (!is_set) return;
  QPalette palette = widget.palette();
  palette.setColor(QPalette::Window, ColourOf(node.BackColor()));
  widget.setPalette(palette);
}

/// Who takes the mouse keeps it from what lies behind. Widgets that the user works with have their
/// own way with it.
bool TakesMouse(const Node& node) {
  constexpr std::array kThrough = {NodeKind::Button,  NodeKind::Text,    NodeKind::Check,
                                   NodeKind::Options, NodeKind::Spinner, NodeKind::Line};
  return std::ranges::find(kThrough, node.kind) == kThrough.end();
}

}  // namespace

QFont FormFont(const discoplan::Font& font) {
  QFont result = QApplication::font();
  result.setPointSizeF(static_cast<double>(font.size));
  return result;
}

FormView::FormView(Node& root, QWidget* parent) : QWidget(parent), root_(root) {
  setFont(FormFont(root.Font()));
  entries_.push_back({&root, this, {}});
  places_[&root] = widgets_[this] = 0;
  for (const auto& child : root.children()) Build(*child, this);
  installEventFilter(this);
  setMouseTracking(true);
  SetTabOrder();
  root.Watch([this](Node& node, Aspect aspect) { Note(node, aspect); });
  Sync();
}

FormView::~FormView() { root_.Watch({}); }

void FormView::Build(Node& node, QWidget* parent) {
  QWidget* widget = NewWidget(node, parent);
  widget->setObjectName(QString::fromStdString(node.name));
  Entry entry{&node, widget, {}};
  if (auto* button = qobject_cast<QPushButton*>(widget)) {
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, &node] { Act([&node] { node.Click(); }); });
  } else if (auto* field = qobject_cast<QLineEdit*>(widget)) {
    connect(field, &QLineEdit::textEdited, this, [this, &node](const QString& text) {
      Act([&node, typed = text.toStdString()] { node.Type(typed); });
    });
  } else if (auto* box = qobject_cast<QCheckBox*>(widget)) {
    connect(box, &QCheckBox::clicked, this,
            [this, &node](bool ticked) { Act([&node, ticked] { node.Tick(ticked); }); });
  } else if (auto* steps = dynamic_cast<StepBox*>(widget)) {
    steps->turned = [this, &node](int by) { Act([&node, by] { node.Spin(by); }); };
  } else if (node.kind == NodeKind::Options) {
    BuildOptions(node, entry);
  }
  widget->installEventFilter(this);
  widget->setMouseTracking(true);
  places_[&node] = widgets_[widget] = entries_.size();
  entries_.push_back(entry);
  for (const auto& child : node.children()) Build(*child, widget);
}

void FormView::BuildOptions(Node& node, Entry& entry) {
  for (std::size_t i = 0; i < node.Options().size(); ++i) {
    auto* choice = new QRadioButton(QString::fromStdString(node.Options()[i]), entry.widget);
    choice->setGeometry(8, kFirstOption + kOptionPitch * static_cast<int>(i),
                        Pixels(node.Box().width) - 16, kOptionPitch);
    connect(choice, &QRadioButton::clicked, this,
            [this, &node, i] { Act([&node, i] { node.Choose(static_cast<std::int32_t>(i)); }); });
    entry.choices.append(choice);
  }
}

void FormView::Act(const std::function<void()>& act) {
  if (syncing_) return;
  const QPointer<FormView> self(this);
  act_ ? act_(act) : act();
  if (self) Sync();
}

void FormView::Note(Node& node, Aspect aspect) {
  const auto place = places_.find(&node);
  if (place == places_.end()) return;  // it comes with the parent that has got it
  Entry& entry = entries_[place->second];
  if (aspect == Aspect::Refresh) {
    if (grown_) grown_(*entry.widget);
    return;
  }
  entry.stale |= MaskOf(aspect);
  // The labels of an array share their letters' size.
  if (node.kind == NodeKind::Label && node.parent() != nullptr && ArrayOf(node).ends_with('(')) {
    for (const auto& other : node.parent()->children()) {
      const auto found = places_.find(other.get());
      if (found == places_.end() || ArrayOf(*other) != ArrayOf(node)) continue;
      entries_[found->second].stale |= MaskOf(Aspect::Look);
    }
  }
  has_stale_ = true;
  if (std::exchange(is_due_, true)) return;
  QTimer::singleShot(0, this, [this] { Sync(); });
}

void FormView::Sync() {
  if (syncing_) return;
  is_due_ = false;
  if (!std::exchange(has_stale_, false)) return;
  syncing_ = true;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].stale & MaskOf(Aspect::Children)) {
      for (const auto& child : entries_[i].node->children()) {
        if (!places_.contains(child.get())) Build(*child, entries_[i].widget);
      }
    }
    if (entries_[i].stale != 0) SyncEntry(entries_[i]);
  }
  syncing_ = false;
}

void FormView::SyncEntry(Entry& entry) {
  const unsigned stale = std::exchange(entry.stale, 0);
  const Node& node = *entry.node;
  const auto has = [stale](auto... aspects) { return (stale & (MaskOf(aspects) | ...)) != 0; };
  if (has(Aspect::Look)) {
    SyncColours(node, *entry.widget);
    if (entry.widget != this) entry.widget->setFont(FormFont(node.Font()));
  }
  if (has(Aspect::Text, Aspect::Look, Aspect::Place)) SyncText(entry);
  if (has(Aspect::Value)) SyncValue(entry);
  if (entry.widget == this) return;
  if (has(Aspect::Place)) SyncPlace(entry);
  if (has(Aspect::Visible)) entry.widget->setVisible(node.Visible());
  if (node.kind == NodeKind::Picture || node.kind == NodeKind::Image ||
      node.kind == NodeKind::Line) {
    entry.widget->update();
    if (node.Picture()) node.Picture()->MarkShown();
  }
}

void FormView::SyncPlace(const Entry& entry) {
  const TwipsBox& box = entry.node->Box();
  const int left = Pixels(std::min(box.left, box.left + box.width));
  const int top = Pixels(std::min(box.top, box.top + box.height));
  const int thickness = entry.node->kind == NodeKind::Line ? 1 : 0;
  entry.widget->setGeometry(left, top, Pixels(std::abs(box.width)) + thickness,
                            Pixels(std::abs(box.height)) + thickness);
}

void FormView::SyncText(const Entry& entry) {
  const Node& node = *entry.node;
  if (auto* label = qobject_cast<QLabel*>(entry.widget)) {
    label->setText(LabelText(node));
    label->setFont(FittingFont(node));
    constexpr std::array kAlignments = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    label->setAlignment(kAlignments[static_cast<std::size_t>(node.Alignment())] | Qt::AlignVCenter);
  } else if (auto* frame = qobject_cast<QGroupBox*>(entry.widget)) {
    frame->setTitle(Text(node));
    frame->setFlat(!node.Bordered());
  } else if (auto* button = qobject_cast<QAbstractButton*>(entry.widget)) {
    button->setText(Text(node));
  } else if (auto* field = qobject_cast<QLineEdit*>(entry.widget)) {
    if (field->text() != Text(node)) field->setText(Text(node));
  }
}

void FormView::SyncValue(const Entry& entry) {
  const std::int32_t value = entry.node->Value();
  for (qsizetype i = 0; i < entry.choices.size(); ++i) {
    static_cast<QRadioButton*>(entry.choices[i])->setChecked(value == i);
  }
  if (auto* box = qobject_cast<QCheckBox*>(entry.widget)) box->setChecked(value != 0);
  if (auto* steps = qobject_cast<QSpinBox*>(entry.widget)) steps->setValue(value);
}

QWidget* FormView::WidgetOf(const Node* node) const {
  const auto place = places_.find(node);
  return place == places_.end() ? nullptr : entries_[place->second].widget;
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
  const bool in_pixels = node.kind == NodeKind::Picture || node.kind == NodeKind::Image;
  const float scale = in_pixels ? static_cast<float>(devicePixelRatioF()) : kTwipsPerPixel;
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
  const auto place = widgets_.find(object);
  if (place == widgets_.end()) return QWidget::eventFilter(object, event);
  const Entry& entry = entries_[place->second];
  Node& node = *entry.node;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return TakesMouse(node) && HandleMouse(node, event);
    case QEvent::KeyPress: {
      if (!node.on_key) return false;
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
      Act([&node, key] { node.Key(key == Qt::Key_Up ? 38 : 40); });
      return true;
    }
    case QEvent::FocusOut: {
      if (!node.on_leave) return false;
      const QPointer<QWidget> field(entry.widget);
      bool left = true;
      Act([&] { left = node.Leave(); });
      if (!left && field) field->setFocus();
      return false;
    }
    default:
      return QWidget::eventFilter(object, event);
  }
}

}  // namespace discoplan::qt
