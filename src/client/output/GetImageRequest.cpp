#include "client/output/GetImageRequest.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr auto getImage = "//Vorlane/Client/GetImage";
constexpr int tileStep = 16;
constexpr int largestTile = 16384;

class Reader {
 public:
  explicit Reader(const XmlNode& node) : node_(node) {}

  [[nodiscard]] std::string text(const char* name) const {
    const XmlNodePtr found = node_.selectSingleNode(name);
    return found ? trimmed(found->text()) : std::string();
  }

  [[nodiscard]] double number(const char* name) const {
    const auto value = parsed(text(name));
    if (!value) fail(name, "a number");
    return *value;
  }

  [[nodiscard]] int count(const char* name) const {
    const auto value = parsed(text(name));
    const bool fits = value && *value >= 1 && *value <= std::numeric_limits<int>::max();
    if (!fits || *value != std::floor(*value)) fail(name, "a whole number above 0");
    return static_cast<int>(*value);
  }

  [[nodiscard]] bool flag(const char* name) const {
    const std::string word = lowered(text(name));
    const auto value = parsed(word);
    return word == "true" || (value && *value != 0);
  }

  [[nodiscard]] int quality() const {
    if (text("CompressionQuality").empty()) return 100;
    const double value = number("CompressionQuality");
    if (value < 0 || value > 100) fail("CompressionQuality", "a number from 0 to 100");
    return static_cast<int>(std::lround(value));
  }

  [[nodiscard]] int tileSize() const {
    const std::string word = lowered(text("TileSize"));
    if (word.empty() || word == "none") return 0;
    const int size = count("TileSize");
    if (size % tileStep != 0 || size > largestTile) fail("TileSize", "\"None\" or a multiple of 16");
    return size;
  }

  [[nodiscard]] Bounds extent() const {
    const Bounds found{number("Left"), number("Bottom"), number("Right"), number("Top")};
    if (!(found.xMax > found.xMin))
      throw RuntimeFailure("The right edge of the export is not right of the left one");
    if (!(found.yMax > found.yMin))
      throw RuntimeFailure("The top edge of the export is not above the bottom one");
    return found;
  }

 private:
  [[nodiscard]] static std::optional<double> parsed(const std::string& text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
    return value;
  }

  [[noreturn]] void fail(const char* name, const char* wanted) const {
    throw RuntimeFailure("The export request needs " + std::string(wanted) + " as " + name + ", not \"" +
                         text(name) + "\"");
  }

  const XmlNode& node_;
};

}  // namespace

GetImageRequest readGetImageRequest(const std::string& document, const XmlService& xml) {
  const auto parsed = xml.createDocument();
  const XmlNodePtr node = parsed->loadXml(document) ? parsed->selectSingleNode(getImage) : nullptr;
  if (!node) throw RuntimeFailure("There is no export request: set the export properties first");
  const Reader reader(*node);
  GetImageRequest request;
  request.grid = {reader.extent(), reader.count("Cols"), reader.count("Rows")};
  request.format = reader.text("Format");
  request.compression = reader.text("CompressionMethod");
  request.tileSize = reader.tileSize();
  request.quality = reader.quality();
  request.fileName = reader.text("FileName");
  if (request.fileName.empty()) throw RuntimeFailure("The export request names no file");
  request.createsWorldFile = reader.flag("CreateWorldFile");
  request.exportsMetadata = reader.flag("ExportMetadataXml");
  return request;
}

}  // namespace vlclientui::client
