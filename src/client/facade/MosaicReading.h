#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/catalogue/CatalogueScan.h"
#include "client/drawing/Drawing.h"
#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// The sources of one mosaic. Those that a catalogue tells of are opened when their pixels are needed: of
/// 10,000 only those that an image shows. One of them is opened at once, as a sample of what nobody tells; so
/// are all where few do not tell their place.
///
/// A source that cannot be read is left out, as one of a definition is that is not there. Any thread may ask.
class MosaicReading {
 public:
  /// Facts of rasters from their headers, in order.
  using FactsReader = std::function<std::vector<RasterResult>(const std::vector<std::filesystem::path>&)>;
  using RecordPtr = std::shared_ptr<const ImageServiceRecord>;

  MosaicReading(CatalogueEntry mosaic, FactsReader readFacts);

  /// The service with all that comes from its sources. @param service sets the rest.
  /// @param choice what is shown of each source; empty for the usual.
  /// @throws RuntimeFailure when none can be read.
  [[nodiscard]] ImageServiceRecord read(ImageServiceRecord service, const std::string& choice);

  /// Which rasters are opened: all that are shown, of very many those on top, or none that was not before.
  enum class Opening { All, Topmost, Done };
  /// So many are opened for a drawing.
  static constexpr std::size_t mostForDrawing = 500;

  /// The service with those sources opened that an area shows; where the definition held only some of all,
  /// with those in the area.
  /// @param drawing of the service. @param area in the coordinates of the drawing.
  /// @returns the same object where nothing has changed.
  /// @throws RuntimeFailure when the wait for a server was given up, or a server does not answer just now.
  [[nodiscard]] RecordPtr openedWithin(RecordPtr service, const Drawing& drawing, const Bounds& area,
                                       Opening opening);

 private:
  using Results = std::vector<RasterResult>;

  [[nodiscard]] MosaicDefinition definitionOf(const std::string& choice);
  [[nodiscard]] std::optional<RasterResult> known(const std::filesystem::path& file) const;
  void readFiles(std::vector<std::filesystem::path> files);
  [[nodiscard]] std::optional<std::size_t> readSample(const std::vector<MosaicSource>& sources);
  void readNeeded(const std::vector<MosaicSource>& sources);
  [[nodiscard]] Results resultsOf(const std::vector<MosaicSource>& sources);
  [[nodiscard]] RecordPtr learntWithin(RecordPtr service, const Drawing& drawing, const Bounds& area,
                                       Opening opening);

  CatalogueEntry mosaic_;  ///< not changed any more
  const FactsReader readFacts_;
  std::atomic<std::size_t> edition_ = 0;        ///< how often sources were learnt
  mutable std::mutex mutex_;                    ///< of what follows
  std::optional<MosaicDefinition> first_;       ///< the usual one of an origin, until it is read
  std::map<std::string, RasterResult> opened_;  ///< by the name of the raster
};

/// A drawing without the sources in an area that were not opened, as for an image of very many; with a
/// remark.
/// @returns the same object where there are none.
[[nodiscard]] std::shared_ptr<const Drawing> withoutUnopened(std::shared_ptr<const Drawing> drawing,
                                                             const Bounds& area);

}  // namespace vlclientui::client
