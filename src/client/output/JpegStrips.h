#pragma once

#include <string>
#include <vector>

namespace vlclientui::client {

/// GDAL's own JPEG writer keeps the coefficients of the whole image in memory. The strips of a TIFF with
/// shared tables are the same data in pieces: each becomes one restart interval of one JPEG.

/// Rows of a strip: a whole number of coding units of either kind.
constexpr int jpegStripRows = 16;

/// Creation options of that TIFF, "NAME=value". @param quality 1 to 100. @param bands 1 or 3.
[[nodiscard]] std::vector<std::string> jpegStripOptions(const std::string& quality, int bands);

/// Joins the strips of a TIFF made with these options. Both names are GDAL's paths.
/// @throws RuntimeFailure when the TIFF is of another kind, or the file cannot be written.
void joinJpegStrips(const std::string& strips, const std::string& jpeg);

}  // namespace vlclientui::client
