#include "viewer/window/RunRecording.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSaveFile>
#include <QStatusBar>
#include <utility>

#include "client/connections/SentSecret.h"
#include "runs/RunRecorder.h"

namespace vlclientui::viewer {
namespace {

constexpr const char* ending = "vlrun";

/// @returns the problem; empty when all is well.
QString written(const std::string& text, const QString& path) {
  QSaveFile file(path);
  const auto size = static_cast<qint64>(text.size());
  const bool isWhole =
      file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size && file.commit();
  return isWhole ? QString() : file.errorString();
}

}  // namespace

RunRecording::RunRecording(QMainWindow& window, std::shared_ptr<const System> system)
    : QAction(&window), window_(window), system_(std::move(system)) {
  setObjectName("RecordRun");
  connect(this, &QAction::triggered, this, &RunRecording::clicked);
  describe();
}

RunRecording::~RunRecording() = default;

void RunRecording::describe() {
  setText(isRecording() ? tr("End the re&cording\u2026") : tr("Re&cord the windows"));
  setStatusTip(tr("Writes down what you do in the windows of services, so that vlhost run does it again"));
}

void RunRecording::clicked() {
  if (!isRecording()) {
    recorder_ = std::make_unique<runs::RunRecorder>(
        *system_, [](const std::string& typed) { return client::withoutTypedSecrets(typed).text; });
    emit said(tr("Recording what is done in the windows of services"));
    return describe();
  }
  end();
}

// What was recorded stays until it stands in a file, or nobody wants it.
bool RunRecording::end() {
  if (!isRecording()) return true;
  const bool isEmpty = recorder_->count() == 0;
  if (isEmpty) emit said(tr("Nothing was recorded"));
  if (!isEmpty && !isKept(recorder_->text()) && !mayDrop()) {
    emit said(tr("The recording goes on"));
    return false;
  }
  over();
  return true;
}

void RunRecording::over() {
  recorder_.reset();
  describe();
}

QString RunRecording::keepIn(const QString& folder) {
  if (!isRecording()) return {};
  const std::string text = recorder_->count() == 0 ? std::string() : recorder_->text();
  over();
  const QString begun = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
  const QString file = QDir(folder).filePath(QStringLiteral("recording-%1.%2").arg(begun, ending));
  return !text.empty() && QDir().mkpath(folder) && written(text, file).isEmpty() ? file : QString();
}

bool RunRecording::mayDrop() {
  QMessageBox question(QMessageBox::Question, tr("Recording not saved"),
                       tr("The recording is not saved. Drop it?"), QMessageBox::Discard | QMessageBox::Cancel,
                       &window_);
  question.setObjectName("DropRunQuestion");
  question.setDefaultButton(QMessageBox::Cancel);
  return question.exec() == QMessageBox::Discard;
}

bool RunRecording::isKept(const std::string& text) {
  QFileDialog dialog(&window_, tr("Save the recording"), {}, tr("Run files (*.%1)").arg(ending));
  dialog.setObjectName("SaveRunDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(ending);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  const QString file = dialog.selectedFiles().constFirst();
  const QString problem = written(text, file);
  if (problem.isEmpty()) {
    emit said(tr("Recording saved to %1").arg(file));
    return true;
  }
  QMessageBox::warning(&window_, tr("Save the recording"), problem);
  return false;
}

bool mayEndRecording(const QMainWindow& window) {
  auto* const recording = window.findChild<RunRecording*>(QString(), Qt::FindDirectChildrenOnly);
  return recording == nullptr || recording->end();
}

void followRecording(QMainWindow& window, const std::shared_ptr<const System>& system, const QString& menu) {
  for (QAction* const action : window.menuBar()->actions()) {
    if (!action->menu() || QString(action->text()).remove('&') != menu) continue;
    auto* const recording = new RunRecording(window, system);
    QObject::connect(recording, &RunRecording::said, window.statusBar(),
                     [&window](const QString& news) { window.statusBar()->showMessage(news); });
    action->menu()->insertAction(action->menu()->actions().constLast(), recording);
  }
}

}  // namespace vlclientui::viewer
