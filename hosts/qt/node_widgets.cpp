// SPDX-License-Identifier: MIT
#include "hosts/qt/node_widgets.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <utility>

#include "discoplan/raster/picture.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

/// Shows a picture's own buffer, or a stretched snapshot.
class CanvasView final : public QWidget {
 public:
  CanvasView(const Node& node, QWidget* parent) : QWidget(parent), node_(node) {
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Canvas* canvas =
        node_.Picture() ? &std::as_const(*node_.Picture()).canvas() : node_.Image().get();
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
    painter.setPen(ColourOf(node_.ForeColor()));
    const bool falls = (node_.Box().width < 0) == (node_.Box().height < 0);
    painter.drawLine(falls ? rect().topLeft() : rect().bottomLeft(),
                     falls ? rect().bottomRight() : rect().topRight());
  }

 private:
  const Node& node_;
};

/// A frame whose line runs through the middle of its title, so that the children have the room that
/// their places leave to them.
class FrameBox final : public QGroupBox {
 public:
  using QGroupBox::QGroupBox;

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr int kIndent = 8;
    constexpr int kGap = 2;
    QPainter painter(this);
    const QFontMetrics metrics = painter.fontMetrics();
    const QRect line = rect().adjusted(0, metrics.height() / 2, -1, -1);
    const int width = title().isEmpty() ? 0 : metrics.horizontalAdvance(title());
    if (width > 0) {
      painter.drawText(kIndent, metrics.ascent(), title());
      painter.setClipRegion(
          QRegion(rect()).subtracted(QRect(kIndent - kGap, 0, width + 2 * kGap, metrics.height())));
    }
    if (isFlat()) return;
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(line);
  }
};

}  // namespace

QWidget* NewWidget(Node& node, QWidget* parent) {
  switch (node.kind) {
    case NodeKind::Frame:
      if (node.Bordered() || !node.Text().empty()) return new FrameBox(parent);
      return new QWidget(parent);
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

}  // namespace discoplan::qt
