#include "client/network/FileContent.h"

#include <algorithm>
#include <array>

#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

using std::string_view_literals::operator""sv;

// In both orders and sizes.
constexpr std::array tiffSignatures = {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv};
// PNG, JPEG, JPEG 2000 as a file and bare, GIF, BMP.
constexpr std::array signatures = {"\x89PNG\r\n\x1a\n"sv, "\xff\xd8\xff"sv, "\0\0\0\x0cjP  "sv,
                                   "\xff\x4f\xff\x51"sv,  "GIF8"sv,         "BM"sv};

bool beginsAs(std::string_view bytes, const auto& starts) {
  return std::ranges::any_of(starts, [bytes](std::string_view start) { return bytes.starts_with(start); });
}

bool isWebp(std::string_view start) {
  return start.starts_with("RIFF") && start.size() >= 12 && start.substr(8, 4) == "WEBP";
}

bool endsAs(std::string_view name, const auto& endings) {
  const std::string small = smallLetters(name);
  return std::ranges::any_of(endings, [&](std::string_view ending) { return small.ends_with(ending); });
}

}  // namespace

FileContent contentOf(std::string_view start) {
  // The raster library finds it anywhere there, also behind the letters that images begin with.
  if (start.find("<VRTDataset") != std::string_view::npos) return FileContent::Mosaic;
  const bool isImage = isTiff(start) || beginsAs(start, signatures) || isWebp(start);
  return isImage ? FileContent::Image : FileContent::Other;
}

bool isTiff(std::string_view bytes) { return beginsAs(bytes, tiffSignatures); }

bool isNamedAsImage(std::string_view path) {
  constexpr std::array endings = {".tif"sv,  ".tiff"sv, ".vrt"sv,  ".jp2"sv, ".j2k"sv, ".j2c"sv,  ".jpg"sv,
                                  ".jpeg"sv, ".png"sv,  ".webp"sv, ".gif"sv, ".bmp"sv, ".gtiff"sv};
  return endsAs(path, endings);
}

bool mayBeMosaic(std::string_view path) {
  return !isNamedAsImage(path) || smallLetters(path).ends_with(".vrt");
}

bool isNamedAsDefinition(std::string_view path) { return endsAs(path, std::array{".vldef"sv}); }

bool isBesideImages(std::string_view name) {
  constexpr std::array endings = {".aux.xml"sv, ".aux"sv, ".ovr"sv,   ".msk"sv, ".wld"sv,  ".prj"sv, ".tfw"sv,
                                  ".tifw"sv,    ".jgw"sv, ".jpgw"sv,  ".pgw"sv, ".pngw"sv, ".j2w"sv, ".gfw"sv,
                                  ".bpw"sv,     ".wpw"sv, ".webpw"sv, ".tab"sv, ".rrd"sv};
  return endsAs(name, endings);
}

bool isTextBesideImages(std::string_view name) {
  constexpr std::array images = {".ovr"sv, ".msk"sv};
  return isBesideImages(name) && !endsAs(name, images);
}

}  // namespace vlclientui::client
