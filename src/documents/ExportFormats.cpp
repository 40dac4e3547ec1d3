#include "documents/ExportFormats.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "documents/TextCase.h"

namespace vlclientui {

namespace {

// The largest sides are those of the libraries that write these formats.
// clang-format off
constexpr FileFormatRow files[] = {
    {FileFormat::Tiff,     "Tiff",     "Tif",  "tiff", "Tif (*.Tif) | *.Tif",    0,       true},
    {FileFormat::Jpeg,     "JPEG",     "JPEG", "jpg",  "JPEG (*.JPEG) | *.JPEG", 65500,   false},
    {FileFormat::Jpeg2000, "JPEG2000", "JP2",  "",     "JP2 (*.JP2) | *.JP2",    0,       false},
    {FileFormat::Png,      "PNG",      "PNG",  "",     "PNG (*.PNG) | *.PNG",    1000000, false},
};

// Deliberate: TIFF-LZ77 takes a quality that its estimate does not look at.
constexpr ExportFormat formats[] = {
    {"TIFF-No Compression", FileFormat::Tiff,     Compression::None, "None", true,  "0",   false, "Tiff - No Compression", SizeEstimate::Uncompressed},
    {"TIFF-JPEG",           FileFormat::Tiff,     Compression::Jpeg, "256",  true,  "75",  true,  "Tiff - JPEG",           SizeEstimate::ByQuality},
    {"TIFF-LZ77",           FileFormat::Tiff,     Compression::Lz77, "512",  true,  "75",  true,  "Tiff - LZ77",           SizeEstimate::AFifth},
    {"JPEG",                FileFormat::Jpeg,     Compression::None, "None", false, "80",  true,  "JPEG",                  SizeEstimate::ByQuality},
    {"JP2",                 FileFormat::Jpeg2000, Compression::None, "None", false, "100", true,  "JP2",                   SizeEstimate::ByQuality},
    {"PNG",                 FileFormat::Png,      Compression::None, "None", false, "0",   false, "PNG",                   SizeEstimate::Uncompressed},
};
// clang-format on

struct CompressionName {
  Compression compression;
  const char* requestName;
};

constexpr CompressionName compressions[] = {
    {Compression::None, ""},
    {Compression::Jpeg, "JPEG"},
    {Compression::Lz77, "LZ77"},
};

/// Behind the last dot of the last step, in small letters; steps end at slashes of both kinds.
std::string endingOf(std::string_view fileName) {
  const auto slash = fileName.find_last_of("/\\");
  const std::string_view leaf = slash == std::string_view::npos ? fileName : fileName.substr(slash + 1);
  const auto dot = leaf.rfind('.');
  return dot == std::string_view::npos ? std::string() : lowerCased(leaf.substr(dot + 1));
}

std::vector<std::string> endingsOf(const FileFormatRow& row) {
  std::vector<std::string> endings{lowerCased(row.ending)};
  if (*row.otherEnding != '\0') endings.emplace_back(row.otherEnding);
  return endings;
}

}  // namespace

std::span<const ExportFormat> exportFormats() { return formats; }
std::span<const FileFormatRow> fileFormats() { return files; }

const FileFormatRow& rowOf(FileFormat format) {
  return *std::ranges::find(files, format, &FileFormatRow::format);
}

const char* requestName(Compression compression) {
  return std::ranges::find(compressions, compression, &CompressionName::compression)->requestName;
}

const ExportFormat* findExportFormat(std::string_view entry) {
  const auto* const found = std::ranges::find(formats, entry, &ExportFormat::entry);
  return found == std::end(formats) ? nullptr : found;
}

const FileFormatRow* findFileFormat(std::string_view requestName) {
  const auto* const found =
      std::ranges::find_if(files, [wanted = lowerCased(requestName)](const FileFormatRow& row) {
        return lowerCased(row.requestName) == wanted;
      });
  return found == std::end(files) ? nullptr : found;
}

const Compression* findCompression(std::string_view requestName) {
  const auto* const found =
      std::ranges::find_if(compressions, [wanted = lowerCased(requestName)](const CompressionName& each) {
        return lowerCased(each.requestName) == wanted;
      });
  return found == std::end(compressions) ? nullptr : &found->compression;
}

const ExportFormat* exportFormatOf(std::string_view fileName) {
  const auto* const found = std::ranges::find_if(
      formats, [fileName](const ExportFormat& format) { return hasEndingOf(fileName, format.file); });
  return found == std::end(formats) ? nullptr : found;
}

bool hasEndingOf(std::string_view fileName, FileFormat format) {
  const std::string ending = endingOf(fileName);
  return !ending.empty() && std::ranges::count(endingsOf(rowOf(format)), ending) > 0;
}

std::string allEndings() {
  std::string all;
  for (const FileFormatRow& row : files) {
    for (const std::string& ending : endingsOf(row)) all += (all.empty() ? "." : ", .") + ending;
  }
  return all;
}

std::string allFileFormats() {
  std::string all;
  for (const FileFormatRow& row : files) {
    const bool isLast = &row == &std::end(files)[-1];
    all += (all.empty() ? "" : isLast ? " and " : ", ") + std::string(row.requestName);
  }
  return all;
}

}  // namespace vlclientui
