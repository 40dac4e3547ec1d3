#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Event.h"
#include "contracts/Platform.h"
#include "frame/InitProtocol.h"
#include "frame/LiveObjects.h"
#include "metadata/SourceMetadata.h"
#include "properties/ServiceProperties.h"
#include "properties/ServicePropertiesDialogForm.h"
#include "properties/ServicePropertiesInterfaces.h"
#include "viewpoint/ViewPoint.h"
#include "viewpoint/ViewPointDialogForm.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What a host creates to show and change the properties of one image service. It makes the pages and
/// windows, gives them the documents and places their windows; each page has its own logic.
///
/// Both generations of the interface forward to the operations here.
class ServicePropertiesDialog : public Object, public std::enable_shared_from_this<ServicePropertiesDialog> {
 public:
  ServicePropertiesDialog();
  ~ServicePropertiesDialog() override;

  // The fields of the default interface.
  std::shared_ptr<IServerClient> myClient;  ///< never set by this class
  ObjectPtr myOVLClient;                    ///< set by the newer Init, as it came
  Boolean16 myOVLClientInitialized =
      boolean16False;  ///< a newer Init has succeeded, and no older one came after

  // Its operations.
  /// Unloads the viewpoint page. Returns false always; callers ignore it.
  Boolean16 CloseViewPoint();
  /// Saves the properties page. Returns false always; callers ignore it.
  Boolean16 SaveAllForms();

  /// Declared for the one-window dialog's OK. It is never raised.
  Event<> OnAccept;

  // The interfaces forward to these; the library's own windows call some of them too.
  [[nodiscard]] std::string GetUpdatedProperties();
  std::int32_t ShowPropertiesModalDialog();
  Boolean16 ShowViewPointModalDialog();
  Boolean16 ShowPropertyPage(PropertyPageId pageId, WindowHandle parentHandle);
  WindowHandle GetPropertyPageHandle(PropertyPageId pageId);
  Boolean16 Refresh();
  Boolean16 Close(PropertyPageId pageId);
  [[nodiscard]] Boolean16 HasChanged();
  void ImageMetaDataXml(const std::string& xml);
  void ServicePropertiesXml(const std::string& xml);
  void SetProperty(const std::string& key, const std::string& value);
  void SetCallback(const ObjectPtr& callback);

  [[nodiscard]] std::string typeName() const override { return "ServicePropertiesDialog"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

  // The pages and windows, made on first use and again after a Close. Hosts never see them.
  [[nodiscard]] SourceMetadata& metadataPage();
  [[nodiscard]] ServiceProperties& propertiesPage();
  [[nodiscard]] ViewPoint& viewPointPage();
  [[nodiscard]] ViewPointDialogForm& viewPointDialog();
  /// Null before Init and after any Close.
  [[nodiscard]] std::shared_ptr<ServicePropertiesDialogForm> window() const { return CallingForm; }

 private:
  template <class Interface, ClientGeneration generation>
  class OperationsFacet;
  class OlderFacet;
  class NewerFacet;
  class ExtensionFacet;
  struct PageTreatment;

  Boolean16 init(const std::string& dialogConfigXml, const ObjectPtr& client, const ObjectPtr& imageService,
                 ClientGeneration generation);
  [[nodiscard]] bool initialize(const std::string& dialogConfigXml, const ObjectPtr& client,
                                const ObjectPtr& imageService, ClientGeneration generation);
  void makeForms();
  void makeCallingForm();
  void readConfiguration(const std::string& textOrPath);
  void takeImageService(const ObjectPtr& imageService, ClientGeneration generation);
  void readDocuments(ImageService& service, ClientGeneration generation);
  void refreshDocuments();
  [[nodiscard]] bool mayShow();

  [[nodiscard]] static const PageTreatment* treatmentOf(PropertyPageId pageId);
  template <class Page>
  std::shared_ptr<Form> give(Page& page, int data);
  [[nodiscard]] std::shared_ptr<Form> preparedPage(PropertyPageId pageId, int data);
  void forgetPageWithoutWindow(PropertyPageId pageId);
  void embed(Form& page, const PageTreatment& treatment, WindowHandle parentHandle);
  [[nodiscard]] bool holds(const Form& page) const;
  static void putBack(Form& page, WindowHandle parent, std::int32_t style);
  void closeMetadataPage();
  void closeViewPointPage();
  void releaseMetadataPage();
  void releaseCallingForm();
  void passOnChange(const std::string& servicePropertiesXml);

  LiveObject alive_;
  std::shared_ptr<const Platform> platform_;  ///< outlives the forms, which use its toolkit
  InitFlags init_;
  std::unique_ptr<IServicePropertiesDialog> older_;
  std::unique_ptr<IOVLServicePropertiesDialog> newer_;
  std::unique_ptr<IOVLServicePropertiesDialog2> extension_;

  std::shared_ptr<IServicePropertiesCallback> DD;
  ObjectPtr myImageServiceObject;
  std::string myClientXadef;
  std::string myClientXfdef;
  std::string myDialogProperties;
  bool mySrsReadOnly = false;
  std::string myServiceInfoXml;
  std::string myMetaDataXml;
  std::string myImageMetaDataXml;
  // Saved by ShowPropertyPage from the window of a page, restored by Close.
  std::int32_t myViewPointPageStyle = 0;
  WindowHandle myViewPointPageParent = 0;
  std::int32_t myMetadataPageStyle = 0;
  WindowHandle myMetadataPageParent = 0;

  std::shared_ptr<ServicePropertiesDialogForm> classForm_;  ///< kept for the class's interface; never shown
  std::shared_ptr<ServicePropertiesDialogForm> CallingForm;
  std::shared_ptr<SourceMetadata> SourceMetadataForm;
  std::shared_ptr<ServiceProperties> myPropertiesPage;
  std::shared_ptr<ViewPoint> myViewPointPage;
  std::shared_ptr<ViewPointDialogForm> myViewPointDialog;
};

}  // namespace vlclientui
#pragma GCC visibility pop
