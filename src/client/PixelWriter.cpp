#include "client/PixelWriter.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <cpl_string.h>
#include <gdal_priv.h>

#include "client/GdalScope.h"
#include "client/GrowingFolder.h"
#include "client/JpegStrips.h"
#include "client/RowRaster.h"
#include "client/SteppedRaster.h"
#include "client/Text.h"
#include "client/WindowReader.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t kWindowBytes = 8U << 20U;

[[noreturn]] void failWriting(const GdalScope& scope) {
  throw RuntimeFailure("The image could not be written: " + utf8FromAny(scope.failures("no reason known")));
}

CPLStringList optionsOf(const ExportPlan& plan) {
  CPLStringList options;
  for (const std::string& option : plan.options) options.AddString(option.c_str());
  return options;
}

GDALDriver& driverOf(const ExportPlan& plan) {
  return *GetGDALDriverManager()->GetDriverByName(plan.driver.c_str());
}

Window wholeOf(GDALDataset& dataset) { return {0, 0, dataset.GetRasterXSize(), dataset.GetRasterYSize()}; }

std::size_t pixelBytes(GDALDataset& dataset) {
  return static_cast<std::size_t>(GDALGetDataTypeSizeBytes(dataset.GetRasterBand(1)->GetRasterDataType())) *
         static_cast<std::size_t>(dataset.GetRasterCount());
}

void describeBand(GDALRasterBand& from, GDALRasterBand& to) {
  int isSet = 0;
  const double noData = from.GetNoDataValue(&isSet);
  if (isSet != 0) to.SetNoDataValue(noData);
  if (from.GetColorTable() != nullptr) to.SetColorTable(from.GetColorTable());
  if (*from.GetDescription() != '\0') to.SetDescription(from.GetDescription());
  if (*from.GetUnitType() != '\0') to.SetUnitType(from.GetUnitType());
}

void describe(GDALDataset& from, GDALDataset& to) {
  std::array<double, 6> transform{};
  if (from.GetGeoTransform(transform.data()) == CE_None) to.SetGeoTransform(transform.data());
  if (from.GetSpatialRef() != nullptr) to.SetSpatialRef(from.GetSpatialRef());
  to.SetMetadata(from.GetMetadata());
  for (int band = 1; band <= from.GetRasterCount(); ++band) {
    describeBand(*from.GetRasterBand(band), *to.GetRasterBand(band));
  }
}

// Blocks are handed on at once: a block left in the cache could be written from the reading thread.
bool writeWindow(GDALDataset& target, WindowPixels& pixels) {
  const Window& window = pixels.window;
  const GDALDataType type = target.GetRasterBand(1)->GetRasterDataType();
  if (target.RasterIO(GF_Write, window.x, window.y, window.width, window.height, pixels.values.data(),
                      window.width, window.height, type, target.GetRasterCount(), nullptr, 0, 0,
                      0) != CE_None) {
    return false;
  }
  for (int band = 1; band <= target.GetRasterCount(); ++band) {
    if (target.GetRasterBand(band)->FlushCache(false) != CE_None) return false;
  }
  return true;
}

DatasetPtr create(GDALDataset& request, GDALDriver& driver, const ExportPlan& plan, const std::string& file) {
  const CPLStringList options = optionsOf(plan);
  return DatasetPtr(driver.Create(file.c_str(), request.GetRasterXSize(), request.GetRasterYSize(),
                                  request.GetRasterCount(), request.GetRasterBand(1)->GetRasterDataType(),
                                  options.List()));
}

void writeWindows(GDALDataset& request, std::size_t readBytes, GDALDriver& driver, const ExportPlan& plan,
                  const std::string& file, const ExportProgress& progress) {
  const GdalScope scope;
  DatasetPtr target = create(request, driver, plan, file);
  if (!target) failWriting(scope);
  describe(request, *target);
  int blockWidth = 0;
  int blockHeight = 0;
  target->GetRasterBand(1)->GetBlockSize(&blockWidth, &blockHeight);
  const std::vector<Window> windows =
      windowsAlongBlocks(wholeOf(request), blockWidth, blockHeight, pixelBytes(request), kWindowBytes);
  WindowReader reader(request, windows, readBytes);
  for (std::size_t done = 0; done < windows.size(); ++done) {
    const auto shareWith = [&](double share) {
      return (static_cast<double>(done) + share) / static_cast<double>(windows.size());
    };
    report(progress, shareWith(0));
    WindowPixels pixels = reader.take([&](double share) { return !progress || progress(shareWith(share)); });
    if (!writeWindow(*target, pixels)) failWriting(scope);
  }
  target.reset();
  // Closing writes too, and has no other way to tell.
  if (!scope.firstFailure("").empty()) failWriting(scope);
}

// What JPEG cannot hold goes into a description beside the file.
void describeBeside(GDALDataset& request, const std::string& file) {
  const GdalScope scope;
  DatasetPtr image = openRaster(file);
  if (!image) failWriting(scope);
  describe(request, *image);
  image.reset();
  if (!scope.firstFailure("").empty()) failWriting(scope);
}

void writeStrips(GDALDataset& request, std::size_t readBytes, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress) {
  const std::string strips = file + ".strips";
  writeWindows(request, readBytes, *GetGDALDriverManager()->GetDriverByName("GTiff"), plan, strips, progress);
  joinJpegStrips(strips, file);
  removeGrowing(strips);
  removeGrowing(strips + ".aux.xml");
  describeBeside(request, file);
}

// Of a copy by the raster library: what its writer tells and what reading tells, whichever is further.
class CopyProgress {
 public:
  explicit CopyProgress(const ExportProgress& progress) : progress_(progress) {}

  bool tell(double share) {
    share_ = std::max(share_, share);
    if (progress_ && !isCancelled_) isCancelled_ = !progress_(share_);
    return !isCancelled_;
  }
  [[nodiscard]] bool isCancelled() const { return isCancelled_; }

  static int CPL_STDCALL tellCopy(double share, const char* /*message*/, void* data) {
    return static_cast<CopyProgress*>(data)->tell(share) ? TRUE : FALSE;
  }

 private:
  const ExportProgress& progress_;
  double share_ = 0;
  bool isCancelled_ = false;
};

// @param readFailure filled meanwhile where the pixels cannot be had, which the writer tells of in its own
// words.
void copyRaster(GDALDataset& from, const std::string& readFailure, const ExportPlan& plan,
                const std::string& file, CopyProgress& progress) {
  const GdalScope scope;
  const CPLStringList options = optionsOf(plan);
  DatasetPtr target(driverOf(plan).CreateCopy(file.c_str(), &from, FALSE, options.List(),
                                              CopyProgress::tellCopy, &progress));
  const bool isMade = target != nullptr;
  target.reset();
  if (progress.isCancelled()) failCancelled();
  if (!readFailure.empty()) throw RuntimeFailure(readFailure);
  if (!isMade || !scope.firstFailure("").empty()) failWriting(scope);
}

void writeRows(GDALDataset& request, std::size_t readBytes, const ExportPlan& plan, const std::string& file,
               const ExportProgress& progress) {
  CopyProgress copy(progress);
  WindowReader reader(request, windowsOfRows(wholeOf(request), pixelBytes(request), kWindowBytes), readBytes);
  RowRaster rows(request, reader, [&copy](double share) { return copy.tell(share); });
  copyRaster(rows, rows.failure(), plan, file, copy);
}

void writeAnyhow(GDALDataset& request, std::size_t readBytes, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress) {
  CopyProgress copy(progress);
  SteppedRaster steps(request, readBytes, [&copy](double share) { return copy.tell(share); });
  copyRaster(steps, steps.failure(), plan, file, copy);
}

}  // namespace

void writePixels(GDALDataset& request, double reduction, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress) {
  const auto readBytes =
      static_cast<std::size_t>(static_cast<double>(kWindowBytes) / std::max(1.0, reduction));
  switch (plan.order) {
    case WriteOrder::Windows:
      return writeWindows(request, readBytes, driverOf(plan), plan, file, progress);
    case WriteOrder::Strips:
      return writeStrips(request, readBytes, plan, file, progress);
    case WriteOrder::Rows:
      return writeRows(request, readBytes, plan, file, progress);
    case WriteOrder::Anyhow:
      return writeAnyhow(request, readBytes, plan, file, progress);
  }
}

}  // namespace vlclientui::client
