// How services come into the list and leave it, and are exported.
#include <QDesktopServices>
#include <QFileDialog>
#include <QSaveFile>
#include <QUrl>
#include <algorithm>
#include <system_error>

#include "host/ShownText.h"
#include "viewer/export/ExportResult.h"
#include "viewer/export/SaveJob.h"
#include "viewer/export/XmlPrint.h"
#include "viewer/list/AddServices.h"
#include "viewer/list/PickerClient.h"
#include "viewer/list/PickerSurroundings.h"
#include "viewer/project/ProjectDocument.h"
#include "viewer/window/ViewerWindow.h"

namespace vlclientui::viewer {
namespace {

QString toQString(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

}  // namespace

void ViewerWindow::openService() {
  const QString file =
      QFileDialog::getOpenFileName(this, tr("Open a service"), {},
                                   tr("Services, rasters and projects (*.VLRef *.VLDef *.VLProject *.tif "
                                      "*.tiff *.jp2 *.vrt *.png *.jpg);;All files (*)"));
  if (!file.isEmpty()) openFile(file.toStdString());
}

void ViewerWindow::openFile(const std::filesystem::path& file) {
  if (isProjectFile(file)) return desk_->open(file);
  const std::filesystem::path whole = std::filesystem::absolute(file).lexically_normal();
  listAnew(whole);
  say(tr("Opened %1").arg(toQString(whole)));
  list_->setFocus();
}

void ViewerWindow::addServices() {
  PickerSurroundings surroundings;
  const auto serverClient = std::make_shared<PickerClient>(
      composed_.catalogue, [&surroundings](const auto& leftOut) { surroundings.setLeftOut(leftOut); });
  try {
    takeSelectedServices(pickServices(
        serverClient, viewExtentDocument(map_->view(), composed_.platform->system->localeFormat())));
  } catch (const RuntimeFailure& failure) {
    tell(tr("Add services"), failure);
  }
}

void ViewerWindow::takeSelectedServices(const std::string& selectedServices) {
  const auto references = referencesIn(*composed_.platform->xml, selectedServices);
  if (references.empty()) {
    say(tr("Nothing selected"));
    return;
  }
  const int added = services_->add(references);
  handedOver_->showDocument(shown(indentedXml(selectedServices)));
  // Also of those that were listed before; the last one lies on top.
  list_->pick(services_->rowOf(references.back()));
  const QString count = added == 1 ? tr("1 service added") : tr("%1 services added").arg(added);
  const QString problem = writeSelectedServices(selectedServices);
  const QString file = toQString(selectedServicesFile_);
  say(problem.isEmpty() ? tr("%1; selected services in %2").arg(count, file)
                        : tr("%1; %2 cannot be written: %3").arg(count, file, problem));
  list_->setFocus();
}

QString ViewerWindow::writeSelectedServices(const std::string& selectedServices) const {
  std::error_code error;  // without the folder the file cannot be opened either
  std::filesystem::create_directories(selectedServicesFile_.parent_path(), error);
  QSaveFile file(toQString(selectedServicesFile_));
  const bool isWritten = file.open(QIODevice::WriteOnly) &&
                         file.write(QByteArray::fromStdString(selectedServices)) >= 0 && file.commit();
  return isWritten ? QString() : file.errorString();
}

void ViewerWindow::removeService() {
  const std::vector<int> rows = list_->selectedRows();
  if (rows.empty()) return;
  const bool isPickedGoing = std::ranges::find(rows, services_->rowOf(image_->reference())) != rows.end();
  if (isPickedGoing && !mayLose(tr("Remove it all the same?"))) return;
  if (isPickedGoing) image_->pick({}, {}, {});
  services_->remove(rows);
  say(rows.size() == 1 ? tr("Service removed") : tr("%1 services removed").arg(rows.size()));
  enableActions();
}

void ViewerWindow::exportPickedService() {
  if (pickedRow() == nullptr) return;
  const ServiceListModel::Row picked = *pickedRow();
  try {
    const ExportOutcome outcome =
        exportService(composed_, picked.reference.toStdString(), picked.name(),
                      image_->service() ? image_->service()->ServiceProperties() : std::string(),
                      placesToExport(), desk_->exportFolder());
    showExportOutcome(outcome);
  } catch (const RuntimeFailure& failure) {
    tell(tr("Export"), failure);
  }
}

std::vector<host::NamedPlace> ViewerWindow::placesToExport() const {
  std::vector<host::NamedPlace> places{{tr("Current map view").toStdString(), map_->view()}};
  if (const auto& drawn = map_->rectangle()) {
    places.push_back({tr("Drawn rectangle").toStdString(), *drawn});
  }
  return places;
}

/// A person who has canceled knows that nothing was written.
void ViewerWindow::showExportOutcome(const ExportOutcome& outcome) {
  using Attempt = PickedService::Attempt;
  if (outcome.attempt == Attempt::Canceled) return say(tr("Export cancelled"));
  if (outcome.request.empty() || outcome.attempt == Attempt::None) return say(tr("Nothing exported"));
  const bool isWritten = outcome.attempt == Attempt::Written;
  if (isWritten) desk_->noteExport(outcome.file);
  say(isWritten ? tr("Exported to %1").arg(toQString(outcome.file)) : tr("Nothing exported"));
  ExportResult window(outcome, this);
  connect(&window, &ExportResult::addToMapWanted, this, [&] { listAnew(outcome.file); });
  connect(&window, &ExportResult::openFolderWanted, this,
          [&] { QDesktopServices::openUrl(QUrl::fromLocalFile(toQString(outcome.file.parent_path()))); });
  connect(&window, &ExportResult::saveJobWanted, this,
          [&] { saveJobByPerson(*outcome.job, *composed_.platform->xml, &window); });
  window.exec();
}

// Reads a rewritten file again and puts it on top.
void ViewerWindow::listAnew(const std::filesystem::path& file) {
  const int row = services_->rowOf(toQString(file));
  const bool isPicked = row >= 0 && image_->reference() == toQString(file);
  if (isPicked && !mayLose(tr("Read it anew all the same?"))) return;
  if (isPicked) image_->pick({}, {}, {});
  if (row >= 0) services_->remove({row});
  services_->add({file.string()});
  list_->pick(0);
}

}  // namespace vlclientui::viewer
