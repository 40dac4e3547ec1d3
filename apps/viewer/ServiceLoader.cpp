#include "ServiceLoader.h"

#include <QMetaObject>
#include <algorithm>
#include <filesystem>

#include "client/Catalogue.h"
#include "client/Thumbnail.h"

namespace vlclientui::viewer {
namespace {

// Large enough to fill the map, small enough to be drawn at once.
constexpr int kPictureSize = 512;

QImage toImage(const client::Thumbnail& thumbnail) {
  if (thumbnail.isEmpty()) return {};
  const QImage borrowed(thumbnail.rgba.data(), thumbnail.width, thumbnail.height, thumbnail.width * 4,
                        QImage::Format_RGBA8888);
  return borrowed.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QString detailsOf(const client::RasterFacts& facts) {
  const QString bands =
      facts.bandCount == 1 ? QStringLiteral("1 band") : QString("%1 bands").arg(facts.bandCount);
  return QString("%1, %2, %3 x %4")
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

LoadedService read(client::CatalogueServer& catalogue, const std::string& reference) {
  LoadedService service;
  const auto entry = catalogue.locate(reference);
  if (!entry) return service;
  if (const auto folder = catalogue.content(entry->file.parent_path().string())) {
    const auto found = std::find_if(folder->services.begin(), folder->services.end(),
                                    [&](const auto& record) { return record.entry.file == entry->file; });
    if (found != folder->services.end()) describe(service, found->facts);
  }
  service.picture = toImage(client::renderThumbnail(*entry, kPictureSize, kPictureSize));
  return service;
}

}  // namespace

ServiceLoader::ServiceLoader(std::shared_ptr<client::CatalogueServer> catalogue, QObject* parent)
    : QObject(parent), catalogue_(std::move(catalogue)) {}

ServiceLoader::~ServiceLoader() {
  pool_.clear();
  pool_.waitForDone();
}

void ServiceLoader::load(const QString& reference) {
  pool_.start([this, reference] {
    LoadedService service;
    try {
      service = read(*catalogue_, reference.toStdString());
    } catch (const std::exception&) {
      // A service without a picture is what the list shows then.
    }
    QMetaObject::invokeMethod(this, [this, reference, service] { emit loaded(reference, service); });
  });
}

}  // namespace vlclientui::viewer
