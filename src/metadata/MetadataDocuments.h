#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "contracts/Toolkit.h"
#include "contracts/VorlaneClient.h"
#include "contracts/XmlDocument.h"
#include "frame/PlatformDocument.h"
#include "metadata/MetadataViewerDifferences.h"

namespace vlclientui {

/// The fields that both windows of the metadata viewer show to their dialog object. They outlive the
/// controls.
struct MetadataFields {
  std::string myServiceInfoXml;    ///< service info document
  std::string myMetaDataXml;       ///< service metadata document
  std::string myImageMetaDataXml;  ///< image metadata document
  ObjectPtr myImageServiceObject;  ///< the service; without one the pages live on the three documents

  /// The engine that shows a page with definitions; one at a time, null while none does.
  std::shared_ptr<Plexa> myPlexa;

  /// The window's one save dialog. A name stays in it when its file was refused.
  FileDialog myDialog;
};

/// Null without an object. @throws RuntimeFailure (TypeMismatch) for an object that is no service.
[[nodiscard]] ImageService* imageServiceOf(const MetadataFields& fields);

/// Asks the service, if there is one, for image metadata, service info and service metadata, in this order,
/// and adds a help block to each of the three texts. Ends quietly at the first call that fails: what was
/// fetched before stands, the calls behind it are not made.
void fetchDocuments(MetadataFields& fields);

/// The definitions that depend on who gives them: a newer service by key, an older one by number, and without
/// a service the host, where the window listens to it.
class ProvidedDefinitions {
 public:
  ProvidedDefinitions(const MetadataFields& fields, const MetadataViewerDifferences& differences)
      : fields_(fields), differences_(differences) {}

  /// What the client may edit: the first child of the wrapper as a document, null when there is none or it
  /// does not parse. @throws RuntimeFailure when the service fails.
  [[nodiscard]] std::unique_ptr<XmlDocument> clientAttributes() const;

  // Of the service metadata page: the children of the wrapper, joined; empty without a wrapper.
  [[nodiscard]] std::string serviceMetadataForm() const;
  [[nodiscard]] std::string serviceMetadataAttributes() const;

 private:
  [[nodiscard]] std::string ask(const char* key, std::int32_t kind, const std::string& ofHost) const;

  const MetadataFields& fields_;
  const MetadataViewerDifferences& differences_;
};

/// Whether a client definition lets the mosaic be locked to a raster.
[[nodiscard]] bool allowsLockRaster(const XmlDocument& clientAttributes);

}  // namespace vlclientui
