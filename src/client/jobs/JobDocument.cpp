#include "client/jobs/JobDocument.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <system_error>

#include "client/jobs/JobReader.h"
#include "client/output/PartialFiles.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr std::uintmax_t largestFile = 64U << 20U;
constexpr auto propertiesPath = "//ImageServiceProperties";

/// Readers make blanks of all white space that is not written as a number.
std::string inAttribute(char character) {
  switch (character) {
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return {character};
  }
}

/// An element of the document, begun and filled by its attributes.
class Tag {
 public:
  explicit Tag(const char* name) : text_("<" + std::string(name)) {}

  Tag& with(const char* attribute, const std::string& value) {
    text_ += " " + std::string(attribute) + "=\"";
    for (const char character : xmlEscaped(value)) text_ += inAttribute(character);
    text_ += '"';
    return *this;
  }
  Tag& with(const char* attribute, double value) { return with(attribute, numberText(value)); }
  Tag& with(const char* attribute, int value) { return with(attribute, std::to_string(value)); }
  Tag& with(const char* attribute, bool value) {
    return with(attribute, std::string(value ? "true" : "false"));
  }
  [[nodiscard]] std::string empty() const { return text_ + "/>\n"; }
  [[nodiscard]] std::string begun() const { return text_ + ">\n"; }

 private:
  std::string text_;
};

std::string serviceElement(const ExportJob& job, const XmlService& xml) {
  const Tag tag = Tag("Service").with("Reference", job.reference);
  if (job.properties.empty()) return "  " + tag.empty();
  const auto document = xml.createDocument();
  const XmlNodePtr properties =
      document->loadXml(job.properties) ? document->selectSingleNode(propertiesPath) : nullptr;
  if (!properties) throw RuntimeFailure("The properties of the job are no service properties document");
  return "  " + tag.begun() + "    " + properties->xml() + "\n  </Service>\n";
}

std::string extentElement(const ExportJob& job) {
  Tag tag("Extent");
  tag.with("Left", job.extent.xMin).with("Bottom", job.extent.yMin);
  tag.with("Right", job.extent.xMax).with("Top", job.extent.yMax);
  if (!job.system.empty()) tag.with("System", job.system);
  return "  " + tag.empty();
}

std::string formatElement(const ExportJob& job) {
  Tag tag("Format");
  tag.with("Name", std::string(rowOf(job.format).requestName));
  if (job.compression != Compression::None)
    tag.with("Compression", std::string(requestName(job.compression)));
  if (job.tileSize > 0) tag.with("TileSize", job.tileSize);
  tag.with("Quality", job.quality).with("WorldFile", job.createsWorldFile);
  return "  " + tag.with("Metadata", job.exportsMetadata).empty();
}

std::string contentOf(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (error) throw RuntimeFailure("it cannot be read: " + error.message());
  std::ifstream stream(file, std::ios::binary);
  if (!stream || size > largestFile)
    throw RuntimeFailure(stream ? "it is too large for one" : "it cannot be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

std::string jobDocument(const ExportJob& job, const XmlService& xml) {
  std::string out = Tag("VLJob").with("Version", jobVersion).begun();
  out += serviceElement(job, xml);
  out += extentElement(job);
  out += "  " + Tag("Grid").with("Columns", job.columns).with("Rows", job.rows).empty();
  out += formatElement(job);
  out += "  " + Tag("File").with("Path", utf8FromAny(job.file.string())).empty();
  return out + "</VLJob>\n";
}

ExportJob readJob(const std::string& document, const std::filesystem::path& folder, const XmlService& xml) {
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) throw RuntimeFailure("it is no XML document");
  const auto jobs = parsed->selectNodes("//VLJob");
  if (jobs.empty()) throw RuntimeFailure("it holds no VLJob");
  if (jobs.size() > 1) throw RuntimeFailure("it holds more than one VLJob");
  return readJobElement(*jobs.front(), folder);
}

void saveJob(const ExportJob& job, const std::filesystem::path& file, const XmlService& xml) {
  writeWholeFile(file, jobDocument(job, xml));
}

ExportJob openJob(const std::filesystem::path& file, const XmlService& xml) {
  try {
    const auto folder = std::filesystem::absolute(file).lexically_normal().parent_path();
    return readJob(contentOf(file), folder, xml);
  } catch (const RuntimeFailure& failure) {
    throw RuntimeFailure("'" + utf8FromAny(file.string()) + "' is no job: " + failure.description());
  }
}

}  // namespace vlclientui::client
