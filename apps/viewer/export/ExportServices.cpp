#include "viewer/export/ExportServices.h"

#include <QCursor>
#include <QGuiApplication>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/ParsedDocument.h"
#include "export/ExportDialogInterfaces.h"
#include "host/RunDialogs.h"
#include "host/ShownText.h"
#include "library/ClassFactory.h"
#include "viewer/export/ExportWindowSetup.h"
#include "viewer/services/PickedService.h"
#include "viewer/services/StatusMessage.h"

namespace vlclientui::viewer {
namespace {

class WaitPointer {
 public:
  WaitPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitPointer() { QGuiApplication::restoreOverrideCursor(); }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;
};

int countIn(const XmlDocument& request, const char* path) {
  return QString::fromStdString(readText(request, path).value_or("")).toInt();
}

// A request that cannot be read has failed, and is told of.
std::optional<client::ExportJob> jobOf(const PickedService& service) {
  try {
    return service.job();
  } catch (const RuntimeFailure&) {
    return std::nullopt;
  }
}

// With the system in which the window's numbers are.
QString subjectOf(const PickedService& service, const QString& title) {
  const client::RasterFacts& facts = service.facts();
  const QString system = QString::fromStdString(facts.srsId.empty() ? facts.srsName : facts.srsId);
  return system.isEmpty() ? title : QString("%1 (%2)").arg(title, system);
}

}  // namespace

ExportOutcome outcomeOfExport(const host::ComposedHost& host, PickedService& service,
                              const std::string& request) {
  const Platform& platform = *host.platform;
  ExportOutcome outcome;
  outcome.request = host::shownText(host, request);
  outcome.job = jobOf(service);
  outcome.attempt = service.attempt();
  const auto document = parsedDocument(*platform.xml, request);
  outcome.file = platform.system->nativePath(readText(*document, "//GetImage/FileName").value_or(""));
  outcome.columns = countIn(*document, "//GetImage/Cols");
  outcome.took = service.took();
  outcome.rows = countIn(*document, "//GetImage/Rows");
  if (outcome.attempt == PickedService::Attempt::Failed) {
    outcome.problem = statusMessage(*platform.xml, service.status());
  }
  return outcome;
}

PreparedExport prepareExport(const host::ComposedHost& host, const std::string& reference,
                             const QString& title, const std::string& properties,
                             const std::vector<host::NamedPlace>& places) {
  auto service = std::make_shared<PickedService>(host, reference, title);
  if (!properties.empty()) service->follow(properties);
  std::string extents = host::proposedExtents(*service, places);
  return {std::move(service), std::move(extents), reference};
}

std::shared_ptr<IExportImageDialog> exportDialogFor(const host::ComposedHost& host,
                                                    const std::shared_ptr<PickedService>& service) {
  auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
  if (dialog->IExportImageDialog_Init("", nullptr, service) == boolean16False) {
    throw RuntimeFailure("The export cannot be prepared: the definitions in " +
                         host.installation.definitions.string() + " cannot be read");
  }
  return dialog;
}

ExportOutcome showExport(const host::ComposedHost& host, const PreparedExport& prepared, const QString& title,
                         const std::filesystem::path& folder) {
  PickedService& service = *prepared.service;
  const auto dialog = exportDialogFor(host, prepared.service);
  const ExportWindowSetup setup(subjectOf(service, title), folder);
  const host::ToldDialog told("export", prepared.reference,
                              host::beginningOfExport(host, service, prepared.extents));
  dialog->iExportImageDialog_ShowModalDialogEx(prepared.extents);
  const std::string request = dialog->iExportImageDialog_GetUpdatedProperties();
  return request.empty() ? ExportOutcome{} : outcomeOfExport(host, service, request);
}

ExportOutcome exportService(const host::ComposedHost& host, const std::string& reference,
                            const QString& title, const std::string& properties,
                            const std::vector<host::NamedPlace>& places,
                            const std::filesystem::path& folder) {
  PreparedExport prepared;
  {
    // The headers of a large mosaic take their time.
    const WaitPointer pointer;
    prepared = prepareExport(host, reference, title, properties, places);
  }
  return showExport(host, prepared, title, folder);
}

}  // namespace vlclientui::viewer
