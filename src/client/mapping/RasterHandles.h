#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "client/drawing/ImageSource.h"
#include "client/mapping/OpenRaster.h"
#include "client/mapping/PointWay.h"
#include "client/mapping/RasterPlacing.h"
#include "client/mapping/SmallCopies.h"

namespace vlclientui::client {

/// For a person.
[[nodiscard]] std::string unreadable(const ImageSource& source, const std::string& reason);

/// The rasters of one worker: they stay open, the last used ones of all, since to open one and to find its
/// way to the map takes longer than to read it. For one thread at a time.
class RasterHandles {
 public:
  /// @param most so many stay open, at least 1. @param copies of large rasters, drawn from where there are;
  /// may be null.
  explicit RasterHandles(std::size_t most = 64, std::shared_ptr<const SmallCopies> copies = nullptr);
  ~RasterHandles();
  RasterHandles(const RasterHandles&) = delete;
  RasterHandles& operator=(const RasterHandles&) = delete;

  /// An open source of a service. Null when it cannot be opened. Valid until the next call.
  [[nodiscard]] const OpenRaster* raster(const ImageServiceRecord& service, const ImageSource& source);
  /// For a person: why a source cannot be opened. Empty for one that can.
  [[nodiscard]] std::string problem(const ImageServiceRecord& service, const ImageSource& source);
  /// Where that raster lies on a map. Null when nothing tells. Valid as long as the raster.
  [[nodiscard]] const RasterPlacing* placing(const ImageServiceRecord& service, const ImageSource& source,
                                             const std::string& mapWkt);
  /// Null when there is none.
  [[nodiscard]] std::shared_ptr<const PointWay> way(const std::string& from, const std::string& to);

  /// Files are looked at once, and again after this: what was written anew since is opened anew.
  void lookAgain();
  /// What could not be opened is tried again.
  void forgetProblems();
  /// Closes all, as when files may have changed.
  void forget();
  [[nodiscard]] std::size_t count() const { return kept_.size(); }
  /// How often a raster was opened.
  [[nodiscard]] std::size_t openings() const { return openings_; }

 private:
  struct Handle;
  using Kept = std::list<Handle>;

  [[nodiscard]] std::unique_ptr<RasterPlacing> newPlacing(const OpenRaster& raster,
                                                          const std::string& mapWkt);
  Handle& handle(const ImageServiceRecord& service, const ImageSource& source);
  [[nodiscard]] const std::string& ageOf(const std::string& file);
  [[nodiscard]] std::string nameOf(const ImageServiceRecord& service, const ImageSource& source);

  std::size_t most_;
  std::shared_ptr<const SmallCopies> copies_;
  std::size_t copiesSeen_ = 0;
  std::size_t openings_ = 0;
  Kept kept_;  ///< last used first
  std::unordered_map<std::string, Kept::iterator> byName_;
  std::unordered_map<std::string, std::string> ages_;  ///< of files
  std::map<std::pair<std::string, std::string>, std::shared_ptr<const PointWay>> ways_;
};

}  // namespace vlclientui::client
