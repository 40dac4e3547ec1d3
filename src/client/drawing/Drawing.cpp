#include "client/drawing/Drawing.h"

#include <algorithm>
#include <utility>

#include <gdal.h>

#include "client/drawing/ServiceSystem.h"
#include "client/drawing/SourceOrder.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

using Remarks = std::vector<std::string>;

constexpr std::size_t mostProblems = 5;

std::shared_ptr<ImageServiceRecord> serviceIn(const ImageServiceRecord& service, const std::string& system,
                                              Remarks& remarks) {
  auto moved = inSystem(service, system);
  if (moved) return std::make_shared<ImageServiceRecord>(*std::move(moved));
  remarks.emplace_back(
      "The service cannot be brought into the coordinate system of its properties; "
      "it is shown in its own.");
  return std::make_shared<ImageServiceRecord>(service);
}

bool fitsType(double value, const std::string& pixelType) {
  int isClamped = 0;
  int isRounded = 0;
  const GDALDataType type = GDALGetDataTypeByName(pixelType.c_str());
  GDALAdjustValueToDataType(type, value, &isClamped, &isRounded);
  return isClamped == 0 && (isRounded == 0 || GDALDataTypeIsFloating(type) != 0);
}

void choosePixels(ImageServiceRecord& service, const DrawingProperties& properties, Remarks& remarks) {
  service.pixels.resampling = properties.resampling;
  if (!properties.noData) return;
  const bool isUsable = fitsType(*properties.noData, service.facts.pixelType);
  if (isUsable) {
    service.pixels.noData = properties.noData;
    return;
  }
  remarks.push_back("The no-data value " + numberText(*properties.noData) + " does not fit pixels of type " +
                    service.facts.pixelType + "; it is not used.");
}

void chooseViewpoint(DrawingProperties& properties, const Bounds& whole, Remarks& remarks) {
  if (properties.method != MosaicMethod::ClosestToViewpoint) return;
  if (properties.viewPointX && properties.viewPointY) return;
  properties.viewPointX = (whole.xMin + whole.xMax) / 2;
  properties.viewPointY = (whole.yMin + whole.yMax) / 2;
  remarks.emplace_back("The viewpoint is no pair of numbers; the middle of the service is taken.");
}

bool anySourceHas(const ImageServiceRecord& service, const std::string& attribute) {
  return std::any_of(service.sources.begin(), service.sources.end(), [&](const ImageSource& source) {
    return std::any_of(source.attributes.begin(), source.attributes.end(),
                       [&](const auto& pair) { return pair.first == attribute; });
  });
}

// Why the mosaic method is not followed; empty when it is.
std::string reasonAgainst(const ImageServiceRecord& service, const DrawingProperties& properties) {
  const std::string word = trimmed(properties.methodText);
  switch (properties.method) {
    case MosaicMethod::LockRaster:
      if (lockedSource(service.sources, properties.lockImageId) != nullptr) return {};
      return "There is no source raster \"" + properties.lockImageId + "\" to lock to";
    case MosaicMethod::ByAttribute:
      if (anySourceHas(service, properties.orderField)) return {};
      return "No source raster has the attribute \"" + properties.orderField + "\"";
    case MosaicMethod::ClosestToViewpoint:
      return {};
    case MosaicMethod::AsDefined:
      break;
  }
  return word.empty() || word == methodName(MosaicMethod::AsDefined)
             ? std::string()
             : "There is no mosaic method \"" + word + "\"";
}

void remarkMethod(const ImageServiceRecord& service, const DrawingProperties& properties, Remarks& remarks) {
  const std::string reason = reasonAgainst(service, properties);
  if (!reason.empty()) remarks.push_back(reason + "; all rasters are shown in the order of the service.");
}

void remarkProblems(const ImageServiceRecord& service, Remarks& remarks) {
  const auto& problems = service.problems;
  for (std::size_t i = 0; i < std::min(problems.size(), mostProblems); ++i) {
    remarks.push_back("The source raster " + problems[i].path + " is left out: " + problems[i].reason);
  }
  if (problems.size() > mostProblems) {
    remarks.push_back("So are " + std::to_string(problems.size() - mostProblems) + " more source rasters.");
  }
}

}  // namespace

Drawing drawingOf(const ImageServiceRecord& service, const DrawingProperties& properties) {
  Drawing drawing;
  drawing.properties = properties;
  const auto shown = serviceIn(service, properties.systemText, drawing.remarks);
  choosePixels(*shown, properties, drawing.remarks);
  if (shown->kind == ServiceKind::Mosaic) {
    chooseViewpoint(drawing.properties, shown->facts.envelope, drawing.remarks);
    remarkMethod(*shown, properties, drawing.remarks);
    remarkProblems(*shown, drawing.remarks);
  }
  const DrawingProperties& followed =
      shown->kind == ServiceKind::Mosaic ? drawing.properties : DrawingProperties();
  drawing.order = orderedSources(shown->sources, followed);
  drawing.service = shown;
  return drawing;
}

}  // namespace vlclientui::client
