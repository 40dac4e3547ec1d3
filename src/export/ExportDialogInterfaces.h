#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// How a host exports an area of a service: Init, one of the shows, then read the updated properties. Names
/// are spelled as hosts call them.
class IExportImageDialog : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IExportImageDialog";

  /// @param dialogConfigXml accepted and ignored. @param clientObject an IServerClient, or null.
  /// @param imageService the service whose image is exported, or null.
  /// @returns false when the definition file is missing or unusable, and for any other failure. Throws
  /// nothing.
  virtual Boolean16 IExportImageDialog_Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                                            const ObjectPtr& imageService) = 0;
  /// The `GetImage` element of the last show; empty before any show and after Cancel.
  [[nodiscard]] virtual std::string iExportImageDialog_GetUpdatedProperties() = 0;
  /// Not supported: does nothing and returns false.
  virtual Boolean16 iExportImageDialog_ShowEmbeddedForm(std::int32_t parentWindowHandle) = 0;
  /// Modal, with the host's own extents. Always returns false: the updated properties tell the outcome.
  /// @param exportDialogPropertiesXml a document with `//Vorlane/Client/ExportImageDialog`, whose
  /// `CustomEnvelope` children have `Description`, `XMin`, `XMax`, `YMin`, `YMax`, numbers with a point; a
  /// text that does not parse brings no extents.
  /// @throws whatever the service throws while its documents are fetched. Only these two shows let failures
  /// reach the host.
  virtual Boolean16 iExportImageDialog_ShowModalDialogEx(const std::string& exportDialogPropertiesXml) = 0;
  /// Modal, without the host's own extents; the size estimate stays 0. Always returns false. @throws as the
  /// other show.
  virtual Boolean16 iExportImageDialog_ShowModalDialog() = 0;
  /// Always empty, even after a failed Init. Deliberate: hosts must not show it.
  [[nodiscard]] virtual std::string iExportImageDialog_Status() = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
