#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <string>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "platform/LibXmlService.h"

namespace vlclientui::test {

/// A raster to be made: a test sets what matters to it and leaves the defaults.
struct RasterRecipe {
  int width = 8;
  int height = 6;
  int bands = 1;
  GDALDataType type = GDT_Byte;
  int epsg = 32632;    ///< 0 for none
  std::string option;  ///< of creation, "NAME=value"; empty for none
  std::array<double, 6> transform = {500000, 100, 0, 5150000, 0, -100};
  std::function<void(GDALDataset&)> finish = {};  ///< sets whatever else before the file is closed
};

/// A catalogue in a temporary folder, gone with the test.
class RasterFixture : public testing::Test {
 protected:
  RasterFixture();
  ~RasterFixture() override;

  /// Makes folders on the way. @returns the whole path.
  std::filesystem::path makeRaster(const std::string& name, const RasterRecipe& recipe = {}) const;
  std::filesystem::path writeText(const std::string& name, const std::string& text) const;
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  [[nodiscard]] const XmlService& xml() const { return xml_; }

 private:
  std::filesystem::path folder_;
  platform::LibXmlService xml_;
};

/// What stands between the tags of the first element of that name, or "(none)".
[[nodiscard]] std::string elementContent(const std::string& document, const std::string& name);

/// Compares a document with tests/data/client/<name>, element by element; numbers may differ by one part in
/// a thousand million. On a mismatch the actual text is written to <name>.fail in the working folder.
void expectGolden(const std::string& actual, const std::string& name);

}  // namespace vlclientui::test
