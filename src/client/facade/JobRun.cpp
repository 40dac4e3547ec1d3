#include "client/facade/JobRun.h"

#include <system_error>
#include <vector>

#include "client/jobs/ExportJob.h"
#include "client/jobs/JobRequest.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

void refuseOtherSystem(const std::string& system, const RasterFacts& facts) {
  const bool isText = system.empty() || system == facts.srsId || system == facts.srsName;
  if (isText || isSameSystem(system, facts.srsWkt)) return;
  const std::string own = facts.srsId.empty() ? facts.srsName : facts.srsId;
  throw RuntimeFailure("The extent of the job is in " + system + ", but the service is drawn in " +
                       (own.empty() ? "no known system" : own));
}

/// Folders on the way to a file. Those that it made go again, where nothing came to stand in them.
class MadeFolders {
 public:
  explicit MadeFolders(const fs::path& folder) {
    std::error_code error;
    for (fs::path each = folder; !each.empty() && !fs::exists(each, error); each = each.parent_path()) {
      made_.push_back(each);
      if (each == each.parent_path()) break;
    }
    fs::create_directories(folder, error);
    if (error && !fs::is_directory(folder))
      throw RuntimeFailure("The folder " + utf8FromAny(folder.string()) +
                           " cannot be made: " + error.message());
  }
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;
  ~MadeFolders() {
    std::error_code error;
    for (const fs::path& each : made_) {
      if (fs::is_empty(each, error) && !error) fs::remove(each, error);
    }
  }

 private:
  std::vector<fs::path> made_;  ///< the innermost first
};

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
