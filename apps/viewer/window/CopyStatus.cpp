#include "viewer/window/CopyStatus.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>

#include "viewer/map/MapCopies.h"

namespace vlclientui::viewer {
namespace {

constexpr const char* choiceKey = "smallCopies";

QPushButton* buttonIn(QHBoxLayout& row, const char* name, const QString& text) {
  auto* const button = new QPushButton(text);
  button->setObjectName(name);
  button->setFlat(true);
  row.addWidget(button);
  return button;
}

}  // namespace

CopyStatus::CopyStatus(MapCopies& copies, QSettings& settings, QWidget* parent)
    : QWidget(parent),
      copies_(copies),
      settings_(settings),
      action_(new QAction(tr("Small cop&ies of large images"), this)),
      text_(new QLabel) {
  setObjectName("CopyStatus");
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(text_);
  text_->setObjectName("CopyText");
  yes_ = buttonIn(*row, "MakeCopies", tr("Make copies"));
  no_ = buttonIn(*row, "NoCopies", tr("No"));
  giveUp_ = buttonIn(*row, "GiveUpCopies", tr("Give up"));
  action_->setObjectName("SmallCopies");
  action_->setCheckable(true);
  action_->setToolTip(
      tr("Keeps small copies of large images without overviews in the cache, to draw them faster"));
  yes_->setToolTip(action_->toolTip());
  no_->setToolTip(tr("Asks no more, for other images neither; the view menu has it still"));
  giveUp_->setToolTip(tr("Leaves out what is being made, and what waits, until it is drawn again"));
  action_->setChecked(settings_.value(choiceKey, false).toBool());
  copies_.allow(action_->isChecked());
  connect(action_, &QAction::triggered, this, &CopyStatus::choose);
  connect(yes_, &QPushButton::clicked, this, [this] { choose(true); });
  connect(no_, &QPushButton::clicked, this, [this] { choose(false); });
  connect(giveUp_, &QPushButton::clicked, &copies_, &MapCopies::giveUp);
  connect(&copies_, &MapCopies::changed, this, &CopyStatus::refresh);
  refresh();
}

void CopyStatus::choose(bool isWanted) {
  settings_.setValue(choiceKey, isWanted);
  action_->setChecked(isWanted);
  copies_.allow(isWanted);
  refresh();
}

void CopyStatus::refresh() {
  const QString progress = copies_.progress();
  const bool isAsking = !settings_.contains(choiceKey) && copies_.isAnyWanted();
  const QString problem = action_->isChecked() ? copies_.problem() : QString();
  text_->setText(isAsking ? tr("A large image has no overviews") : progress.isEmpty() ? problem : progress);
  yes_->setVisible(isAsking);
  no_->setVisible(isAsking);
  giveUp_->setVisible(!isAsking && !progress.isEmpty());
  setVisible(!text_->text().isEmpty());
}

}  // namespace vlclientui::viewer
