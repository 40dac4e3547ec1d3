#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// The formats that an area of a service can be exported to. Window, request, client and command line take
/// names, endings and limits from these two tables; a driver adds what it alone knows, keyed by FileFormat.
#pragma GCC visibility push(default)
namespace vlclientui {

/// A kind of file, however its pixels are compressed.
enum class FileFormat {
  Tiff,      ///< TIFF, whatever its compression
  Jpeg,      ///< JPEG
  Jpeg2000,  ///< JPEG 2000
  Png        ///< PNG
};

/// How the pixels of a TIFF are compressed; the other formats have no choice.
enum class Compression {
  None,  ///< as they are, and for all but TIFF
  Jpeg,  ///< with losses
  Lz77   ///< without losses
};

/// A window that estimates the size of a file counts on this.
enum class SizeEstimate {
  ByQuality,     ///< less with a lower quality
  Uncompressed,  ///< all bytes of the pixels
  AFifth         ///< of all bytes of the pixels
};

/// What is known of one kind of file.
struct FileFormatRow {
  FileFormat format;                ///< the kind that the row is about
  const char* requestName;          ///< `Format` of the request
  const char* ending;               ///< without dot, in exactly this spelling
  const char* otherEnding;          ///< that people write too, in small letters; empty for none
  const char* filter;               ///< of the file dialog; the blanks around the bar belong to it
  std::int32_t mostColumnsAndRows;  ///< 0 where nothing but the file's size limits them
  bool writesWorldFile;             ///< the request asks for one; else the template's value stands
};

/// One entry of the format list with all that it sets.
struct ExportFormat {
  /// As the list shows it.
  const char* entry;
  /// The kind of file that it writes.
  FileFormat file;
  /// None but for TIFF.
  Compression compression;
  /// Chosen with it: pixels a side as text, or "None".
  const char* tileSize;
  bool tiles;           ///< the tile size can be chosen
  const char* quality;  ///< 0 to 100, as text
  bool takesQuality;    ///< the quality can be edited
  /// Of the list while it is chosen.
  const char* toolTip;
  /// How the window estimates the size of the file.
  SizeEstimate estimate;
};

/// In the order of the list.
[[nodiscard]] std::span<const ExportFormat> exportFormats();
/// One row for each kind of file.
[[nodiscard]] std::span<const FileFormatRow> fileFormats();

/// What is known of that kind.
[[nodiscard]] const FileFormatRow& rowOf(FileFormat format);
/// `CompressionMethod` of the request; empty for none.
[[nodiscard]] const char* requestName(Compression compression);

/// Null for a text that is no entry.
[[nodiscard]] const ExportFormat* findExportFormat(std::string_view entry);
/// By the name in a request, in any case; null for none.
[[nodiscard]] const FileFormatRow* findFileFormat(std::string_view requestName);
/// By the name in a request, in any case; null for none.
[[nodiscard]] const Compression* findCompression(std::string_view requestName);

/// What the ending of a file's name tells: the first entry of the list that writes such files. Any case.
/// @param fileName with or without folders. Null where no format has its ending, or it has none.
[[nodiscard]] const ExportFormat* exportFormatOf(std::string_view fileName);
/// Whether the name ends as files of the format do, in any case: "a.tif" and "a.TIFF" of a TIFF.
[[nodiscard]] bool hasEndingOf(std::string_view fileName, FileFormat format);

/// For a person: ".tif, .tiff, .jpeg, .jpg, .jp2, .png".
[[nodiscard]] std::string allEndings();
/// For a person: "Tiff, JPEG, JPEG2000 and PNG".
[[nodiscard]] std::string allFileFormats();

}  // namespace vlclientui
#pragma GCC visibility pop
