#include "client/mapping/ValuesAt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include <gdal_priv.h>

#include "client/drawing/Drawing.h"
#include "client/mapping/Areas.h"
#include "client/mapping/BandWords.h"
#include "client/mapping/PatchReading.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/SourceBands.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GiveUp.h"
#include "client/raster/Window.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

bool isNoData(GDALRasterBand& band, const std::optional<double>& instead, double value) {
  int isTold = 0;
  const double told = band.GetNoDataValue(&isTold);
  if (std::isnan(value)) return true;
  if (!instead && isTold == 0) return false;
  const double empty = instead.value_or(told);
  // Such values are kept as the band's own type can hold them.
  const bool isFloat = band.GetRasterDataType() == GDT_Float32;
  return isFloat ? static_cast<float>(value) == static_cast<float>(empty) : value == empty;
}

void takeClass(GDALRasterBand& band, BandValue& taken) {
  constexpr double mostClasses = 1e6;
  if (!(*taken.value >= 0) || *taken.value > mostClasses) return;
  const auto number = static_cast<int>(*taken.value);
  taken.className = className(band, number);
  const GDALColorTable* const table = band.GetColorTable();
  if (table == nullptr || number < 0 || number >= table->GetColorEntryCount()) return;
  GDALColorEntry entry{0, 0, 0, 0};
  table->GetColorEntryAsRGB(number, &entry);
  taken.color = {static_cast<std::uint8_t>(entry.c1), static_cast<std::uint8_t>(entry.c2),
                 static_cast<std::uint8_t>(entry.c3), static_cast<std::uint8_t>(entry.c4)};
}

bool isClassified(GDALRasterBand& band) {
  return band.GetColorTable() != nullptr || band.GetCategoryNames() != nullptr ||
         band.GetDefaultRAT() != nullptr;
}

// One pixel of one source.
class Pixel {
 public:
  Pixel(const OpenRaster& raster, const std::optional<double>& noData, int column, int row)
      : raster_(raster), noData_(noData), window_{column, row, 1, 1} {}

  /// @returns false when it cannot be read, or was given up.
  bool read(SourceValues& values) {
    LevelPixels whole;
    if (!readLevel(raster_, raster_.levels.front(), window_, raster_.colors, whole)) return false;
    values.kind = whole.alpha.front() == 0 ? SourceValues::Kind::Hole : SourceValues::Kind::Data;
    const int count = raster_.dataset->GetRasterCount();
    for (int number = 1; number <= count; ++number) {
      if (!readBand(number, values)) return false;
    }
    return true;
  }

 private:
  bool readBand(int number, SourceValues& values) {
    GDALRasterBand& band = *raster_.dataset->GetRasterBand(number);
    std::array<double, 2> sample{};
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.pfnProgress = untilGivenUp;
    if (WaitScope::isGivenUp() || band.RasterIO(GF_Read, window_.x, window_.y, 1, 1, sample.data(), 1, 1,
                                                GDT_CFloat64, 0, 0, &extra) != CE_None) {
      return false;
    }
    BandValue taken{number, bandName(band, number), band.GetUnitType(), {}};
    const bool isAlpha = number == raster_.alpha;
    if (isAlpha || !isNoData(band, noData_, sample[0])) taken.value = sample[0];
    if (taken.value && GDALDataTypeIsComplex(band.GetRasterDataType()) != 0) taken.imaginary = sample[1];
    if (taken.value && isClassified(band)) takeClass(band, taken);
    values.bands.push_back(std::move(taken));
    return true;
  }

  const OpenRaster& raster_;
  const std::optional<double>& noData_;
  const Window window_;
};

// A place has no area; this is one around it.
std::optional<Bounds> aroundPlace(MapPoint place, const RasterFacts& facts) {
  if (!place.isKnown()) return std::nullopt;
  const double across = std::max(facts.pixelSize, 0.0);
  const double down = std::max(facts.pixelHeight, across);
  return Bounds{place.x - across, place.y - down, place.x + across, place.y + down};
}

/// The sources of a service at a place, one after the other.
class Reading {
 public:
  Reading(const Drawing& drawing, const AskedPlace& asked, const Bounds& around, RasterHandles& handles)
      : drawing_(drawing), asked_(asked), around_(around), handles_(handles) {}

  /// @returns false when it was given up.
  bool readAll() {
    learnModel();
    const ImageServiceRecord& service = *drawing_.service;
    for (auto i = drawing_.order.rbegin(); i != drawing_.order.rend(); ++i) {
      if (WaitScope::isGivenUp()) return false;
      if (mayTouch(service.sources[*i].place)) readOne(service.sources[*i]);
    }
    return !WaitScope::isGivenUp();
  }

  std::vector<SourceValues> taken;

 private:
  [[nodiscard]] bool mayTouch(const Bounds& place) const {
    return partWithin(place, around_, drawing_.service->facts.srsWkt.starts_with("GEOG")).has_value();
  }

  // Which bands a service can show is told by its first source.
  void learnModel() {
    const ImageServiceRecord& service = *drawing_.service;
    const OpenRaster* const model = handles_.raster(service, service.sources.front());
    if (model != nullptr) model_ = model->colors;
  }

  void readOne(const ImageSource& source) {
    const GdalScope scope;
    SourceValues values{source.shownName(), source.rasterId, source.attributes};
    const OpenRaster* const raster = handles_.raster(*drawing_.service, source);
    const RasterPlacing* const placing =
        raster != nullptr ? handles_.placing(*drawing_.service, source, asked_.wkt) : nullptr;
    if (placing == nullptr) return addUnreadable(std::move(values), scope);
    std::vector<MapPoint> place{asked_.place};
    placing->toPixels(place);
    const double column = std::floor(place.front().x);
    const double row = std::floor(place.front().y);
    if (!place.front().isKnown() || column < 0 || row < 0 || column >= raster->columns || row >= raster->rows)
      return;
    values.column = static_cast<std::int64_t>(column);
    values.row = static_cast<std::int64_t>(row);
    Pixel pixel(*raster, drawing_.service->pixels.noData, static_cast<int>(column), static_cast<int>(row));
    if (!pixel.read(values)) return addUnreadable(std::move(values), scope);
    const bool isShown = model_.empty() || sourceBandsOf(*raster, model_, {model_.front()}).has_value();
    if (values.kind == SourceValues::Kind::Data && isShown) {
      values.isOnTop = !hasTop_;
      hasTop_ = true;
    }
    taken.push_back(std::move(values));
  }

  void addUnreadable(SourceValues values, const GdalScope& scope) {
    if (WaitScope::isGivenUp()) return;
    values.kind = SourceValues::Kind::Unreadable;
    values.bands.clear();
    values.problem = scope.firstFailure("its pixels cannot be read");
    taken.push_back(std::move(values));
  }

  const Drawing& drawing_;
  const AskedPlace& asked_;
  const Bounds around_;
  RasterHandles& handles_;
  std::vector<int> model_;
  bool hasTop_ = false;
};

}  // namespace

std::optional<std::vector<SourceValues>> valuesAt(const DrawingSource& source, const AskedPlace& asked) {
  const GdalScope scope;
  RasterHandles handles;
  auto drawing = source(std::nullopt);
  const RasterFacts& facts = drawing->service->facts;
  const auto way = handles.way(asked.wkt, facts.srsWkt);
  const auto around = way ? aroundPlace(way->of(asked.place), facts) : std::nullopt;
  if (!around) return std::vector<SourceValues>();
  drawing = source(around);
  Reading reading(*drawing, asked, *around, handles);
  if (!reading.readAll()) return std::nullopt;
  return std::move(reading.taken);
}

}  // namespace vlclientui::client
