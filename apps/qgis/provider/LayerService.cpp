#include "qgis/provider/LayerService.h"

#include <map>
#include <mutex>
#include <utility>

#include "client/mapping/Stretch.h"
#include "contracts/RuntimeFailure.h"
#include "qgis/provider/GivenUpWaits.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {
namespace {

std::unique_ptr<client::CatalogueImageService> serviceOf(const LayerSource& source) {
  const host::ComposedHost host = layerHost();
  auto service = std::make_unique<client::CatalogueImageService>(
      host.catalogue, *host.platform->xml, source.reference,
      client::ImageServiceSettings{host.installation.definitions, {}});
  if (!source.properties.empty()) service->setServiceProperties(source.properties);
  return service;
}

/// What opening services has to remember. Any thread.
class Known {
 public:
  using Service = std::shared_ptr<const LayerService>;

  void setAhead(const QString& source, Service service) {
    const std::lock_guard lock(mutex_);
    if (service) {
      ahead_[source] = std::move(service);
    } else {
      ahead_.erase(source);
    }
  }
  [[nodiscard]] Service openedAhead(const QString& source) {
    const std::lock_guard lock(mutex_);
    const auto found = ahead_.find(source);
    return found == ahead_.end() ? nullptr : found->second;
  }

  GivenUpWaits givenUp;

 private:
  std::mutex mutex_;
  std::map<QString, Service> ahead_;
};

Known& known() {
  static Known all;
  return all;
}

}  // namespace

LayerService::LayerService(const LayerSource& source) : LayerService(*serviceOf(source), source) {}

LayerService::LayerService(const client::CatalogueImageService& opened, const LayerSource& source)
    : readsServers_(opened.readsServers()),
      drawing_(std::make_shared<const client::ServiceDrawing>(opened.drawing())) {
  layer_.service = source.reference;
  layer_.source = [drawing = drawing_](const std::optional<client::Bounds>& area) {
    return drawing->within(area);
  };
  color(source);
}

void LayerService::color(const LayerSource& source) {
  source_ = source;
  layer_.id = source.reference + "#" + source.properties + "#" + source.stretch;
  const auto stretch = source.stretch.empty() ? std::nullopt : client::stretchOf(source.stretch);
  layer_.stretch = stretch ? std::make_shared<const client::Stretch>(*stretch) : nullptr;
}

std::shared_ptr<const LayerService> LayerService::coloredBy(const std::string& stretch) const {
  auto colored = std::make_shared<LayerService>(*this);
  LayerSource source = source_;
  source.stretch = stretch;
  colored->color(source);
  return colored;
}

std::shared_ptr<const LayerService> openedService(const LayerSource& source) {
  using Opened = std::shared_ptr<const LayerService>;
  const auto opened = std::make_shared<Opened>();
  const auto open = [opened, source] { *opened = std::make_shared<const LayerService>(source); };
  if (doPatiently(QString::fromStdString(source.reference), open) == Patiently::GivenUp) {
    known().givenUp.note(source.reference);
    throw RuntimeFailure("Waiting for " + source.reference + " was given up.");
  }
  return *opened;
}

std::shared_ptr<const LayerService> serviceForProvider(const LayerSource& source) {
  if (auto ahead = known().openedAhead(sourceText(source))) return ahead;
  if (known().givenUp.has(source.reference))
    throw RuntimeFailure("Waiting for the server of " + source.reference + " was given up.");
  return openedService(source);
}

OpenedAhead::OpenedAhead(const LayerSource& source) : source_(sourceText(source)) {
  known().setAhead(source_, openedService(source));
}

OpenedAhead::OpenedAhead(const LayerSource& source, std::shared_ptr<const LayerService> service)
    : source_(sourceText(source)) {
  known().setAhead(source_, std::move(service));
}

OpenedAhead::~OpenedAhead() { known().setAhead(source_, nullptr); }

}  // namespace vlclientui::qgis
