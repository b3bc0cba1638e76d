// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QWidget>
#include <map>
#include <memory>
#include <optional>

#include "apps/discoplan/command.h"
#include "apps/discoplan/picture_request.h"
#include "apps/view/limits_dialog.h"
#include "discoplan/figures/lot_figure.h"

namespace discoplan::app {

/// A wafer that was opened.
struct ShownWafer {
  std::shared_ptr<const Wafer> measured;  ///< Null for none.
  data::Parameter parameter = {};
  QString file = {};
};

/// Which look, and what belongs to it.
struct ViewLook {
  LookRequest look;
  std::string mark = "notch";  ///< or "flat"
};

/// A wafer as its figures show it. The values between its sites are found once for all kinds.
class WaferFigures {
 public:
  /// Raises `CommandError` for sites that no such wafer holds.
  WaferFigures(ShownWafer wafer, const ViewLook& look, const std::optional<Limits>& limits);

  /// With colours and the like as they are now.
  void Look(const ViewLook& look, const std::optional<Limits>& limits);

  figures::Style StyleFor(double width, double height) const;
  figures::Figure Make(figures::PlotKind kind, const figures::Style& style,
                       const figures::TextMeasure& text) const;
  /// With what it is and where it is from over it.
  figures::Figure MakePage(figures::PlotKind kind, const figures::Style& style,
                           const figures::TextMeasure& text) const;

  const figures::WaferPlot& Plot() const { return plot_; }
  /// In mm from the centre.
  float ValueAt(figures::Point place) const;

 private:
  using Fields = std::map<figures::Interpolation, std::shared_ptr<const figures::ValueField>>;

  ShownWafer wafer_;
  LookRequest look_;
  std::shared_ptr<Fields> fields_ = std::make_shared<Fields>();
  figures::WaferPlot plot_;
};

/// Shows one kind of figure, as large as itself, with letters that grow with it.
class FigureView final : public QWidget {
  Q_OBJECT

 public:
  explicit FigureView(figures::PlotKind kind, QWidget* parent = nullptr);

  /// Null empties it.
  void Show(std::shared_ptr<const WaferFigures> figures);

  /// What is seen, in the screen's pixels.
  QImage Image();
  /// The bytes of a PNG, PDF or SVG file, as its name says. Raises `std::runtime_error`.
  std::vector<std::uint8_t> Encode(const std::string& file) const;
  figures::PlotKind Kind() const { return kind_; }

 Q_SIGNALS:
  /// What lies under the mouse; empty for nothing.
  void Pointed(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  const figures::PlotKind kind_;
  std::shared_ptr<const WaferFigures> figures_;
  QImage image_;  // null: to be painted anew
  std::optional<figures::WaferPlace> wafer_;
  double pixels_per_point_ = 1;
};

}  // namespace discoplan::app
