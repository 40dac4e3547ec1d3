#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/Platform.h"
#include "frame/InitProtocol.h"
#include "frame/LiveObjects.h"
#include "selection/ImageServicesDialogForm.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace vlclientui {

/// What a host creates for picking image services. Keeps the client, shows ImageServicesDialogForm and
/// returns the document that the window wrote.
class ImageServicesDialog : public Object, public std::enable_shared_from_this<ImageServicesDialog> {
 public:
  ImageServicesDialog();

  // The fields of the default interface.
  std::shared_ptr<IServerClient> myClient;            ///< set by the older Init
  ObjectPtr myOVLClient;                              ///< set by the newer Init, as given
  Boolean16 myOVLClientInitialized = boolean16False;  ///< whether the newer client is in use
  Boolean16 InitSucceed = boolean16False;             ///< Init found a valid VLClient.XADef

  /// As General's, but always returns true.
  Boolean16 CreatePath(std::string& NewPath);
  [[nodiscard]] Boolean16 FileExist(const std::string& File);

  [[nodiscard]] std::string typeName() const override { return "ImageServicesDialog"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

  /// The window, made on first use. Hosts never see it.
  [[nodiscard]] ImageServicesDialogForm& window();

 private:
  template <class Interface, ClientGeneration generation>
  class DialogFacet;

  Boolean16 init(const ObjectPtr& client, ClientGeneration generation);
  void storeClient(const ObjectPtr& client, ClientGeneration generation);
  [[nodiscard]] bool readDefinition();
  [[nodiscard]] bool failInit(std::string text);
  Boolean16 showDialog();
  Boolean16 showDialogEx(const std::string& xml);
  Boolean16 show(const std::function<void()>& prepare);
  [[nodiscard]] bool mayShow();
  void passClientToWindow();
  void passExtentToWindow(const std::string& xml);
  [[nodiscard]] std::string selectedServices();

  LiveObject alive_;
  bool initCalled_ = false;
  std::shared_ptr<const Platform> platform_;  ///< outlives the window, which uses its toolkit
  std::shared_ptr<ImageServicesDialogForm> form_;
  std::unique_ptr<IImageServicesDialog> older_;
  std::unique_ptr<IOVLImageServicesDialog> newer_;
};

}  // namespace vlclientui
