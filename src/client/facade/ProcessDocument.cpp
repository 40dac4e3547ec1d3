#include "client/facade/ProcessDocument.h"

#include <algorithm>

#include "client/raster/DocumentWriter.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

std::string systemName(const RasterFacts& facts) {
  if (facts.srsName.empty()) return "no coordinate system";
  return facts.srsId.empty() ? facts.srsName : facts.srsName + " (" + facts.srsId + ")";
}

void writeOptionalDecimal(std::string& out, const char* name, const std::optional<double>& value) {
  if (value) writeDecimal(out, name, *value);
}

void writeMethod(std::string& out, const DrawingProperties& properties) {
  writeText(out, "MosaicMethod", methodName(properties.method));
  switch (properties.method) {
    case MosaicMethod::ByAttribute:
      writeText(out, "TileOrderField", properties.orderField);
      writeText(out, "TileOrderBase", properties.orderBase);
      break;
    case MosaicMethod::ClosestToViewpoint:
      writeOptionalDecimal(out, "ViewPointX", properties.viewPointX);
      writeOptionalDecimal(out, "ViewPointY", properties.viewPointY);
      break;
    case MosaicMethod::LockRaster:
      writeText(out, "LockImageID", properties.lockImageId);
      break;
    case MosaicMethod::AsDefined:
      break;
  }
}

void writeGrid(std::string& out, const DrawnImage& image) {
  const Element element(out, "Grid");
  writeNumber(out, "NCols", image.grid.columns);
  writeNumber(out, "NRows", image.grid.rows);
  writeDecimal(out, "PixelWidth", image.grid.pixelWidth());
  writeDecimal(out, "PixelHeight", image.grid.pixelHeight());
  writeText(out, "CoordinateSystem", systemName(image.drawing.service->facts));
}

// By position; sources that take no part have none.
std::vector<std::size_t> topFirst(const std::vector<SourceUse>& uses) {
  const auto count = static_cast<std::size_t>(
      std::count_if(uses.begin(), uses.end(), [](const SourceUse& use) { return use.takesPart; }));
  std::vector<std::size_t> order(count);
  for (std::size_t i = 0; i < uses.size(); ++i) {
    if (uses[i].takesPart) order[uses[i].position - 1] = i;
  }
  return order;
}

void writeOrder(std::string& out, const ImageServiceRecord& service, const std::vector<SourceUse>& uses) {
  const Element element(out, "SourcesFromTop");
  for (const std::size_t i : topFirst(uses)) {
    const Element source(out, "Source");
    writeText(out, "RasterId", service.sources[i].rasterId);
    writeText(out, "RasterName", service.sources[i].shownName());
    writeText(out, "Visible", uses[i].isVisible ? "True" : "False");
  }
}

std::string scaleText(const ImageSource& source, const DrawnImage& image) {
  const double across = (source.place.xMax - source.place.xMin) / static_cast<double>(source.facts.columns);
  return numberText(across / image.grid.pixelWidth());
}

bool isReprojected(const ImageServiceRecord& service, const ImageSource& source) {
  return source.facts.srsWkt != service.facts.srsWkt;
}

std::int64_t reprojectedSources(const ImageServiceRecord& service, const std::vector<SourceUse>& uses) {
  std::int64_t count = 0;
  for (std::size_t i = 0; i < uses.size(); ++i) {
    if (uses[i].takesPart && isReprojected(service, service.sources[i])) ++count;
  }
  return count;
}

}  // namespace

void writeImageProcess(std::string& out, const DrawnImage& image, const std::vector<SourceUse>& uses) {
  const Drawing& drawing = image.drawing;
  const Element element(out, "ProcessMetadata");
  const auto count = [&](auto is) { return std::count_if(uses.begin(), uses.end(), is); };
  if (drawing.service->kind == ServiceKind::Mosaic) writeMethod(out, drawing.properties);
  writeText(
      out, "Resampling",
      drawing.service->pixels.resampling ? resamplingName(*drawing.service->pixels.resampling) : "Automatic");
  writeOptionalDecimal(out, "NoData", drawing.service->pixels.noData);
  writeNumber(out, "SourcesOfService", static_cast<std::int64_t>(uses.size()));
  writeNumber(out, "SourcesInWindow", count([](const SourceUse& use) { return use.isInWindow; }));
  writeNumber(out, "SourcesVisible", count([](const SourceUse& use) { return use.isVisible; }));
  writeNumber(out, "SourcesReprojected", reprojectedSources(*drawing.service, uses));
  writeGrid(out, image);
  for (const std::string& remark : drawing.remarks) writeText(out, "Remark", remark);
  writeOrder(out, *drawing.service, uses);
}

void writeSourceProcess(std::string& out, const DrawnImage& image, const ImageSource& source,
                        const SourceUse& use) {
  const Element element(out, "ProcessMetadata");
  writeText(out, "TakesPart", use.takesPart ? "True" : "False");
  if (!use.takesPart) return;
  writeNumber(out, "PositionFromTop", static_cast<std::int64_t>(use.position));
  writeText(out, "Resampling", resamplingName(use.resampling));
  writeText(out, "PixelsPerSourcePixel", scaleText(source, image));
  if (!use.isTurned) return;
  if (!isReprojected(*image.drawing.service, source)) {
    writeText(out, "TurnedNorthUp", "True");
    return;
  }
  writeText(out, "ReprojectedFrom", systemName(source.facts));
  writeText(out, "ReprojectedTo", systemName(image.drawing.service->facts));
  writeText(out, "ReprojectedBy", resamplingName(Resampling::Nearest));
}

}  // namespace vlclientui::client
