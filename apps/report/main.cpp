// SPDX-License-Identifier: MIT
#include <QGuiApplication>
#include <cstdio>

#include "apps/discoplan/run.h"
#include "apps/report/report_commands.h"

namespace {

/// Paper needs no folder for running programs, nor a word about it. Where memory runs short, the
/// toolkit leaves parts of a page out and says so; then there is no page.
void Tell(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))) return;
  for (const char* part : {"QPdfStream::", "qCompress"}) {
    if (message.startsWith(QLatin1String(part))) discoplan::app::EndForMemory();
  }
  std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

}  // namespace

int main(int argc, char** argv) {
  using namespace discoplan::app;
  // Paper needs no display.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(Tell);
  int toolkit_argc = 1;
  QGuiApplication toolkit(toolkit_argc, argv);
  CLI::App program("Wafers on paper", "discoplan");
  AddReportCommand(program);
  AddVectorPlotCommand(program);
  AddVectorLotCommand(program);
  return Run(program, argc, argv);
}
