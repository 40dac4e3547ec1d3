#include "viewer/export/SaveJob.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <filesystem>

#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::viewer {
namespace {

QString words(const char* text) { return QCoreApplication::translate("SaveJob", text); }

QString toShown(const std::filesystem::path& file) { return QString::fromStdString(file.string()); }

}  // namespace

void saveJobByPerson(const client::ExportJob& job, const XmlService& xml, QWidget* parent) {
  QFileDialog dialog(parent, words("Save the export as a job"), toShown(job.file.parent_path()),
                     words("Jobs (*%1)").arg(client::jobEnding));
  dialog.setObjectName("SaveJobDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QString(client::jobEnding).mid(1));
  dialog.selectFile(toShown(job.file.stem()) + client::jobEnding);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  try {
    client::saveJob(job, dialog.selectedFiles().constFirst().toStdString(), xml);
  } catch (const RuntimeFailure& failure) {
    QMessageBox::warning(parent, words("Save the export as a job"),
                         QString::fromStdString(failure.description()));
  }
}

}  // namespace vlclientui::viewer
