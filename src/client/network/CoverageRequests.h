#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/network/Coverages.h"

/// Addresses of requests to coverage services. What the server's own address holds besides, such as the map
/// that it means, goes along.
namespace vlclientui::client {

/// Pixels of a coverage, columns and rows counted from the north-west corner.
struct PixelWindow {
  std::int64_t column = 0;
  std::int64_t row = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;

  bool operator==(const PixelWindow&) const = default;
};

/// @param version nothing lets the server choose the best that both speak.
[[nodiscard]] std::string capabilitiesRequest(const std::string& server,
                                              std::optional<CoverageVersion> version);

[[nodiscard]] std::string descriptionRequest(const std::string& server, CoverageVersion version,
                                             const std::vector<std::string>& ids);

/// @param window within the coverage; its edges are on those of pixels, so that the server moves nothing.
/// @param columns,rows of the image; the window's own size where nothing is to be resampled.
[[nodiscard]] std::string pixelsRequest(const std::string& server, CoverageVersion version,
                                        const CoverageDescription& coverage, const PixelWindow& window,
                                        std::int64_t columns, std::int64_t rows, const std::string& format);

/// Where the pixels of the window lie.
[[nodiscard]] Bounds boundsOfWindow(const CoverageDescription& coverage, const PixelWindow& window);

}  // namespace vlclientui::client
