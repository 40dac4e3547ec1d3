#include "client/jobs/RelativeReference.h"

#include <string_view>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::string_view definitionScheme = "VLDef://";

}  // namespace

bool isRelativePath(const std::string& text) {
  const bool hasDrive = text.size() > 1 && text[1] == ':';
  return !text.empty() && !hasDrive && text[0] != '/' && text[0] != '\\';
}

std::string referenceFrom(const std::filesystem::path& folder, const std::string& reference) {
  const bool isDefinition = startsIgnoringCase(reference, definitionScheme);
  if (!isDefinition && reference.find("://") != std::string::npos) return reference;
  const std::string path = isDefinition ? reference.substr(definitionScheme.size()) : reference;
  if (!isRelativePath(path)) return reference;
  const std::string whole = (folder / path).lexically_normal().string();
  return isDefinition ? std::string(definitionScheme) + whole : whole;
}

}  // namespace vlclientui::client
