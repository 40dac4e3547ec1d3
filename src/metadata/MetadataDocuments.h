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

/// The fields of a metadata viewer that its dialog object reads and sets. They outlive the controls.
struct MetadataFields {
  std::string myServiceInfoXml;    ///< service info document
  std::string myMetaDataXml;       ///< service metadata document
  std::string myImageMetaDataXml;  ///< image metadata document
  ObjectPtr myImageServiceObject;  ///< the service; without one the pages use the three documents

  /// Draws the page with definitions that is on show; null while there is none.
  std::shared_ptr<Plexa> myPlexa;

  /// The window's only save dialog. It keeps a name whose file was refused.
  FileDialog myDialog;
};

/// Asks the service, if there is one, for image metadata, service info and service metadata, in this order,
/// and adds a help block to each text. Ends quietly at the first call that fails and keeps what was fetched
/// before it.
void fetchDocuments(MetadataFields& fields);

/// The definitions, from whoever provides them: a newer service by key, an older one by number, and without a
/// service the host, in the window that accepts the host's.
class ProvidedDefinitions {
 public:
  ProvidedDefinitions(const MetadataFields& fields, const MetadataViewerDifferences& differences)
      : fields_(fields), differences_(differences) {}

  /// What the client may edit: the first child of the wrapper as a document; null when it is missing or does
  /// not parse. @throws RuntimeFailure when the service fails.
  [[nodiscard]] std::unique_ptr<XmlDocument> clientAttributes() const;

  // Of the service metadata page: the children of the wrapper, joined; empty without a wrapper.
  [[nodiscard]] std::string serviceMetadataForm() const;
  [[nodiscard]] std::string serviceMetadataAttributes() const;

 private:
  [[nodiscard]] std::string ask(const char* key, std::int32_t kind, const std::string& ofHost) const;

  const MetadataFields& fields_;
  const MetadataViewerDifferences& differences_;
};

/// Whether a client definition allows locking the mosaic to a raster.
[[nodiscard]] bool allowsLockRaster(const XmlDocument& clientAttributes);

}  // namespace vlclientui
