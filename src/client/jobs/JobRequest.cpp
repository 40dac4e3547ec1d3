#include "client/jobs/JobRequest.h"

#include "client/output/GetImageRequest.h"
#include "client/raster/DocumentWriter.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

void writeFlag(std::string& out, const char* name, bool isSet) {
  writeText(out, name, isSet ? "True" : "False");
}

void writeGrid(std::string& out, const ExportJob& job) {
  writeText(out, "OutputType", "File");
  writeDecimal(out, "Top", job.extent.yMax);
  writeDecimal(out, "Left", job.extent.xMin);
  writeDecimal(out, "Right", job.extent.xMax);
  writeDecimal(out, "Bottom", job.extent.yMin);
  writeDecimal(out, "Width", job.extent.xMax - job.extent.xMin);
  writeDecimal(out, "Height", job.extent.yMax - job.extent.yMin);
  writeNumber(out, "Cols", job.columns);
  writeNumber(out, "Rows", job.rows);
}

}  // namespace

std::string jobRequest(const ExportJob& job) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element client(out, "Client");
    const Element request(out, "GetImage");
    writeGrid(out, job);
    writeText(out, "Format", rowOf(job.format).requestName);
    writeText(out, "CompressionMethod", requestName(job.compression));
    writeText(out, "TileSize", job.tileSize == 0 ? "None" : std::to_string(job.tileSize));
    writeNumber(out, "CompressionQuality", job.quality);
    writeText(out, "FileName", job.file.string());
    writeFlag(out, "CreateWorldFile", job.createsWorldFile);
    writeFlag(out, "ExportMetadataXml", job.exportsMetadata);
  }
  return out;
}

void takeRequest(ExportJob& job, const GetImageRequest& request) {
  const FileFormatRow* const format = findFileFormat(request.format);
  const Compression* const compression = findCompression(request.compression);
  if (format == nullptr) throw RuntimeFailure("The format \"" + request.format + "\" is unknown");
  if (compression == nullptr && !request.compression.empty())
    throw RuntimeFailure("The compression \"" + request.compression + "\" is unknown");
  job.extent = request.grid.extent;
  job.columns = request.grid.columns;
  job.rows = request.grid.rows;
  job.format = format->format;
  job.compression = compression == nullptr ? Compression::None : *compression;
  job.tileSize = request.tileSize;
  job.quality = request.quality;
  job.createsWorldFile = request.createsWorldFile;
  job.exportsMetadata = request.exportsMetadata;
  job.file = request.file;
}

}  // namespace vlclientui::client
