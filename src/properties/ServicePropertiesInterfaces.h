#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contracts/Boolean16.h"
#include "contracts/Plexa.h"
#include "contracts/VorlaneClient.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// How a host shows and changes the properties of one image service, older generation: Init, then the pages
/// in windows of its own or one modal window, then GetUpdatedProperties. When Init, ShowPropertyPage or
/// ShowPropertiesModalDialog fails, Status tells why; one failure of Init is told in a message box alone.
class IServicePropertiesDialog : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IServicePropertiesDialog";

  /// @param dialogConfigXml a configuration document, or the name of a file that holds one; may be empty.
  /// @param clientObject ignored. @param imageServiceObject the service, or null.
  /// @returns false when a definition file is missing or unusable, or for any other failure. A missing or
  /// unusable attribute definition is told in a message box and leaves Status as it was.
  virtual Boolean16 Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                         const ObjectPtr& imageServiceObject) = 0;
  /// Saves the properties page. @returns the service properties document.
  [[nodiscard]] virtual std::string GetUpdatedProperties() = 0;
  /// @returns 1 after OK, 0 otherwise; -1 before a successful Init and for a failure.
  virtual std::int32_t ShowPropertiesModalDialog() = 0;
  /// True once the window has closed, by whatever button. The result is the viewpoint that the next save
  /// writes. Most of its failures end in false without a word.
  virtual Boolean16 ShowViewPointModalDialog() = 0;
  /// Always true.
  virtual Boolean16 IsPropertyPageAvailable(PropertyPageId pageId) = 0;
  /// Puts a page into a window of the host. Does nothing for an unknown id, and returns true.
  virtual Boolean16 ShowPropertyPage(PropertyPageId pageId, WindowHandle parentHandle) = 0;
  /// Fetches the documents again. Returns false always. The metadata page uses the service info and image
  /// metadata that the host set last; it fetches them itself only while a page of fields is on show. Set both
  /// first, or the tabs of a list or a tree stay empty until a node is clicked.
  virtual Boolean16 Refresh() = 0;
  /// Takes a page out of its window and releases it without saving.
  virtual Boolean16 Close(PropertyPageId pageId) = 0;
  /// The last failure text of the class on this thread; never cleared by a success.
  [[nodiscard]] virtual std::string Status() = 0;
  /// Stored, otherwise unused.
  virtual void DialogProperties(const std::string& xml) = 0;
  /// Whether the properties page shows other properties than the service has; false without a service.
  [[nodiscard]] virtual Boolean16 HasChanged() = 0;
};

/// The newer generation. Operations of the same name are those of the older interface; only Init differs.
class IOVLServicePropertiesDialog : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IOVLServicePropertiesDialog";

  /// @param dialogConfigXml as in the older interface. @param clientObject any object, stored as it is; may
  /// be null.
  /// @param imageServiceObject the service, or null. @returns as in the older interface.
  virtual Boolean16 Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                         const ObjectPtr& imageServiceObject) = 0;
  /// As IServicePropertiesDialog::GetUpdatedProperties.
  [[nodiscard]] virtual std::string GetUpdatedProperties() = 0;
  /// As IServicePropertiesDialog::ShowPropertiesModalDialog.
  virtual std::int32_t ShowPropertiesModalDialog() = 0;
  /// As IServicePropertiesDialog::ShowViewPointModalDialog.
  virtual Boolean16 ShowViewPointModalDialog() = 0;
  /// Always true.
  virtual Boolean16 IsPropertyPageAvailable(PropertyPageId pageId) = 0;
  /// As IServicePropertiesDialog::ShowPropertyPage.
  virtual Boolean16 ShowPropertyPage(PropertyPageId pageId, WindowHandle parentHandle) = 0;
  /// The page's own window, for a host that embeds it itself; 0 for an unknown id.
  virtual WindowHandle GetPropertyPageHandle(PropertyPageId pageId) = 0;
  /// As IServicePropertiesDialog::Refresh.
  virtual Boolean16 Refresh() = 0;
  /// As IServicePropertiesDialog::Close.
  virtual Boolean16 Close(PropertyPageId pageId) = 0;
  /// As IServicePropertiesDialog::Status.
  [[nodiscard]] virtual std::string Status() = 0;
  /// Stored, otherwise unused.
  virtual void DialogProperties(const std::string& xml) = 0;
  // Documents for a host without a service object.
  /// The service info document, in place of ImageService::ServiceInfo.
  virtual void serviceInfoXml(const std::string& xml) = 0;
  /// The metadata of the service, in place of ImageService::GetMetaData.
  virtual void MetaDataXml(const std::string& xml) = 0;
  /// The metadata of the image last returned, in place of ImageService::GetImageMetadata.
  virtual void ImageMetaDataXml(const std::string& xml) = 0;
  /// The service properties document, in place of ImageService::ServiceProperties.
  virtual void ServicePropertiesXml(const std::string& xml) = 0;
  /// As IServicePropertiesDialog::HasChanged.
  [[nodiscard]] virtual Boolean16 HasChanged() = 0;
};

/// What the newer generation has besides, on the same object.
class IOVLServicePropertiesDialog2 : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IOVLServicePropertiesDialog2";

  /// Sets a definition for use without a service object. @param key one of ImageService::getProperty, or
  /// "ImageMetadataXADef" or "ImageMetadataXFDef"; case-sensitive, and unknown keys are ignored. @param value
  /// the definition as text. A "ClientXADef" that is no XML document changes nothing.
  virtual void SetProperty(const std::string& key, const std::string& value) = 0;
  /// @param callback an IServicePropertiesCallback, or null; called when the mosaic is locked to a raster.
  virtual void SetCallback(const ObjectPtr& callback) = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
