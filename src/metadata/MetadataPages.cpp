#include "metadata/MetadataPages.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/Toolkit.h"
#include "documents/GuardedRead.h"
#include "documents/HelpBlock.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"
#include "frame/EngineRelease.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr const char* dataRoot = "//";
constexpr std::int32_t fixedTop = 7;
constexpr std::int32_t fixedLeft = 1;
constexpr std::int32_t widthLeftFree = 5;
constexpr double bytesPerKilobyte = 1024;
constexpr const char* noProcessText = "No Server Process data transmitted.";
constexpr const char* noProcess = "<ServerProcess/>";

void takeOutHeaders(PageTexts& texts) {
  const auto definition = parsedDocument(texts.formDefinition);
  const auto headers = definition->selectNodes(metadataPath::formHeader);
  if (headers.empty()) return;
  for (const XmlNodePtr& header : headers) {
    const XmlNodePtr parent = header->parentNode();
    if (parent) parent->removeChild(header);
  }
  texts.formDefinition = definition->xml();
}

/// The page is as far from its frame as the tree is from the window's edge.
std::pair<std::int32_t, std::int32_t> cornerFromLayout(const MetadataWindow& window) {
  Toolkit& toolkit = window.form.toolkit();
  const DesignGeometry& tree = window.controls.uiTreeView.geometry();
  return {tree.left / callOut(toolkit)->twipsPerPixelX(), tree.top / callOut(toolkit)->twipsPerPixelY()};
}

std::pair<std::int32_t, std::int32_t> pageCorner(const MetadataWindow& window) {
  if (window.differences.pagePosition == PagePosition::FromLayout) return cornerFromLayout(window);
  return {fixedLeft, fixedTop};
}

/// Documents write "."; textToDouble expects the user's separator.
double numberOfDocument(const std::string& text) {
  std::string separator = ".";
  readLocaleDecimalSeparator(separator);
  return textToDouble(separator == "." ? text : replacedAll(text, ".", separator),
                      currentPlatform().system->localeFormat());
}

/// Deliberate: a size that rounds to zero kilobytes stays a count of bytes.
void rewriteBufferSize(const XmlDocument& document) {
  const XmlNodePtr size = document.selectSingleNode(metadataPath::bufferSize);
  if (!size || size->text().empty()) return;
  const double kilobytes = numberOfDocument(size->text()) / bytesPerKilobyte;
  if (std::round(kilobytes) == 0) return;
  size->setText(formatDouble(kilobytes, "###", currentPlatform().system->localeFormat()));
}

bool saysNothing(const XmlNode& element) {
  return element.text().empty() && std::ranges::none_of(element.childNodes(), [](const XmlNodePtr& child) {
           return child->kind() == XmlNodeKind::Element;
         });
}

void rewriteStatus(const XmlDocument& document) {
  const XmlNodePtr status = document.selectSingleNode(metadataPath::status);
  if (!status || saysNothing(*status)) return;
  const auto client = callOut(currentPlatform().clientLibrary)->createClientStatus();
  if (!client) failMissingObject("ClientStatus");
  const std::string text = callOut(*client)->GetText(trimmedBlanks(status->xml()));
  status->setText(text);
}

}  // namespace

void showDefinedPage(const MetadataWindow& window, const Control& host, PageTexts texts) {
  Toolkit& toolkit = window.form.toolkit();
  const WindowHandle parent = callOut(toolkit)->windowOf(host);
  const WindowRect frame = callOut(toolkit)->windowRect(parent).value_or(WindowRect{});
  releaseEngine(window.fields.myPlexa);
  const auto engine = callOut(currentPlatform().plexa)->createPlexa();
  window.fields.myPlexa = engine;
  takeOutHeaders(texts);
  callOut(engine)->EmbeddedMode(true);
  callOut(engine)->SetOption("readonly", "true");
  callOut(engine)->AttributeDefinition(texts.attributeDefinition);
  callOut(engine)->FormDefinition(texts.formDefinition);
  callOut(engine)->DataXml(texts.data);
  callOut(engine)->DataRootPath(dataRoot);
  callOut(engine)->ParentWindow(parent);
  const auto [left, top] = pageCorner(window);
  callOut(engine)->Top(top);
  callOut(engine)->Left(left);
  callOut(engine)->Width(frame.width() - widthLeftFree);
  callOut(engine)->Height(frame.height());
  if (!callOut(engine)->Show()) endSilently("the form engine shows no page");
}

std::unique_ptr<XmlDocument> definitionFile(const std::string& path) {
  auto document = callOut(currentPlatform().xml)->createDocument();
  if (!callOut(*document)->load(path)) endSilently("'" + path + "' cannot be read as an XML document");
  return document;
}

std::string cutWithHelp(const XmlDocument& document, const char* path) {
  const XmlNodePtr node = document.selectSingleNode(path);
  return node ? helpDocumentAround(node->xml()) : std::string();
}

std::string cutPlain(const XmlDocument& document, const char* path) {
  const XmlNodePtr node = document.selectSingleNode(path);
  return node ? plainDocumentAround(node->xml()) : std::string();
}

void MetadataPages::ShowServicePage() {
  visitWindow(&window_.form, [this] {
    const std::string tab = window_.controls.TabStrip2.selectedCaption();
    if (tab == "Information") ShowServiceInfoPage();
    if (tab == "Metadata") ShowServiceMetadataPage();
    if (tab == "Properties") ShowServicePropertiesPage();
  });
}

void MetadataPages::ShowServiceInfoPage() {
  endsQuietly([this] {
    const auto forms = definitionFile(threadState().ClientXfdefPath);
    const auto attributes = definitionFile(threadState().ClientXADefPath);
    const auto info = parsedDocument(window_.fields.myServiceInfoXml);
    showDefinedPage(
        window_, window_.controls.FirstPageFrame,
        {cutWithHelp(*attributes, metadataPath::keyDetails), cutPlain(*forms, metadataPath::keyDetails),
         cutWithHelp(*info, metadataPath::keyDetails)});
  });
}

void MetadataPages::ShowServicePropertiesPage() {
  endsQuietly([this] {
    const auto forms = definitionFile(threadState().ClientXfdefPath);
    const auto attributes = definitionFile(threadState().ClientXADefPath);
    addHelpBlock(*attributes);
    showDefinedPage(
        window_, window_.controls.FirstPageFrame,
        {readXml(*attributes, vorlaneRoot).value_or(""),
         readXml(*forms, metadataPath::propertiesForm).value_or(""), window_.fields.myServiceInfoXml});
  });
}

void MetadataPages::ShowServiceMetadataPage() {
  endsQuietly([this] {
    const ProvidedDefinitions definitions(window_.fields, window_.differences);
    const std::string form = definitions.serviceMetadataForm();
    showDefinedPage(window_, window_.controls.FirstPageFrame,
                    {definitions.serviceMetadataAttributes(), form, window_.fields.myMetaDataXml});
  });
}

void MetadataPages::ShowImagePage() {
  endsQuietly([this] {
    const auto forms = definitionFile(threadState().ClientXfdefPath);
    const auto attributes = definitionFile(threadState().ClientXADefPath);
    showDefinedPage(window_, window_.controls.Frame1,
                    {cutWithHelp(*attributes, metadataPath::imageAttributes),
                     cutPlain(*forms, metadataPath::imageForm), imageData()});
  });
}

std::string MetadataPages::imageData() const {
  const auto image = parsedDocument(window_.fields.myImageMetaDataXml);
  if (!image->selectSingleNode(metadataPath::basic)) return {};
  rewriteBufferSize(*image);
  if (window_.differences.rewritesStatus) rewriteStatus(*image);
  return cutWithHelp(*image, metadataPath::basic);
}

void MetadataPages::ShowServerProcessPage() {
  endsQuietly([this] {
    const auto image = parsedDocument(window_.fields.myImageMetaDataXml);
    const std::string xml = readXml(*image, metadataPath::processMetadata).value_or("");
    window_.controls.MDRichText.setText(xml.empty() ? noProcessText : xml);
    const WindowHandle parent = callOut(window_.form.toolkit())->windowOf(window_.form);
    myServerProcessEngine_.show(xml.empty() ? noProcess : xml, parent, processPlace());
  });
}

TreePlace MetadataPages::processPlace() const {
  Toolkit& toolkit = window_.form.toolkit();
  const std::int32_t perX = callOut(toolkit)->twipsPerPixelX();
  const std::int32_t perY = callOut(toolkit)->twipsPerPixelY();
  const MetadataControls& controls = window_.controls;
  const bool inTwips = window_.differences.processHost == ProcessHost::Frame1InTwips;
  const DesignGeometry& tabs = controls.TabStrip1.geometry();
  return {inTwips ? controls.Frame1.geometry().left : controls.FirstPageFrame.geometry().left / perX,
          window_.differences.processTop, tabs.width / perX, tabs.height / perY};
}

}  // namespace vlclientui
