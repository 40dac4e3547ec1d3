#pragma once

#include <filesystem>
#include <optional>
#include <string>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The content of a .VLRef file. Format: docs/mosaics.md.
struct ServiceReference {
  std::string reference;   ///< "ImageService://server/name", "VLDef://file" or a file's path
  std::string properties;  ///< a service properties document; empty for none
};

/// Whether a path ends in ".VLRef", in any case.
[[nodiscard]] bool isReferenceFile(const std::string& reference);

/// Also true for a file that ends in ".xml" and holds a reference: windows offer both endings. Other formats
/// use ".xml" too, so such a file is opened.
/// @param reference as a host gives it. @param file its native path.
[[nodiscard]] bool isReferenceFile(const std::string& reference, const std::filesystem::path& file,
                                   const XmlService& xml);

/// The path after "VLDef://", in any case; nothing for other references.
[[nodiscard]] std::optional<std::string> definitionPath(const std::string& reference);

/// A relative path in the file counts from the file's folder.
/// @throws RuntimeFailure when the file cannot be read or has no reference.
[[nodiscard]] ServiceReference readServiceReference(const std::filesystem::path& file, const XmlService& xml);

/// A reference as a file in the folder should write it: relative for a definition or raster in or below the
/// folder, so that both can move together; absolute otherwise.
/// @param nativePath of the definition or raster; empty for none.
[[nodiscard]] std::string referenceSeenFrom(const std::filesystem::path& folder, const std::string& reference,
                                            const std::filesystem::path& nativePath);

/// The document that readServiceReference reads.
/// @param properties a service properties document, or empty.
[[nodiscard]] std::string serviceReferenceDocument(const ServiceReference& reference, const XmlService& xml);

}  // namespace vlclientui::client
#pragma GCC visibility pop
