// SPDX-License-Identifier: MIT
#include <memory>

#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/dialogs/scan_dialog.h"
#include "discoplan/dialogs/view_dialogs.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/surface_plot.h"
#include "tests/dialogs/dialog_test.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// Each dialog with the values of a new control.
const struct {
  const char* name;
  const char* frame;
  const char* caption;
  std::unique_ptr<OptionDialog> (*open)(Platform& platform, const wafer& source);
} kDialogs[] = {
    {"frmPlotOpt2d", "frmplot", "2D Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt2d>(p);
       d->SetValues(w, 5, false, kWhite);
       return d;
     }},
    {"frmPlotOpt2ds", "frmplot", "2D Sigma Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt2ds>(p);
       d->SetValues(w, 5, 0.5F, false, kWhite);
       return d;
     }},
    {"frmPlotOpt2DC", "frmplot", "2D Contour Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt2DC>(p);
       d->SetValues(w, {.interval = 1}, kWhite);
       return d;
     }},
    {"frmPlotOpt3d", "frmplot", "3D Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt3d>(p);
       d->SetValues(w, {5, 5, 40, {40, 40, 35}}, 1, kWhite);
       return d;
     }},
    {"frmPlotOpt3ds", "frmplot", "3D Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt3ds>(p);
       d->SetValues(w, {5, 5, 40, {40, 40, 35}}, 0.5F, kWhite);
       return d;
     }},
    {"frmPlotOpt3DB", "frmplot", "3D Bar Plot",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt3DB>(p);
       d->SetValues(w, {5, 5, 1, {40, 40, 35}}, kWhite);
       return d;
     }},
    {"frmPlotHist", "Frame9", "Histogram Options",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotHist>(p);
       d->SetValues(w, 10, kWhite);
       return d;
     }},
    {"frmPlotOpt1D", "Frame2", "Line Scan",
     [](Platform& p, const wafer& w) -> std::unique_ptr<OptionDialog> {
       auto d = std::make_unique<frmPlotOpt1D>(p);
       d->SetValues(w, {});
       return d;
     }},
};

class OptionDialogs : public DialogTest {
 protected:
  std::unique_ptr<OptionDialog> Open(const std::string& name) {
    for (const auto& row : kDialogs) {
      if (row.name != name) continue;
      auto dialog = row.open(host_, source_);
      dialog->Show();
      return dialog;
    }
    return nullptr;
  }
};

TEST_F(OptionDialogs, HaveACaptionAFrameAndTwoButtons) {
  for (const auto& row : kDialogs) {
    const auto dialog = Open(row.name);
    EXPECT_EQ(dialog->root().name, row.name);
    EXPECT_EQ(dialog->root().Text(), "Define Plot Options");
    EXPECT_EQ(Child(*dialog, row.frame).Text(), row.caption) << row.name;
    EXPECT_EQ(Child(*dialog, "cancel").Text(), "Cancel");
    EXPECT_EQ(dialog->accept_button()->name, "OKbtn");
    // All that a form shows lies inside it.
    for (const auto& child : dialog->root().children()) {
      EXPECT_LE(child->Right(), dialog->root().Box().width) << row.name << ' ' << child->name;
      EXPECT_LE(child->Box().top + child->Box().height, dialog->root().Box().height) << row.name;
      for (const auto& inner : child->children()) {
        EXPECT_LE(inner->Right(), child->Box().width) << row.name << ' ' << inner->name;
        EXPECT_LE(inner->Box().top + inner->Box().height, child->Box().height)
            << row.name << ' ' << inner->name;
      }
    }
  }
}

TEST_F(OptionDialogs, AnswerOkAndCancel) {
  for (const auto& row : kDialogs) {
    const auto dialog = Open(row.name);
    EXPECT_FALSE(dialog->Redraw());
    dialog->cancel_button()->on_click();
    EXPECT_FALSE(dialog->root().Visible());
    EXPECT_FALSE(dialog->Redraw());
    const auto other = Open(row.name);
    EXPECT_EQ(Ok(*other), "");
    EXPECT_FALSE(other->root().Visible());
    EXPECT_EQ(other->Redraw(), std::string(row.name) != "frmPlotHist") << row.name;
  }
}

struct CheckRow {
  const char* dialog;
  const char* field;
  const char* label;
  const char* minimum;
  const char* above_minimum;
  const char* maximum;
  const char* below_maximum;
};

// 194 / 4 + 1 is 49.5, which rounds to 50.
TEST_F(OptionDialogs, CheckTheirNumbersWithBothBoundsExcluded) {
  const CheckRow rows[] = {
      {"frmPlotOpt2d", "tresx", "Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt2ds", "tresx", "Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt2ds", "SSigma", "Sigma Range ", "0.001", "0.0011", "1000", "999.9"},
      {"frmPlotOpt2DC", "tdist", "Interval ", "0.009", "0.0091", "1000", "999.9"},
      {"frmPlotOpt3d", "tresx", "X Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3d", "tresy", "Y Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3d", "tscale", "Scale Factor ", "0.001", "0.0011", "1000", "999.9"},
      {"frmPlotOpt3ds", "tresx", "X Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3ds", "tresy", "Y Resolution ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3ds", "tscale", "Scale Factor ", "0.001", "0.0011", "1000", "999.9"},
      {"frmPlotOpt3DB", "tresx", "Bar width ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3DB", "tresy", "Bar depth ", "0.001", "0.0011", "50", "49.9"},
      {"frmPlotOpt3DB", "tscale", "Scale factor ", "0.0000001", "0.00000011", "1000", "999.9"},
      {"frmPlotHist", "tresx", "Resolution ", "1", "2", "1000", "999"},
  };
  for (const CheckRow& row : rows) {
    SCOPED_TRACE(std::string(row.dialog) + ' ' + row.field);
    const std::string label = row.label;
    const std::pair<const char*, std::string> texts[] = {
        {row.minimum, label + "not valid\n"}, {row.above_minimum, ""},
        {row.maximum, label + "not valid\n"}, {row.below_maximum, ""},
        {"", label + "can not be empty\n"},   {"-5", label + "not valid\n"}};
    for (const auto& [text, error] : texts) {
      const auto dialog = Open(row.dialog);
      Child(*dialog, row.field).Type(text);
      EXPECT_EQ(Ok(*dialog), error) << text;
      EXPECT_EQ(dialog->root().Visible(), !error.empty());
      EXPECT_EQ(dialog->Redraw(), error.empty());
    }
  }
}

TEST_F(OptionDialogs, TellATextThatIsNoNumber) {
  const auto dialog = Open("frmPlotOpt2ds");
  Child(*dialog, "tresx").Text("five");  // which no typing leaves there
  Child(*dialog, "SSigma").Text("-");
  EXPECT_EQ(Ok(*dialog), "Resolution must be numeric\nSigma Range must be numeric\n");
}

TEST_F(OptionDialogs, PutBackTheirOpeningValueWhileTyping) {
  const struct {
    const char* dialog;
    const char* field;
    const char* typed;
    const char* stands;
  } rows[] = {{"frmPlotOpt2d", "tresx", "1e1", "5"},    {"frmPlotOpt2ds", "SSigma", "x", "0.5"},
              {"frmPlotOpt2ds", "tresx", "2,5", "2,5"}, {"frmPlotOpt2DC", "tdist", "1d", "1"},
              {"frmPlotOpt3d", "tscale", "x", "40"},    {"frmPlotOpt3ds", "SSigma", "x", "0.5"},
              {"frmPlotHist", "tresx", "2.5", "10"},    {"frmPlotHist", "tresx", "1,0", "10"},
              {"frmPlotHist", "tresx", "25", "25"},     {"frmPlotHist", "tresx", "", ""}};
  for (const auto& row : rows) {
    const auto dialog = Open(row.dialog);
    Child(*dialog, row.field).Type(row.typed);
    EXPECT_EQ(Child(*dialog, row.field).Text(), row.stands) << row.dialog << ' ' << row.typed;
  }
}

TEST_F(OptionDialogs, StandWithTheirDesignTextsUntilTheyAreFilled) {
  frmPlotOpt2ds map(host_);
  frmPlotOpt3d surface(host_);
  frmPlotOpt3ds sigma(host_);
  EXPECT_EQ(Child(map, "SSigma").Text(), "0.5");
  EXPECT_EQ(Child(sigma, "SSigma").Text(), "0,5");
  for (OptionDialog* dialog :
       {static_cast<OptionDialog*>(&surface), static_cast<OptionDialog*>(&sigma)}) {
    EXPECT_EQ(Child(*dialog, "tscale").Text(), "100");
    for (const char* angle : {"talph", "tthet", "tphi"}) {
      EXPECT_EQ(Child(*dialog, angle).Text(), "90") << angle;
    }
  }
}

TEST_F(OptionDialogs, ForgetTheLastAnswerWhenTheyAreFilledAgain) {
  frmPlotOpt2d dialog(host_);
  dialog.SetValues(source_, 5, false, kWhite);
  EXPECT_EQ(Ok(dialog), "");
  EXPECT_TRUE(dialog.Redraw());
  dialog.SetValues(source_, 7, true, kBlack);
  EXPECT_FALSE(dialog.Redraw());
  EXPECT_EQ(Child(dialog, "tresx").Text(), "7");
  Child(dialog, "tresx").Type("x");
  EXPECT_EQ(Child(dialog, "tresx").Text(), "7");
}

TEST_F(OptionDialogs, TheSecondResolutionOfASigmaMapHasNoRole) {
  const auto dialog = Open("frmPlotOpt2ds");
  EXPECT_EQ(Child(*dialog, "tresyLabel").Text(), "Resolution Y: ");
  Child(*dialog, "tresy").Type("0");
  EXPECT_EQ(Ok(*dialog), "");
}

TEST_F(OptionDialogs, JoinTheirComplaints) {
  const auto dialog = Open("frmPlotOpt3d");
  Child(*dialog, "tresx").Type("");
  Child(*dialog, "tscale").Type("0");
  EXPECT_EQ(Ok(*dialog), "X Resolution can not be empty\nScale Factor not valid\n");
  EXPECT_TRUE(dialog->root().Visible());
  Child(*dialog, "tresx").Type("3");
  Child(*dialog, "tscale").Type("3");
  EXPECT_EQ(Ok(*dialog), "");
}

TEST_F(OptionDialogs, SigmaRangeOfSurfacesHasNoCheck) {
  const auto dialog = Open("frmPlotOpt3ds");
  Child(*dialog, "SSigma").Type("");
  EXPECT_EQ(Ok(*dialog), "");
}

TEST_F(OptionDialogs, CoarsestPitchFollowsTheTestDiameter) {
  for (const auto& [diameter, coarsest] :
       {std::pair{198.0F, "50"}, {202.0F, "52"}, {100.0F, "26"}}) {
    source_ = Source(diameter);  // 50.5 and 51.5 round to the even number
    const auto dialog = Open("frmPlotOpt2d");
    Child(*dialog, "tresx").Type(coarsest);
    EXPECT_EQ(Ok(*dialog), "Resolution not valid\n") << diameter;
  }
}

TEST_F(OptionDialogs, GiveBackWhatWasEdited) {
  frmPlotOpt2d map(host_);
  map.SetValues(source_, 5, true, kWhite);
  EXPECT_EQ(map.GetMarkeSites(), -1);
  EXPECT_EQ(map.GetBackColor(), kWhite);
  Child(map, "tresx").Type("2.5");
  Child(map, "optMark").Value(1);
  Child(map, "whiteback").Value(0);
  EXPECT_EQ(map.GetXRes(), 2.5F);
  EXPECT_EQ(map.GetMarkeSites(), 0);
  EXPECT_EQ(map.GetBackColor(), 0x8000000FU);
  map.SetValues(source_, 5, true, 0x123456);
  EXPECT_EQ(map.GetBackColor(), 0x8000000FU);

  frmPlotOpt2ds sigma(host_);
  sigma.SetValues(source_, 5, 1.5F, false, kWhite);
  EXPECT_EQ(sigma.GetSigRange(), 1.5F);
  EXPECT_EQ(sigma.GetMarkeSites(), 0);

  frmPlotOpt2DC contour(host_);
  contour.SetValues(source_, {.interval = 3, .mark_sites = 2, .resolution = 2, .plot_colored = 0},
                    kWhite);
  EXPECT_EQ(Child(contour, "OptQuali").Value(), 1);
  EXPECT_EQ(contour.GetDist(), 3);
  EXPECT_EQ(contour.GetMarkeSites(), 2);
  EXPECT_EQ(contour.GetReso(), 2);
  EXPECT_EQ(contour.GetShowColor(), 0);
  Child(contour, "Optcol").Value(0);
  Child(contour, "OptExcon").Value(2);
  EXPECT_EQ(contour.GetShowColor(), -1);
  EXPECT_EQ(contour.GetMarkeSites(), 3);

  frmPlotOpt3d surface(host_);
  surface.SetValues(source_, {2, 3, 40, {10, 20, 30}}, 2, kWhite);
  EXPECT_EQ(surface.GetResx(), 2);
  EXPECT_EQ(surface.GetResy(), 3);
  EXPECT_EQ(surface.GetPlotSccale(), 40);
  EXPECT_EQ(surface.GetAlp(), 10);
  EXPECT_EQ(surface.GetPhi(), 20);
  EXPECT_EQ(surface.GetThet(), 30);
  EXPECT_EQ(surface.GetPlotType(), 2);

  frmPlotHist histogram(host_);
  histogram.SetValues(source_, 10, kWhite);
  Child(histogram, "tresx").Type("12");
  Ok(histogram);
  EXPECT_TRUE(histogram.Redraw());
  EXPECT_EQ(histogram.GetResolution(), 12);
}

TEST_F(OptionDialogs, PreviewTheView) {
  frmPlotOpt3d dialog(host_);
  dialog.SetValues(source_, {}, 1, kWhite);
  const auto trace = [&](const char* name) {
    return dynamic_cast<Recording<Picture>&>(*Child(dialog, name).Picture()).TakeTrace();
  };
  const auto polygons = [](const json& calls) {
    return std::ranges::count_if(calls, [](const json& call) { return call[0] == "Polygon"; });
  };
  trace("Plot");
  trace("FNPlot");
  Child(dialog, "talph").Type("25");
  EXPECT_EQ(polygons(trace("Plot")), 100);
  EXPECT_EQ(polygons(trace("FNPlot")), 0);
  Child(dialog, "tphi").Type("200");
  EXPECT_EQ(polygons(trace("FNPlot")), 1);
  EXPECT_EQ(polygons(trace("Plot")), 0);
  Child(dialog, "tphi").Type("360");
  EXPECT_EQ(Child(dialog, "tphi").Text(), "0");
  Child(dialog, "talph").Type("100");
  EXPECT_EQ(Child(dialog, "talph").Text(), "90");
}

}  // namespace
}  // namespace discoplan
