#include "client/facade/JobRun.h"

#include "client/facade/MadeFolders.h"
#include "client/jobs/ExportJob.h"
#include "client/jobs/JobRequest.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/SystemTexts.h"
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
  const MadeFolders folders(job.file.parent_path());
  service.setKeeping(run.keeping);
  if (!service.ExportImage()) throw RuntimeFailure(messageIn(service.status(), xml));
}

std::string inputMark(const ExportJob& job, const std::shared_ptr<CatalogueServer>& server,
                      const XmlService& xml, const ImageServiceSettings& settings) {
  OVLCatalogueImageService service(server, xml, job.reference, settings);
  handOver(job, service);
  return service.inputMark();
}

}  // namespace vlclientui::client
