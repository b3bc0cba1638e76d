// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace discoplan::qt {

/// Somebody at the display: what is done here reaches the program through the display's server.
class User {
 public:
  void MoveTo(const QWidget& widget, QPoint place) {
    const QPoint at = widget.mapToGlobal(place);
    Do({"mousemove", QString::number(at.x()), QString::number(at.y())});
  }
  void MoveTo(const QWidget& widget) { MoveTo(widget, widget.rect().center()); }
  void Click(const QWidget& widget) { Click(widget, widget.rect().center()); }
  void Click(const QWidget& widget, QPoint place) {
    MoveTo(widget, place);
    Do({"click", "1"});
  }
  void DoubleClick(const QWidget& widget, QPoint place) {
    MoveTo(widget, place);
    Do({"click", "--repeat", "2", "--delay", "40", "1"});
  }
  void Type(const QString& text) { Do({"type", "--delay", "10", text}); }
  /// "Return", "Escape", "ctrl+a"
  void Press(const QString& key) { Do({"key", key}); }
  /// There is no window manager to move the focus.
  void Focus(QWidget& window) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  void Resize(const QWidget& window, QSize size) {
    Do({"windowsize", "--sync", QString::number(window.winId()), QString::number(size.width()),
        QString::number(size.height())});
  }

 private:
  static void Do(const QStringList& action) {
    QProcess server;
    server.start(QStringLiteral("xdotool"), action);
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.state() == QProcess::NotRunning; }));
    EXPECT_EQ(server.exitCode(), 0) << qPrintable(action.join(QLatin1Char(' ')));
    QTest::qWait(30);
  }
};

/// Acts as soon as a modal window of that kind stands, from within its own loop.
template <class Window>
void WhenShown(std::function<void(Window&)> act) {
  QTimer::singleShot(30, qApp, [act = std::move(act)] {
    auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
    if (window != nullptr && window->isVisible()) return act(*window);
    WhenShown<Window>(act);
  });
}

}  // namespace discoplan::qt
