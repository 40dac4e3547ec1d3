#pragma once

#include <string>

#include "DocumentJson.h"

namespace vlclientui::vlhost {

struct MetadataCommand {
  enum class Document { ImageBasic, ImageFull, Service };

  std::string reference;
  /// As the metadata page saves it.
  Document document = Document::ImageFull;
  std::string file;  ///< empty to print
  DocumentOutput format = DocumentOutput::Xml;
};

/// Prints what a service tells of itself or of its image, or saves it, whole or not at all.
/// @returns the exit code. @throws RuntimeFailure with what a person is to be told.
[[nodiscard]] int runMetadata(const MetadataCommand& command);

}  // namespace vlclientui::vlhost
