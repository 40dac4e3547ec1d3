#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// What a .VLRef file holds. Format: docs/mosaics.md.
struct ServiceReference {
  std::string reference;   ///< "ImageService://server/name", "VLDef://file" or a file's path
  std::string properties;  ///< a service properties document; empty for none
};

/// True for a path that ends in ".VLRef" in any case.
[[nodiscard]] bool isReferenceFile(const std::string& reference);

/// True also for a file that ends in ".xml" and holds such a document: windows offer both endings. A raster
/// format may have documents of that ending too, so these are looked into.
/// @param reference as a host gives it. @param file the same on this machine.
[[nodiscard]] bool isReferenceFile(const std::string& reference, const std::filesystem::path& file,
                                   const XmlService& xml);

/// The path behind "VLDef://", which may stand in any case; nothing for a reference of another kind.
[[nodiscard]] std::optional<std::string> definitionPath(const std::string& reference);

/// A relative path within the file counts from the file's folder.
/// @throws RuntimeFailure when the file cannot be read or names no service.
[[nodiscard]] ServiceReference readServiceReference(const std::filesystem::path& file, const XmlService& xml);

/// The reference as a file in the folder names it: relative for a definition or raster in the folder or below
/// it, so that both can move together; whole for any other.
/// @param nativePath of the definition or raster on this machine; empty for none.
[[nodiscard]] std::string referenceSeenFrom(const std::filesystem::path& folder, const std::string& reference,
                                            const std::filesystem::path& nativePath);

/// The document that readServiceReference reads back.
/// @param properties a service properties document, or empty.
[[nodiscard]] std::string serviceReferenceDocument(const ServiceReference& reference, const XmlService& xml);

}  // namespace vlclientui::client
