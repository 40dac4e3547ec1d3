#include "client/output/PixelWriter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>

#include "client/drawing/RequestRaster.h"
#include "client/output/GrowingFolder.h"
#include "client/output/HoleValue.h"
#include "client/output/JpegStrips.h"
#include "client/output/PngParts.h"
#include "client/output/WindowReaders.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SteppedRaster.h"
#include "client/raster/Text.h"
#include "client/raster/WindowReader.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t windowBytes = 8U << 20U;
// Where steps are kept, little is lost with one that was not whole.
constexpr std::size_t keptStepBytes = 1U << 20U;

// The pixels to be written, and how they are read.
struct Reading {
  GDALDataset& request;
  std::vector<GDALDataset*> requests;  ///< it, and others that are alike
  std::size_t stepBytes;
  StepKeeper* keeper;
};

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

bool writeMask(GDALRasterBand& target, WindowPixels& pixels) {
  const Window& window = pixels.window;
  return target.RasterIO(GF_Write, window.x, window.y, window.width, window.height, pixels.mask.data(),
                         window.width, window.height, GDT_Byte, 0, 0, nullptr) == CE_None &&
         target.FlushCache(false) == CE_None;
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
  return pixels.mask.empty() || writeMask(*target.GetRasterBand(1)->GetMaskBand(), pixels);
}

DatasetPtr create(GDALDataset& request, GDALDriver& driver, const ExportPlan& plan, const std::string& file) {
  const CPLStringList options = optionsOf(plan);
  return DatasetPtr(driver.Create(file.c_str(), request.GetRasterXSize(), request.GetRasterYSize(),
                                  request.GetRasterCount(), request.GetRasterBand(1)->GetRasterDataType(),
                                  options.List()));
}

// Windows are to hold their mask too.
std::size_t bytesOf(GDALDataset& request, WindowContent content) {
  if (content == WindowContent::Mask) return 1;
  return pixelBytes(request) + (content == WindowContent::ValuesAndMask ? 1 : 0);
}

std::vector<Window> windowsFor(const Reading& reading, GDALDataset& target, WindowContent content) {
  GDALDataset& request = reading.request;
  int blockWidth = 0;
  int blockHeight = 0;
  target.GetRasterBand(1)->GetBlockSize(&blockWidth, &blockHeight);
  return windowsAlongBlocks(wholeOf(request), blockWidth, blockHeight, bytesOf(request, content),
                            windowBytes / reading.requests.size());
}

// Gives write(window) for each of them, and tells how far it is.
template <class Write>
void forEachWindow(WindowReaders& reader, std::size_t count, const ExportProgress& progress, Write write) {
  for (std::size_t done = 0; done < count; ++done) {
    const auto shareWith = [&](double share) {
      return (static_cast<double>(done) + share) / static_cast<double>(count);
    };
    report(progress, shareWith(0));
    WindowPixels pixels = reader.take([&](double share) { return !progress || progress(shareWith(share)); });
    write(pixels);
  }
}

// Closing writes too, and has no other way to tell.
void close(DatasetPtr target, const GdalScope& scope) {
  target.reset();
  if (!scope.firstFailure("").empty()) failWriting(scope);
}

void addMaskInFile(GDALDataset& target, const GdalScope& scope) {
  constexpr auto option = "GDAL_TIFF_INTERNAL_MASK";
  CPLSetThreadLocalConfigOption(option, "YES");
  const bool isMade = target.CreateMaskBand(GMF_PER_DATASET) == CE_None;
  CPLSetThreadLocalConfigOption(option, nullptr);
  if (!isMade) failWriting(scope);
}

// Programs that know no masks can do with a value, if it is told of holes alone.
void declareNoData(GDALDataset& target, const std::optional<double>& value) {
  if (!value) return;
  for (int band = 1; band <= target.GetRasterCount(); ++band) {
    target.GetRasterBand(band)->SetNoDataValue(*value);
  }
}

void writeWindows(const Reading& reading, GDALDriver& driver, const ExportPlan& plan, const std::string& file,
                  const ExportProgress& progress) {
  GDALDataset& request = reading.request;
  const GdalScope scope;
  DatasetPtr target = create(request, driver, plan, file);
  if (!target) failWriting(scope);
  describe(request, *target);
  const bool hasMask = plan.mask == MaskPlace::InFile;
  if (hasMask) addMaskInFile(*target, scope);
  HoleValue value(hasMask ? valueInHoles(request) : std::nullopt);
  const WindowContent content = hasMask ? WindowContent::ValuesAndMask : WindowContent::Values;
  const std::vector<Window> windows = windowsFor(reading, *target, content);
  WindowReaders reader(reading.requests, windows, reading.stepBytes, content, reading.keeper);
  forEachWindow(reader, windows.size(), progress, [&](WindowPixels& pixels) {
    value.compare(pixels, target->GetRasterBand(1)->GetRasterDataType());
    if (!writeWindow(*target, pixels)) failWriting(scope);
  });
  declareNoData(*target, value.ofHolesAlone());
  close(std::move(target), scope);
}

// The raster library takes a TIFF of this name for the mask of those bands that its items tell.
void declareMaskOf(int bands, GDALDataset& mask) {
  for (int band = 1; band <= bands; ++band) {
    const std::string item = "INTERNAL_MASK_FLAGS_" + std::to_string(band);
    mask.SetMetadataItem(item.c_str(), std::to_string(GMF_PER_DATASET).c_str());
  }
}

void writeMaskBeside(const Reading& reading, const std::string& file, const ExportProgress& progress) {
  GDALDataset& request = reading.request;
  const GdalScope scope;
  const CPLStringList options(
      CSLParseCommandLine("COMPRESS=DEFLATE TILED=YES BIGTIFF=IF_SAFER NUM_THREADS=ALL_CPUS"));
  DatasetPtr target(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
      (file + ".msk").c_str(), request.GetRasterXSize(), request.GetRasterYSize(), 1, GDT_Byte,
      options.List()));
  if (!target) failWriting(scope);
  declareMaskOf(request.GetRasterCount(), *target);
  const std::vector<Window> windows = windowsFor(reading, *target, WindowContent::Mask);
  WindowReaders reader(reading.requests, windows, reading.stepBytes, WindowContent::Mask, reading.keeper);
  forEachWindow(reader, windows.size(), progress, [&](WindowPixels& pixels) {
    if (!writeMask(*target->GetRasterBand(1), pixels)) failWriting(scope);
  });
  close(std::move(target), scope);
}

// What JPEG cannot hold goes into a description beside the file.
void describeBeside(GDALDataset& request, const std::string& file) {
  const GdalScope scope;
  DatasetPtr image = openRaster(file);
  if (!image) failWriting(scope);
  describe(request, *image);
  close(std::move(image), scope);
}

void writeStrips(const Reading& reading, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress) {
  const std::string strips = file + ".strips";
  writeWindows(reading, *GetGDALDriverManager()->GetDriverByName("GTiff"), plan, strips, progress);
  joinJpegStrips(strips, file);
  removeGrowing(strips);
  removeGrowing(strips + ".aux.xml");
  describeBeside(reading.request, file);
}

// Of a copy by the raster library: what its writer tells and what reading tells, whichever is further.
class CopyProgress {
 public:
  explicit CopyProgress(const ExportProgress& progress) : progress_(progress) {}

  bool tell(double share) {
    share_ = std::max(share_, share);
    if (progress_ && !isCanceled_) isCanceled_ = !progress_(share_);
    return !isCanceled_;
  }
  [[nodiscard]] bool isCanceled() const { return isCanceled_; }

  static int CPL_STDCALL tellCopy(double share, const char* /*message*/, void* data) {
    return static_cast<CopyProgress*>(data)->tell(share) ? TRUE : FALSE;
  }

 private:
  const ExportProgress& progress_;
  double share_ = 0;
  bool isCanceled_ = false;
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
  if (progress.isCanceled()) failCanceled();
  if (!readFailure.empty()) throw RuntimeFailure(readFailure);
  if (!isMade || !scope.firstFailure("").empty()) failWriting(scope);
}

// Of one row, and like the request in all but the pixels.
DatasetPtr headOf(GDALDataset& request, bool hasAlpha) {
  const int bands = request.GetRasterCount();
  GDALDriver& memory = *GetGDALDriverManager()->GetDriverByName("MEM");
  DatasetPtr head(memory.Create("", request.GetRasterXSize(), 1, bands + (hasAlpha ? 1 : 0),
                                request.GetRasterBand(1)->GetRasterDataType(), nullptr));
  if (!head) throw RuntimeFailure("The image could not be written: there is not enough memory");
  describe(request, *head);
  for (int band = 1; band <= bands; ++band) {
    head->GetRasterBand(band)->SetColorInterpretation(request.GetRasterBand(band)->GetColorInterpretation());
  }
  if (hasAlpha) head->GetRasterBand(bands + 1)->SetColorInterpretation(GCI_AlphaBand);
  return head;
}

// The raster library writes the head of the file and what stands beside it, from a row.
void writeParts(const Reading& reading, const ExportPlan& plan, const std::string& file,
                const ExportProgress& progress) {
  GDALDataset& request = reading.request;
  const bool hasAlpha = plan.mask == MaskPlace::Alpha;
  const ExportProgress nobody;
  CopyProgress unheard(nobody);
  copyRaster(*headOf(request, hasAlpha), {}, plan, file, unheard);
  const WindowContent content = hasAlpha ? WindowContent::ValuesAndMask : WindowContent::Values;
  const std::vector<Window> windows =
      windowsOfRows(wholeOf(request), bytesOf(request, content), windowBytes / reading.requests.size());
  WindowReaders reader(reading.requests, windows, reading.stepBytes, content, reading.keeper);
  PngParts parts(file, request.GetRasterYSize());
  forEachWindow(reader, windows.size(), progress, [&](WindowPixels& pixels) { parts.add(pixels); });
  parts.close();
}

void writeAnyhow(const Reading& reading, const ExportPlan& plan, const std::string& file,
                 const ExportProgress& progress) {
  GDALDataset& request = reading.request;
  CopyProgress copy(progress);
  SteppedRaster steps(
      request, reading.stepBytes, [&copy](double share) { return copy.tell(share); }, reading.keeper);
  copyRaster(steps, steps.failure(), plan, file, copy);
}

void writeImage(const Reading& reading, const ExportPlan& plan, const std::string& file,
                const ExportProgress& progress) {
  switch (plan.order) {
    case WriteOrder::Windows:
      return writeWindows(reading, driverOf(plan), plan, file, progress);
    case WriteOrder::Strips:
      return writeStrips(reading, plan, file, progress);
    case WriteOrder::Parts:
      return writeParts(reading, plan, file, progress);
    case WriteOrder::Anyhow:
      return writeAnyhow(reading, plan, file, progress);
  }
}

// The part of a work that a step of it takes.
ExportProgress partOf(const ExportProgress& progress, double from, double to) {
  if (!progress) return {};
  return [&progress, from, to](double share) { return progress(from + share * (to - from)); };
}

}  // namespace

void writePixels(const std::vector<GDALDataset*>& requests, double reduction, const ExportPlan& plan,
                 const std::string& file, const ExportProgress& progress, StepKeeper* keeper) {
  const auto wholeStep = static_cast<double>(keeper == nullptr ? windowBytes : keptStepBytes);
  const Reading reading{*requests.front(), requests,
                        static_cast<std::size_t>(wholeStep / std::max(1.0, reduction)), keeper};
  if (plan.mask != MaskPlace::BesideFile) return writeImage(reading, plan, file, progress);
  constexpr double imageShare = 0.8;
  writeImage(reading, plan, file, partOf(progress, 0, imageShare));
  writeMaskBeside(reading, file, partOf(progress, imageShare, 1));
}

}  // namespace vlclientui::client
