#include "client/facade/JobRun.h"

#include <system_error>

#include "client/jobs/ExportJob.h"
#include "client/jobs/JobRequest.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

void refuseOtherSystem(const std::string& system, const RasterFacts& facts) {
  const bool isText = system.empty() || system == facts.srsId || system == facts.srsName;
  if (isText || isSameSystem(system, facts.srsWkt)) return;
  const std::string own = facts.srsId.empty() ? facts.srsName : facts.srsId;
  throw RuntimeFailure("The extent of the job is in " + system + ", but the service is drawn in " +
                       (own.empty() ? "no known system" : own));
}

void makeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error || std::filesystem::is_directory(folder)) return;
  throw RuntimeFailure("The folder " + utf8FromAny(folder.string()) + " cannot be made: " + error.message());
}

std::string messageIn(const std::string& status, const XmlService& xml) {
  const auto document = xml.createDocument();
  const XmlNodePtr root = document->loadXml(status) ? document->documentElement() : nullptr;
  return root ? root->text() : status;
}

}  // namespace

void handOver(const ExportJob& job, CatalogueImageService& service) {
  if (!job.properties.empty()) service.setServiceProperties(job.properties);
  refuseOtherSystem(job.system, service.facts());
  service.ExportProperties(jobRequest(job));
}

void runJob(const ExportJob& job, const std::shared_ptr<CatalogueServer>& server, const XmlService& xml,
            const JobRun& run) {
  OVLCatalogueImageService service(server, xml, job.reference, run.settings);
  handOver(job, service);
  makeFolder(job.file.parent_path());
  service.setKeeping(run.keeping);
  if (!service.ExportImage()) throw RuntimeFailure(messageIn(service.status(), xml));
}

}  // namespace vlclientui::client
