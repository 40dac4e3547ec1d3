#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gdal.h>

#include "client/drawing/RequestRaster.h"
#include "client/output/GetImageRequest.h"

class GDALDataset;

namespace vlclientui::client {

/// What a format has to hold.
struct PixelKind {
  GDALDataType type = GDT_Byte;
  int bands = 1;
  bool isPalette = false;
  bool isColor = false;   ///< the first three bands are red, green, blue
  bool hasAlpha = false;  ///< the last band tells transparency
  bool hasMask = false;   ///< a mask for all bands tells holes
};

[[nodiscard]] PixelKind pixelKindOf(GDALDataset& dataset);

/// How a format takes its pixels.
enum class WriteOrder {
  Windows,  ///< any window may be written
  Strips,   ///< windows of a TIFF whose strips are joined to one JPEG afterwards
  Rows,     ///< the writer fetches rows, each once, from the top
  Anyhow,   ///< the writer fetches whatever it likes
};

/// Where the mask of the pixels goes.
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
  std::uint64_t leastBytes = 0;      ///< the file will hardly be smaller
  MaskPlace mask = MaskPlace::None;
};

/// Whether the format and compression asked for keep every value.
[[nodiscard]] PixelFidelity fidelityOf(const GetImageRequest& request);

/// @throws RuntimeFailure when the format cannot hold the pixels or the size, naming what would work.
[[nodiscard]] ExportPlan planExport(const GetImageRequest& request, const PixelKind& pixels);

/// @throws RuntimeFailure when the folder has less room.
void checkRoom(std::uint64_t leastBytes, std::uint64_t availableBytes, const std::string& folder);

}  // namespace vlclientui::client
