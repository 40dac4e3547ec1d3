#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gdal.h>

#include "client/ExportRequest.h"

class GDALDataset;

namespace vlclientui::client {

/// What a format has to hold.
struct PixelKind {
  GDALDataType type = GDT_Byte;
  int bands = 1;
  bool isPalette = false;
  bool isColor = false;   ///< the first three bands are red, green, blue
  bool hasAlpha = false;  ///< the last band tells transparency
  bool hasNoData = false;
  bool hasSeveralNoData = false;  ///< different values in different bands
};

[[nodiscard]] PixelKind pixelKindOf(GDALDataset& dataset);

/// How a format takes its pixels.
enum class WriteOrder {
  Windows,  ///< any window may be written
  Strips,   ///< windows of a TIFF whose strips are joined to one JPEG afterwards
  Rows,     ///< the writer fetches rows, each once, from the top
  Anyhow,   ///< the writer fetches whatever it likes
};

struct ExportPlan {
  std::string driver;
  WriteOrder order = WriteOrder::Windows;
  std::vector<std::string> options;  ///< "NAME=value"
  std::uint64_t leastBytes = 0;      ///< the file will hardly be smaller
};

/// @throws RuntimeFailure when the format cannot hold the pixels or the size, naming what would work.
[[nodiscard]] ExportPlan planExport(const ExportRequest& request, const PixelKind& pixels);

/// @throws RuntimeFailure when the folder has less room.
void checkRoom(std::uint64_t leastBytes, std::uint64_t availableBytes, const std::string& folder);

}  // namespace vlclientui::client
