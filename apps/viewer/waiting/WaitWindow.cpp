#include "viewer/waiting/WaitWindow.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

constexpr int windowWidth = 420;
constexpr int mostOfAQuestion = 10;  // milliseconds for events

QString shownWait(const client::ServerWait& wait) {
  const QString host =
      wait.host.empty() ? WaitWindow::tr("the list of services") : QString::fromStdString(wait.host);
  if (wait.bytes == 0) return WaitWindow::tr("Waiting for %1\u2026").arg(host);
  const auto bytes = static_cast<qint64>(wait.bytes);
  return WaitWindow::tr("Waiting for %1\u2026 %2 so far").arg(host, QLocale().formattedDataSize(bytes));
}

}  // namespace

WaitWindow::WaitWindow(QWidget* parent) : QDialog(parent), text_(new QLabel) {
  setObjectName("WaitWindow");
  setWindowTitle(tr("Waiting for a server"));
  setWindowModality(Qt::ApplicationModal);
  text_->setObjectName("WaitText");
  text_->setWordWrap(true);
  auto* bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setAccessibleName(tr("Waiting for a server"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton* const cancel = buttons->button(QDialogButtonBox::Cancel);
  cancel->setObjectName("CancelWait");
  cancel->setToolTip(tr("Gives up: the server counts as one that does not answer"));
  // An Enter meant for the former window must not give up what it began.
  cancel->setAutoDefault(false);
  connect(buttons, &QDialogButtonBox::rejected, this, &WaitWindow::reject);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addWidget(text_);
  layout->addWidget(bar);
  layout->addWidget(buttons);
  setMinimumWidth(windowWidth);
  host::openHelpByKey(*this, "Adding_an_Image_Service");
}

bool WaitWindow::goOn(const client::ServerWait& wait) {
  text_->setText(shownWait(wait));
  if (!isVisible() && !isGivenUp_) show();
  const QPointer<WaitWindow> self(this);
  QCoreApplication::processEvents(QEventLoop::AllEvents, mostOfAQuestion);
  return self && !isGivenUp_;
}

void WaitWindow::reject() { isGivenUp_ = true; }

// The window may go with the one below it, while events run.
client::WaitQuestions showWaits() {
  return [] {
    struct Holder {
      ~Holder() { delete window.data(); }
      QPointer<WaitWindow> window;
      bool wasMade = false;
    };
    return client::WaitQuestion([holder = std::make_shared<Holder>()](const client::ServerWait& wait) {
      if (!holder->wasMade) holder->window = new WaitWindow(QApplication::activeWindow());
      holder->wasMade = true;
      return holder->window && holder->window->goOn(wait);
    });
  };
}

PatientWait::PatientWait(std::chrono::milliseconds untilShown)
    : untilShown_(untilShown), question_(showWaits()()) {}

PatientWait::~PatientWait() = default;

// Input of the windows would change what is waited for.
bool PatientWait::goOn(client::ServerWait wait) {
  wait.waited =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin_);
  if (wait.waited >= untilShown_) return question_(wait);
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, mostOfAQuestion);
  return true;
}

}  // namespace vlclientui::viewer
