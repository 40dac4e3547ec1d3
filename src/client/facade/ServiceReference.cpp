#include "client/facade/ServiceReference.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "client/jobs/RelativeReference.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr std::uintmax_t largestFile = 1U << 20U;
constexpr std::string_view extension = ".vlref";
constexpr std::string_view otherExtension = ".xml";
constexpr std::string_view definitionScheme = "VLDef://";
constexpr std::string_view serviceScheme = "ImageService://";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr auto referencePath = "/Vorlane/ImageServiceReference";
constexpr auto propertiesPath = "/Vorlane/ImageServiceProperties";

std::string readWhole(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  std::ifstream stream(file, std::ios::binary);
  if (error || size > largestFile || !stream) {
    throw RuntimeFailure("The reference file " + utf8FromAny(file.string()) + " cannot be read");
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Bytes first, since a declaration or mark in the file may name an encoding.
ServiceReference parse(const std::filesystem::path& file, const XmlService& xml) {
  std::string content = readWhole(file);
  if (content.starts_with(byteOrderMark)) content.erase(0, byteOrderMark.size());
  content = trimmed(content);
  const auto document = xml.createDocument();
  if (!document->load(file.string()) && !document->loadXml(content)) {
    return content.starts_with('<') ? ServiceReference() : ServiceReference{trimmed(firstLine(content)), {}};
  }
  ServiceReference found;
  if (const auto node = document->selectSingleNode(referencePath)) found.reference = trimmed(node->text());
  const auto properties = document->selectSingleNode(propertiesPath);
  if (properties) found.properties = "<Vorlane>" + properties->xml() + "</Vorlane>";
  return found;
}

}  // namespace

std::optional<std::string> definitionPath(const std::string& reference) {
  if (!startsIgnoringCase(reference, definitionScheme)) return std::nullopt;
  return reference.substr(definitionScheme.size());
}

// A service of a server may be called so too.
bool isReferenceFile(const std::string& reference) {
  return endsIgnoringCase(reference, extension) && !startsIgnoringCase(reference, serviceScheme);
}

bool isReferenceFile(const std::string& reference, const std::filesystem::path& file, const XmlService& xml) {
  if (isReferenceFile(reference)) return true;
  std::error_code error;
  if (!endsIgnoringCase(reference, otherExtension) || std::filesystem::file_size(file, error) > largestFile ||
      error) {
    return false;
  }
  const auto document = xml.createDocument();
  return document->load(file.string()) && document->selectSingleNode(referencePath) != nullptr;
}

ServiceReference readServiceReference(const std::filesystem::path& file, const XmlService& xml) {
  ServiceReference found = parse(file, xml);
  const std::string name = utf8FromAny(file.string());
  if (found.reference.empty()) throw RuntimeFailure("The file " + name + " names no image service");
  // A chain of reference files could be a circle.
  if (isReferenceFile(found.reference)) {
    throw RuntimeFailure("The file " + name + " names another reference file instead of a service");
  }
  found.reference = referenceFrom(file.parent_path(), found.reference);
  return found;
}

std::string referenceSeenFrom(const std::filesystem::path& folder, const std::string& reference,
                              const std::filesystem::path& nativePath) {
  const auto definition = definitionPath(reference);
  if (nativePath.empty() || (!definition && reference.find("://") != std::string::npos)) return reference;
  const std::string scheme(definition ? definitionScheme : std::string_view());
  const auto whole = std::filesystem::absolute(nativePath).lexically_normal();
  const auto seen = whole.lexically_relative(std::filesystem::absolute(folder).lexically_normal());
  if (!seen.empty() && *seen.begin() != "..") return scheme + seen.generic_string();
  return isRelativePath(definition.value_or(reference)) ? scheme + whole.string() : reference;
}

std::string serviceReferenceDocument(const ServiceReference& reference, const XmlService& xml) {
  std::string out =
      "<Vorlane>\n<ImageServiceReference>" + xmlEscaped(reference.reference) + "</ImageServiceReference>\n";
  const auto document = xml.createDocument();
  if (document->loadXml(reference.properties)) {
    if (const auto node = document->selectSingleNode(propertiesPath)) out += node->xml() + "\n";
  }
  return out + "</Vorlane>\n";
}

}  // namespace vlclientui::client
