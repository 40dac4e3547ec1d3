#include "viewer/list/LeftOutWindow.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

constexpr QSize startSize(680, 360);

QTreeWidget* listOf(const std::vector<client::LeftOut>& leftOut) {
  auto* const list = new QTreeWidget;
  list->setObjectName("LeftOutFiles");
  list->setAccessibleName(LeftOutWindow::tr("Left out"));
  list->setHeaderLabels({LeftOutWindow::tr("File or folder"), LeftOutWindow::tr("Reason")});
  list->setRootIsDecorated(false);
  list->setAlternatingRowColors(true);
  list->setUniformRowHeights(true);
  list->setTextElideMode(Qt::ElideMiddle);
  for (const client::LeftOut& each : leftOut) {
    const QString path = QString::fromStdString(each.path);
    const QString reason = QString::fromStdString(each.reason);
    auto* const row = new QTreeWidgetItem(list, {path, reason});
    row->setToolTip(0, path);
    row->setToolTip(1, reason);
  }
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list->header()->setSectionResizeMode(1, QHeaderView::Stretch);
  return list;
}

QString textOf(const std::vector<client::LeftOut>& leftOut) {
  QString text;
  for (const client::LeftOut& each : leftOut)
    text += QString("%1\t%2\n").arg(QString::fromStdString(each.path), QString::fromStdString(each.reason));
  return text;
}

}  // namespace

LeftOutWindow::LeftOutWindow(const std::vector<client::LeftOut>& leftOut, QWidget* parent) : QDialog(parent) {
  setObjectName("LeftOutWindow");
  setWindowTitle(tr("Left out of the list"));
  auto* const intro = new QLabel(tr("These are no services, or not all of them could be read."));
  intro->setWordWrap(true);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QPushButton* const copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  copy->setObjectName("CopyLeftOut");
  connect(copy, &QPushButton::clicked, this,
          [text = textOf(leftOut)] { QGuiApplication::clipboard()->setText(text); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(intro);
  layout->addWidget(listOf(leftOut), 1);
  layout->addWidget(buttons);
  host::openHelpByKey(*this, "Adding_an_Image_Service");
  resize(startSize);
}

}  // namespace vlclientui::viewer
