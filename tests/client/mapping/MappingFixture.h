#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "client/ServiceFixture.h"
#include "client/drawing/Drawing.h"
#include "client/mapping/MapPoint.h"
#include "client/mapping/ServicePainter.h"

namespace vlclientui::test {

/// Rasters somewhere on the earth, the maps that they are drawn on, and what the raster library draws there.
class MappingFixture : public ServiceFixture {
 protected:
  using Pixel = std::array<int, 4>;

  /// @param at WGS 84 degrees. @returns in a system by its code.
  [[nodiscard]] static client::MapPoint placeIn(int epsg, client::MapPoint at);
  [[nodiscard]] static std::string wktOf(int epsg);
  /// A map of columns by rows pixels around a place in degrees. @param pixel in units of the system.
  [[nodiscard]] static client::MapGrid mapAround(int epsg, client::MapPoint middle, double pixel,
                                                 int columns = 200, int rows = 160);

  /// A raster whose bands tell each pixel's column and row, and its place in a checkered field, all modulo
  /// 250. @param pixel in units of its system. @param finish after the pixels are written.
  std::string makePlaced(const std::string& name, int epsg, client::MapPoint middle, double pixel,
                         std::function<void(GDALDataset&)> finish = {}) const;
  /// The same, with values of 16 bits: 200 times as high.
  std::string makeDeep(const std::string& name, int epsg, client::MapPoint middle, double pixel) const;
  static constexpr int deeper = 200;
  static constexpr int side = 240;  ///< pixels of such a raster

  /// @param content of a service properties document.
  [[nodiscard]] client::Drawing drawingOf(const std::string& name, const std::string& content = {}) const;
  /// Drawn by the stretch that the service has by itself.
  [[nodiscard]] client::ServicePicture painted(const client::Drawing& drawing, const client::MapGrid& map,
                                               client::Pass pass = client::Pass::Fine) const;
  [[nodiscard]] static Pixel pixelOf(const client::ServicePicture& picture, int column, int row);

  /// What the raster library's own warping gives, each pixel transformed by itself, the nearest taken: red,
  /// green, blue, and 255 but where there is nothing.
  [[nodiscard]] static std::vector<Pixel> warped(const std::string& file, int epsg,
                                                 const client::MapGrid& map);
  /// The share of pixels that are the same.
  [[nodiscard]] static double likeness(const client::ServicePicture& picture,
                                       const std::vector<Pixel>& reference);
  /// The share of pixels whose colors differ by one at most.
  [[nodiscard]] static double nearLikeness(const client::ServicePicture& picture,
                                           const std::vector<Pixel>& reference);
  [[nodiscard]] static double filledShare(const std::vector<Pixel>& reference);

 private:
  std::string makeChecked(const std::string& name, int epsg, client::MapPoint middle, double pixel,
                          int factor, const std::function<void(GDALDataset&)>& finish) const;
};

}  // namespace vlclientui::test
