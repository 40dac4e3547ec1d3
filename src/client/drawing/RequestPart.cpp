#include "client/drawing/RequestPart.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t colorCount = 3;

PixelMeaning meaningOf(GDALRasterBand& band) {
  const bool isLabel =
      band.GetColorTable() != nullptr || GDALDataTypeIsComplex(band.GetRasterDataType()) != 0;
  return isLabel ? PixelMeaning::Label : PixelMeaning::Quantity;
}

const char* wordFor(Resampling resampling) {
  switch (resampling) {
    case Resampling::Average:
      return "average";
    case Resampling::Bilinear:
      return "bilinear";
    case Resampling::Nearest:
      break;
  }
  return "nearest";
}

std::string attributeText(const std::string& name, double value) {
  return " " + name + "=\"" + numberText(value) + "\"";
}

std::string rectangle(const std::string& name, const GridPlace& place) {
  return "<" + name + attributeText("xOff", place.left) + attributeText("yOff", place.top) +
         attributeText("xSize", place.width) + attributeText("ySize", place.height) + "/>";
}

std::string propertiesOf(const RequestPart& part) {
  return "<SourceProperties" + attributeText("RasterXSize", part.columns) +
         attributeText("RasterYSize", part.rows) + " DataType=\"" + part.type + "\"" +
         attributeText("BlockXSize", part.blockWidth) + attributeText("BlockYSize", part.blockHeight) + "/>";
}

struct SourceBand {
  std::string kind;  ///< of the element
  std::string name;  ///< of the raster
  int band = 1;
  std::string content;  ///< how its values are converted
};

std::string element(const RequestPart& part, const SourceBand& source) {
  return "<" + source.kind + " resampling=\"" + wordFor(part.resampling) +
         "\"><SourceFilename relativeToVRT=\"0\">" + xmlEscaped(source.name) + "</SourceFilename>" +
         "<SourceBand>" + std::to_string(source.band) + "</SourceBand>" + propertiesOf(part) +
         rectangle("SrcRect", {0, 0, static_cast<double>(part.columns), static_cast<double>(part.rows)}) +
         rectangle("DstRect", part.place) + source.content + "</" + source.kind + ">";
}

int opaqueIn(GDALDataType type) {
  if (type == GDT_UInt16) return 65535;
  return type == GDT_Int16 ? 32767 : 255;
}

// Maps all values to one, which makes the request opaque wherever the part has data.
std::string opaqueElement(const RequestPart& part, const RequestBands& bands) {
  const std::string opaque = std::to_string(opaqueIn(bands.type));
  return element(part, {"ComplexSource", part.name, part.colors.front(),
                        "<Exponent>1</Exponent><SrcMin>0</SrcMin><SrcMax>1</SrcMax><DstMin>" + opaque +
                            "</DstMin><DstMax>" + opaque + "</DstMax><UseMaskBand>true</UseMaskBand>"});
}

std::string colorElement(const RequestPart& part, const RequestBands& bands, std::size_t color) {
  const bool spreads = isSpread(part, bands);
  if (!spreads && color >= part.colors.size()) return {};
  std::string content;
  if (spreads && part.hasPalette) {
    content += "<ColorTableComponent>" + std::to_string(color + 1) + "</ColorTableComponent>";
  }
  if (part.hasHoles) content += "<UseMaskBand>true</UseMaskBand>";
  // GDAL treats an averaging simple source differently: it reads every pixel despite overviews, and uses
  // values from beyond the edges.
  const bool isSimple = content.empty() && part.resampling != Resampling::Average;
  return element(part, {isSimple ? "SimpleSource" : "ComplexSource", part.name,
                        part.colors[spreads ? 0 : color], content});
}

bool isSame(const std::optional<double>& one, const std::optional<double>& other) {
  return one && other && isSameValue(*one, *other);
}

bool holesAreAlike(const RequestPart& part, const RequestBands& bands) {
  if (part.plainName.empty() || part.resampling != Resampling::Nearest) return false;
  if (part.colors != bands.colors || part.alpha != bands.alpha) return false;
  if (part.alpha != 0) return !hasAnyNoData(part.noData);
  return std::ranges::equal(part.noData, bands.noData, isSame);
}

}  // namespace

RequestBands requestBandsOf(GDALDataset& model) {
  RequestBands bands{model.GetRasterCount(),
                     colorBandsOf(model),
                     alphaBandOf(model),
                     model.GetRasterBand(1)->GetRasterDataType(),
                     {}};
  // Files have one type for all bands, so choose one that holds every band.
  for (int band = 2; band <= bands.count; ++band) {
    bands.type = GDALDataTypeUnion(bands.type, model.GetRasterBand(band)->GetRasterDataType());
  }
  return bands;
}

RequestPart requestPartOf(const NorthUpRaster& raster, const OutputGrid& grid,
                          const std::optional<Resampling>& wish) {
  GDALDataset& dataset = *raster.dataset;
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  RequestPart part;
  part.name = raster.name;
  part.plainName = raster.plainName;
  part.columns = dataset.GetRasterXSize();
  part.rows = dataset.GetRasterYSize();
  part.colors = colorBandsOf(dataset);
  part.alpha = alphaBandOf(dataset);
  part.hasPalette = band.GetColorTable() != nullptr;
  band.GetBlockSize(&part.blockWidth, &part.blockHeight);
  part.type = GDALGetDataTypeName(band.GetRasterDataType());
  part.extent = raster.extent;
  part.isTurned = raster.isTurned;
  part.hasHoles = raster.hasHoles;
  part.noData = raster.noData;
  part.place = placeInGrid(raster.extent, grid);
  part.resampling = chooseResampling(part.place, part.columns, part.rows, meaningOf(band), wish);
  return part;
}

bool isSpread(const RequestPart& part, const RequestBands& bands) {
  return part.colors.size() == 1 && bands.colors.size() == colorCount;
}

std::string sourceElement(const RequestPart& part, const RequestBands& bands, int band) {
  if (band == bands.alpha && part.alpha == 0) return opaqueElement(part, bands);
  if (band == bands.alpha) {
    return element(part, {"ComplexSource", part.name, part.alpha, "<UseMaskBand>true</UseMaskBand>"});
  }
  const auto color = std::ranges::find(bands.colors, band) - bands.colors.begin();
  return colorElement(part, bands, static_cast<std::size_t>(color));
}

// Uses a table: arithmetic cannot make bytes of infinity and NaN.
std::string maskElement(const RequestPart& part) {
  return element(part, {"ComplexSource", part.name, part.colors.front(),
                        "<UseMaskBand>true</UseMaskBand><LUT>0:255,1:255</LUT>"});
}

bool tellsHolesByValue(const RequestPart& part, const RequestBands& bands) {
  return bands.colors.size() == 1 && part.alpha == 0 && holesAreAlike(part, bands);
}

std::string loneSourceElement(const RequestPart& part, const RequestBands& bands, int band) {
  if (!part.hasHoles || !holesAreAlike(part, bands)) return sourceElement(part, bands, band);
  return element(part, {"SimpleSource", part.plainName, band, ""});
}

}  // namespace vlclientui::client
