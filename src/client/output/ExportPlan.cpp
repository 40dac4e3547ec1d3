#include "client/output/ExportPlan.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <gdal_priv.h>

#include "client/output/JpegStrips.h"
#include "client/raster/RasterHoles.h"
#include "contracts/RuntimeFailure.h"
#include "documents/ExportFormats.h"

namespace vlclientui::client {
namespace {

using Options = std::vector<std::string>;

constexpr std::uint64_t classicTiffLimit = 4'000'000'000;
constexpr int bitsOfMegabyte = 20;

std::string typeName(const PixelKind& pixels) { return GDALGetDataTypeName(pixels.type); }

std::string kindText(const PixelKind& pixels) {
  if (pixels.isPalette) return "palette colours";
  return std::to_string(pixels.bands) + (pixels.bands == 1 ? " band" : " bands") + " of type " +
         typeName(pixels) + (pixels.hasAlpha ? ", the last for transparency" : "");
}

[[noreturn]] void refuse(const std::string& format, const PixelKind& pixels, const std::string& holds,
                         const std::string& instead) {
  throw RuntimeFailure(format + " cannot hold this service's " + kindText(pixels) + "; it holds " + holds +
                       ". " + instead + " would work.");
}

/// @param format whose limit applies. @param name of what is limited, as a person reads it.
void checkSize(const GetImageRequest& request, FileFormat format, const std::string& name,
               const std::string& instead) {
  const int limit = rowOf(format).mostColumnsAndRows;
  if (limit == 0 || (request.grid.columns <= limit && request.grid.rows <= limit)) return;
  throw RuntimeFailure(name + " holds at most " + std::to_string(limit) + " columns and rows, not " +
                       std::to_string(request.grid.columns) + " by " + std::to_string(request.grid.rows) +
                       ". " + instead + " would work.");
}

std::uint64_t rawBytes(const GetImageRequest& request, const PixelKind& pixels) {
  return static_cast<std::uint64_t>(request.grid.columns) * static_cast<std::uint64_t>(request.grid.rows) *
         static_cast<std::uint64_t>(pixels.bands) *
         static_cast<std::uint64_t>(GDALGetDataTypeSizeBytes(pixels.type));
}

std::string jpegQuality(const GetImageRequest& request) {
  return std::to_string(std::clamp(request.quality, 1, 100));
}

bool isComplex(const PixelKind& pixels) { return GDALDataTypeIsComplex(pixels.type) != 0; }
bool isFloat(const PixelKind& pixels) { return pixels.type == GDT_Float32 || pixels.type == GDT_Float64; }

// Neighboring values are alike; neighboring class numbers are not.
std::string predictorFor(const PixelKind& pixels) {
  if (pixels.isPalette || isComplex(pixels)) return "1";
  if (isFloat(pixels)) return "3";
  return GDALGetDataTypeSizeBytes(pixels.type) <= 4 ? "2" : "1";
}

void addTiles(Options& options, int tileSize) {
  if (tileSize == 0) return;
  const std::string size = std::to_string(tileSize);
  options.insert(options.end(), {"TILED=YES", "BLOCKXSIZE=" + size, "BLOCKYSIZE=" + size});
}

// Level 3 takes a quarter of the default level's time for a twentieth more size.
void addLz77(Options& options, const PixelKind& pixels) {
  options.insert(options.end(), {"COMPRESS=DEFLATE", "ZLEVEL=3", "PREDICTOR=" + predictorFor(pixels),
                                 "NUM_THREADS=ALL_CPUS"});
}

// The meaning of the samples; a palette brings its own.
void addMeaning(Options& options, const PixelKind& pixels) {
  if (pixels.isPalette) return;
  options.push_back(pixels.isColor ? "PHOTOMETRIC=RGB" : "PHOTOMETRIC=MINISBLACK");
  if (pixels.hasAlpha) options.push_back("ALPHA=YES");
}

void addTiffJpeg(Options& options, const GetImageRequest& request, const PixelKind& pixels) {
  const std::string name = "TIFF with JPEG compression";
  const std::string instead = "TIFF without compression or with LZ77";
  if (pixels.type != GDT_Byte || pixels.isPalette) refuse(name, pixels, "bands of type Byte", instead);
  // Each strip is a JPEG of its own, so its limits apply.
  if (request.tileSize == 0)
    checkSize(request, FileFormat::Jpeg, name + " without tiles", "A tile size of 256");
  options.insert(options.end(),
                 {"COMPRESS=JPEG", "JPEG_QUALITY=" + jpegQuality(request), "NUM_THREADS=ALL_CPUS"});
  const bool isPlainColor = pixels.isColor && pixels.bands == 3;
  // Only red, green and blue gain from another color space.
  if (isPlainColor) {
    options.insert(options.end(), {"PHOTOMETRIC=YCBCR", "INTERLEAVE=PIXEL"});
    return;
  }
  options.push_back("INTERLEAVE=BAND");
  addMeaning(options, pixels);
}

Compression compressionOf(const GetImageRequest& request) {
  const Compression* const found = findCompression(request.compression);
  if (found) return *found;
  throw RuntimeFailure("TIFF has no compression \"" + request.compression +
                       "\" here; none, JPEG and LZ77 would work.");
}

void addCompression(ExportPlan& plan, const GetImageRequest& request, const PixelKind& pixels) {
  switch (compressionOf(request)) {
    case Compression::Lz77:
      addMeaning(plan.options, pixels);
      addLz77(plan.options, pixels);
      plan.leastBytes /= 8;
      return;
    case Compression::Jpeg:
      addTiffJpeg(plan.options, request, pixels);
      plan.leastBytes /= 64;
      return;
    case Compression::None:
      addMeaning(plan.options, pixels);
  }
}

ExportPlan planTiff(const GetImageRequest& request, const PixelKind& pixels) {
  ExportPlan plan{"GTiff", WriteOrder::Windows, {}, rawBytes(request, pixels)};
  const std::uint64_t atMost = plan.leastBytes + plan.leastBytes / 10;
  plan.options.push_back(atMost > classicTiffLimit ? "BIGTIFF=YES" : "BIGTIFF=NO");
  addCompression(plan, request, pixels);
  addTiles(plan.options, request.tileSize);
  return plan;
}

ExportPlan planJpeg(const GetImageRequest& request, const PixelKind& pixels) {
  const bool fits = pixels.type == GDT_Byte && !pixels.isPalette && (pixels.bands == 1 || pixels.bands == 3);
  if (!fits) refuse("JPEG", pixels, "1 or 3 bands of type Byte", "TIFF");
  checkSize(request, FileFormat::Jpeg, "JPEG", "TIFF");
  // For a moment the strips and the image exist side by side.
  return {"JPEG", WriteOrder::Strips, jpegStripOptions(jpegQuality(request), pixels.bands),
          rawBytes(request, pixels) / 32};
}

// Level 1 takes an eighth of the default level's time for a sixth more size.
ExportPlan planPng(const GetImageRequest& request, const PixelKind& pixels) {
  const bool isHeldType = pixels.type == GDT_Byte || pixels.type == GDT_UInt16;
  // Readers take the last of 2 or 4 bands for transparency.
  const bool isHeldCount =
      pixels.hasAlpha ? pixels.bands == 2 || pixels.bands == 4 : pixels.bands == 1 || pixels.bands == 3;
  if (!isHeldType || !isHeldCount) {
    refuse("PNG", pixels, "1 or 3 bands of type Byte or UInt16, with or without one for transparency",
           "TIFF");
  }
  checkSize(request, FileFormat::Png, "PNG", "TIFF");
  return {"PNG", WriteOrder::Parts, {"ZLEVEL=1"}, rawBytes(request, pixels) / 8};
}

// A quality of 100 keeps every value. Below, the share of the raw size decreases, to about the sizes of JPEG
// at the same quality.
Options jpeg2000Options(const GetImageRequest& request, const PixelKind& pixels) {
  const bool keepsAll = request.quality >= 100 || pixels.isPalette;
  if (keepsAll) return {"QUALITY=100", "REVERSIBLE=YES", "YCBCR420=NO"};
  const int quarters = std::max(request.quality, 1) * 25;
  std::string share = std::to_string(quarters / 100);
  share += '.';
  share += static_cast<char>('0' + quarters / 10 % 10);
  share += static_cast<char>('0' + quarters % 10);
  return {"QUALITY=" + share, "REVERSIBLE=NO", "YCBCR420=NO"};
}

ExportPlan planJpeg2000(const GetImageRequest& request, const PixelKind& pixels) {
  static constexpr std::array<GDALDataType, 5> held = {GDT_Byte, GDT_Int16, GDT_UInt16, GDT_Int32,
                                                       GDT_UInt32};
  if (std::find(held.begin(), held.end(), pixels.type) == held.end()) {
    refuse("JPEG2000", pixels, "whole numbers of up to 32 bits", "TIFF without compression or with LZ77");
  }
  return {"JP2OpenJPEG", WriteOrder::Anyhow, jpeg2000Options(request, pixels),
          rawBytes(request, pixels) / 64};
}

// What only GDAL's side needs to know, beside the table of export formats.
struct DriverRow {
  FileFormat format;
  ExportPlan (*plan)(const GetImageRequest&, const PixelKind&);
};

constexpr std::array<DriverRow, 4> drivers = {{
    {FileFormat::Tiff, planTiff},
    {FileFormat::Jpeg, planJpeg},
    {FileFormat::Jpeg2000, planJpeg2000},
    {FileFormat::Png, planPng},
}};

ExportPlan planByFormat(const GetImageRequest& request, const PixelKind& pixels) {
  const FileFormatRow* const file = findFileFormat(request.format);
  if (file == nullptr) {
    throw RuntimeFailure("There is no format \"" + request.format + "\"; " + allFileFormats() +
                         " would work.");
  }
  const auto* const driver = std::ranges::find(drivers, file->format, &DriverRow::format);
  if (driver == drivers.end()) throw RuntimeFailure("Nothing writes the format " + request.format + " yet.");
  return driver->plan(request, pixels);
}

bool isColor(GDALDataset& dataset) {
  if (dataset.GetRasterCount() < 3) return false;
  return dataset.GetRasterBand(1)->GetColorInterpretation() == GCI_RedBand &&
         dataset.GetRasterBand(2)->GetColorInterpretation() == GCI_GreenBand &&
         dataset.GetRasterBand(3)->GetColorInterpretation() == GCI_BlueBand;
}

// Transparency within the file is what programs can show, so prefer it to a separate file.
MaskPlace maskPlaceFor(const ExportPlan& plan, const PixelKind& pixels) {
  if (!pixels.hasMask) return MaskPlace::None;
  if (plan.driver == "GTiff") return MaskPlace::InFile;
  return plan.driver == "PNG" && !pixels.isPalette ? MaskPlace::Alpha : MaskPlace::BesideFile;
}

}  // namespace

PixelKind pixelKindOf(GDALDataset& dataset) {
  PixelKind kind;
  kind.bands = dataset.GetRasterCount();
  GDALRasterBand& first = *dataset.GetRasterBand(1);
  kind.type = first.GetRasterDataType();
  kind.isPalette = first.GetColorTable() != nullptr;
  kind.isColor = isColor(dataset);
  kind.hasAlpha = dataset.GetRasterBand(kind.bands)->GetColorInterpretation() == GCI_AlphaBand;
  kind.hasMask = hasMaskOfItsOwn(dataset);
  return kind;
}

ExportPlan planExport(const GetImageRequest& request, const PixelKind& pixels) {
  ExportPlan plan = planByFormat(request, pixels);
  if (GDALGetDriverByName(plan.driver.c_str()) == nullptr) {
    throw RuntimeFailure("The format " + request.format +
                         " is not available on this installation. TIFF would work.");
  }
  plan.mask = maskPlaceFor(plan, pixels);
  return plan;
}

PixelFidelity fidelityOf(const GetImageRequest& request) {
  const FileFormatRow* const file = findFileFormat(request.format);
  if (file == nullptr) return PixelFidelity::Lossy;
  const Compression* const compression = findCompression(request.compression);
  const bool isExact =
      file->format == FileFormat::Png ||
      (file->format == FileFormat::Tiff && compression != nullptr && *compression != Compression::Jpeg) ||
      (file->format == FileFormat::Jpeg2000 && request.quality >= 100);
  return isExact ? PixelFidelity::Exact : PixelFidelity::Lossy;
}

void checkRoom(std::uint64_t leastBytes, std::uint64_t availableBytes, const std::string& folder) {
  if (leastBytes <= availableBytes) return;
  throw RuntimeFailure(
      "The folder " + folder + " has " + std::to_string(availableBytes >> bitsOfMegabyte) +
      " MB of room, and the export needs at least " + std::to_string(leastBytes >> bitsOfMegabyte) +
      " MB. Free some room, or choose another folder, a smaller size or a stronger compression.");
}

}  // namespace vlclientui::client
