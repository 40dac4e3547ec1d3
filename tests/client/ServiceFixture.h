#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/RasterFixture.h"
#include "client/drawing/ImageSource.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"

namespace vlclientui::test {

/// An export request; the defaults suit most tests.
struct GetImage {
  client::Bounds extent = {500000, 5149400, 500800, 5150000};  ///< of the ordinary raster
  int columns = 8;
  int rows = 6;
  std::string format = "Tiff";
  std::string compression = {};
  std::string tileSize = "None";
  std::string quality = "75";
  std::string fileName = {};
  bool worldFile = false;
  bool metadata = false;

  [[nodiscard]] std::string document() const;
};

/// A catalogue with services made from it.
class ServiceFixture : public RasterFixture {
 protected:
  ServiceFixture();

  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> service(const std::string& reference) const;
  /// Every pixel's value differs from its neighbors', and bands from each other.
  std::filesystem::path makeNumbered(const std::string& name, RasterRecipe recipe = {}) const;
  /// Exports from "ImageService://localhost/<name>". @returns the failure's text; empty when it ran.
  [[nodiscard]] std::string exportFrom(const std::string& name, const GetImage& request) const;
  [[nodiscard]] std::string out(const std::string& name) const;
  /// Names in the output folder, sorted.
  [[nodiscard]] std::vector<std::string> outputs() const;

  std::shared_ptr<client::CatalogueServer> server_;
};

/// All values of a raster as doubles, band after band; empty when it cannot be read.
[[nodiscard]] std::vector<double> valuesOf(const std::string& file);
/// The file's own geotransform, side-car files not counted unless asked for.
enum class SideCars { Ignored, Read };
[[nodiscard]] std::array<double, 6> transformOf(const std::string& file, SideCars sideCars = SideCars::Read);
[[nodiscard]] std::string systemOf(const std::string& file);
[[nodiscard]] std::string structureItem(const std::string& file, const char* name);

}  // namespace vlclientui::test
