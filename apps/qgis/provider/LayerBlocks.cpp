#include "qgis/provider/LayerBlocks.h"

#include <QColor>
#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>

#include "client/mapping/ServiceValues.h"
#include "qgis/provider/LayerHost.h"

namespace vlclientui::qgis {
namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

Qgis::DataType typeOf(const std::string& pixelType) {
  static const std::map<std::string, Qgis::DataType> types{
      {"Byte", Qgis::DataType::Byte},       {"UInt16", Qgis::DataType::UInt16},
      {"Int16", Qgis::DataType::Int16},     {"UInt32", Qgis::DataType::UInt32},
      {"Int32", Qgis::DataType::Int32},     {"Float32", Qgis::DataType::Float32},
      {"CInt16", Qgis::DataType::Float32},  {"CInt32", Qgis::DataType::Float64},
      {"CFloat32", Qgis::DataType::Float32}};
  const auto found = types.find(pixelType);
  return found == types.end() ? Qgis::DataType::Float64 : found->second;
}

bool isWide(Qgis::DataType type) {
  return type == Qgis::DataType::UInt32 || type == Qgis::DataType::Int32 || type == Qgis::DataType::Float64;
}

template <class Number>
void writeAs(void* into, const client::BandPixels& pixels, bool marks) {
  auto* number = static_cast<Number*>(into);
  for (std::size_t i = 0; i < pixels.values.size(); ++i) {
    const bool isHole = marks && pixels.mask[i] == 0;
    *number++ = static_cast<Number>(isHole ? noNumber : pixels.values[i]);
  }
}

void write(void* into, const client::BandPixels& pixels, Qgis::DataType type, bool marks) {
  switch (type) {
    case Qgis::DataType::Byte:
      return writeAs<std::uint8_t>(into, pixels, false);
    case Qgis::DataType::UInt16:
      return writeAs<std::uint16_t>(into, pixels, false);
    case Qgis::DataType::Int16:
      return writeAs<std::int16_t>(into, pixels, false);
    case Qgis::DataType::UInt32:
      return writeAs<std::uint32_t>(into, pixels, false);
    case Qgis::DataType::Int32:
      return writeAs<std::int32_t>(into, pixels, false);
    case Qgis::DataType::Float32:
      return writeAs<float>(into, pixels, marks);
    default:
      return writeAs<double>(into, pixels, marks);
  }
}

}  // namespace

client::Bounds boundsOf(const QgsRectangle& rectangle) {
  return {rectangle.xMinimum(), rectangle.yMinimum(), rectangle.xMaximum(), rectangle.yMaximum()};
}

QgsRectangle rectangleOf(const client::Bounds& bounds) {
  return QgsRectangle(bounds.xMin, bounds.yMin, bounds.xMax, bounds.yMax);
}

DrawnBlock drawInto(QgsRasterBlock& block, const LayerService& service, const QgsRectangle& extent) {
  const client::OutputGrid grid{boundsOf(extent), block.width(), block.height()};
  const auto picture = layerDrawer()->draw(service.layer(), {service.facts().srsWkt, grid});
  if (!picture) return {};
  const DrawnBlock drawn{true, QString::fromStdString(client::textOfMissing(picture->missing))};
  auto* pixel = reinterpret_cast<QRgb*>(block.bits());
  const auto count = static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows);
  if (picture->rgba.empty()) {
    std::fill_n(pixel, count, 0U);
    return drawn;
  }
  const std::uint8_t* rgba = picture->rgba.data();
  for (std::size_t i = 0; i < count; ++i, rgba += 4) {
    const bool isOpaque = rgba[3] == 255;
    pixel[i] =
        isOpaque ? qRgb(rgba[0], rgba[1], rgba[2]) : qPremultiply(qRgba(rgba[0], rgba[1], rgba[2], rgba[3]));
  }
  return drawn;
}

bool marksHoles(const client::RasterFacts& facts) {
  const Qgis::DataType type = typeOf(facts.pixelType);
  return facts.mayHaveHoles || type == Qgis::DataType::Float32 || type == Qgis::DataType::Float64;
}

Qgis::DataType valuesType(const client::RasterFacts& facts) {
  const Qgis::DataType type = typeOf(facts.pixelType);
  if (!marksHoles(facts)) return type;
  return isWide(type) ? Qgis::DataType::Float64 : Qgis::DataType::Float32;
}

bool readValuesInto(void* values, const LayerService& service, const client::OutputGrid& grid, int band) {
  const auto source = [&](const auto& area) { return service.wholeWithin(area); };
  const auto pixels = client::bandPixels(source, grid, band);
  if (pixels) write(values, *pixels, valuesType(service.facts()), marksHoles(service.facts()));
  return pixels.has_value();
}

}  // namespace vlclientui::qgis
