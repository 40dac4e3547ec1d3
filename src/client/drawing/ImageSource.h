#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/raster/FileMetadata.h"
#include "client/raster/LeftOut.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// Who told the facts of a raster: it was opened, or its pixels were not needed yet.
enum class FactsFrom { File, Catalogue };

/// One raster behind a service.
struct ImageSource {
  std::filesystem::path file;
  std::string rasterId;
  std::vector<std::pair<std::string, std::string>> attributes;
  RasterFacts facts;
  Bounds place;           ///< its extent in the service's coordinates
  std::string name = {};  ///< for people; empty: that of the file
  FactsFrom factsFrom = FactsFrom::File;

  [[nodiscard]] std::string shownName() const { return name.empty() ? file.stem().string() : name; }
};

/// A person's choice for the pixels of all sources.
struct PixelChoice {
  std::optional<Resampling> resampling = {};  ///< nothing: chosen by each source's pixels
  std::optional<double> noData = {};          ///< replaces what the sources declare
};

/// One raster, or many that overlap.
enum class ServiceKind { Raster, Mosaic };

/// A service and everything that its documents and pixels are made from.
struct ImageServiceRecord {
  std::string reference = {};
  std::string name = {};  ///< whole name where the reference has one, else the file's stem
  ServiceKind kind = ServiceKind::Raster;
  std::filesystem::path file = {};  ///< the raster or the definition
  RasterFacts facts = {};
  std::vector<ImageSource> sources = {};                   ///< bottom first, as defined; never empty
  std::vector<LeftOut> problems = {};                      ///< sources that were left out
  std::shared_ptr<const FileMetadata> metadata = nullptr;  ///< of a raster, or what is told of a mosaic
  std::vector<std::string> choices =
      {};  ///< what may be shown of each source, the usual first; empty for none
  PixelChoice pixels = {};
  std::size_t edition = 0;  ///< counts how often a catalogue told of more sources
};

}  // namespace vlclientui::client
