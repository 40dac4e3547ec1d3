#include "metadata/MetadataDocuments.h"

#include "contracts/RuntimeFailure.h"
#include "documents/HelpBlock.h"
#include "documents/LockDocument.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/ThreadState.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr std::int32_t clientAttributesKind = 1;
constexpr std::int32_t serviceMetadataAttributesKind = 3;
constexpr std::int32_t serviceMetadataFormKind = 4;
constexpr const char* allowedMethodsAttribute = "MosaicMethod_LIST_";
constexpr const char* lockMethod = "Lock Raster";

std::string joinedChildren(const std::string& definition, const char* wrapperPath) {
  const auto document = parsedDocument(definition);
  const XmlNodePtr wrapper = document->selectSingleNode(wrapperPath);
  std::string joined;
  if (!wrapper) return joined;
  for (const XmlNodePtr& child : wrapper->childNodes()) joined += child->xml();
  return joined;
}

}  // namespace

void fetchDocuments(MetadataFields& fields) {
  endsQuietly([&fields] {
    const XmlService& xml = *currentPlatform().xml;
    const auto service = imageServiceIfAny(fields.myImageServiceObject);
    const std::string image = service ? callOut(service)->GetImageMetadata("") : fields.myImageMetaDataXml;
    fields.myImageMetaDataXml = withHelpBlock(xml, image);
    const std::string info = service ? callOut(service)->ServiceInfo() : fields.myServiceInfoXml;
    fields.myServiceInfoXml = withHelpBlock(xml, info);
    const std::string metadata = service ? callOut(service)->GetMetaData("") : fields.myMetaDataXml;
    fields.myMetaDataXml = withHelpBlock(xml, metadata, serviceMetadataRoot);
  });
}

std::string ProvidedDefinitions::ask(const char* key, std::int32_t kind, const std::string& ofHost) const {
  const auto service = imageServiceIfAny(fields_.myImageServiceObject);
  if (!service) return differences_.usesDefinitionsOfHost ? ofHost : std::string();
  return isNewerGeneration(*service) ? callOut(service)->getProperty(key)
                                     : callOut(service)->GetDefinition(kind);
}

std::unique_ptr<XmlDocument> ProvidedDefinitions::clientAttributes() const {
  const std::string given = ask("ClientXADef", clientAttributesKind, threadState().gClientXADef);
  const auto document = parsedDocument(given);
  const XmlNodePtr wrapper = document->selectSingleNode(metadataPath::attributeWrapper);
  const XmlNodePtr first = wrapper ? wrapper->firstChild() : nullptr;
  if (!first) return nullptr;
  auto definition = callOut(currentPlatform().xml)->createDocument();
  return definition->loadXml(first->xml()) ? std::move(definition) : nullptr;
}

std::string ProvidedDefinitions::serviceMetadataForm() const {
  return joinedChildren(
      ask("ServiceMetadataXFDef", serviceMetadataFormKind, threadState().gServiceMetadataXFDef),
      metadataPath::formWrapper);
}

std::string ProvidedDefinitions::serviceMetadataAttributes() const {
  return joinedChildren(
      ask("ServiceMetadataXADef", serviceMetadataAttributesKind, threadState().gServiceMetadataXADef),
      metadataPath::attributeWrapper);
}

bool allowsLockRaster(const XmlDocument& clientAttributes) {
  const XmlNodePtr method = clientAttributes.selectSingleNode(metadataPath::mosaicMethod);
  if (!method) return false;
  return allowsMosaicMethod(method->getNamedItem(allowedMethodsAttribute).value_or(""), lockMethod);
}

}  // namespace vlclientui
