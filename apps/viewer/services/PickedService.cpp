#include "viewer/services/PickedService.h"

#include <QApplication>
#include <QCoreApplication>
#include <QThread>
#include <exception>

#include "client/facade/CancelSwitch.h"
#include "contracts/RuntimeFailure.h"
#include "frame/Saving.h"
#include "viewer/services/StatusMessage.h"
#include "viewer/waiting/DoneBeside.h"
#include "viewer/waiting/ExportPlanWindow.h"
#include "viewer/waiting/ProgressWindow.h"

namespace vlclientui::viewer {
namespace {

using Base = client::OVLCatalogueImageService;
using Lock = std::lock_guard<std::recursive_mutex>;

}  // namespace

PickedService::PickedService(const host::ComposedHost& host, const std::string& reference, QString title)
    : OVLCatalogueImageService(host.catalogue, *host.platform->xml, reference,
                               {host.installation.definitions, {}}),
      platform_(host.platform),
      title_(std::move(title)),
      asksServers_(readsServers()) {}

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
  const auto read = [self = shared_from_this(), level] {
    const Lock lock(self->mutex_);
    return self->Base::GetImageMetadata(level);
  };
  if (!asksServers_ || QThread::currentThread() != qApp->thread()) return read();
  const auto text = std::make_shared<std::string>();
  if (!doBesideWindows(title_, [read, text] { *text = read(); }))
    throw RuntimeFailure("Waiting for the metadata was given up.");
  return *text;
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
  if (!isToBegin()) {
    attempt_ = Attempt::Canceled;
    throw RuntimeFailure("The export was cancelled");
  }
  took_ = {};
  bool isWritten = tryOnce();
  while (!isWritten && isToGoOn()) {
    setKeeping(client::Keeping::GoOn);
    isWritten = tryOnce();
  }
  if (attempt_ == Attempt::Canceled) throw RuntimeFailure("The export was cancelled");
  return isWritten;
}

// Without a plan the export is tried all the same, and tells itself what is wrong.
bool PickedService::isToBegin() {
  setKeeping(client::Keeping::Nothing);
  if (!readsServers() && !keptPart()) return true;
  const auto planned = plan();
  if (!planned || !isWorthAsking(*planned)) return attempt_ != Attempt::Canceled;
  ExportPlanWindow window(*planned, QApplication::activeModalWidget());
  if (window.exec() != QDialog::Accepted) return false;
  setKeeping(window.keeping());
  return true;
}

std::optional<client::ExportForecast> PickedService::plan() {
  ProgressWindow window(QCoreApplication::translate("Export", "Looking at what there is to fetch\u2026"),
                        QApplication::activeModalWidget());
  const client::CancelSwitch work;
  window.showBusy();
  window.onCancel([work] { work.cancel(); });
  std::optional<client::ExportForecast> planned;
  window.run([&] {
    const Lock lock(mutex_);
    const client::CancelScope scope(work);
    try {
      planned = forecastExport();
    } catch (const std::exception&) {
      planned.reset();
    }
    return planned.has_value();
  });
  attempt_ = window.isCanceledByPerson() ? Attempt::Canceled : Attempt::None;
  return planned;
}

bool PickedService::tryOnce() {
  const auto begin = std::chrono::steady_clock::now();
  ProgressWindow window(QCoreApplication::translate("Export", "Writing the image of %1\u2026").arg(title_),
                        QApplication::activeModalWidget());
  const client::CancelSwitch work;
  window.onCancel([work] { work.cancel(); });
  const bool isWritten = window.run([&] {
    const Lock lock(mutex_);
    const client::CancelScope scope(work);
    setProgress([&window](double share) { return window.report(share); });
    const bool written = Base::ExportImage();
    setProgress({});
    return written;
  });
  took_ += std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
  attempt_ = isWritten ? Attempt::Written : window.isCanceledByPerson() ? Attempt::Canceled : Attempt::Failed;
  return isWritten;
}

// Of an export that broke off and kept what it had.
bool PickedService::isToGoOn() {
  const auto kept = keeping() == client::Keeping::Nothing ? std::nullopt : keptPart();
  if (!kept || kept->isInUse) return false;
  const std::string problem = statusMessage(*platform_->xml, Base::status());
  const QString reason = attempt_ == Attempt::Canceled
                             ? QCoreApplication::translate("Export", "The export was cancelled.")
                             : QString::fromStdString(problem);
  const AfterBreak wish = askAfterBreak(reason, kept->bytes, QApplication::activeModalWidget());
  if (wish == AfterBreak::Discard) discardKept();
  return wish == AfterBreak::GoOn;
}

std::string PickedService::status() {
  const Lock lock(mutex_);
  return Base::status();
}

void PickedService::follow(const std::string& properties) {
  const Lock lock(mutex_);
  setServiceProperties(properties);
}

client::ServiceDrawing PickedService::presentDrawing() {
  const Lock lock(mutex_);
  return drawing();
}

std::optional<host::ViewedPart> PickedService::show(const host::GeographicEnvelope& view, int columns,
                                                    int rows) {
  const client::ServiceDrawing present = presentDrawing();
  const auto part = host::partInView(present.facts(), view, columns, rows);
  if (!part) return part;
  static_cast<void>(present.within(part->extent));
  const Lock lock(mutex_);
  showDrawn(present, part->extent, part->columns, part->rows);
  return part;
}

host::ServiceMarks PickedService::marks() {
  const Lock lock(mutex_);
  return host::serviceMarks(*this);
}

}  // namespace vlclientui::viewer
