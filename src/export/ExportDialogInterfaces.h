#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"

namespace vlclientui {

/// How a host lets a person export an area of a service: Init, one of the shows, read the updated properties.
/// Names are spelled as hosts call them.
class IExportImageDialog : public virtual Object {
 public:
  static constexpr std::string_view interfaceName = "IExportImageDialog";

  /// @param dialogConfigXml accepted and not looked at. @param clientObject an IServerClient, or null.
  /// @param imageService the service whose image is exported, or null.
  /// @returns false when the definition file is missing or unusable, or for any other failure; raises
  /// nothing.
  virtual Boolean16 IExportImageDialog_Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                                            const ObjectPtr& imageService) = 0;
  /// The `GetImage` element of the last show; empty before any show and after a cancel.
  [[nodiscard]] virtual std::string iExportImageDialog_GetUpdatedProperties() = 0;
  /// There is no embedded window: does nothing and is false.
  virtual Boolean16 iExportImageDialog_ShowEmbeddedForm(std::int32_t parentWindowHandle) = 0;
  /// Modal, with the host's own extents. Always false: the updated properties tell the outcome.
  /// @param exportDialogPropertiesXml a document with `//Vorlane/Client/ExportImageDialog`, whose
  /// `CustomEnvelope` children have `Description`, `XMin`, `XMax`, `YMin`, `YMax`, numbers with a point; a
  /// text that does not parse brings no extents.
  /// @throws whatever the service throws while its documents are fetched: unlike elsewhere, failures of the
  /// two shows reach the host.
  virtual Boolean16 iExportImageDialog_ShowModalDialogEx(const std::string& exportDialogPropertiesXml) = 0;
  /// Modal, without extents of the host; the size estimate stays 0. Always false. @throws as the other show.
  virtual Boolean16 iExportImageDialog_ShowModalDialog() = 0;
  /// Always empty, on purpose, also after a failed Init.
  [[nodiscard]] virtual std::string iExportImageDialog_Status() = 0;
};

}  // namespace vlclientui
