#pragma once

#include <string>
#include <vector>

#include "servers/MapServer.h"

namespace vlclientui::test {

/// Single rasters of the samples as a static catalogue of STAC behind nginx: a collection with one item each,
/// in the folders of the samples. The images are those of `StaticServer::samples()`.
class StacOfRasters {
 public:
  /// @param names such as "Elevation/Terrain_30m".
  explicit StacOfRasters(const std::vector<std::string>& names);
  StacOfRasters(const StacOfRasters&) = delete;
  StacOfRasters& operator=(const StacOfRasters&) = delete;
  ~StacOfRasters();

  /// Of the catalogue.
  [[nodiscard]] std::string address() const { return server_.address() + "/catalog.json"; }
  /// The one of this program.
  [[nodiscard]] static const StacOfRasters& shared();

 private:
  std::string folder_;
  StaticServer server_;
};

}  // namespace vlclientui::test
