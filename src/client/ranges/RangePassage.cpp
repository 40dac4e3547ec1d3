#include "client/ranges/RangePassage.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <gdal_priv.h>

#include "client/ranges/RemoteFiles.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/raster/GdalScope.h"
#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

constexpr std::uint64_t partBytes = std::uint64_t{4} << 20U;
constexpr std::uint64_t mostBytesAhead = std::uint64_t{12} << 20U;
constexpr std::int64_t mostBlocks = 200'000;

/// The blocks of a TIFF, as far as a window touches them.
class BlocksOfWindow {
 public:
  BlocksOfWindow(GDALDataset& raster, const PixelWindow& window) : raster_(raster) {
    int width = 1;
    int height = 1;
    raster.GetRasterBand(1)->GetBlockSize(&width, &height);
    left_ = window.column / width;
    right_ = (window.column + window.width - 1) / width;
    top_ = window.row / height;
    bottom_ = (window.row + window.height - 1) / height;
    const char* const interleave = raster.GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
    planes_ = interleave != nullptr && std::string_view(interleave) == "BAND" ? raster.GetRasterCount() : 1;
  }

  [[nodiscard]] std::int64_t count() const { return (right_ - left_ + 1) * (bottom_ - top_ + 1) * planes_; }

  /// Whole rows of blocks, several in a part.
  [[nodiscard]] std::vector<FileAhead::Part> parts() {
    std::vector<FileAhead::Part> parts(1);
    std::uint64_t bytes = 0;
    for (std::int64_t row = top_; row <= bottom_; ++row) {
      if (bytes >= partBytes) {
        parts.emplace_back();
        bytes = 0;
      }
      bytes += addRow(row, parts.back());
    }
    return parts;
  }

 private:
  std::uint64_t addRow(std::int64_t row, FileAhead::Part& part) {
    std::uint64_t bytes = 0;
    for (int plane = 1; plane <= planes_; ++plane) {
      for (std::int64_t column = left_; column <= right_; ++column) {
        const std::string block = std::to_string(column) + '_' + std::to_string(row);
        const auto first = itemOf(plane, "BLOCK_OFFSET_" + block);
        const auto size = itemOf(plane, "BLOCK_SIZE_" + block);
        if (!first || !size) continue;
        part.push_back({*first, static_cast<std::size_t>(*size)});
        bytes += *size;
      }
    }
    return bytes;
  }

  /// Nothing for a block that the file leaves out.
  [[nodiscard]] std::optional<std::uint64_t> itemOf(int plane, const std::string& name) const {
    const char* const text = raster_.GetRasterBand(plane)->GetMetadataItem(name.c_str(), "TIFF");
    return text == nullptr ? std::nullopt : wholeNumber(text);
  }

  GDALDataset& raster_;
  std::int64_t left_ = 0;
  std::int64_t right_ = 0;
  std::int64_t top_ = 0;
  std::int64_t bottom_ = 0;
  int planes_ = 1;
};

bool isWithin(const PixelWindow& window, GDALDataset& raster) {
  return window.column >= 0 && window.row >= 0 && window.width > 0 && window.height > 0 &&
         window.column + window.width <= raster.GetRasterXSize() &&
         window.row + window.height <= raster.GetRasterYSize();
}

bool tellsItsBlocks(GDALDataset& raster) {
  return raster.GetDriver() != nullptr && std::string_view(raster.GetDriver()->GetDescription()) == "GTiff" &&
         raster.GetRasterCount() > 0;
}

}  // namespace

std::shared_ptr<FileAhead> rangePassage(const std::string& name, const PixelWindow& window) {
  const GdalScope scope;
  const DatasetPtr raster = openRaster(name);
  if (!raster || !tellsItsBlocks(*raster) || !isWithin(window, *raster)) return nullptr;
  BlocksOfWindow blocks(*raster, window);
  if (blocks.count() > mostBlocks) return nullptr;
  auto parts = blocks.parts();
  // Of images that are very wide a row of blocks would drive out what is kept.
  const auto isLarge = [](const FileAhead::Part& part) {
    std::uint64_t bytes = 0;
    for (const FilePiece& piece : part) bytes += piece.size;
    return bytes > mostBytesAhead;
  };
  if (std::ranges::any_of(parts, isLarge)) return nullptr;
  const auto address = addressWithSecrets(name);
  if (!address) return nullptr;
  const auto met = RemoteFiles::shared().meet(*address);
  const auto* file = std::get_if<std::shared_ptr<RemoteFile>>(&met);
  if (file == nullptr) return nullptr;
  auto ahead = std::make_shared<FileAhead>(*file, std::move(parts), mostBytesAhead);
  (*file)->setReads(ahead);
  return ahead;
}

}  // namespace vlclientui::client
