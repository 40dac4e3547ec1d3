#include "viewer/services/ServiceLoader.h"

#include <QMetaObject>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/ServiceReference.h"
#include "client/mapping/ServicePreview.h"
#include "contracts/RuntimeFailure.h"
#include "viewer/services/Picture.h"

namespace vlclientui::viewer {
namespace {

// Large enough to fill the map, small enough to be quick.
constexpr int pictureSize = 512;

QString detailsOf(const client::RasterFacts& facts) {
  const QString bands =
      facts.bandCount == 1 ? ServiceLoader::tr("1 band") : ServiceLoader::tr("%1 bands").arg(facts.bandCount);
  return ServiceLoader::tr("%1, %2, %3 x %4")
      .arg(bands, QString::fromStdString(facts.pixelType))
      .arg(facts.columns)
      .arg(facts.rows);
}

void describe(LoadedService& service, const client::RasterFacts& facts) {
  service.title = QString::fromStdString(facts.title);
  service.details = detailsOf(facts);
  if (const auto& bounds = facts.geographicEnvelope) {
    service.envelope = host::GeographicEnvelope{bounds->xMin, bounds->yMin, bounds->xMax, bounds->yMax};
  }
}

// Those that it cannot follow any more are told when it is picked.
void follow(client::CatalogueImageService& service, const std::string& properties) {
  if (properties.empty()) return;
  try {
    service.setServiceProperties(properties);
  } catch (const RuntimeFailure&) {
    return;
  }
}

// As its properties have it.
LoadedService readSaved(const std::shared_ptr<client::CatalogueServer>& catalogue, const XmlService& xml,
                        const std::string& reference, const std::string& properties) {
  client::CatalogueImageService saved(catalogue, xml, reference);
  const client::RasterFacts facts = saved.facts();
  LoadedService service;
  describe(service, facts);
  service.title = QString::fromStdString(std::filesystem::path(reference).stem().string());
  service.isOfServer = saved.readsServers();
  follow(saved, properties);
  service.drawing = std::make_shared<const client::ServiceDrawing>(saved.drawing());
  return service;
}

LoadedService readListed(const std::shared_ptr<client::CatalogueServer>& catalogue, const XmlService& xml,
                         const std::string& reference, const std::string& properties) {
  LoadedService service;
  describe(service, catalogue->factsOf(reference));
  client::CatalogueImageService opened(catalogue, xml, reference);
  service.isOfServer = opened.readsServers();
  follow(opened, properties);
  service.drawing = std::make_shared<const client::ServiceDrawing>(opened.drawing());
  return service;
}

LoadedService read(const std::shared_ptr<client::CatalogueServer>& catalogue, const XmlService& xml,
                   const QString& reference, const std::string& properties) {
  const std::string name = reference.toStdString();
  return client::isReferenceFile(name) ? readSaved(catalogue, xml, name, properties)
                                       : readListed(catalogue, xml, name, properties);
}

// The service itself, where a file keeps only how it is seen.
std::string pictured(const std::string& reference, const XmlService& xml) {
  return client::isReferenceFile(reference) ? client::readServiceReference(reference, xml).reference
                                            : reference;
}

// Of a mosaic that servers hold a few sources must do.
QImage pictureOf(client::CatalogueServer& catalogue, const XmlService& xml, const QString& reference,
                 const LoadedService& service) {
  client::ServicePicture picture;
  if (service.isOfServer) {
    auto small = catalogue.renderThumbnail(pictured(reference.toStdString(), xml), pictureSize, pictureSize);
    picture.columns = small.width;
    picture.rows = small.height;
    picture.rgba = std::move(small.rgba);
  } else {
    const client::ServiceDrawing& drawing = *service.drawing;
    if (auto drawn = client::previewOf(*drawing.within(drawing.facts().envelope), pictureSize)) {
      picture = *std::move(drawn);
    }
  }
  return toImage(picture);
}

/// Does a piece of the work. What fails is told by the service.
template <class Work>
void attempt(LoadedService& service, Work work) {
  try {
    work();
  } catch (const RuntimeFailure& failure) {
    service.problem = QString::fromStdString(failure.description());
  } catch (const std::exception& failure) {
    service.problem = QString::fromUtf8(failure.what());
  }
}

}  // namespace

ServiceLoader::ServiceLoader(const host::ComposedHost& host, QObject* parent)
    : QObject(parent), platform_(host.platform), catalogue_(host.catalogue) {}

ServiceLoader::~ServiceLoader() {
  pool_.clear();
  for (const auto& [load, work] : open_) work.cancel();
  pool_.waitForDone();
}

void ServiceLoader::giveUp(int load) {
  if (const auto found = open_.find(load); found != open_.end()) found->second.cancel();
}

int ServiceLoader::load(const QString& reference, const std::string& properties) {
  const int load = ++loads_;
  pool_.start([this, load, reference, properties, work = open_[load]] {
    const client::CancelScope scope(work);
    LoadedService service;
    attempt(service, [&] { service = read(catalogue_, *platform_->xml, reference, properties); });
    if (service.drawing) {
      QMetaObject::invokeMethod(this, [this, load, service] { tell(load, service); });
      takePicture(reference, service);
    }
    QMetaObject::invokeMethod(this, [this, load, service] { take(load, service); });
  });
  return load;
}

int ServiceLoader::loadPicture(const QString& reference, const LoadedService& known) {
  const int load = ++loads_;
  pool_.start([this, load, reference, service = known, work = open_[load]]() mutable {
    const client::CancelScope scope(work);
    takePicture(reference, service);
    QMetaObject::invokeMethod(this, [this, load, service] { take(load, service); });
  });
  return load;
}

void ServiceLoader::takePicture(const QString& reference, LoadedService& service) const {
  service.picture = {};
  service.problem.clear();
  attempt(service, [&] { service.picture = pictureOf(*catalogue_, *platform_->xml, reference, service); });
}

bool ServiceLoader::isWanted(int load) const {
  const auto found = open_.find(load);
  return found != open_.end() && !found->second.isCanceled();
}

void ServiceLoader::tell(int load, const LoadedService& service) {
  if (isWanted(load)) emit known(load, service);
}

void ServiceLoader::take(int load, const LoadedService& service) {
  const bool isMeant = isWanted(load);
  open_.erase(load);
  if (isMeant) emit loaded(load, service);
}

}  // namespace vlclientui::viewer
