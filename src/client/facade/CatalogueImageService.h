#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/facade/ExportForecast.h"
#include "client/facade/ServiceCoordinates.h"
#include "client/facade/ServiceDrawing.h"
#include "client/facade/Thumbnail.h"
#include "client/raster/ExportProgress.h"
#include "client/raster/RasterFacts.h"
#include "contracts/VorlaneClient.h"

#pragma GCC visibility push(default)
namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

class CatalogueServer;
struct ExportJob;
struct ImageServiceRecord;

/// What a host tells an image service.
struct ImageServiceSettings {
  std::filesystem::path definitionFolder;  ///< of VLClient.XADef and VLClient.Xfdef; empty for none
  ExportProgress progress = {};            ///< of ExportImage
};

/// A raster or mosaic as an image service of the older generation. For one thread at a time.
///
/// Its documents are made from the headers read when it was made, and kept until the properties, the image or
/// a file change, so that they may be asked for often. A failing member throws RuntimeFailure, but
/// SaveProperties and ExportImage, which return false and leave the reason in `status`.
class CatalogueImageService : public ImageService {
 public:
  /// @param server shared; never null. @param xml must outlive this object. @param settings of the host.
  /// @param reference "ImageService://server/name", "VLDef://file", a path of a raster, a definition or a
  /// reference file, whose properties then count. @throws RuntimeFailure when it leads to nothing readable.
  CatalogueImageService(std::shared_ptr<CatalogueServer> server, const XmlService& xml,
                        const std::string& reference, ImageServiceSettings settings = {});
  ~CatalogueImageService() override;

  [[nodiscard]] std::string typeName() const override { return "ImageService"; }

  /// This generation has none.
  [[nodiscard]] std::string getProperty(const std::string& key) override;
  /// From the definition folder's files. @throws RuntimeFailure where they hold no such definition.
  [[nodiscard]] std::string GetDefinition(std::int32_t kind) override;
  /// The present service properties document.
  [[nodiscard]] std::string ServiceProperties() override;
  /// The `ImageServiceInfo` document of the service.
  [[nodiscard]] std::string ServiceInfo() override;
  [[nodiscard]] std::string GetImageMetadata(const std::string& level) override;
  [[nodiscard]] std::string GetMetaData(const std::string& key) override;
  /// Writes a reference file with the reference and the present properties, whole or not at all.
  [[nodiscard]] bool SaveProperties(const std::string& fileName) override;
  void ExportProperties(const std::string& request) override;
  [[nodiscard]] bool ExportImage() override;
  [[nodiscard]] std::string status() override;

  /// The host's side: changes how the service is drawn from now on; documents tell of the image last drawn
  /// until the next one is. What the document lacks stays as it was; what of it cannot be followed is told in
  /// the image's status. docs/mosaics.md has the details.
  /// @throws RuntimeFailure for a text that is no service properties document; nothing changes then.
  void setServiceProperties(const std::string& document);
  /// Draws an area in natural colors and makes it the image last returned. Before any draw that is the
  /// whole service. @param extent in the coordinates of the record. @param columns,rows at least 1. @throws
  /// RuntimeFailure when it cannot be drawn.
  [[nodiscard]] Thumbnail drawImage(const Bounds& extent, int columns, int rows);
  /// By the present properties, for any thread.
  [[nodiscard]] ServiceDrawing drawing() const;
  /// Makes what was drawn apart from the service the image last returned, as drawImage does.
  /// @param drawing of this service. @param extent,columns,rows that were drawn.
  void showDrawn(const ServiceDrawing& drawing, const Bounds& extent, int columns, int rows);
  /// Replaces the one from the settings.
  void setProgress(ExportProgress progress);

  /// Of the exports that follow; at first Nothing.
  void setKeeping(Keeping keeping);
  /// What setKeeping set last.
  [[nodiscard]] Keeping keeping() const;
  /// Whether any of its pixels come from servers.
  [[nodiscard]] bool readsServers() const;
  /// What the export of the request handed over last is going to take. Reads a part of it.
  /// @throws RuntimeFailure for what the export would refuse, and where nothing can be read.
  [[nodiscard]] ExportForecast forecastExport();
  /// The whole export of the request handed over last, to be made again elsewhere; no secret stands in it.
  /// @throws RuntimeFailure where there is no request, or one that cannot be read.
  [[nodiscard]] ExportJob job() const;
  /// A word for the request handed over last and the content of the rasters that it touches, which is asked
  /// for anew: another one where either has changed. @throws RuntimeFailure where a raster cannot be had.
  [[nodiscard]] std::string inputMark();
  /// What an earlier export to the same file kept; nothing where no export was asked for.
  [[nodiscard]] std::optional<KeptPart> keptPart() const;
  /// Takes that away. @returns false where another export uses it.
  bool discardKept();

  /// As the properties have it: in their coordinate system. Valid until the properties change.
  [[nodiscard]] const ImageServiceRecord& record() const;
  /// What the record tells of the whole service.
  [[nodiscard]] const RasterFacts& facts() const;
  /// The rectangles of a mosaic's sources in the coordinates of the record, bottom first; none for one
  /// raster.
  [[nodiscard]] std::vector<Bounds> sourcePlaces() const;
  /// @throws RuntimeFailure that names one of the files when it is the service's own, or stands beside one.
  void refuseOwnFiles(const std::vector<std::filesystem::path>& files) const;
  /// That counts, in the coordinates of the record: the one of the properties, else the middle of the
  /// service.
  [[nodiscard]] Point viewPoint() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The same as one of the newer generation.
class OVLCatalogueImageService : public CatalogueImageService {
 public:
  using CatalogueImageService::CatalogueImageService;

  [[nodiscard]] std::string typeName() const override { return "IOVLImageService"; }
  [[nodiscard]] std::string getProperty(const std::string& key) override;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
