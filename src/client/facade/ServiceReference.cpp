#include "client/facade/ServiceReference.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr std::uintmax_t kLargestFile = 1U << 20U;
constexpr std::string_view kExtension = ".vlref";
constexpr std::string_view kOtherExtension = ".xml";
constexpr std::string_view kDefinitionScheme = "VLDef://";
constexpr std::string_view kServiceScheme = "ImageService://";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr auto kReference = "/Vorlane/ImageServiceReference";
constexpr auto kProperties = "/Vorlane/ImageServiceProperties";

std::string readWhole(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  std::ifstream stream(file, std::ios::binary);
  if (error || size > kLargestFile || !stream) {
    throw RuntimeFailure("The reference file " + utf8FromAny(file.string()) + " cannot be read");
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool isRelativePath(const std::string& text) {
  const bool hasDrive = text.size() > 1 && text[1] == ':';
  return !text.empty() && !hasDrive && text[0] != '/' && text[0] != '\\';
}

std::string fromFolder(const std::string& reference, const std::filesystem::path& folder) {
  const auto definition = definitionPath(reference);
  if (!definition && reference.find("://") != std::string::npos) return reference;
  const std::string path = definition.value_or(reference);
  if (!isRelativePath(path)) return reference;
  const std::string whole = (folder / path).lexically_normal().string();
  return definition ? std::string(kDefinitionScheme) + whole : whole;
}

// Bytes first, since a declaration or mark in the file may name an encoding.
ServiceReference parse(const std::filesystem::path& file, const XmlService& xml) {
  std::string content = readWhole(file);
  if (content.starts_with(kByteOrderMark)) content.erase(0, kByteOrderMark.size());
  content = trimmed(content);
  const auto document = xml.createDocument();
  if (!document->load(file.string()) && !document->loadXml(content)) {
    return content.starts_with('<') ? ServiceReference() : ServiceReference{trimmed(firstLine(content)), {}};
  }
  ServiceReference found;
  if (const auto node = document->selectSingleNode(kReference)) found.reference = trimmed(node->text());
  const auto properties = document->selectSingleNode(kProperties);
  if (properties) found.properties = "<Vorlane>" + properties->xml() + "</Vorlane>";
  return found;
}

}  // namespace

std::optional<std::string> definitionPath(const std::string& reference) {
  if (!startsIgnoringCase(reference, kDefinitionScheme)) return std::nullopt;
  return reference.substr(kDefinitionScheme.size());
}

// A service of a server may be called so too.
bool isReferenceFile(const std::string& reference) {
  return endsIgnoringCase(reference, kExtension) && !startsIgnoringCase(reference, kServiceScheme);
}

bool isReferenceFile(const std::string& reference, const std::filesystem::path& file, const XmlService& xml) {
  if (isReferenceFile(reference)) return true;
  std::error_code error;
  if (!endsIgnoringCase(reference, kOtherExtension) ||
      std::filesystem::file_size(file, error) > kLargestFile || error) {
    return false;
  }
  const auto document = xml.createDocument();
  return document->load(file.string()) && document->selectSingleNode(kReference) != nullptr;
}

ServiceReference readServiceReference(const std::filesystem::path& file, const XmlService& xml) {
  ServiceReference found = parse(file, xml);
  const std::string name = utf8FromAny(file.string());
  if (found.reference.empty()) throw RuntimeFailure("The file " + name + " names no image service");
  // A chain of reference files could be a circle.
  if (isReferenceFile(found.reference)) {
    throw RuntimeFailure("The file " + name + " names another reference file instead of a service");
  }
  found.reference = fromFolder(found.reference, file.parent_path());
  return found;
}

std::string referenceSeenFrom(const std::filesystem::path& folder, const std::string& reference,
                              const std::filesystem::path& nativePath) {
  const auto definition = definitionPath(reference);
  if (nativePath.empty() || (!definition && reference.find("://") != std::string::npos)) return reference;
  const std::string scheme(definition ? kDefinitionScheme : std::string_view());
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
    if (const auto node = document->selectSingleNode(kProperties)) out += node->xml() + "\n";
  }
  return out + "</Vorlane>\n";
}

}  // namespace vlclientui::client
