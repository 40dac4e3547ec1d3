#include "client/facade/ImageDocuments.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include <gdal.h>

#include "client/drawing/MosaicSpacing.h"
#include "client/facade/ProcessDocument.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/DocumentWriter.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr auto imageIsWhole = "The image is complete.";
constexpr auto imageLacksSources = "The image lacks source rasters.";
constexpr auto reachesBeyond = "The image reaches beyond the service.";

int bytesOfSample(const RasterFacts& facts) {
  return GDALGetDataTypeSizeBytes(GDALGetDataTypeByName(facts.pixelType.c_str()));
}

void writeItem(std::string& out, const std::string& message) {
  const Element item(out, "Item");
  writeText(out, "Message", message);
}

void writeMessage(std::string& out, const std::string& message) {
  const Element status(out, "Status");
  writeItem(out, message);
}

bool isWithin(const Bounds& inner, const OutputGrid& image, const Bounds& outer) {
  const double across = image.pixelWidth() / 2;
  const double down = image.pixelHeight() / 2;
  return inner.xMin >= outer.xMin - across && inner.xMax <= outer.xMax + across &&
         inner.yMin >= outer.yMin - down && inner.yMax <= outer.yMax + down;
}

void writeImageStatus(std::string& out, const DrawnImage& image) {
  const Element status(out, "Status");
  const ImageServiceRecord& service = *image.drawing.service;
  writeItem(out, service.problems.empty() ? imageIsWhole : imageLacksSources);
  if (!isWithin(image.grid.extent, image.grid, service.facts.envelope)) writeItem(out, reachesBeyond);
  for (const std::string& remark : image.drawing.remarks) writeItem(out, remark);
}

void writeBasic(std::string& out, const DrawnImage& image) {
  const Element basic(out, "Basic");
  const RasterFacts& facts = image.drawing.service->facts;
  const std::int64_t bytes = std::int64_t{image.grid.columns} * facts.bandCount * bytesOfSample(facts);
  writeEdges(out, image.grid.extent);
  writeNumber(out, "NRows", image.grid.rows);
  writeNumber(out, "NCols", image.grid.columns);
  writeNumber(out, "NBands", facts.bandCount);
  writeText(out, "PixelType", facts.pixelType);
  writeNumber(out, "BitDepth", facts.bitDepth);
  writeDecimal(out, "PixelWidth", image.grid.pixelWidth());
  writeDecimal(out, "PixelHeight", image.grid.pixelHeight());
  writeText(out, "CoordinateSystem", facts.srsName);
  writeDecimal(out, "BufferSize", static_cast<double>(bytes) * image.grid.rows);
  writeImageStatus(out, image);
}

void writeInfo(std::string& out, const ImageSource& source, const SourceUse& use) {
  const Element info(out, "Info");
  writeText(out, "RasterId", source.rasterId);
  writeText(out, "RasterName", source.shownName());
  writeText(out, "Visible", use.isVisible ? "True" : "False");
  writeText(out, "Source", shownPlace(source.file.string()));
  writeText(out, "Title", source.facts.title);
  writeNumber(out, "NCols", source.facts.fileColumns);
  writeNumber(out, "NRows", source.facts.fileRows);
  writeNumber(out, "NBands", source.facts.bandCount);
  writeText(out, "PixelType", source.facts.pixelType);
  writeNumber(out, "BitDepth", source.facts.bitDepth);
  writeDecimal(out, "PixelSize", source.facts.pixelSize);
  writeText(out, "PixelUnit", source.facts.pixelUnit);
  writeText(out, "PixelSource", source.facts.pixelSource);
  writeText(out, "CoordinateSystem", source.facts.srsName);
  writeEdges(out, source.place);
}

void writeAttributes(std::string& out, const ImageSource& source) {
  const Element attributes(out, "Attributes");
  for (const auto& [name, value] : source.attributes) {
    const std::string legal = elementName(name);
    const Element attribute(out, legal);
    out += xmlEscaped(value);
  }
}

void writeFacts(std::string& out, const RasterFacts& facts) {
  writeText(out, "Title", facts.title);
  writeText(out, "GeographicRegion", facts.region);
  writeText(out, "PixelSource", facts.pixelSource);
  writeText(out, "PixelUnit", facts.pixelUnit);
  writeText(out, "CoordinateSystem", facts.srsName);
  writeText(out, "CoordinateSystemId", facts.srsId);
}

void writeRaster(std::string& out, const DrawnImage& image, const ImageSource& source, const SourceUse& use,
                 const FileMetadata& metadata) {
  const Element raster(out, "Raster");
  writeInfo(out, source, use);
  {
    const Element element(out, "Metadata");
    writeFacts(out, source.facts);
    writeMetadata(out, metadata);
  }
  if (!source.attributes.empty()) writeAttributes(out, source);
  writeSourceProcess(out, image, source, use);
}

void writeDetailed(std::string& out, const DrawnImage& image, const std::vector<SourceUse>& uses,
                   const std::vector<std::shared_ptr<const FileMetadata>>& metadata) {
  const Element detailed(out, "Detailed");
  {
    const Element rasters(out, "Rasters");
    std::size_t inWindow = 0;
    for (std::size_t i = 0; i < uses.size(); ++i) {
      if (!uses[i].isInWindow) continue;
      writeRaster(out, image, image.drawing.service->sources[i], uses[i], *metadata[inWindow++]);
    }
  }
  writeImageProcess(out, image, uses);
  writeText(out, "ProcessMetadataAvailable", "True");
}

int limited(std::int64_t count) {
  return static_cast<int>(std::clamp<std::int64_t>(count, 1, std::numeric_limits<int>::max()));
}

void writeSpacing(std::string& out, const ImageServiceRecord& service) {
  const Spacing spacing = averageSpacing(service.sources);
  writeDecimal(out, "AvgImageSpacingX", spacing.across);
  writeDecimal(out, "AvgImageSpacingY", spacing.down);
}

void writeViewpoint(std::string& out, const Bounds& whole) {
  writeDecimal(out, "ViewPointX", (whole.xMin + whole.xMax) / 2);
  writeDecimal(out, "ViewPointY", (whole.yMin + whole.yMax) / 2);
}

void writeEmpty(std::string& out, const char* name) { const Element element(out, name); }

void writeMosaic(std::string& out, const ImageServiceRecord& service) {
  const Element mosaic(out, "Mosaic");
  writeText(out, "Definition", service.file.filename().string());
  writeNumber(out, "SourceRasters", static_cast<std::int64_t>(service.sources.size()));
  writeNumber(out, "SourceRastersLeftOut", static_cast<std::int64_t>(service.problems.size()));
  std::string names;
  for (const std::string& name : attributeNames(service)) names += (names.empty() ? "" : ", ") + name;
  writeText(out, "Attributes", names);
}

}  // namespace

std::string serviceInfoDocument(const ImageServiceRecord& service) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element info(out, "ImageServiceInfo");
    writeServiceFacts(out, service.name, service.facts, SystemDetail::Whole);
    writeText(out, "ServiceType", service.kind == ServiceKind::Mosaic ? "Mosaic" : "Raster");
    writeNumber(out, "NRasters", static_cast<std::int64_t>(service.sources.size()));
  }
  return out;
}

std::string basicMetadataDocument(const DrawnImage& image) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element client(out, "Client");
    const Element metadata(out, "ImageMetadata");
    writeBasic(out, image);
  }
  return out;
}

std::string imageMetadataDocument(const DrawnImage& image, const std::vector<SourceUse>& uses,
                                  const std::vector<std::shared_ptr<const FileMetadata>>& metadata) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element client(out, "Client");
    const Element element(out, "ImageMetadata");
    writeBasic(out, image);
    writeDetailed(out, image, uses, metadata);
  }
  return out;
}

std::vector<std::string> attributeNames(const ImageServiceRecord& service) {
  std::vector<std::string> names;
  for (const ImageSource& source : service.sources) {
    for (const auto& [name, value] : source.attributes) {
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
  }
  return names;
}

int bytesOfPixel(const RasterFacts& facts) { return facts.bandCount * bytesOfSample(facts); }

std::string serviceMetadataDocument(const ImageServiceRecord& service, const std::string& origin) {
  std::string out;
  {
    const Element root(out, "Metadata");
    writeText(out, "Name", service.name);
    writeFacts(out, service.facts);
    {
      const Element extent(out, "Extent");
      writeEdges(out, service.facts.envelope);
    }
    if (service.kind == ServiceKind::Mosaic) writeMosaic(out, service);
    if (service.metadata) writeMetadata(out, *service.metadata);
    out += origin;
  }
  return out;
}

std::string defaultPropertiesDocument(const ImageServiceRecord& service) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element properties(out, "ImageServiceProperties");
    writeText(out, "MosaicMethod", methodName(MosaicMethod::AsDefined));
    for (const char* name : {"TileOrderField", "TileOrderBase", "LockImageID"}) writeEmpty(out, name);
    writeViewpoint(out, service.facts.envelope);
    writeSpacing(out, service);
    if (!service.choices.empty()) writeText(out, "Asset", service.choices.front());
    writeText(out, "Resampling", "Automatic");
    writeEmpty(out, "NoData");
    const Element system(out, "Srs");
    writeText(out, "Name", service.facts.srsName);
    writeText(out, "Prj", service.facts.srsWkt);
  }
  return out;
}

OutputGrid wholeGrid(const ImageServiceRecord& service) {
  return {service.facts.envelope, limited(service.facts.columns), limited(service.facts.rows)};
}

std::string customEnvelopesDocument(const std::vector<NamedBounds>& envelopes) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element group(out, "Client");
    const Element dialog(out, "ExportImageDialog");
    for (const auto& [description, bounds] : envelopes) {
      const Element extent(out, "CustomEnvelope");
      writeText(out, "Description", description);
      writeEdges(out, bounds);
    }
  }
  return out;
}

std::string statusDocument(const std::string& message) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    writeMessage(out, message);
  }
  return out;
}

}  // namespace vlclientui::client
