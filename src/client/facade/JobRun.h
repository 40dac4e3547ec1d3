#pragma once

#include <memory>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/ExportForecast.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct ExportJob;

/// Makes a service ready for a job: its properties are followed, and the request is handed over, so that
/// ExportImage and forecastExport do as the job says.
/// @throws RuntimeFailure where the properties or the coordinate system of the job do not fit the service.
void handOver(const ExportJob& job, CatalogueImageService& service);

/// How a job is run.
struct JobRun {
  /// Of the service that is opened: its definitions, and who is told the progress.
  ImageServiceSettings settings = {};
  Keeping keeping = Keeping::Nothing;  ///< of pixels, where the export breaks off
};

/// Opens the service, makes folders that the file needs, and writes it, whole or not at all. Blocks; for any
/// thread.
/// @param job that is run. @param server shared; never null. @param xml reads the job's documents.
/// @param run how it is run.
/// @throws RuntimeFailure with why nothing was written, for a person.
void runJob(const ExportJob& job, const std::shared_ptr<CatalogueServer>& server, const XmlService& xml,
            const JobRun& run = {});

/// Tells the rasters of a job as they are now from what they were: another word once the content of one that
/// the job touches has changed, or others take part. Asks their servers. Blocks; for any thread.
/// @throws RuntimeFailure where a raster cannot be had.
[[nodiscard]] std::string inputMark(const ExportJob& job, const std::shared_ptr<CatalogueServer>& server,
                                    const XmlService& xml, const ImageServiceSettings& settings = {});

}  // namespace vlclientui::client
#pragma GCC visibility pop
