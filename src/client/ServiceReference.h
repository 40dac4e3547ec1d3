#pragma once

#include <filesystem>
#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// What a .VLRef file holds. Format: docs/export.md.
struct ServiceReference {
  std::string reference;   ///< "ImageService://server/name", "VLDef://file" or a file's path
  std::string properties;  ///< a service properties document; empty for none
};

/// True for a path that ends in ".VLRef" in any case.
[[nodiscard]] bool isReferenceFile(const std::string& reference);

/// A relative path within the file counts from the file's folder.
/// @throws RuntimeFailure when the file cannot be read or names no service.
[[nodiscard]] ServiceReference readServiceReference(const std::filesystem::path& file, const XmlService& xml);

/// The document that readServiceReference reads back.
/// @param properties a service properties document, or empty.
[[nodiscard]] std::string serviceReferenceDocument(const ServiceReference& reference, const XmlService& xml);

}  // namespace vlclientui::client
