#include "qgis/provider/LayerService.h"

#include <chrono>
#include <map>
#include <mutex>
#include <utility>

#include "client/facade/CatalogueImageService.h"
#include "contracts/RuntimeFailure.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {
namespace {

client::ServiceDrawing drawingOf(const LayerSource& source) {
  const host::ComposedHost host = layerHost();
  client::CatalogueImageService service(host.catalogue, *host.platform->xml, source.reference,
                                        {host.installation.definitions, {}});
  if (!source.properties.empty()) service.setServiceProperties(source.properties);
  return service.drawing();
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
  void noteGivenUp(const LayerSource& source) {
    const std::lock_guard lock(mutex_);
    givenUp_[serverOf(source)] = Clock::now();
  }
  [[nodiscard]] bool isJustGivenUp(const LayerSource& source) {
    const std::lock_guard lock(mutex_);
    const auto found = givenUp_.find(serverOf(source));
    return found != givenUp_.end() && Clock::now() - found->second < sameBreath;
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::seconds sameBreath{10};

  static std::string serverOf(const LayerSource& source) {
    return source.reference.substr(0, source.reference.rfind('/'));
  }

  std::mutex mutex_;
  std::map<QString, Service> ahead_;
  std::map<std::string, Clock::time_point> givenUp_;
};

Known& known() {
  static Known all;
  return all;
}

}  // namespace

LayerService::LayerService(const LayerSource& source) : drawing_(drawingOf(source)) {
  layer_.id = source.reference + "#" + source.properties;
  layer_.service = source.reference;
  layer_.source = [drawing = drawing_](const std::optional<client::Bounds>& area) {
    return drawing.within(area);
  };
}

std::shared_ptr<const LayerService> openedService(const LayerSource& source) {
  using Opened = std::shared_ptr<const LayerService>;
  const auto opened = std::make_shared<Opened>();
  const auto open = [opened, source] { *opened = std::make_shared<const LayerService>(source); };
  if (doPatiently(QString::fromStdString(source.reference), open) == Patiently::GivenUp) {
    known().noteGivenUp(source);
    throw RuntimeFailure("Waiting for " + source.reference + " was given up.");
  }
  return *opened;
}

std::shared_ptr<const LayerService> serviceForProvider(const LayerSource& source) {
  if (auto ahead = known().openedAhead(sourceText(source))) return ahead;
  if (known().isJustGivenUp(source))
    throw RuntimeFailure("Waiting for the server of " + source.reference + " was given up.");
  return openedService(source);
}

OpenedAhead::OpenedAhead(const LayerSource& source) : source_(sourceText(source)) {
  known().setAhead(source_, openedService(source));
}

OpenedAhead::~OpenedAhead() { known().setAhead(source_, nullptr); }

}  // namespace vlclientui::qgis
