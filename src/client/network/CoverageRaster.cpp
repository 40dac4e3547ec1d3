#include "client/network/CoverageRaster.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include "client/network/CoverageFacts.h"
#include "client/network/NetworkAccess.h"
#include "client/raster/ContentMark.h"
#include "client/raster/DatesText.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeographicBounds.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

constexpr std::string_view prefix = "/vsivlcoverage/";
constexpr int side = CoverageReader::tileSide;

using ReaderPtr = std::shared_ptr<CoverageReader>;

struct Window {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// Where pixels go, as callers of the library tell it.
struct Target {
  GByte* data = nullptr;
  GDALDataType type = GDT_Unknown;
  std::vector<int> bands;  // from 1 on
  GSpacing pixel = 0;
  GSpacing line = 0;
  GSpacing band = 0;
};

TileRange tilesOf(int level, const Window& window) {
  return {level, window.x / side, window.y / side, (window.x + window.width - 1) / side,
          (window.y + window.height - 1) / side};
}

void copyInto(const Target& target, const Window& window, int column, int row, const std::byte* tile,
              GDALDataType type) {
  const int left = std::max(window.x, column * side);
  const int right = std::min(window.x + window.width, (column + 1) * side);
  const int top = std::max(window.y, row * side);
  const int bottom = std::min(window.y + window.height, (row + 1) * side);
  if (left >= right || top >= bottom) return;
  const auto size = static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type));
  for (std::size_t index = 0; index < target.bands.size(); ++index) {
    for (int y = top; y < bottom; ++y) {
      const auto line =
          static_cast<std::size_t>(target.bands[index] - 1) * side + static_cast<std::size_t>(y - row * side);
      const std::byte* const from =
          tile + (line * side + static_cast<std::size_t>(left - column * side)) * size;
      GByte* const to = target.data + static_cast<GSpacing>(index) * target.band +
                        (y - window.y) * target.line + (left - window.x) * target.pixel;
      GDALCopyWords64(from, type, static_cast<int>(size), to, target.type, static_cast<int>(target.pixel),
                      right - left);
    }
  }
}

CPLErr fail(const std::string& problem) {
  CPLError(CE_Failure, CPLE_HttpResponse, "%s", problem.c_str());
  return CE_Failure;
}

class CoverageBandRaster;

/// A coverage at one level of reduction.
class CoverageDataset final : public GDALDataset {
 public:
  CoverageDataset(ReaderPtr reader, int level);

  CPLErr GetGeoTransform(double* transform) override;
  /// Asks the server for the content mark; answers all else as usual.
  const char* GetMetadataItem(const char* name, const char* domain) override;
  [[nodiscard]] const OGRSpatialReference* GetSpatialRef() const override;
  [[nodiscard]] CPLErr readPixels(const Window& window, const Target& target);
  [[nodiscard]] CoverageReader& reader() { return *reader_; }
  [[nodiscard]] int level() const { return level_; }
  [[nodiscard]] CoverageDataset* overview(int index) {
    return overviews_.at(static_cast<std::size_t>(index)).get();
  }
  [[nodiscard]] int overviewCount() const { return static_cast<int>(overviews_.size()); }
  [[nodiscard]] GDALDataType type() const { return type_; }

 protected:
  CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data, int columns, int rows,
                   GDALDataType type, int bandCount, int* bands, GSpacing pixel, GSpacing line, GSpacing band,
                   GDALRasterIOExtraArg* extra) override;

 private:
  void describe();

  ReaderPtr reader_;
  int level_;
  GDALDataType type_;
  OGRSpatialReference system_;
  std::string mark_;
  std::vector<std::unique_ptr<CoverageDataset>> overviews_;
};

class CoverageBandRaster final : public GDALRasterBand {
 public:
  CoverageBandRaster(CoverageDataset& coverage, int number) : coverage_(coverage) {
    poDS = &coverage;
    nBand = number;
    eDataType = coverage.type();
    nRasterXSize = coverage.GetRasterXSize();
    nRasterYSize = coverage.GetRasterYSize();
    nBlockXSize = side;
    nBlockYSize = side;
  }

  int GetOverviewCount() override { return coverage_.overviewCount(); }
  GDALRasterBand* GetOverview(int index) override {
    const bool isThere = index >= 0 && index < coverage_.overviewCount();
    return isThere ? coverage_.overview(index)->GetRasterBand(nBand) : nullptr;
  }
  double GetNoDataValue(int* has) override;
  GDALColorInterp GetColorInterpretation() override;
  const char* GetUnitType() override;

 protected:
  CPLErr IReadBlock(int column, int row, void* data) override;
  CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data, int columns, int rows,
                   GDALDataType type, GSpacing pixel, GSpacing line, GDALRasterIOExtraArg* extra) override;

 private:
  [[nodiscard]] const CoverageBand* told() const {
    const auto& bands = coverage_.reader().coverage().bands;
    const auto index = static_cast<std::size_t>(nBand) - 1;
    return index < bands.size() ? &bands[index] : nullptr;
  }

  CoverageDataset& coverage_;
};

// What stands in the images counts: it is the value that they really hold.
double CoverageBandRaster::GetNoDataValue(int* has) {
  const auto index = static_cast<std::size_t>(nBand) - 1;
  const auto& inImages = coverage_.reader().format().noData;
  const std::optional<double>* value = index < inImages.size() ? &inImages[index] : nullptr;
  if ((value == nullptr || !*value) && told() != nullptr) value = &told()->noData;
  const bool isTold = value != nullptr && value->has_value();
  if (has != nullptr) *has = isTold ? TRUE : FALSE;
  return isTold ? **value : 0;
}

GDALColorInterp CoverageBandRaster::GetColorInterpretation() {
  const auto index = static_cast<std::size_t>(nBand) - 1;
  const auto& names = coverage_.reader().format().colorInterpretations;
  return index < names.size() ? GDALGetColorInterpretationByName(names[index].c_str()) : GCI_Undefined;
}

const char* CoverageBandRaster::GetUnitType() { return told() == nullptr ? "" : told()->unit.c_str(); }

CPLErr CoverageBandRaster::IReadBlock(int column, int row, void* data) {
  const GSpacing size = GDALGetDataTypeSizeBytes(eDataType);
  const Window window{column * side, row * side, side, side};
  return coverage_.readPixels(window, {static_cast<GByte*>(data), eDataType, {nBand}, size, size * side, 0});
}

CPLErr CoverageBandRaster::IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data,
                                     int columns, int rows, GDALDataType type, GSpacing pixel, GSpacing line,
                                     GDALRasterIOExtraArg* extra) {
  if (flag == GF_Read && columns == width && rows == height) {
    return coverage_.readPixels({x, y, width, height},
                                {static_cast<GByte*>(data), type, {nBand}, pixel, line, 0});
  }
  return GDALRasterBand::IRasterIO(flag, x, y, width, height, data, columns, rows, type, pixel, line, extra);
}

CoverageDataset::CoverageDataset(ReaderPtr reader, int level)
    : reader_(std::move(reader)),
      level_(level),
      type_(GDALGetDataTypeByName(reader_->format().dataType.c_str())) {
  nRasterXSize = static_cast<int>(reader_->columns(level));
  nRasterYSize = static_cast<int>(reader_->rows(level));
  eAccess = GA_ReadOnly;
  for (int number = 1; number <= reader_->format().bandCount; ++number) {
    SetBand(number, new CoverageBandRaster(*this, number));
  }
  if (level_ > 0) return;
  system_.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  if (!reader_->coverage().system.empty()) system_.SetFromUserInput(reader_->coverage().system.c_str());
  for (int reduced = 1; reduced < reader_->levels(); ++reduced) {
    overviews_.push_back(std::make_unique<CoverageDataset>(reader_, reduced));
  }
  describe();
}

void CoverageDataset::describe() {
  const CoverageDescription& coverage = reader_->coverage();
  const auto tell = [this](const char* name, const std::string& text) {
    if (!text.empty()) SetMetadataItem(name, text.c_str());
  };
  std::string keywords;
  for (const std::string& keyword : coverage.keywords) keywords += (keywords.empty() ? "" : ", ") + keyword;
  tell("TITLE", coverageTitle(coverage.title, coverage.id));
  tell("ABSTRACT", coverage.abstract);
  tell("KEYWORDS", keywords);
  if (coverage.dates) {
    GeographicBounds geographic;
    tell("DATES", datesText(coverage.dates->from, coverage.dates->to));
    tell("REGION", coverageFacts({}, &coverage, geographic).region);
  }
  tell("SERVER", withoutSecrets(reader_->address()));
  tell("COVERAGE", coverage.id);
  tell("IMAGE_FORMAT", reader_->format().name);
}

CPLErr CoverageDataset::GetGeoTransform(double* transform) {
  const CoverageDescription& coverage = reader_->coverage();
  const double ratio = static_cast<double>(std::int64_t{1} << level_);
  const std::array<double, 6> place = {
      coverage.envelope.xMin,         coverage.pixelWidth() * ratio, 0, coverage.envelope.yMax, 0,
      -coverage.pixelHeight() * ratio};
  std::ranges::copy(place, transform);
  return CE_None;
}

const char* CoverageDataset::GetMetadataItem(const char* name, const char* domain) {
  const bool isMark = domain != nullptr && EQUAL(domain, contentMarkDomain) && EQUAL(name, contentMarkItem);
  if (!isMark) return GDALDataset::GetMetadataItem(name, domain);
  auto mark = reader_->client().fingerprint(reader_->coverage(), reader_->format());
  if (const auto* problem = std::get_if<CoverageProblem>(&mark)) {
    fail(problem->text);
    return nullptr;
  }
  mark_ = std::get<std::string>(std::move(mark));
  return mark_.c_str();
}

const OGRSpatialReference* CoverageDataset::GetSpatialRef() const {
  return system_.IsEmpty() ? nullptr : &system_;
}

CPLErr CoverageDataset::readPixels(const Window& window, const Target& target) {
  const std::string problem =
      reader_->read(tilesOf(level_, window), [&](int column, int row, const std::vector<std::byte>& tile) {
        copyInto(target, window, column, row, tile.data(), type_);
      });
  return problem.empty() ? CE_None : fail(problem);
}

CPLErr CoverageDataset::IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data,
                                  int columns, int rows, GDALDataType type, int bandCount, int* bands,
                                  GSpacing pixel, GSpacing line, GSpacing band, GDALRasterIOExtraArg* extra) {
  if (flag == GF_Read && columns == width && rows == height) {
    return readPixels({x, y, width, height},
                      {static_cast<GByte*>(data), type, {bands, bands + bandCount}, pixel, line, band});
  }
  return GDALDataset::IRasterIO(flag, x, y, width, height, data, columns, rows, type, bandCount, bands, pixel,
                                line, band, extra);
}

int identify(GDALOpenInfo* info) {
  return std::string_view(info->pszFilename).starts_with(prefix) ? TRUE : FALSE;
}

GDALDataset* open(GDALOpenInfo* info) {
  const auto coverage = coverageOfRasterName(info->pszFilename);
  if (!coverage || info->eAccess == GA_Update) return nullptr;
  auto reader = NetworkAccess::shared().reader(coverage->first, coverage->second);
  if (const auto* problem = std::get_if<CoverageProblem>(&reader)) {
    fail(problem->text);
    return nullptr;
  }
  return new CoverageDataset(std::get<ReaderPtr>(reader), 0);
}

}  // namespace

std::string coverageRasterName(const std::string& address, const std::string& id) {
  return std::string(prefix) + percentEncoded(address) + '/' + percentEncoded(id);
}

std::optional<std::pair<std::string, std::string>> coverageOfRasterName(const std::string& name) {
  if (!name.starts_with(prefix)) return std::nullopt;
  const std::string rest = name.substr(prefix.size());
  const std::size_t slash = rest.find('/');
  if (slash == std::string::npos || slash + 1 == rest.size()) return std::nullopt;
  return std::pair(percentDecoded(rest.substr(0, slash)), percentDecoded(rest.substr(slash + 1)));
}

std::string shownRasterPlace(const std::string& name) {
  const auto coverage = coverageOfRasterName(name);
  return coverage ? withoutSecrets(coverage->first) + ' ' + coverage->second : name;
}

void registerCoverageRasters() {
  static std::once_flag once;
  std::call_once(once, [] {
    const GdalScope scope;
    auto driver = std::make_unique<GDALDriver>();
    driver->SetDescription("VLCoverage");
    driver->SetMetadataItem(GDAL_DCAP_RASTER, "YES");
    driver->SetMetadataItem(GDAL_DMD_LONGNAME, "Coverage of a server");
    driver->pfnIdentify = identify;
    driver->pfnOpen = open;
    GetGDALDriverManager()->RegisterDriver(driver.release());
  });
}

}  // namespace vlclientui::client
