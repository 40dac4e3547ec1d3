#include "qgis/provider/OpeningBeside.h"

#include <QMetaObject>
#include <exception>
#include <mutex>

#include "client/facade/CancelSwitch.h"
#include "contracts/RuntimeFailure.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {

/// What both threads know of it.
struct OpeningBeside::Shared {
  void run(const LayerSource& source) {
    const client::CancelScope scope(canceling);
    std::shared_ptr<const LayerService> service;
    QString problem;
    try {
      service = std::make_shared<const LayerService>(source);
    } catch (const RuntimeFailure& failure) {
      problem = QString::fromStdString(failure.description());
    } catch (const std::exception& failure) {
      problem = QString::fromUtf8(failure.what());
    }
    const std::lock_guard lock(mutex);
    if (listener == nullptr) return;
    const auto tell = [to = listener, service, problem] { emit to->done(service, problem); };
    QMetaObject::invokeMethod(listener, tell, Qt::QueuedConnection);
  }

  client::CancelSwitch canceling;
  std::mutex mutex;
  OpeningBeside* listener = nullptr;  ///< null when nobody wants to know any more
};

OpeningBeside::OpeningBeside(const LayerSource& source) : shared_(std::make_shared<Shared>()) {
  shared_->listener = this;
  runBeside([shared = shared_, source] { shared->run(source); });
}

OpeningBeside::~OpeningBeside() {
  shared_->canceling.cancel();
  const std::lock_guard lock(shared_->mutex);
  shared_->listener = nullptr;
}

}  // namespace vlclientui::qgis
