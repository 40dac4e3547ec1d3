#pragma once

#include <string_view>

namespace vlclientui {

/// One entry of the format list with all that it sets.
struct ExportFormat {
  const char* entry;
  const char* tileSize;
  bool tiles;           ///< the tile size can be chosen
  const char* quality;  ///< 0 to 100, as text
  bool takesQuality;    ///< the quality can be edited
  const char* toolTip;
  const char* extension;        ///< in exactly this spelling
  const char* filter;           ///< of the file dialog; the blanks around the bar belong to it
  const char* wireFormat;       ///< `Format` of the request
  const char* wireCompression;  ///< `CompressionMethod` of the request
  bool writesWorldFile;         ///< `CreateWorldFile` is "True"; else the template's value stands
};

/// Null for a text that is no entry.
[[nodiscard]] const ExportFormat* findFormat(std::string_view entry);
/// What a text that is no entry sets; it has no tool tip, extension or filter.
[[nodiscard]] const ExportFormat& noFormat();

}  // namespace vlclientui
