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

}  // namespace

ExportWindowSetup::ExportWindowSetup(QString subject, std::filesystem::path folder)
    : subject_(std::move(subject)), folder_(std::move(folder)) {
  qApp->installEventFilter(this);
}

ExportWindowSetup::~ExportWindowSetup() = default;

// The window fills its boxes when it is shown for the first time, so the file comes right behind.
bool ExportWindowSetup::eventFilter(QObject* watched, QEvent* event) {
  auto* const window = event->type() == QEvent::Show ? qobject_cast<QWidget*>(watched) : nullptr;
  if (window == nullptr || !window->isWindow()) return false;
  auto* const line = window->findChild<QLineEdit*>(fileBox);
  if (line == nullptr) return false;
  qApp->removeEventFilter(this);
  if (!subject_.isEmpty())
    window->setWindowTitle(QString("%1 \u2013 %2").arg(window->windowTitle(), subject_));
  QTimer::singleShot(0, this, [this, found = QPointer(line)] {
    if (found) propose(*found);
  });
  return false;
}

// As if it had been typed, for the library takes what a person types.
void ExportWindowSetup::propose(QLineEdit& line) const {
  std::error_code error;
  if (!std::filesystem::is_directory(folder_, error) || !line.text().endsWith(unnamed)) return;
  const QString proposed = QString::fromStdString((folder_ / unnamed).string());
  line.setText(proposed);
  emit line.textEdited(proposed);
}

}  // namespace vlclientui::viewer
