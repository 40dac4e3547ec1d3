#include "viewer/window/HandedOverPane.h"

#include <QAction>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace vlclientui::viewer {

HandedOverPane::HandedOverPane(QWidget* parent)
    : QWidget(parent),
      document_(new QPlainTextEdit),
      toggle_(new QAction(tr("&Handed-over document"), this)) {
  document_->setObjectName("SelectedServicesDocument");
  document_->setReadOnly(true);
  document_->setTabChangesFocus(true);
  document_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  document_->setPlaceholderText(tr("The document of selected services appears here."));
  auto* const heading = new QLabel(tr("Handed &over by the add-service window"));
  heading->setBuddy(document_);
  heading->setContentsMargins(4, 4, 4, 2);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(4, 4, 4, 4);
  rows->setSpacing(2);
  rows->addWidget(heading);
  rows->addWidget(document_, 1);
  hide();
  toggle_->setObjectName("ShowHandedOver");
  toggle_->setCheckable(true);
  toggle_->setToolTip(tr("What the add-service window gave to this program, for those who write one"));
  connect(toggle_, &QAction::toggled, this, &QWidget::setVisible);
}

void HandedOverPane::showDocument(const QString& text) { document_->setPlainText(text); }

}  // namespace vlclientui::viewer
