#include <QAbstractButton>
#include <QApplication>
#include <QChildEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <deque>
#include <utility>

#include "Desktop.h"
#include "contracts/RuntimeFailure.h"
#include "host/DesktopWindows.h"
#include "widgets/DisplayReach.h"
#include "widgets/FormWindow.h"

namespace vlclientui::python {
namespace {

constexpr int interruptMilliseconds = 200;

/// Made once and never taken away: windows may outlive whoever made them, up to the end of the process.
void makeApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  std::string problem = widgets::displayProblem();
  if (!problem.empty()) {
    problem.front() = 'T';
    throw RuntimeFailure(problem + "; QT_QPA_PLATFORM=offscreen does without one");
  }
  static int argumentCount = 1;
  static char name[] = "vlclientui";
  static char* arguments[] = {name, nullptr};
  new QApplication(argumentCount, arguments);
}

/// Pages that are put into it fill it.
class HostWindow final : public QWidget {
 public:
  explicit HostWindow(const QString& title) {
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    setLayout(new QVBoxLayout);
  }

 protected:
  void childEvent(QChildEvent* event) override {
    QWidget::childEvent(event);
    if (!event->added() || !event->child()->isWidgetType()) return;
    const QPointer<QWidget> page = static_cast<QWidget*>(event->child());
    QTimer::singleShot(0, this, [this, page] {
      if (page && page->parentWidget() == this) layout()->addWidget(page);
    });
  }
};

class QtDesktop final : public QObject, public Desktop {
 public:
  QtDesktop() {
    qApp->installEventFilter(this);
    connect(&interrupts_, &QTimer::timeout, this, [this] { lookForInterrupt(); });
    interrupts_.start(interruptMilliseconds);
  }

  host::ComposedHost compose(const host::HostOptions& options) override {
    return host::composeDesktopPlatform(options);
  }
  void watch(Answers answers) override { answers_ = std::move(answers); }
  void answerMessage(MessageAnswer answer) override { messageAnswers_.push_back(answer); }
  void chooseFile(const std::string& file) override { files_.push_back(QString::fromStdString(file)); }

  WindowHandle addHostWindow(const host::ComposedHost& host, const std::string& title) override {
    auto* const window = new HostWindow(QString::fromStdString(title));
    window->show();
    return host::windowHandleOf(host, *window);
  }

  void savePicture(const Form& form, const std::string& file) override {
    const QString path = QString::fromStdString(file);
    if (!windowOf(form).grab().save(path)) throw RuntimeFailure("The picture cannot be written to " + file);
  }

  void inNextWindow(std::function<void()> act) override {
    QTimer::singleShot(0, this, [act = std::move(act)] {
      const QPointer<QWidget> window = QApplication::activeModalWidget();
      act();
      if (window) window->close();
    });
  }

  void processEvents() override { QCoreApplication::processEvents(); }
  void run() override {
    const auto windows = QApplication::topLevelWidgets();
    if (std::ranges::any_of(windows, &QWidget::isVisible)) QCoreApplication::exec();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show) appeared(watched);
    return QObject::eventFilter(watched, event);
  }

 private:
  static widgets::FormWindow& windowOf(const Form& form) {
    for (QWidget* const widget : QApplication::allWidgets()) {
      auto* const window = dynamic_cast<widgets::FormWindow*>(widget);
      if (window != nullptr && window->form() == &form) return *window;
    }
    throw RuntimeFailure("The form has no window", FailureKind::MissingObject);
  }

  void appeared(QObject* shown) {
    if (auto* const box = qobject_cast<QMessageBox*>(shown)) return answer(*box);
    if (auto* const dialog = qobject_cast<QFileDialog*>(shown)) return choose(*dialog);
    auto* const window = dynamic_cast<widgets::FormWindow*>(shown);
    if (window == nullptr || !window->isModal() || !answers_.awaitsWindow || !answers_.awaitsWindow()) return;
    // Once the window stands, in the loop that it runs.
    QTimer::singleShot(0, window, [this, window] { visit(*window); });
  }

  void visit(widgets::FormWindow& window) {
    const QPointer<widgets::FormWindow> standing = &window;
    if (window.form() == nullptr || !answers_.awaitsWindow()) return;
    answers_.visit(*window.form());
    if (standing && standing->form() != nullptr && standing->isVisible()) standing->form()->userCloses();
  }

  void answer(QMessageBox& box) {
    if (messageAnswers_.empty()) return;
    const MessageAnswer chosen = messageAnswers_.front();
    messageAnswers_.pop_front();
    const auto button = chosen == MessageAnswer::Yes      ? QMessageBox::Yes
                        : chosen == MessageAnswer::No     ? QMessageBox::No
                        : chosen == MessageAnswer::Cancel ? QMessageBox::Cancel
                                                          : QMessageBox::Ok;
    QTimer::singleShot(0, &box, [&box, button] {
      QAbstractButton* const found = box.button(button);
      if (found != nullptr) found->click();
    });
  }

  void choose(QFileDialog& dialog) {
    if (files_.empty()) return;
    const QFileInfo file(files_.front());
    files_.pop_front();
    // Qt would complain in a box of its own, which the next answer does not belong to.
    const bool isThere = dialog.fileMode() == QFileDialog::Directory ? file.isDir() : file.isFile();
    const bool fits = dialog.acceptMode() == QFileDialog::AcceptSave || isThere;
    if (fits) dialog.selectFile(file.filePath());
    QMetaObject::invokeMethod(&dialog, fits ? "accept" : "reject", Qt::QueuedConnection);
  }

  void lookForInterrupt() {
    if (!answers_.isInterrupted || !answers_.isInterrupted()) return;
    // Every loop ends, and windows with a loop of their own close.
    QCoreApplication::exit();
  }

  Answers answers_;
  QTimer interrupts_;
  std::deque<MessageAnswer> messageAnswers_;
  std::deque<QString> files_;
};

}  // namespace

std::shared_ptr<Desktop> theDesktop() {
  // Never taken away, as the application.
  static auto& desktop = *new std::shared_ptr<Desktop>;
  makeApplication();
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw RuntimeFailure("The application of this process has no windows");
  }
  if (QCoreApplication::instance()->thread() != QThread::currentThread()) {
    throw RuntimeFailure("Windows belong to the thread that made the first of them");
  }
  if (!desktop) desktop = std::make_shared<QtDesktop>();
  return desktop;
}

}  // namespace vlclientui::python
