#include "client/jobs/JobReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "client/jobs/RelativeReference.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr int tileStep = 16;
constexpr int largestTile = 16384;
constexpr int mostPixels = 2147483647;

using Names = std::initializer_list<std::string_view>;

std::string an(const std::string& name) { return (name == "Extent" ? "an " : "a ") + name; }

/// As schemas take numbers and flags.
std::string withoutBlanksAround(const std::string& text) {
  constexpr const char* blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

template <class Number>
std::optional<Number> numberOf(const std::string& given) {
  const std::string text = withoutBlanksAround(given);
  Number value{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return value;
}

/// An element of a job. A misspelled word would silently mean another export, so that unknown ones are
/// refused.
class Part {
 public:
  Part(const XmlNode& node, Names attributes) : node_(node), name_(node.name()) {
    for (const auto& [name, value] : node.attributes()) {
      if (std::ranges::find(attributes, std::string_view(name)) == attributes.end())
        throw RuntimeFailure(an(name_) + " has no " + name);
    }
  }

  /// Empty where it is not there.
  [[nodiscard]] std::string text(const char* attribute) const {
    return node_.getNamedItem(attribute).value_or(std::string());
  }
  [[nodiscard]] bool tells(const char* attribute) const { return node_.getNamedItem(attribute).has_value(); }
  [[nodiscard]] std::string neededText(const char* attribute) const {
    const std::string found = text(attribute);
    if (found.empty()) throw RuntimeFailure("the " + name_ + " tells no " + attribute);
    return found;
  }
  [[nodiscard]] double number(const char* attribute) const {
    const auto value = numberOf<double>(neededText(attribute));
    if (!value || !std::isfinite(*value)) fail(attribute, "a number");
    return *value;
  }
  [[nodiscard]] int wholeNumber(const char* attribute, int least, int most) const {
    const auto value = numberOf<int>(neededText(attribute));
    if (!value || *value < least || *value > most) {
      const std::string range = most == mostPixels
                                    ? "from " + std::to_string(least) + " on"
                                    : "from " + std::to_string(least) + " to " + std::to_string(most);
      fail(attribute, "a whole number " + range);
    }
    return *value;
  }
  [[nodiscard]] bool flag(const char* attribute) const {
    const std::string word = withoutBlanksAround(text(attribute));
    if (!tells(attribute) || word == "false" || word == "0") return false;
    if (word != "true" && word != "1") fail(attribute, "true or false");
    return true;
  }
  [[noreturn]] void fail(const char* attribute, const std::string& wanted) const {
    throw RuntimeFailure(std::string(attribute) + " of the " + name_ + " must be " + wanted + ", not '" +
                         text(attribute) + "'");
  }

 private:
  const XmlNode& node_;
  std::string name_;
};

XmlNodePtr only(const XmlNode& job, const char* name) {
  const auto found = job.selectNodes(name);
  if (found.empty()) throw RuntimeFailure("it has no " + std::string(name));
  if (found.size() > 1) throw RuntimeFailure("it has more than one " + std::string(name));
  return found.front();
}

void refuseOthers(const XmlNode& node, Names known) {
  for (const XmlNodePtr& child : node.childNodes()) {
    if (child->kind() == XmlNodeKind::Comment) continue;
    const std::string name = child->name();
    if (std::ranges::find(known, std::string_view(name)) == known.end())
      throw RuntimeFailure(an(node.name()) + " holds no " + name);
  }
}

void checkVersion(const Part& job) {
  const int version = job.wholeNumber("Version", 1, mostPixels);
  if (version > jobVersion)
    throw RuntimeFailure("it was written by a newer program, as version " + std::to_string(version));
}

void readService(const XmlNode& node, const std::filesystem::path& folder, ExportJob& job) {
  const Part service(node, {"Reference"});
  refuseOthers(node, {"ImageServiceProperties"});
  job.reference = referenceFrom(folder, service.neededText("Reference"));
  if (const XmlNodePtr properties = node.selectSingleNode("ImageServiceProperties"))
    job.properties = "<Vorlane>" + properties->xml() + "</Vorlane>";
}

void readExtent(const XmlNode& node, ExportJob& job) {
  const Part extent(node, {"Left", "Bottom", "Right", "Top", "System"});
  job.system = extent.text("System");
  job.extent = {extent.number("Left"), extent.number("Bottom"), extent.number("Right"), extent.number("Top")};
  if (!(job.extent.xMax > job.extent.xMin)) throw RuntimeFailure("Right of the Extent is not beyond Left");
  if (!(job.extent.yMax > job.extent.yMin)) throw RuntimeFailure("Top of the Extent is not above Bottom");
}

void readGrid(const XmlNode& node, ExportJob& job) {
  const Part grid(node, {"Columns", "Rows"});
  job.columns = grid.wholeNumber("Columns", 1, mostPixels);
  job.rows = grid.wholeNumber("Rows", 1, mostPixels);
}

void readPixelFormat(const Part& format, ExportJob& job) {
  const FileFormatRow* const row = findFileFormat(format.neededText("Name"));
  if (row == nullptr) format.fail("Name", allFileFormats());
  job.format = row->format;
  if (!format.tells("Compression")) return;
  const Compression* const compression = findCompression(format.text("Compression"));
  if (compression == nullptr) format.fail("Compression", "JPEG or LZ77");
  if (job.format != FileFormat::Tiff) throw RuntimeFailure("only a Tiff has a Compression");
  job.compression = *compression;
}

void readFormat(const XmlNode& node, ExportJob& job) {
  const Part format(node, {"Name", "Compression", "TileSize", "Quality", "WorldFile", "Metadata"});
  readPixelFormat(format, job);
  if (format.tells("TileSize")) {
    job.tileSize = format.wholeNumber("TileSize", tileStep, largestTile);
    if (job.tileSize % tileStep != 0) format.fail("TileSize", "a multiple of 16");
  }
  if (format.tells("Quality")) job.quality = format.wholeNumber("Quality", 0, 100);
  job.createsWorldFile = format.flag("WorldFile");
  job.exportsMetadata = format.flag("Metadata");
}

}  // namespace

ExportJob readJobElement(const XmlNode& node, const std::filesystem::path& folder) {
  checkVersion(Part(node, {"Version"}));
  refuseOthers(node, {"Service", "Extent", "Grid", "Format", "File"});
  ExportJob job;
  readService(*only(node, "Service"), folder, job);
  readExtent(*only(node, "Extent"), job);
  readGrid(*only(node, "Grid"), job);
  readFormat(*only(node, "Format"), job);
  const XmlNodePtr fileNode = only(node, "File");
  const Part file(*fileNode, {"Path"});
  job.file = (folder / file.neededText("Path")).lexically_normal();
  return job;
}

}  // namespace vlclientui::client
