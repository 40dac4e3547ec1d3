#pragma once

#include <array>
#include <optional>
#include <vector>

#include "client/mapping/OpenRaster.h"

namespace vlclientui::client {

/// How the bands that a picture shows come from one source of a service.
struct SourceBands {
  std::vector<int> numbers;                 ///< that are read, each once
  std::vector<std::size_t> from;            ///< for each shown band, which of them
  const GDALColorTable* palette = nullptr;  ///< shown bands are components of its colors
  std::vector<int> components;              ///< then, 0 to 2
};

/// @param model bands of the service, but transparency. @param shown of these.
/// @returns nothing when the source lacks a shown band, and is left out.
[[nodiscard]] std::optional<SourceBands> sourceBandsOf(const OpenRaster& source,
                                                       const std::vector<int>& model,
                                                       const std::vector<int>& shown);

}  // namespace vlclientui::client
