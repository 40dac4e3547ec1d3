#include "viewer/export/ExportWindowSetup.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <system_error>
#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr const char* fileBox = "uiTxtFileName";
constexpr const char* unnamed = "Untitled.tif";

QLineEdit* fileLine(const QWidget& window) { return window.findChild<QLineEdit*>(fileBox); }

}  // namespace

// As if it had been typed, for the library takes what a person types.
void proposeFile(const QWidget& window, const std::filesystem::path& folder) {
  QLineEdit* const line = fileLine(window);
  std::error_code error;
  const bool isMeant = line != nullptr && line->text().endsWith(unnamed);
  if (!isMeant || !std::filesystem::is_directory(folder, error)) return;
  const QString proposed = QString::fromStdString((folder / unnamed).string());
  line->setText(proposed);
  emit line->textEdited(proposed);
}

ExportWindowSetup::ExportWindowSetup(QString subject, std::filesystem::path folder)
    : subject_(std::move(subject)), folder_(std::move(folder)) {
  qApp->installEventFilter(this);
}

ExportWindowSetup::~ExportWindowSetup() = default;

// The window fills its boxes when it is shown for the first time, so the file comes right behind.
bool ExportWindowSetup::eventFilter(QObject* watched, QEvent* event) {
  auto* const window = event->type() == QEvent::Show ? qobject_cast<QWidget*>(watched) : nullptr;
  if (window == nullptr || !window->isWindow()) return false;
  if (fileLine(*window) == nullptr) return false;
  qApp->removeEventFilter(this);
  if (!subject_.isEmpty())
    window->setWindowTitle(QString("%1 \u2013 %2").arg(window->windowTitle(), subject_));
  QTimer::singleShot(0, this, [this, found = QPointer(window)] {
    if (found) proposeFile(*found, folder_);
  });
  return false;
}

}  // namespace vlclientui::viewer
