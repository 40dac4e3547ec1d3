#include "documents/HelpBlock.h"

#include "documents/ParsedDocument.h"

namespace vlclientui {

namespace {

constexpr const char* helpFile = "Vorlane_Clients.chm";
constexpr const char* blockName = "X_DEF";
constexpr const char* pathName = "HELP_Path";
constexpr const char* rootStart = "<Vorlane>";
constexpr const char* rootEnd = "</Vorlane>";

}  // namespace

void addHelpBlock(XmlDocument& document, const std::string& rootPath) {
  const XmlNodePtr root = document.selectSingleNode(rootPath);
  if (!root) return;
  root->appendChild(document.createElement(blockName));
  const XmlNodePtr path = document.createElement(pathName);
  path->setText(helpFile);
  document.selectSingleNode(rootPath + "/" + blockName)->appendChild(path);
}

std::string withHelpBlock(const XmlService& service, std::string document, const std::string& rootPath) {
  const auto parsed = parsedDocument(service, document);
  if (!parsed->selectSingleNode(rootPath)) return document;
  addHelpBlock(*parsed, rootPath);
  return parsed->xml();
}

std::string helpDocumentAround(std::string_view fragment) {
  std::string document = std::string(rootStart) + "<" + blockName + "><" + pathName + ">" + helpFile + "</" +
                         pathName + "></" + blockName + ">";
  document += fragment;
  return document + rootEnd;
}

std::string plainDocumentAround(std::string_view fragment) {
  return std::string(rootStart).append(fragment).append(rootEnd);
}

}  // namespace vlclientui
