// SPDX-License-Identifier: MIT
#include <QGuiApplication>

#include "apps/discoplan/run.h"
#include "apps/report/report_commands.h"

int main(int argc, char** argv) {
  using namespace discoplan::app;
  // Paper needs no display.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) qputenv("QT_LOGGING_RULES", "*=false");
  int toolkit_argc = 1;
  QGuiApplication toolkit(toolkit_argc, argv);
  CLI::App program("Wafers on paper", "discoplan");
  AddReportCommand(program);
  AddVectorPlotCommand(program);
  return Run(program, argc, argv);
}
