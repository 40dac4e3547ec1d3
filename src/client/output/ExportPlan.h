#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gdal.h>

#include "client/drawing/RequestRaster.h"
#include "client/output/GetImageRequest.h"

class GDALDataset;

namespace vlclientui::client {

/// The pixels that a format has to hold.
struct PixelKind {
  GDALDataType type = GDT_Byte;
  int bands = 1;
  bool isPalette = false;
  bool isColor = false;   ///< the first three bands are red, green, blue
  bool hasAlpha = false;  ///< the last band is transparency
  bool hasMask = false;   ///< a mask for all bands marks holes
};

[[nodiscard]] PixelKind pixelKindOf(GDALDataset& dataset);

/// How a format's writer gets its pixels.
enum class WriteOrder {
  Windows,  ///< any window may be written
  Strips,   ///< windows of a TIFF whose strips are joined to one JPEG afterwards
  Parts,    ///< windows of full width, packed in parts into a PNG
  Anyhow,   ///< the writer reads in any order
};

/// Where to put the mask of the pixels.
enum class MaskPlace {
  None,        ///< there is no mask
  InFile,      ///< a mask is part of the format
  Alpha,       ///< one more band, of transparency
  BesideFile,  ///< `<file>.msk`
};

struct ExportPlan {
  std::string driver;
  WriteOrder order = WriteOrder::Windows;
  std::vector<std::string> options;  ///< "NAME=value"
  std::uint64_t leastBytes = 0;      ///< what the file needs at least
  MaskPlace mask = MaskPlace::None;
};

/// Whether the requested format and compression keep every value.
[[nodiscard]] PixelFidelity fidelityOf(const GetImageRequest& request);

/// @throws RuntimeFailure when the format cannot hold the pixels or the size; the text names one that can.
[[nodiscard]] ExportPlan planExport(const GetImageRequest& request, const PixelKind& pixels);

/// @throws RuntimeFailure when the folder has less room.
void checkRoom(std::uint64_t leastBytes, std::uint64_t availableBytes, const std::string& folder);

}  // namespace vlclientui::client
