// SPDX-License-Identifier: MIT
#include "apps/view/look_menu.h"

#include <QActionGroup>
#include <QSettings>
#include <algorithm>

#include "discoplan/figures/colour_map.h"

namespace discoplan::app {
namespace {

QStringList NamesOf(const std::array<std::string, 4>& names) {
  QStringList list;
  for (const std::string& name : names) list += QString::fromStdString(name);
  return list;
}

QString KeyOf(const char* key) { return QStringLiteral("look/") + QLatin1String(key); }

}  // namespace

LookMenu::LookMenu(QWidget* parent) : QMenu(tr("&Look"), parent) {
  AddChoice("look", *this, {QStringLiteral("modern"), QStringLiteral("classic")},
            {tr("&Modern"), tr("Cla&ssic")});
  addSeparator();
  const QStringList colours = QString::fromStdString(figures::ColourMapNames()).split(", ");
  AddChoice("colours", *addMenu(tr("&Colours")), colours, colours);
  AddChoice("interpolation", *addMenu(tr("&Between the sites")),
            {QStringLiteral("smooth"), QStringLiteral("idw4")},
            {tr("&Smooth (thin-plate spline)"), tr("Mean of &four (as classic)")});
  const QStringList marks = {QStringLiteral("notch"), QStringLiteral("flat")};
  QMenu* mark = addMenu(tr("&Notch or flat"));
  AddChoice("mark", *mark, marks, {tr("&Notch"), tr("&Flat")});
  mark->addSeparator();
  AddChoice("side", *mark, NamesOf(NotchSides()),
            {tr("At the &bottom"), tr("At the &left"), tr("At the &top"), tr("At the &right")});
  addSeparator();
  AddSwitch("values", tr("&Values at the sites"));
  AddSwitch("plain", tr("Without &isolines"));
  AddSwitch("dark", tr("&Dark"));
}

void LookMenu::AddChoice(const char* key, QMenu& menu, const QStringList& names,
                         const QStringList& titles) {
  auto* group = new QActionGroup(this);
  for (int i = 0; i < names.size(); ++i) {
    QAction* action = menu.addAction(titles[i]);
    action->setCheckable(true);
    action->setData(names[i]);
    action->setChecked(i == 0);
    group->addAction(action);
  }
  connect(group, &QActionGroup::triggered, this, &LookMenu::Changed);
  choices_.push_back({key, group});
}

void LookMenu::AddSwitch(const char* key, const QString& title) {
  QAction* action = addAction(title);
  action->setCheckable(true);
  connect(action, &QAction::triggered, this, &LookMenu::Changed);
  switches_.push_back({key, action});
}

std::string LookMenu::Chosen(const char* key) const {
  const auto choice = std::ranges::find_if(
      choices_, [key](const Choice& c) { return std::string_view(key) == c.key; });
  return choice->names->checkedAction()->data().toString().toStdString();
}

bool LookMenu::IsOn(const char* key) const {
  return std::ranges::any_of(switches_, [key](const Switch& s) {
    return std::string_view(key) == s.key && s.action->isChecked();
  });
}

QList<QAction*> LookMenu::Looks() const { return choices_.front().names->actions(); }

ViewLook LookMenu::Look() const {
  ViewLook view;
  view.look.classic = Chosen("look") == "classic";
  view.look.colours = Chosen("colours");
  view.look.interpolation = Chosen("interpolation");
  view.look.notch = Chosen("side");
  view.look.values = IsOn("values");
  view.look.no_isolines = IsOn("plain");
  view.look.dark = IsOn("dark");
  view.mark = Chosen("mark");
  return view;
}

// What was damaged by hand stays as it comes.
void LookMenu::Restore(const QSettings& kept) {
  for (const Choice& choice : choices_) {
    const QVariant name = kept.value(KeyOf(choice.key));
    for (QAction* action : choice.names->actions()) {
      if (action->data() == name) action->setChecked(true);
    }
  }
  for (const Switch& each : switches_)
    each.action->setChecked(kept.value(KeyOf(each.key)).toBool());
}

void LookMenu::Save(QSettings& kept) const {
  for (const Choice& choice : choices_) {
    kept.setValue(KeyOf(choice.key), choice.names->checkedAction()->data());
  }
  for (const Switch& each : switches_) kept.setValue(KeyOf(each.key), each.action->isChecked());
}

}  // namespace discoplan::app
