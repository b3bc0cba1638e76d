// SPDX-License-Identifier: MIT
#include "hosts/qt/plot_widgets.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaProperty>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <functional>
#include <map>
#include <utility>

namespace discoplan::qt {
namespace {

const std::vector<float> kX = {0, 50, 0, -50, 0, 60, -60};
const std::vector<float> kY = {0, 0, 50, 0, -50, 60, -60};
const std::vector<float> kZ = {10, 12, 14, 16, 18, 11, 17};

std::vector<std::unique_ptr<PlotWidget>> AllNine() {
  std::vector<std::unique_ptr<PlotWidget>> widgets;
  widgets.push_back(std::make_unique<Plot2DWidget>());
  widgets.push_back(std::make_unique<Plot2DSWidget>());
  widgets.push_back(std::make_unique<Plot2DCWidget>());
  widgets.push_back(std::make_unique<Plot2DNWidget>());
  widgets.push_back(std::make_unique<Plot3DWidget>());
  widgets.push_back(std::make_unique<Plot3DSWidget>());
  widgets.push_back(std::make_unique<Plot3DBWidget>());
  widgets.push_back(std::make_unique<HistoWidget>());
  widgets.push_back(std::make_unique<LineScanWidget>());
  return widgets;
}

/// Acts once the modal window stands.
template <class Window>
void InNext(std::function<void(Window&)> act) {
  QTimer::singleShot(20, qApp, [act = std::move(act)] {
    auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
    if (window == nullptr) {
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (auto* candidate = qobject_cast<Window*>(top); candidate && candidate->isVisible()) {
          window = candidate;
        }
      }
    }
    ASSERT_NE(window, nullptr);
    act(*window);
  });
}

TEST(PlotWidgets, ShowTheirPlots) {
  for (const auto& widget : AllNine()) {
    widget->resize(480, 320);
    widget->show();
    ASSERT_EQ(widget->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
    EXPECT_EQ(widget->Plot(), PlotResult::Done);
    QApplication::processEvents();
    const QImage image = widget->grab().toImage();
    int coloured = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, y);
        coloured += colour.hsvSaturation() > 150;
      }
    }
    EXPECT_GT(coloured, 300) << widget->Control().root().name;
  }
}

TEST(PlotWidgets, AreMadeOfRealWidgets) {
  Plot2DWidget plot;
  EXPECT_NE(plot.findChild<QGroupBox*>("Frplot"), nullptr);
  EXPECT_EQ(plot.findChild<QGroupBox*>("Frplot")->title(), "Wafer");
  EXPECT_EQ(plot.findChild<QPushButton*>("Command1")->text(), "Plot- Options");
  EXPECT_NE(plot.findChild<QLabel*>("ScaleValue(1)"), nullptr);
  LineScanWidget scan;
  EXPECT_NE(scan.findChild<QLineEdit*>("AngleValue"), nullptr);
}

TEST(PlotWidgets, LoadFromListsWithoutCopies) {
  Plot2DWidget plot;
  const QList<float> x(kX.begin(), kX.end()), y(kY.begin(), kY.end()), z(kZ.begin(), kZ.end());
  EXPECT_EQ(plot.SetWaferData(x, y, z), LoadResult::Loaded);
  EXPECT_EQ(plot.control().Maximum(), 18);
}

TEST(PlotWidgets, HaveTheMembersAsProperties) {
  Plot2DWidget plot;
  EXPECT_EQ(plot.property("TestDiameter"), 194.0);
  plot.setProperty("TestDiameter", 150);
  EXPECT_EQ(plot.control().TestDiameter(), 150);
  plot.setResolution(90);
  EXPECT_EQ(plot.Resolution(), 37.5) << "as it was mended";
  plot.setResolution(0.1);
  EXPECT_EQ(plot.Resolution(), 0.1) << "though kept in 32 bits";
  plot.setProperty("PlotCaption", "Oxide");
  EXPECT_EQ(plot.findChild<QGroupBox*>("Frplot")->title(), "Oxide");
  plot.control().WaferStyle(WaferSt::Flat);
  EXPECT_EQ(plot.WaferStyle(), Plot2DWidget::WaferSt::Flat);
  plot.setProperty("WaferStyle", "Notch");
  EXPECT_EQ(plot.control().WaferStyle(), WaferSt::Notch);
  plot.setIntervalColor3(QColor(1, 2, 3));
  EXPECT_EQ(plot.control().Wafer().IntervalColor[3], 0x030201);
  EXPECT_EQ(plot.IntervalColor3(), QColor(1, 2, 3));
}

TEST(PlotWidgets, HaveEachWritablePropertyOfTheTable) {
  for (const auto& widget : AllNine()) {
    const QMetaObject& meta = *widget->metaObject();
    for (const Member& member : widget->Control().Members()) {
      if (member.kind != Member::Kind::Property || member.type == Type::Object) continue;
      const int index = meta.indexOfProperty(std::string(member.name).c_str());
      ASSERT_EQ(index >= 0, member.writable()) << meta.className() << "::" << member.name;
      if (index < 0) continue;
      const QMetaProperty property = meta.property(index);
      const QVariant value = property.read(widget.get());
      EXPECT_TRUE(value.isValid()) << member.name;
      EXPECT_EQ(property.isEnumType(), member.enumeration != nullptr) << member.name;
    }
  }
}

TEST(PlotWidgets, TellWhichPropertyChanged) {
  Plot2DWidget plot;
  const QSignalSpy diameter(&plot, &Plot2DWidget::TestDiameterChanged);
  const QSignalSpy caption(&plot, &Plot2DWidget::PlotCaptionChanged);
  plot.setTestDiameter(150);
  EXPECT_EQ(diameter.size(), 1);
  EXPECT_EQ(caption.size(), 0);
}

TEST(PlotWidgets, TellByEachSignalThatItsPropertyChanged) {
  for (const auto& widget : AllNine()) {
    const QMetaObject& meta = *widget->metaObject();
    for (int i = PlotWidget::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i) {
      const QMetaProperty property = meta.property(i);
      const QSignalSpy spy(widget.get(), property.notifySignal());
      EXPECT_TRUE(property.write(widget.get(), property.read(widget.get()))) << property.name();
      EXPECT_EQ(spy.size(), 1) << meta.className() << "::" << property.name();
    }
  }
}

TEST(PlotWidgets, LeaveAPropertyThatDoesNotFit) {
  Plot2DWidget plot;
  plot.setProperty("MousePointer", 99999);
  EXPECT_EQ(plot.MousePointer(), 0);
}

TEST(PlotWidgets, ForwardEventsAsSignals) {
  Plot3DWidget plot;
  plot.resize(480, 320);
  plot.show();
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.Plot();
  const QSignalSpy down(&plot, &PlotWidget::MouseDown), up(&plot, &PlotWidget::MouseUp),
      click(&plot, &PlotWidget::Click), changed(&plot, &PlotWidget::PropertyChanged);
  auto* surface = plot.findChild<QWidget*>("PLOTA");
  const auto send = [&](QWidget* target, QEvent::Type type) {
    QMouseEvent event(type, QPointF(10, 20), target->mapToGlobal(QPointF(10, 20)), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::ShiftModifier);
    QApplication::sendEvent(target, &event);
  };
  send(surface, QEvent::MouseButtonPress);
  send(surface, QEvent::MouseButtonRelease);
  ASSERT_EQ(down.size(), 1);
  EXPECT_EQ(up.size(), 1);
  EXPECT_EQ(click.size(), 0) << "its surface forwards no clicks";
  EXPECT_EQ(down[0][0], 1);
  EXPECT_EQ(down[0][1], 1);
  EXPECT_EQ(down[0][2].toFloat(), 10);
  plot.control().GridRotation(10);
  EXPECT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][0], "GridRotation");
}

void SendMouse(QWidget& target, QEvent::Type type) {
  QMouseEvent event(type, QPointF(10, 20), target.mapToGlobal(QPointF(10, 20)), Qt::LeftButton,
                    type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                    Qt::NoModifier);
  QApplication::sendEvent(&target, &event);
}

TEST(PlotWidgets, ForwardWhatTheirChildrenForwardAndNothingElse) {
  const std::map<QString, int> surfaces = {{"PLOTA", 0},  {"RePlot", 0},  {"FNPic", 0},
                                           {"Frame1", 0}, {"legende", 0}, {"ScaleValue(1)", 0},
                                           {"Frplot", 1}, {"frmove", 1}};
  for (const auto& [name, raised] : surfaces) {
    Plot2DWidget plot;
    plot.show();
    const QSignalSpy down(&plot, &PlotWidget::MouseDown), click(&plot, &PlotWidget::Click);
    auto* surface = plot.findChild<QWidget*>(name);
    ASSERT_NE(surface, nullptr) << qPrintable(name);
    SendMouse(*surface, QEvent::MouseButtonPress);
    SendMouse(*surface, QEvent::MouseButtonRelease);
    EXPECT_EQ(down.size(), raised) << qPrintable(name);
    EXPECT_EQ(click.size(), raised) << qPrintable(name);
  }
}

TEST(PlotWidgets, BringASurfaceBackAtAPressOnItsSnapshot) {
  Plot3DWidget plot;
  plot.show();
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.Plot();
  plot.resize(500, 400);
  auto* snapshot = plot.findChild<QWidget*>("RePlot");
  auto* surface = plot.findChild<QWidget*>("PLOTA");
  ASSERT_TRUE(snapshot->isVisible());
  const QSignalSpy down(&plot, &PlotWidget::MouseDown);
  SendMouse(*snapshot, QEvent::MouseButtonPress);
  plot.Sync();
  EXPECT_FALSE(snapshot->isVisible());
  EXPECT_TRUE(surface->isVisible());
  ASSERT_EQ(down.size(), 1);
  EXPECT_EQ(down[0][2].toFloat(), 10) << "in the picture's pixels";
}

TEST(PlotWidgets, ShowWhatChangesWithoutBeingAsked) {
  Plot2DWidget plot;
  plot.show();
  QApplication::processEvents();
  plot.control().root().Find("Frplot")->Text("Oxide");
  plot.control().root().Find("ScaleValue(1)")->Visible(false);
  QApplication::processEvents();
  EXPECT_EQ(plot.findChild<QGroupBox*>("Frplot")->title(), "Oxide");
  EXPECT_FALSE(plot.findChild<QWidget*>("ScaleValue(1)")->isVisible());
  plot.control().root().Add(NodeKind::Label, "later", {0, 0, 300, 300}).Text("new");
  QApplication::processEvents();
  ASSERT_NE(plot.findChild<QLabel*>("later"), nullptr);
  EXPECT_EQ(plot.findChild<QLabel*>("later")->text(), "new");
}

TEST(PlotWidgets, NeedLessRoomWithoutTheirLegend) {
  Plot2DWidget plot;
  plot.setMinimumSize(60, 55);
  plot.show();
  plot.resize(50, 40);
  QApplication::processEvents();
  ASSERT_EQ(plot.minimumSize(), QSize(300, 212));
  plot.setHideLegend(true);
  EXPECT_EQ(plot.minimumSize(), QSize(60, 55)) << "as the program wants it";
  plot.resize(100, 90);
  EXPECT_EQ(plot.size(), QSize(100, 90));
  plot.setHideLegend(false);
  QApplication::processEvents();
  EXPECT_EQ(plot.size(), QSize(300, 212));
}

/// A plot that can be brought to a screen of another pixel ratio.
class MovedPlot final : public PlotWidget {
 public:
  MovedPlot() : PlotWidget("Plot2D", nullptr) {}
  void MoveTo(int new_ratio) {
    ratio = new_ratio;
    QEvent moved(QEvent::ScreenChangeInternal);
    QApplication::sendEvent(this, &moved);
  }
  int ratio = 1;

 protected:
  int metric(PaintDeviceMetric which) const override {
    if (which == PdmDevicePixelRatio) return ratio;
    if (which == PdmDevicePixelRatioScaled) {
      return static_cast<int>(ratio * devicePixelRatioFScale());
    }
    return PlotWidget::metric(which);
  }
};

TEST(PlotWidgets, DrawAnewInThePixelsOfAnotherScreen) {
  MovedPlot plot;
  plot.resize(480, 320);
  plot.show();
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.Plot();
  const auto pixels = [&] {
    const Canvas& canvas = std::as_const(*plot.Control().root().Find("PLOTA")->Picture()).canvas();
    return QSize(canvas.Width(), canvas.Height());
  };
  const QSize before = pixels();
  plot.MoveTo(2);
  EXPECT_NEAR(pixels().width(), 2 * before.width(), 1);
  EXPECT_NEAR(pixels().height(), 2 * before.height(), 1);
  MovedPlot sharp;
  sharp.MoveTo(2);
  sharp.resize(480, 320);
  sharp.show();
  ASSERT_EQ(sharp.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  sharp.Plot();
  sharp.Control().SetPlotNotVaild();
  sharp.Plot();  // a second plot begins with the state that the first one left
  const auto all = [](PlotWidget& widget) {
    const auto& picture = *widget.Control().root().Find("PLOTA")->Picture();
    const auto span = std::as_const(picture).canvas().Pixels();
    return std::vector<Pixel>(span.begin(), span.end());
  };
  EXPECT_EQ(all(plot), all(sharp)) << "as if it had always been there";
}

TEST(PlotWidgets, GrowToTheirLeastSize) {
  Plot2DWidget plot;
  plot.show();
  plot.resize(50, 40);
  QApplication::processEvents();
  EXPECT_GE(plot.width(), 300);
  EXPECT_GE(plot.height(), 200);
}

TEST(PlotWidgets, EditTheirOptionsInADialog) {
  Plot2DWidget plot;
  plot.show();
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.Plot();
  InNext<QDialog>([](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Define Plot Options");
    auto* field = dialog.findChild<QLineEdit*>("tresx");
    EXPECT_EQ(field->text(), "5");
    field->setText("2.5");
    Q_EMIT field->textEdited("2.5");
    dialog.findChild<QPushButton*>("OKbtn")->click();
  });
  plot.findChild<QPushButton*>("Command1")->click();
  EXPECT_EQ(plot.control().Resolution(), 2.5F);
}

TEST(PlotWidgets, CancelADialogByItsClosing) {
  Plot2DWidget plot;
  plot.show();
  InNext<QDialog>([](QDialog& dialog) {
    auto* field = dialog.findChild<QLineEdit*>("tresx");
    Q_EMIT field->textEdited("3");
    dialog.close();
  });
  plot.control().ShowPlotOption();
  EXPECT_EQ(plot.control().Resolution(), 5);
}

TEST(PlotWidgets, MayDieInTheMiddleOfTheirDialog) {
  auto* plot = new Plot2DWidget;
  plot->show();
  ASSERT_EQ(plot->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  InNext<QDialog>([plot](QDialog&) { delete plot; });
  plot->findChild<QPushButton*>("Command1")->click();
  QApplication::processEvents();
}

TEST(PlotWidgets, MayDieInTheMiddleOfTheirPlot) {
  QPointer<Plot2DWidget> plot = new Plot2DWidget;
  plot->show();
  ASSERT_EQ(plot->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  QTimer::singleShot(0, plot, [plot] { delete plot.data(); });
  plot->Plot();
  QApplication::processEvents();
  EXPECT_TRUE(plot.isNull());
}

TEST(PlotWidgets, TurnALineScanByKeys) {
  LineScanWidget scan;
  scan.show();
  ASSERT_EQ(scan.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  scan.Plot();
  auto* field = scan.findChild<QLineEdit*>("AngleValue");
  QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
  QApplication::sendEvent(field, &up);
  EXPECT_EQ(scan.control().angle(), 1);
  EXPECT_EQ(field->text(), "1");
}

TEST(PlotWidgets, TellTheirMessagesInABox) {
  LineScanWidget scan;
  scan.show();
  InNext<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Angle value must be between 0 and 359");
    EXPECT_EQ(box.windowTitle(), "Input Error");
    box.accept();
  });
  scan.control().angle(400);
  EXPECT_EQ(scan.control().angle(), 0);
}

TEST(PlotWidgets, ComeAndGoAThousandTimes) {
  for (int round = 0; round < 1000; ++round) {
    for (const auto& widget : AllNine()) {
      if (round % 50 != 0) continue;
      widget->show();
      ASSERT_EQ(widget->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
      widget->Plot();
    }
  }
}

}  // namespace
}  // namespace discoplan::qt
