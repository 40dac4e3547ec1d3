#pragma once

/// Where the metadata pages read. Image metadata, service info and definition files have the root `Vorlane`;
/// a raster record is cut out and read as a document of its own.
namespace vlclientui::metadataPath {

// Image metadata document.
inline constexpr const char* basic = "//Vorlane/Client/ImageMetadata/Basic";
inline constexpr const char* bufferSize = "//Vorlane/Client/ImageMetadata/Basic/BufferSize";
inline constexpr const char* status = "//Vorlane/Client/ImageMetadata/Basic/Status";
inline constexpr const char* rasters = "//Vorlane/Client/ImageMetadata/Detailed/Rasters/Raster";
inline constexpr const char* processMetadata = "//Vorlane/Client/ImageMetadata/Detailed/ProcessMetadata";
inline constexpr const char* processAvailable =
    "//Vorlane/Client/ImageMetadata/Detailed/ProcessMetadataAvailable";
inline constexpr const char* anyRaster = "//Raster";
inline constexpr const char* anyRasterMetadata = "//Raster/Metadata";

// Raster record.
inline constexpr const char* rasterInfo = "//Raster/Info";
inline constexpr const char* rasterMetadata = "//Raster/Metadata";
inline constexpr const char* rasterAttributes = "//Raster/Attributes";
inline constexpr const char* rasterProcess = "//Raster/ProcessMetadata";
// Relative to a `Raster` element.
inline constexpr const char* idOfRaster = "Info/RasterId";
inline constexpr const char* nameOfRaster = "Info/RasterName";
inline constexpr const char* visibleOfRaster = "Info/Visible";

// Definition files. The image's form definition has no `Client` step.
inline constexpr const char* keyDetails = "//Vorlane/ImageServiceInfo/KeyDetails";
inline constexpr const char* propertiesForm = "//Vorlane/ImageServiceInfo/Vorlane";
inline constexpr const char* imageForm = "//Vorlane/ImageMetadata/Basic";
inline constexpr const char* imageAttributes = "//Vorlane/Client/ImageMetadata/Basic";
inline constexpr const char* rasterDefinition = "//Vorlane/RasterInfo/Info";

// Definitions from a service or a host.
inline constexpr const char* attributeWrapper = "//XADef";
inline constexpr const char* formWrapper = "//XFDef";
inline constexpr const char* formHeader = "//xfd_header";

// Service properties document and the client's attribute definition.
inline constexpr const char* properties = "//Vorlane/ImageServiceProperties";
inline constexpr const char* mosaicMethod = "//Vorlane/ImageServiceProperties/MosaicMethod";
inline constexpr const char* lockImageId = "//Vorlane/ImageServiceProperties/LockImageID";

}  // namespace vlclientui::metadataPath
