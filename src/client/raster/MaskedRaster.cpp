#include "client/raster/MaskedRaster.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/RasterHoles.h"
#include "client/raster/Text.h"
#include "client/reach/Places.h"

namespace vlclientui::client {
namespace {

// A name is the prefix, a letter for the kind of hole, ":" and the bytes of the other raster's name. Bytes,
// because a virtual raster's name is its whole definition, and GDAL would take any text that contains one for
// it.
const std::string& ownPrefix() {
  // Nobody else can write such a name into a file, so what it leads to is what we put into it.
  static const std::string beginning = [] {
    std::random_device chance;
    std::string text = "VLMASKED";
    for (int i = 0; i < 4; ++i) text += std::to_string(chance());
    text += ':';
    Places::shared().keepOwnNames(text);
    return text;
  }();
  return beginning;
}
constexpr std::string_view asDeclared = "declared";
constexpr std::string_view byLastBand = "last";

constexpr std::uint8_t dataMark = 255;
constexpr int mostAtOnce = 1 << 16;

struct NoDataOfBand {
  int band = 1;
  double value = 0;
};

// Each of these makes holes, independently of the others.
struct HoleRule {
  std::vector<NoDataOfBand> noData;  ///< holes where all of these are found
  int presenceBand = 0;              ///< holes where it is 0; 0 for no such band
  bool usesOwnMask = false;          ///< holes where the raster's mask is 0
};

struct Area {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
};

template <class Value>
bool readAll(GDALRasterBand& band, const Area& area, GDALDataType type, std::vector<Value>& values) {
  values.resize(area.size());
  return band.RasterIO(GF_Read, area.x, area.y, area.width, area.height, values.data(), area.width,
                       area.height, type, 0, 0, nullptr) == CE_None;
}

// Finds holes at one resolution of a raster.
class HoleFinder {
 public:
  HoleFinder(const HoleRule& rule, std::vector<GDALRasterBand*> bands)
      : rule_(rule), bands_(std::move(bands)) {}

  // Fills the mask row by row: 0 in holes, 255 elsewhere.
  bool find(const Area& area, std::vector<std::uint8_t>& mask) {
    mask.assign(area.size(), dataMark);
    return findEmpty(area, mask) && findAbsent(area, mask) && findLeftOut(area, mask);
  }

 private:
  bool findEmpty(const Area& area, std::vector<std::uint8_t>& mask) {
    if (rule_.noData.empty()) return true;
    std::fill(mask.begin(), mask.end(), std::uint8_t{0});
    for (const NoDataOfBand& noData : rule_.noData) {
      // Usually the first band decides already.
      if (std::ranges::find(mask, 0) == mask.end()) break;
      if (!readAll(bandOf(noData.band), area, GDT_Float64, values_)) return false;
      for (std::size_t i = 0; i < mask.size(); ++i) {
        if (!isSameValue(values_[i], noData.value)) mask[i] = dataMark;
      }
    }
    return true;
  }

  bool findAbsent(const Area& area, std::vector<std::uint8_t>& mask) {
    if (rule_.presenceBand == 0) return true;
    if (!readAll(bandOf(rule_.presenceBand), area, GDT_Float64, values_)) return false;
    for (std::size_t i = 0; i < mask.size(); ++i) {
      if (!(values_[i] > 0)) mask[i] = 0;
    }
    return true;
  }

  bool findLeftOut(const Area& area, std::vector<std::uint8_t>& mask) {
    if (!rule_.usesOwnMask) return true;
    if (!readAll(*bandOf(1).GetMaskBand(), area, GDT_Byte, own_)) return false;
    for (std::size_t i = 0; i < mask.size(); ++i) {
      if (own_[i] == 0) mask[i] = 0;
    }
    return true;
  }

  GDALRasterBand& bandOf(int number) { return *bands_[static_cast<std::size_t>(number) - 1]; }

  const HoleRule& rule_;
  std::vector<GDALRasterBand*> bands_;
  std::vector<double> values_;
  std::vector<std::uint8_t> own_;
};

Area blockOf(GDALRasterBand& band, int column, int row) {
  Area area;
  band.GetBlockSize(&area.width, &area.height);
  area.x = column * area.width;
  area.y = row * area.height;
  area.width = std::min(area.width, band.GetXSize() - area.x);
  area.height = std::min(area.height, band.GetYSize() - area.y);
  return area;
}

constexpr std::uint16_t dataOfBand = 65535;

class MaskBand : public GDALRasterBand {
 public:
  MaskBand(const HoleRule& rule, const std::vector<GDALRasterBand*>& bands) : finder_(rule, bands) {
    GDALRasterBand& like = *bands.front();
    nRasterXSize = like.GetXSize();
    nRasterYSize = like.GetYSize();
    like.GetBlockSize(&nBlockXSize, &nBlockYSize);
    // With 8 bits, averaging many pixels would round a single one with data away.
    eDataType = GDT_UInt16;
  }

  void addOverview(std::unique_ptr<MaskBand> overview) { overviews_.push_back(std::move(overview)); }

  int GetOverviewCount() override { return static_cast<int>(overviews_.size()); }
  GDALRasterBand* GetOverview(int level) override {
    return level >= 0 && level < GetOverviewCount() ? overviews_[static_cast<std::size_t>(level)].get()
                                                    : nullptr;
  }
  MaskBand& overview(std::size_t level) { return *overviews_[level]; }

  // Calls take(row within the area, first pixel of its mask) for each row; keeps only a few rows in memory.
  template <class Take>
  bool forEachRow(const Area& area, Take take) {
    const int most = std::max(1, mostAtOnce / area.width);
    for (int from = 0; from < area.height; from += most) {
      const Area part{area.x, area.y + from, area.width, std::min(most, area.height - from)};
      if (!finder_.find(part, found_)) return false;
      for (int row = 0; row < part.height; ++row) {
        take(from + row, found_.data() + static_cast<std::ptrdiff_t>(row) * area.width);
      }
    }
    return true;
  }

 protected:
  CPLErr IReadBlock(int column, int row, void* values) override {
    const Area area = blockOf(*this, column, row);
    auto* block = static_cast<std::uint16_t*>(values);
    const bool isRead = forEachRow(area, [&](int line, const std::uint8_t* mask) {
      std::transform(mask, mask + area.width, block + static_cast<std::ptrdiff_t>(line) * nBlockXSize,
                     [](std::uint8_t pixel) { return pixel != 0 ? dataOfBand : std::uint16_t{0}; });
    });
    return isRead ? CE_None : CE_Failure;
  }

  // Data and hole have no value between them, so any average above 0 means data, up to some 360 pixels in
  // each direction. A reader of bytes gets 255 for anything higher.
  CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* values, int columns, int rows,
                   GDALDataType type, GSpacing pixelSpace, GSpacing lineSpace,
                   GDALRasterIOExtraArg* extra) override {
    GDALRasterIOExtraArg own = *extra;
    if (own.eResampleAlg != GRIORA_Average) own.eResampleAlg = GRIORA_NearestNeighbour;
    return GDALRasterBand::IRasterIO(flag, x, y, width, height, values, columns, rows, type, pixelSpace,
                                     lineSpace, &own);
  }

 private:
  HoleFinder finder_;
  std::vector<std::unique_ptr<MaskBand>> overviews_;
  std::vector<std::uint8_t> found_;
};

class MaskedBand : public GDALRasterBand {
 public:
  MaskedBand(GDALDataset& raster, int number, GDALRasterBand& inner, MaskBand& mask)
      : inner_(inner), mask_(mask) {
    poDS = &raster;
    nBand = number;
    eDataType = inner.GetRasterDataType();
    nRasterXSize = inner.GetXSize();
    nRasterYSize = inner.GetYSize();
    inner.GetBlockSize(&nBlockXSize, &nBlockYSize);
    SetDescription(inner.GetDescription());
  }

  void addOverview(std::unique_ptr<MaskedBand> overview) { overviews_.push_back(std::move(overview)); }

  GDALColorInterp GetColorInterpretation() override { return inner_.GetColorInterpretation(); }
  GDALColorTable* GetColorTable() override { return inner_.GetColorTable(); }
  const char* GetUnitType() override { return inner_.GetUnitType(); }
  int GetOverviewCount() override { return static_cast<int>(overviews_.size()); }
  GDALRasterBand* GetOverview(int level) override {
    return level >= 0 && level < GetOverviewCount() ? overviews_[static_cast<std::size_t>(level)].get()
                                                    : nullptr;
  }
  GDALRasterBand* GetMaskBand() override { return &mask_; }
  int GetMaskFlags() override { return GMF_PER_DATASET; }

 protected:
  CPLErr IReadBlock(int column, int row, void* values) override {
    return inner_.ReadBlock(column, row, values);
  }

  // The underlying band would leave out only its own holes.
  CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* values, int columns, int rows,
                   GDALDataType type, GSpacing pixelSpace, GSpacing lineSpace,
                   GDALRasterIOExtraArg* extra) override {
    const bool isResampled =
        extra->eResampleAlg != GRIORA_NearestNeighbour && (width != columns || height != rows);
    if (isResampled) {
      return GDALRasterBand::IRasterIO(flag, x, y, width, height, values, columns, rows, type, pixelSpace,
                                       lineSpace, extra);
    }
    return inner_.RasterIO(flag, x, y, width, height, values, columns, rows, type, pixelSpace, lineSpace,
                           extra);
  }

  [[nodiscard]] MaskBand& mask() { return mask_; }

 private:
  GDALRasterBand& inner_;
  MaskBand& mask_;
  std::vector<std::unique_ptr<MaskedBand>> overviews_;
};

// Reports transparency in its values, so nothing of it is masked; all holes are transparent.
class AlphaBand : public MaskedBand {
 public:
  AlphaBand(GDALDataset& raster, int number, GDALRasterBand& inner, MaskBand& mask)
      : MaskedBand(raster, number, inner, mask), allValid_(this) {}

  GDALRasterBand* GetMaskBand() override { return &allValid_; }
  int GetMaskFlags() override { return GMF_ALL_VALID; }

 protected:
  CPLErr IReadBlock(int column, int row, void* values) override {
    if (MaskedBand::IReadBlock(column, row, values) != CE_None) return CE_Failure;
    const Area area = blockOf(*this, column, row);
    const std::ptrdiff_t size = GDALGetDataTypeSizeBytes(eDataType);
    auto* block = static_cast<std::uint8_t*>(values);
    const bool isRead = mask().forEachRow(area, [&](int line, const std::uint8_t* mask) {
      std::uint8_t* pixel = block + line * size * nBlockXSize;
      for (int i = 0; i < area.width; ++i, pixel += size) {
        if (mask[i] == 0) std::fill_n(pixel, size, std::uint8_t{0});
      }
    });
    return isRead ? CE_None : CE_Failure;
  }

  CPLErr IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* values, int columns, int rows,
                   GDALDataType type, GSpacing pixelSpace, GSpacing lineSpace,
                   GDALRasterIOExtraArg* extra) override {
    return GDALRasterBand::IRasterIO(flag, x, y, width, height, values, columns, rows, type, pixelSpace,
                                     lineSpace, extra);
  }

 private:
  GDALAllValidMaskBand allValid_;
};

template <class Band>
std::unique_ptr<Band> withOverviews(GDALDataset& raster, int number, GDALRasterBand& inner, MaskBand& mask) {
  auto band = std::make_unique<Band>(raster, number, inner, mask);
  for (int level = 0; level < mask.GetOverviewCount(); ++level) {
    band->addOverview(withOverviews<Band>(raster, number, *inner.GetOverview(level),
                                          mask.overview(static_cast<std::size_t>(level))));
  }
  return band;
}

std::vector<GDALRasterBand*> bandsOf(GDALDataset& raster) {
  std::vector<GDALRasterBand*> bands;
  for (int number = 1; number <= raster.GetRasterCount(); ++number) {
    bands.push_back(raster.GetRasterBand(number));
  }
  return bands;
}

// Empty unless all bands have an overview of one size, and the raster's own mask too.
std::vector<GDALRasterBand*> overviewsOf(const std::vector<GDALRasterBand*>& bands, int level,
                                         bool needsMask) {
  std::vector<GDALRasterBand*> found;
  for (GDALRasterBand* band : bands) {
    GDALRasterBand* overview = level < band->GetOverviewCount() ? band->GetOverview(level) : nullptr;
    if (overview == nullptr) return {};
    if (!found.empty() && overview->GetXSize() != found.front()->GetXSize()) return {};
    if (!found.empty() && overview->GetYSize() != found.front()->GetYSize()) return {};
    found.push_back(overview);
  }
  if (needsMask && (found.front()->GetMaskFlags() & GMF_ALL_VALID) != 0) return {};
  return found;
}

class MaskedRaster : public GDALDataset {
 public:
  MaskedRaster(DatasetPtr inner, HoleRule rule, int bandCount)
      : inner_(std::move(inner)), rule_(std::move(rule)), mask_(rule_, bandsOf(*inner_)) {
    nRasterXSize = inner_->GetRasterXSize();
    nRasterYSize = inner_->GetRasterYSize();
    for (int level = 0;; ++level) {
      const auto bands = overviewsOf(bandsOf(*inner_), level, rule_.usesOwnMask);
      if (bands.empty()) break;
      mask_.addOverview(std::make_unique<MaskBand>(rule_, bands));
    }
    for (int number = 1; number <= bandCount; ++number) SetBand(number, makeBand(number).release());
  }

  CPLErr GetGeoTransform(double* transform) override { return inner_->GetGeoTransform(transform); }
  const OGRSpatialReference* GetSpatialRef() const override { return inner_->GetSpatialRef(); }
  int GetGCPCount() override { return inner_->GetGCPCount(); }
  const OGRSpatialReference* GetGCPSpatialRef() const override { return inner_->GetGCPSpatialRef(); }
  const GDAL_GCP* GetGCPs() override { return inner_->GetGCPs(); }
  char** GetMetadata(const char* domain) override { return inner_->GetMetadata(domain); }
  const char* GetMetadataItem(const char* name, const char* domain) override {
    return inner_->GetMetadataItem(name, domain);
  }

 private:
  std::unique_ptr<GDALRasterBand> makeBand(int number) {
    GDALRasterBand& inner = *inner_->GetRasterBand(number);
    if (number == alphaBandOf(*inner_)) return withOverviews<AlphaBand>(*this, number, inner, mask_);
    return withOverviews<MaskedBand>(*this, number, inner, mask_);
  }

  DatasetPtr inner_;
  HoleRule rule_;
  MaskBand mask_;
};

HoleRule ruleOfBands(GDALDataset& raster, std::optional<double> noData) {
  HoleRule rule;
  const std::vector<int> bands = colorBandsOf(raster);
  const NoDataValues values = noDataOf(raster, noData);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    if (values[i]) rule.noData.push_back({bands[i], *values[i]});
  }
  rule.presenceBand = alphaBandOf(raster);
  rule.usesOwnMask = hasMaskOfItsOwn(raster);
  return rule;
}

struct MaskedName {
  std::string rule;
  std::string raster;
};

std::optional<MaskedName> readName(std::string_view name) {
  if (!name.starts_with(ownPrefix())) return std::nullopt;
  const std::string_view rest = name.substr(ownPrefix().size());
  const std::size_t end = rest.find(':');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string hex(rest.substr(end + 1));
  int length = 0;
  GByte* bytes = CPLHexToBinary(hex.c_str(), &length);
  const auto* characters = reinterpret_cast<const char*>(bytes);
  MaskedName found{std::string(rest.substr(0, end)), {characters, characters + length}};
  CPLFree(bytes);
  return found;
}

int identify(GDALOpenInfo* info) { return readName(info->pszFilename) ? TRUE : FALSE; }

GDALDataset* open(GDALOpenInfo* info) {
  const auto name = readName(info->pszFilename);
  if (!name || info->eAccess == GA_Update) return nullptr;
  DatasetPtr raster = openRaster(name->raster);
  if (!raster || raster->GetRasterCount() == 0) return nullptr;
  const int count = raster->GetRasterCount();
  if (name->rule == byLastBand) {
    return new MaskedRaster(std::move(raster), {{}, count, false}, count - 1);
  }
  const bool isDeclared = name->rule == asDeclared;
  const auto noData = isDeclared ? std::nullopt : std::optional<double>(CPLAtof(name->rule.c_str()));
  HoleRule rule = ruleOfBands(*raster, noData);
  return new MaskedRaster(std::move(raster), std::move(rule), count);
}

// Virtual rasters refer to their sources by name, so GDAL must be able to open these names.
void registerNames() {
  auto driver = std::make_unique<GDALDriver>();
  driver->SetDescription("VLClientUIMasked");
  driver->SetMetadataItem(GDAL_DCAP_RASTER, "YES");
  driver->pfnIdentify = identify;
  driver->pfnOpen = open;
  GetGDALDriverManager()->RegisterDriver(driver.release());
}

std::string nameOf(std::string_view rule, const std::string& raster) {
  static std::once_flag once;
  std::call_once(once, registerNames);
  char* hex = CPLBinaryToHex(static_cast<int>(raster.size()), reinterpret_cast<const GByte*>(raster.data()));
  const std::string name = ownPrefix() + std::string(rule) + ":" + hex;
  CPLFree(hex);
  return name;
}

}  // namespace

std::string maskedName(const std::string& raster, std::optional<double> noData) {
  return nameOf(noData ? numberText(*noData) : asDeclared, raster);
}

std::string maskedByLastBandName(const std::string& raster) { return nameOf(byLastBand, raster); }

}  // namespace vlclientui::client
