#include "viewer/list/ServicePane.h"

#include <QLabel>

namespace vlclientui::viewer {
namespace {

QLabel* makeHint() {
  auto* hint =
      new QLabel(ServicePane::tr("The services that you pick are listed here, with a picture of each.\n\n"
                                 "Press Ctrl+N to pick some, or drop files and folders here."));
  hint->setWordWrap(true);
  hint->setAlignment(Qt::AlignCenter);
  hint->setMargin(24);
  hint->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  hint->setBackgroundRole(QPalette::Base);
  hint->setAutoFillBackground(true);
  return hint;
}

}  // namespace

ServicePane::ServicePane(ServiceListModel& services, QWidget* parent)
    : QStackedWidget(parent), services_(services), list_(new ServiceList(services)) {
  addWidget(makeHint());
  addWidget(list_);
  connect(&services_, &QAbstractItemModel::rowsInserted, this, &ServicePane::showWhatIsThere);
  connect(&services_, &QAbstractItemModel::rowsRemoved, this, &ServicePane::showWhatIsThere);
}

void ServicePane::showWhatIsThere() { setCurrentIndex(services_.rowCount() == 0 ? 0 : 1); }

}  // namespace vlclientui::viewer
