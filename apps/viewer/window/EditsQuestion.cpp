#include "viewer/window/EditsQuestion.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("Edits", text); }

class Box : public QMessageBox {
 public:
  Box(const QString& text, const QString& question, QWidget* parent)
      : QMessageBox(QMessageBox::Question, tr("Changes that wait"), text, NoButton, parent) {
    setObjectName("WaitingEdits");
    setTextFormat(Qt::PlainText);
    setInformativeText(question);
    host::openHelpByKey(*this, "Changing_service_properties");
  }
};

}  // namespace

EditsWish askAboutEdits(const QString& name, QWidget* parent) {
  Box box(tr("The changes to %1 have not been applied.").arg(name), tr("Apply them now?"), parent);
  QPushButton* const apply = box.addButton(tr("&Apply"), QMessageBox::AcceptRole);
  QPushButton* const discard = box.addButton(tr("&Discard"), QMessageBox::DestructiveRole);
  box.addButton(QMessageBox::Cancel);
  box.setDefaultButton(apply);
  box.exec();
  if (box.clickedButton() == apply) return EditsWish::Apply;
  return box.clickedButton() == discard ? EditsWish::Discard : EditsWish::Stay;
}

bool askToLoseEdits(const QString& question, QWidget* parent) {
  Box box(tr("The service has changes that have not been applied."), question, parent);
  box.addButton(QMessageBox::Yes);
  box.addButton(QMessageBox::Cancel);
  box.setDefaultButton(QMessageBox::Cancel);
  return box.exec() == QMessageBox::Yes;
}

}  // namespace vlclientui::viewer
