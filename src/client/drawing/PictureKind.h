#pragma once

#include <array>
#include <optional>
#include <string>

class GDALDataset;

namespace vlclientui::client {

/// What a raster shows, and so how it is drawn unless a person says otherwise.
struct PictureKind {
  enum class Form {
    Palette,     ///< classes with colors of their own
    Heights,     ///< of the ground
    Deviations,  ///< heights on both sides of zero
    Colors,      ///< three bands, or one of gray
  };

  Form form = Form::Colors;
  std::array<int, 3> bands = {1, 1, 1};  ///< red, green, blue; all the same for gray
};

/// By color tables, units, names of bands and titles. @param title instead of the raster's own.
[[nodiscard]] PictureKind pictureKindOf(GDALDataset& dataset,
                                        const std::optional<std::string>& title = std::nullopt);

}  // namespace vlclientui::client
