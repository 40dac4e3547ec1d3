#include "viewer/window/RunRecording.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSaveFile>
#include <QStatusBar>
#include <utility>

#include "runs/RunRecorder.h"

namespace vlclientui::viewer {
namespace {

constexpr const char* ending = "vlrun";

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
    recorder_ = std::make_unique<runs::RunRecorder>(*system_);
    window_.statusBar()->showMessage(tr("Recording what is done in the windows of services"));
    return describe();
  }
  const std::string text = recorder_->text();
  const bool isEmpty = recorder_->count() == 0;
  recorder_.reset();
  describe();
  if (isEmpty) return window_.statusBar()->showMessage(tr("Nothing was recorded"));
  keep(text);
}

void RunRecording::keep(const std::string& text) {
  QFileDialog dialog(&window_, tr("Save the recording"), {}, tr("Run files (*.%1)").arg(ending));
  dialog.setObjectName("SaveRunDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(ending);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  QSaveFile file(dialog.selectedFiles().constFirst());
  const auto size = static_cast<qint64>(text.size());
  if (file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size && file.commit()) {
    return window_.statusBar()->showMessage(tr("Recording saved to %1").arg(file.fileName()));
  }
  QMessageBox::warning(&window_, tr("Save the recording"), file.errorString());
}

void followRecording(QMainWindow& window, const std::shared_ptr<const System>& system, const QString& menu) {
  for (QAction* const action : window.menuBar()->actions()) {
    if (!action->menu() || QString(action->text()).remove('&') != menu) continue;
    action->menu()->insertAction(action->menu()->actions().constLast(), new RunRecording(window, system));
  }
}

}  // namespace vlclientui::viewer
