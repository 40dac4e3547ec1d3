#include "client/mapping/CopyWriting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <cpl_conv.h>
#include <cpl_string.h>

#include "client/mapping/PixelPatch.h"
#include "client/raster/GiveUp.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr double largeArea = 16e6;    // pixels of the coarsest level: such a raster is slow from afar
constexpr double copyArea = 1 << 25;  // pixels of a copy, at most
constexpr int mostBands = 12;
constexpr int leastStep = 4;
constexpr int rowsAtOnce = 64;  // of the copy
constexpr int leastSide = 256;  // of the coarsest overview of a copy
constexpr const char* stepItem = "STEP";
constexpr double readingShare = 0.9;  // of the time

// What is set here for this thread ends with it.
class ThreadOption {
 public:
  ThreadOption(const char* name, const char* value) : name_(name) {
    CPLSetThreadLocalConfigOption(name, value);
  }
  ~ThreadOption() { CPLSetThreadLocalConfigOption(name_, nullptr); }
  ThreadOption(const ThreadOption&) = delete;
  ThreadOption& operator=(const ThreadOption&) = delete;

 private:
  const char* name_;
};

double areaOf(const RasterLevel& level) { return static_cast<double>(level.columns) * level.rows; }

int stepFor(const OpenRaster& raster) {
  int step = leastStep;
  while (areaOf(raster.levels.front()) / step / step > copyArea) step *= 2;
  return step;
}

// One tells them for all bands in the file.
bool haveOneNoData(const OpenRaster& raster) {
  return std::ranges::all_of(raster.noData,
                             [&](const auto& value) { return value == raster.noData.front(); });
}

class CopyWriter {
 public:
  CopyWriter(const OpenRaster& raster, const std::filesystem::path& file,
             const std::function<void(double)>& progress)
      : raster_(raster),
        progress_(progress),
        step_(stepFor(raster)),
        columns_((raster.columns + step_ - 1) / step_),
        rows_((raster.rows + step_ - 1) / step_),
        type_(raster.dataset->GetRasterBand(1)->GetRasterDataType()),
        file_(file) {}

  CopyEnd write() {
    create();
    for (int row = 0; row < rows_; row += rowsAtOnce) {
      const Window part{0, row, columns_, std::min(rowsAtOnce, rows_ - row)};
      if (!copyPart(part)) return CopyEnd::GivenUp;
      if (progress_) progress_(readingShare * (part.y + part.height) / rows_);
    }
    if (!addOverviews()) return CopyEnd::GivenUp;
    close();
    return CopyEnd::Whole;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const { throw RuntimeFailure(scope_.firstFailure(what)); }

  void create() {
    const bool isFloat = GDALDataTypeIsFloating(type_) != 0;
    CPLStringList options;
    for (const char* word : {"TILED=YES", "COMPRESS=DEFLATE", "ZLEVEL=1", "BIGTIFF=IF_SAFER"})
      options.AddString(word);
    options.AddString(isFloat ? "PREDICTOR=3" : "PREDICTOR=2");
    const int bands = raster_.dataset->GetRasterCount();
    if (bands > 1) options.AddString("INTERLEAVE=PIXEL");
    if (raster_.alpha != 0) options.AddString("ALPHA=YES");
    copy_.reset(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(file_.c_str(), columns_, rows_,
                                                                         bands, type_, options.List()));
    if (!copy_) fail("The file cannot be made");
    copy_->SetMetadataItem(stepItem, std::to_string(step_).c_str());
    const bool hasNoData = !raster_.noData.empty() && raster_.noData.front();
    if (hasNoData) {
      for (const int band : raster_.colors)
        copy_->GetRasterBand(band)->SetNoDataValue(*raster_.noData.front());
    }
    if (raster_.hasOwnMask && copy_->CreateMaskBand(GMF_PER_DATASET) != CE_None)
      fail("Its mask cannot be made");
  }

  // So many bands at a time as a patch holds.
  bool copyPart(const Window& part) {
    for (std::size_t first = 0; first < raster_.colors.size(); first += mostSamples) {
      const std::size_t end = std::min(raster_.colors.size(), first + mostSamples);
      PatchWish wish;
      wish.step = step_;
      wish.window = part;
      wish.bands.assign(raster_.colors.begin() + static_cast<std::ptrdiff_t>(first),
                        raster_.colors.begin() + static_cast<std::ptrdiff_t>(end));
      wish.reduction = raster_.isLabel ? Reduction::Pick : Reduction::Mean;
      PixelPatch patch;
      const ReadingEnd read = readPatch(raster_, wish, patch);
      if (read == ReadingEnd::GivenUp) return false;
      if (read == ReadingEnd::Failed) throw RuntimeFailure(scope_.readFailure());
      markHoles(patch);
      writeBands(wish.bands, part, patch);
      if (first == 0) writeHoles(part, patch);
    }
    return true;
  }

  // A mean that happens to be the value for holes is moved by one.
  void markHoles(PixelPatch& patch) const {
    const bool isFloat = GDALDataTypeIsFloating(type_) != 0;
    const auto noData = raster_.noData.empty() ? std::nullopt : raster_.noData.front();
    if (!noData && !isFloat) return;
    const float hole = noData ? static_cast<float>(*noData) : std::nanf("");
    const auto bands = static_cast<std::size_t>(patch.bands);
    for (std::size_t i = 0; i < patch.alpha.size(); ++i) {
      float* samples = patch.samples.data() + i * bands;
      if (patch.alpha[i] == 0) {
        std::fill_n(samples, bands, hole);
      } else if (!isFloat && std::lround(samples[0]) == std::lround(hole)) {
        samples[0] = hole > 0 ? hole - 1 : hole + 1;
      }
    }
  }

  void writeBands(std::vector<int> bands, const Window& part, PixelPatch& patch) {
    constexpr GSpacing size = sizeof(float);
    const GSpacing pixel = size * patch.bands;
    if (copy_->RasterIO(GF_Write, part.x, part.y, part.width, part.height, patch.samples.data(), part.width,
                        part.height, GDT_Float32, patch.bands, bands.data(), pixel, pixel * part.width, size,
                        nullptr) != CE_None) {
      fail("The file cannot be written");
    }
  }

  // Where a band or a mask tells them.
  void writeHoles(const Window& part, PixelPatch& patch) {
    if (raster_.hasOwnMask) {
      for (std::uint8_t& alpha : patch.alpha) alpha = alpha == 0 ? 0 : 255;
      writeBytes(*copy_->GetRasterBand(1)->GetMaskBand(), part, patch.alpha.data(), GDT_Byte);
    }
    if (raster_.alpha == 0) return;
    std::vector<float> shares(patch.alpha.size());
    std::ranges::transform(patch.alpha, shares.begin(), [this](std::uint8_t alpha) {
      return static_cast<float>(alpha / 255.0 * raster_.opaque);
    });
    writeBytes(*copy_->GetRasterBand(raster_.alpha), part, shares.data(), GDT_Float32);
  }

  void writeBytes(GDALRasterBand& band, const Window& part, void* values, GDALDataType type) const {
    if (band.RasterIO(GF_Write, part.x, part.y, part.width, part.height, values, part.width, part.height,
                      type, 0, 0, nullptr) != CE_None) {
      fail("The file cannot be written");
    }
  }

  bool addOverviews() {
    std::vector<int> factors;
    for (int factor = 2; std::min(columns_, rows_) / factor >= leastSide; factor *= 2)
      factors.push_back(factor);
    if (copy_->FlushCache(false); factors.empty()) return true;
    const char* const by = raster_.isLabel ? "NEAREST" : "AVERAGE";
    const CPLErr end = copy_->BuildOverviews(by, static_cast<int>(factors.size()), factors.data(), 0, nullptr,
                                             untilGivenUp, nullptr);
    if (WaitScope::isGivenUp()) return false;
    if (end != CE_None) fail("Its overviews cannot be made");
    return true;
  }

  // What could not be written may be told only now.
  void close() {
    copy_.reset();
    const std::string failure = scope_.firstFailure("");
    if (!failure.empty()) throw RuntimeFailure(failure);
    if (progress_) progress_(1);
  }

  const OpenRaster& raster_;
  const std::function<void(double)>& progress_;
  const int step_;
  const int columns_;
  const int rows_;
  const GDALDataType type_;
  const std::filesystem::path& file_;
  GdalScope scope_;
  ThreadOption noSideFiles_{"GDAL_PAM_ENABLED", "NO"};
  ThreadOption maskInside_{"GDAL_TIFF_INTERNAL_MASK", "YES"};
  DatasetPtr copy_;
};

std::vector<GDALRasterBand*> bandsOf(GDALDataset& copy, int overview) {
  std::vector<GDALRasterBand*> bands;
  for (int number = 1; number <= copy.GetRasterCount(); ++number) {
    GDALRasterBand* band = copy.GetRasterBand(number);
    bands.push_back(overview < 0 ? band : band->GetOverview(overview));
  }
  return bands;
}

}  // namespace

bool deservesCopy(const OpenRaster& raster) {
  GDALDataset& dataset = *raster.dataset;
  const GDALDataType type = dataset.GetRasterBand(1)->GetRasterDataType();
  for (int number = 2; number <= dataset.GetRasterCount(); ++number) {
    if (dataset.GetRasterBand(number)->GetRasterDataType() != type) return false;
  }
  return areaOf(raster.levels.back()) > largeArea && dataset.GetRasterCount() <= mostBands &&
         GDALDataTypeIsComplex(type) == 0 && haveOneNoData(raster);
}

CopyEnd writeCopy(const OpenRaster& raster, const std::filesystem::path& file,
                  const std::function<void(double)>& progress) {
  return CopyWriter(raster, file, progress).write();
}

void addCopy(OpenRaster& raster, const std::filesystem::path& file) {
  const GdalScope scope;
  DatasetPtr copy = openRaster(file.string());
  if (!copy || copy->GetRasterCount() != raster.dataset->GetRasterCount()) return;
  const char* const told = copy->GetMetadataItem(stepItem);
  const int step = told == nullptr ? 0 : std::atoi(told);
  const bool isOfIt = step > 0 && copy->GetRasterXSize() == (raster.columns + step - 1) / step &&
                      copy->GetRasterYSize() == (raster.rows + step - 1) / step;
  if (!isOfIt) return;
  double scale = step;
  for (int overview = -1; overview < copy->GetRasterBand(1)->GetOverviewCount(); ++overview) {
    if (overview >= 0) scale = step * std::exp2(overview + 1);
    raster.levels.push_back(levelOf(raster, bandsOf(*copy, overview)));
    raster.levels.back().across = raster.levels.back().down = scale;
  }
  std::ranges::stable_sort(raster.levels, {}, &RasterLevel::across);
  raster.copy = std::move(copy);
}

}  // namespace vlclientui::client
