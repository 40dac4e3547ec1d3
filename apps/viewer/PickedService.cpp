#include "PickedService.h"

#include <QApplication>
#include <QCoreApplication>

#include "ExportServices.h"
#include "ProgressWindow.h"
#include "contracts/RuntimeFailure.h"
#include "frame/Saving.h"

namespace vlclientui::viewer {
namespace {

using Base = client::OVLCatalogueImageService;
using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

PickedService::PickedService(const host::ComposedHost& host, const std::string& reference, QString title)
    : OVLCatalogueImageService(host.catalogue, *host.platform->xml, reference,
                               {host.installation.definitions, {}}),
      platform_(host.platform),
      title_(std::move(title)) {}

std::string PickedService::getProperty(const std::string& key) {
  const Lock lock(mutex_);
  return Base::getProperty(key);
}

std::string PickedService::GetDefinition(std::int32_t kind) {
  const Lock lock(mutex_);
  return Base::GetDefinition(kind);
}

std::string PickedService::ServiceProperties() {
  const Lock lock(mutex_);
  return Base::ServiceProperties();
}

std::string PickedService::ServiceInfo() {
  const Lock lock(mutex_);
  return Base::ServiceInfo();
}

std::string PickedService::GetImageMetadata(const std::string& level) {
  const Lock lock(mutex_);
  return Base::GetImageMetadata(level);
}

std::string PickedService::GetMetaData(const std::string& key) {
  const Lock lock(mutex_);
  return Base::GetMetaData(key);
}

bool PickedService::SaveProperties(const std::string& fileName) {
  const Lock lock(mutex_);
  if (Base::SaveProperties(fileName)) return true;
  tellInPassing(*platform_->toolkit, "Not saved: " + statusMessage(*platform_->xml, Base::status()));
  return false;
}

void PickedService::ExportProperties(const std::string& request) {
  const Lock lock(mutex_);
  Base::ExportProperties(request);
}

bool PickedService::ExportImage() {
  ProgressWindow window(QCoreApplication::translate("Export", "Writing the image of %1\u2026").arg(title_),
                        QApplication::activeModalWidget());
  const bool isWritten = window.run([&] {
    const Lock lock(mutex_);
    setProgress([&window](double share) { return window.report(share); });
    const bool written = Base::ExportImage();
    setProgress({});
    return written;
  });
  attempt_ = isWritten ? Attempt::Written : window.isCanceledByPerson() ? Attempt::Canceled : Attempt::Failed;
  if (attempt_ == Attempt::Canceled) throw RuntimeFailure("The export was cancelled");
  return isWritten;
}

std::string PickedService::status() {
  const Lock lock(mutex_);
  return Base::status();
}

void PickedService::follow(const std::string& properties) {
  const Lock lock(mutex_);
  setServiceProperties(properties);
}

std::optional<host::PlacedPicture> PickedService::draw(const host::GeographicEnvelope& view, int columns,
                                                       int rows) {
  const auto present = [this] {
    const Lock lock(mutex_);
    return drawing();
  }();
  auto placed = host::drawView(present, view, columns, rows);
  const Lock lock(mutex_);
  if (placed) showDrawn(present, placed->extent, placed->picture.width, placed->picture.height);
  return placed;
}

host::ServiceMarks PickedService::marks() {
  const Lock lock(mutex_);
  return host::serviceMarks(*this);
}

}  // namespace vlclientui::viewer
