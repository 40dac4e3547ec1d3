#include <memory>
#include <string>

#include "contracts/CallOut.h"
#include "contracts/RuntimeFailure.h"
#include "documents/ExportFormats.h"
#include "export/ExportControl.h"
#include "frame/Guard.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"

// What the service is given: a `GetImage` element, made from the template of the definition file. An element
// that the template lacks is left out.

namespace vlclientui {

namespace {

constexpr const char* requestPath = "//Vorlane/Client/GetImage";

std::unique_ptr<XmlDocument> requestTemplate() {
  const auto engine = callOut(currentPlatform().plexa)->createPlexa();
  callOut(engine)->AttributeDefinition(threadState().ClientXADefPath);
  auto document = callOut(currentPlatform().xml)->createDocument();
  const std::string text = callOut(engine)->GetTemplateXml();
  const bool parses = document->loadXml(text);
  callOut(engine)->ParentWindow(0);
  if (!parses) throw RuntimeFailure("the template of the request is no document");
  return document;
}

void SetNodeText(XmlDocument& document, const std::string& element, const std::string& value) {
  const auto node = document.selectSingleNode(requestPath + ("/" + element));
  if (!node) return endSilently("the template of the request has no " + element);
  node->setText(value);
}

XmlNodePtr presentNode(const XmlDocument& document, const char* path) {
  auto node = document.selectSingleNode(path);
  if (!node) failMissingObject(path);
  return node;
}

}  // namespace

Boolean16 ExportControl::OnClose() {
  visitWindow(topForm(), [this] {
    // The boxes keep their points, even when the window stays open.
    if (decimalSeparator_ != ".") ReplaceDecimalSeparator(decimalSeparator_, ".");
    const auto request = requestTemplate();
    writeRaster(*request);
    writeFile(*request);
    writeServiceFacts(*request);
    SetNodeText(*request, "ExportMetadataXml", ExportMD.checked() ? "True" : "False");
    finalXml = presentNode(*request, requestPath)->xml();
  });
  return boolean16False;
}

void ExportControl::writeRaster(XmlDocument& request) const {
  SetNodeText(request, "OutputType", "File");
  SetNodeText(request, "Top", uiTxtTop.text());
  SetNodeText(request, "Left", uiTxtLeft.text());
  SetNodeText(request, "Right", uiTxtRight.text());
  SetNodeText(request, "Bottom", uiTxtBottom.text());
  SetNodeText(request, "Width", uiTxtWidth.text());
  SetNodeText(request, "Height", uiTxtHeight.text());
  SetNodeText(request, "Cols", uiTxtCols.text());
  SetNodeText(request, "Rows", uiTxtRows.text());
  SetNodeText(request, "ApproxMB", uiTxtMB.text());
}

void ExportControl::writeFile(XmlDocument& request) {
  const ExportFormat* const format = findExportFormat(FormatCombo.text());
  const FileFormatRow* const file = format ? &rowOf(format->file) : nullptr;
  if (file && file->writesWorldFile) SetNodeText(request, "CreateWorldFile", "True");
  SetNodeText(request, "Format", file ? file->requestName : "");
  SetNodeText(request, "CompressionMethod", format ? requestName(format->compression) : "");
  SetNodeText(request, "TileSize", TileSizeCombo.text());
  SetNodeText(request, "CompressionQuality", uiTxtCompression.text());
  ApplyFormatExtension(uiTxtFileName.text());
  // Called for its side effects: it makes the folder, and may change the name.
  FExists(uiTxtFileName.text());
  SetNodeText(request, "FileName", uiTxtFileName.text());
}

void ExportControl::writeServiceFacts(XmlDocument& request) const {
  const auto service = parsedDocument(FullViewXml);
  SetNodeText(request, "NBands", presentNode(*service, "//NBands")->text());
  SetNodeText(request, "BitDepth", presentNode(*service, "//BitDepth")->text());
}

}  // namespace vlclientui
