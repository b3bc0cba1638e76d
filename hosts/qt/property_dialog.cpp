// SPDX-License-Identifier: MIT
#include "hosts/qt/property_dialog.h"

#include <QDialogButtonBox>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "discoplan/base/numbers.h"
#include "hosts/qt/form_view.h"
#include "hosts/qt/qt_platform.h"

namespace discoplan::qt {

PropertyDialog::PropertyDialog(PlotWidget& plot)
    : QDialog(&plot),
      plot_(plot),
      platform_(std::make_unique<QtPlatform>(this)),
      buttons_(new QDialogButtonBox(
          QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this)) {
  setWindowTitle(tr("Plot properties"));
  setObjectName(QStringLiteral("PropertyDialog"));
  auto* tabs = new QTabWidget(this);
  for (const std::string_view name : plot.Control().Class().pages) {
    PropertyPage& page = *pages_.emplace_back(NewPropertyPage(name, *platform_));
    page.Select(&plot.Control());
    const TwipsBox& box = page.root().Box();
    auto* view = new FormView(page.root(), tabs);
    view->setMinimumSize(qRound(box.width / kTwipsPerPixel), qRound(box.height / kTwipsPerPixel));
    view->OnAct([this](const std::function<void()>& handler) {
      handler();
      ShowChanged();
    });
    tabs->addTab(view, QString::fromStdString(page.root().Text()));
    views_.push_back(view);
  }
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(buttons_->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
          &PropertyDialog::Apply);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs);
  layout->addWidget(buttons_);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  ShowChanged();
}

// The views go before the nodes that they show.
PropertyDialog::~PropertyDialog() {
  for (FormView* view : views_) delete view;
}

void PropertyDialog::Apply() {
  const QPointer<PropertyDialog> self(this);
  for (std::size_t i = 0; i < pages_.size() && self; ++i) {
    PropertyPage& page = *pages_[i];
    if (!page.Changed()) continue;
    // A value beyond its type stays in its field.
    if (Attempt([&] { page.ApplyChanges(); }) && self) page.SelectionChanged();
  }
  if (!self) return;
  for (FormView* view : views_) view->Sync();
  plot_.Sync();
  ShowChanged();
}

void PropertyDialog::accept() {
  const QPointer<PropertyDialog> self(this);
  Apply();
  if (self) QDialog::accept();
}

void PropertyDialog::ShowChanged() {
  bool changed = false;
  for (const auto& page : pages_) changed = changed || page->Changed();
  buttons_->button(QDialogButtonBox::Apply)->setEnabled(changed);
}

}  // namespace discoplan::qt
