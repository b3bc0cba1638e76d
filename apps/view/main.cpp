// SPDX-License-Identifier: MIT
#include <QApplication>
#include <algorithm>
#include <array>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/data_options.h"
#include "apps/discoplan/run.h"
#include "apps/view/workbench.h"

namespace {

struct ViewRequest {
  discoplan::app::ReadRequest reading;
  std::vector<std::string> files;
  std::string look;  // as it was left, for ""
};

/// Without a display the toolkit would end the program in its own way.
void RefuseWithoutDisplay() {
#ifdef Q_OS_LINUX
  constexpr std::array kNames = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
  if (std::ranges::all_of(kNames, qEnvironmentVariableIsEmpty)) {
    throw discoplan::app::CommandError(
        "there is no display for a window (DISPLAY and WAYLAND_DISPLAY aren't set); "
        "discoplan plot draws into a file");
  }
#endif
}

}  // namespace

int main(int argc, char** argv) {
  using namespace discoplan::app;
  CLI::App program("Wafers in a window", "discoplan");
  CLI::App* command = program.add_subcommand("view", "Look at wafers in a window");
  ViewRequest request;
  command->add_option("DATA", request.files, "Measured sites: tables, lot exports or binary files")
      ->transform(InputFile());
  AddReadingOptions(*command, request.reading);
  command
      ->add_option("--look", request.look,
                   "modern figures, or the live controls; as it was left otherwise")
      ->check(CLI::IsMember({"modern", "classic"}));
  command->footer("Examples:\n  discoplan view\n  discoplan view lot.csv sites.csv");
  int status = 0;
  command->callback([&] {
    RefuseWithoutDisplay();
    int toolkit_argc = 1;
    QApplication application(toolkit_argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Discoplan"));
    QApplication::setApplicationName(QStringLiteral("discoplan-view"));
    QApplication::setApplicationDisplayName(QStringLiteral("Discoplan"));
    Workbench workbench(request.reading);
    workbench.ChooseLook(QString::fromStdString(request.look));
    workbench.show();
    QStringList files;
    for (const std::string& file : request.files) files.append(QString::fromStdString(file));
    workbench.Open(files);
    status = QApplication::exec();
  });
  const int parsed = Run(program, argc, argv);
  return parsed != 0 ? parsed : status;
}
