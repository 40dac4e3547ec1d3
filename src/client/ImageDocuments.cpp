#include "client/ImageDocuments.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <gdal.h>

#include "client/DocumentWriter.h"
#include "client/Text.h"

namespace vlclientui::client {
namespace {

constexpr auto kImageIsWhole = "The image is complete.";

int bytesOfSample(const RasterFacts& facts) {
  return GDALGetDataTypeSizeBytes(GDALGetDataTypeByName(facts.pixelType.c_str()));
}

bool touches(const Bounds& a, const Bounds& b) {
  return a.xMin < b.xMax && b.xMin < a.xMax && a.yMin < b.yMax && b.yMin < a.yMax;
}

void writeMessage(std::string& out, const std::string& message) {
  const Element status(out, "Status");
  const Element item(out, "Item");
  writeText(out, "Message", message);
}

void writeBasic(std::string& out, const ImageServiceRecord& service, const OutputGrid& image) {
  const Element basic(out, "Basic");
  const std::int64_t bytes =
      std::int64_t{image.columns} * service.facts.bandCount * bytesOfSample(service.facts);
  writeEdges(out, image.extent);
  writeNumber(out, "NRows", image.rows);
  writeNumber(out, "NCols", image.columns);
  writeNumber(out, "NBands", service.facts.bandCount);
  writeText(out, "PixelType", service.facts.pixelType);
  writeDecimal(out, "BufferSize", static_cast<double>(bytes) * image.rows);
  writeMessage(out, kImageIsWhole);
}

void writeInfo(std::string& out, const ImageSource& source) {
  const Element info(out, "Info");
  writeText(out, "RasterId", source.rasterId);
  writeText(out, "RasterName", source.file.stem().string());
  writeText(out, "Visible", "True");
  writeText(out, "Source", source.file.string());
  writeNumber(out, "NCols", source.facts.columns);
  writeNumber(out, "NRows", source.facts.rows);
  writeNumber(out, "NBands", source.facts.bandCount);
  writeText(out, "PixelType", source.facts.pixelType);
  writeDecimal(out, "PixelSize", source.facts.pixelSize);
}

void writeAttributes(std::string& out, const ImageSource& source) {
  const Element attributes(out, "Attributes");
  for (const auto& [name, value] : source.attributes) writeText(out, name, value);
}

void writeFacts(std::string& out, const RasterFacts& facts) {
  writeText(out, "Title", facts.title);
  writeText(out, "GeographicRegion", facts.region);
  writeText(out, "PixelSource", facts.pixelSource);
  writeText(out, "PixelUnit", facts.pixelUnit);
  writeText(out, "CoordinateSystem", facts.srsName);
  writeText(out, "CoordinateSystemId", facts.srsId);
}

void writeRaster(std::string& out, const ImageSource& source) {
  const Element raster(out, "Raster");
  writeInfo(out, source);
  {
    const Element metadata(out, "Metadata");
    writeFacts(out, source.facts);
  }
  if (!source.attributes.empty()) writeAttributes(out, source);
}

void writeDetailed(std::string& out, const ImageServiceRecord& service, const OutputGrid& image) {
  const Element detailed(out, "Detailed");
  const Element rasters(out, "Rasters");
  for (const ImageSource& source : service.sources) {
    if (touches(source.place, image.extent)) writeRaster(out, source);
  }
}

int pixels(double length, double pixelSize) {
  const double count = std::round(length / pixelSize);
  return static_cast<int>(std::clamp(count, 1.0, static_cast<double>(std::numeric_limits<int>::max())));
}

// Mean size of the sources: one step of the viewpoint leads about one source further.
void writeSpacing(std::string& out, const ImageServiceRecord& service) {
  double across = 0;
  double down = 0;
  for (const ImageSource& source : service.sources) {
    across += source.place.xMax - source.place.xMin;
    down += source.place.yMax - source.place.yMin;
  }
  const auto count = static_cast<double>(service.sources.size());
  writeDecimal(out, "AvgImageSpacingX", across / count);
  writeDecimal(out, "AvgImageSpacingY", down / count);
}

void writeViewpoint(std::string& out, const Bounds& whole) {
  writeDecimal(out, "ViewPointX", (whole.xMin + whole.xMax) / 2);
  writeDecimal(out, "ViewPointY", (whole.yMin + whole.yMax) / 2);
}

}  // namespace

std::string serviceInfoDocument(const ImageServiceRecord& service) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    writeImageServiceInfo(out, service.name, service.facts);
  }
  return out;
}

std::string imageMetadataDocument(const ImageServiceRecord& service, const OutputGrid& image,
                                  MetadataDetail detail) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element client(out, "Client");
    const Element metadata(out, "ImageMetadata");
    writeBasic(out, service, image);
    if (detail == MetadataDetail::WithRasters) writeDetailed(out, service, image);
  }
  return out;
}

std::string serviceMetadataDocument(const ImageServiceRecord& service) {
  std::string out;
  {
    const Element root(out, "Metadata");
    writeText(out, "Name", service.name);
    writeFacts(out, service.facts);
    const Element extent(out, "Extent");
    writeEdges(out, service.facts.envelope);
  }
  return out;
}

std::string defaultPropertiesDocument(const ImageServiceRecord& service) {
  std::string out;
  {
    const Element root(out, "Vorlane");
    const Element properties(out, "ImageServiceProperties");
    out += "<MosaicMethod></MosaicMethod><TileOrderField></TileOrderField><TileOrderBase></TileOrderBase>";
    out += "<LockImageID></LockImageID>";
    writeViewpoint(out, service.facts.envelope);
    writeSpacing(out, service);
    const Element system(out, "Srs");
    writeText(out, "Name", service.facts.srsName);
    writeText(out, "Prj", service.facts.srsWkt);
  }
  return out;
}

OutputGrid wholeGrid(const ImageServiceRecord& service) {
  const Bounds& extent = service.facts.envelope;
  if (service.sources.size() == 1 && service.facts.columns <= std::numeric_limits<int>::max() &&
      service.facts.rows <= std::numeric_limits<int>::max()) {
    return {extent, static_cast<int>(service.facts.columns), static_cast<int>(service.facts.rows)};
  }
  return {extent, pixels(extent.xMax - extent.xMin, service.facts.pixelSize),
          pixels(extent.yMax - extent.yMin, service.facts.pixelSize)};
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
