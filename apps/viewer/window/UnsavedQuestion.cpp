#include "viewer/window/UnsavedQuestion.h"

#include <QCoreApplication>
#include <QMessageBox>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("Unsaved", text); }

UnsavedWish ask(const QString& text, const QString& question, QWidget* parent) {
  QMessageBox box(QMessageBox::Question, tr("Unsaved changes"), text,
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
  box.setObjectName("UnsavedChanges");
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText(question);
  box.setDefaultButton(QMessageBox::Save);
  host::openHelpByKey(box, "Using_the_viewer");
  switch (box.exec()) {
    case QMessageBox::Save:
      return UnsavedWish::Save;
    case QMessageBox::Discard:
      return UnsavedWish::Discard;
    default:
      return UnsavedWish::Stay;
  }
}

}  // namespace

UnsavedWish askAboutUnsaved(const QString& name, QWidget* parent) {
  const QString text = name.isEmpty() ? tr("The map has not been saved as a project.")
                                      : tr("The changes to %1 have not been saved.").arg(name);
  return ask(text, tr("Save before another map takes its place?"), parent);
}

UnsavedWish askAboutUnkept(const QString& reason, QWidget* parent) {
  return ask(tr("The map cannot be kept for the next start: %1").arg(reason), tr("Save it as a project?"),
             parent);
}

}  // namespace vlclientui::viewer
