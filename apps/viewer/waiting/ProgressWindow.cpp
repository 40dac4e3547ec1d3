#include "viewer/waiting/ProgressWindow.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <thread>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

constexpr int steps = 1000;
constexpr int lookEvery = 50;  // milliseconds
constexpr int windowWidth = 420;

}  // namespace

ProgressWindow::ProgressWindow(const QString& what, QWidget* parent)
    : QDialog(parent), text_(new QLabel(what)), bar_(new QProgressBar) {
  setObjectName("ProgressWindow");
  setWindowTitle(tr("Exporting"));
  setWindowModality(Qt::ApplicationModal);
  text_->setObjectName("ProgressText");
  text_->setWordWrap(true);
  bar_->setObjectName("ProgressBar");
  bar_->setRange(0, steps);
  bar_->setAccessibleName(tr("Progress of the export"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  cancel_ = buttons->button(QDialogButtonBox::Cancel);
  cancel_->setObjectName("CancelExport");
  // An Enter meant for the former window must not cancel the work that it began.
  cancel_->setAutoDefault(false);
  connect(buttons, &QDialogButtonBox::rejected, this, &ProgressWindow::reject);
  connect(&look_, &QTimer::timeout, this, &ProgressWindow::showShare);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  layout->addWidget(buttons);
  setMinimumWidth(windowWidth);
  host::openHelpByKey(*this, "Exporting_Image_Services");
}

bool ProgressWindow::run(const std::function<bool()>& work) {
  bool succeeded = false;
  std::thread worker([&] {
    succeeded = work();
    QMetaObject::invokeMethod(
        this, [this] { QDialog::accept(); }, Qt::QueuedConnection);
  });
  look_.start(lookEvery);
  exec();
  // The program may be quitting while the work runs.
  canceled_ = true;
  if (end_) end_();
  worker.join();
  return succeeded;
}

bool ProgressWindow::report(double share) {
  share_ = share;
  return !canceled_;
}

void ProgressWindow::reject() {
  canceled_ = true;
  canceledByPerson_ = true;
  cancel_->setEnabled(false);
  text_->setText(tr("Cancelling\u2026"));
  if (end_) end_();
}

void ProgressWindow::showBusy() {
  bar_->setRange(0, 0);
  bar_->setTextVisible(false);
}

void ProgressWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void ProgressWindow::showShare() {
  if (bar_->maximum() > 0) bar_->setValue(static_cast<int>(share_ * steps));
}

}  // namespace vlclientui::viewer
