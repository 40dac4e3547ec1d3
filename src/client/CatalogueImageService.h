#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "client/ExportProgress.h"
#include "client/ImageSource.h"
#include "client/OutputGrid.h"
#include "client/Thumbnail.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

class CatalogueServer;

/// What a host tells an image service.
struct ImageServiceSettings {
  std::filesystem::path definitionFolder;  ///< of VLClient.XADef and VLClient.Xfdef; empty for none
  ExportProgress progress = {};            ///< of ExportImage
};

/// A raster or mosaic as an image service of the older generation. For one thread at a time.
///
/// Its documents are made from the headers read when it was made; a failing member throws RuntimeFailure,
/// but ExportImage, which returns false and leaves the reason in `status`.
class CatalogueImageService : public ImageService {
 public:
  /// @param server shared; never null. @param xml must outlive this object.
  /// @param reference "ImageService://server/name", "VLDef://file", a path of a raster, a definition or a
  /// .VLRef file. @throws RuntimeFailure when it leads to nothing readable.
  CatalogueImageService(std::shared_ptr<CatalogueServer> server, const XmlService& xml,
                        const std::string& reference, ImageServiceSettings settings = {});

  [[nodiscard]] std::string typeName() const override { return "ImageService"; }

  /// This generation has none.
  [[nodiscard]] std::string getProperty(const std::string& key) override;
  /// From the definition folder's files. @throws RuntimeFailure where they hold no such definition.
  [[nodiscard]] std::string GetDefinition(std::int32_t kind) override;
  [[nodiscard]] std::string ServiceProperties() override;
  [[nodiscard]] std::string ServiceInfo() override;
  [[nodiscard]] std::string GetImageMetadata(const std::string& level) override;
  [[nodiscard]] std::string GetMetaData(const std::string& key) override;
  /// Writes a .VLRef file with the reference and the present properties.
  [[nodiscard]] bool SaveProperties(const std::string& fileName) override;
  void ExportProperties(const std::string& request) override;
  [[nodiscard]] bool ExportImage() override;
  [[nodiscard]] std::string status() override;

  /// The host's side: changes how sources are laid over each other, for all that is drawn from now on.
  /// @throws RuntimeFailure for a text that is no document.
  void setServiceProperties(const std::string& document);
  /// Draws an area in natural colours and makes it the image last returned. Before any draw that is the
  /// whole service. @param columns,rows at least 1. @throws RuntimeFailure when it cannot be drawn.
  [[nodiscard]] Thumbnail drawImage(const Bounds& extent, int columns, int rows);
  /// Replaces the one from the settings.
  void setProgress(ExportProgress progress);

  [[nodiscard]] const ImageServiceRecord& record() const { return record_; }

 private:
  void runExport();
  [[nodiscard]] std::vector<std::size_t> order() const;

  std::shared_ptr<CatalogueServer> server_;
  const XmlService& xml_;
  ImageServiceSettings settings_;
  ImageServiceRecord record_;
  std::string properties_;
  std::string exportRequest_;
  std::string failure_;
  OutputGrid lastImage_;
};

/// The same as one of the newer generation.
class OVLCatalogueImageService : public CatalogueImageService {
 public:
  using CatalogueImageService::CatalogueImageService;

  [[nodiscard]] std::string typeName() const override { return "IOVLImageService"; }
  [[nodiscard]] std::string getProperty(const std::string& key) override;
};

}  // namespace vlclientui::client
