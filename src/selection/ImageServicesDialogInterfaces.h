#pragma once

#include <string>
#include <string_view>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// How a host picks image services, older generation: Init, show, read the selected services. When one
/// returns false, Status tells why the definitions are at fault or there can be no show; of any other failure
/// only a SilenceListener hears. Nothing is thrown to the host.
class IImageServicesDialog : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IImageServicesDialog";

  /// @param dialogConfigXml accepted and ignored. @param Client an IServerClient, or null.
  virtual Boolean16 Init(const std::string& dialogConfigXml, const ObjectPtr& Client) = 0;
  /// The selected-services document; empty before any show and after Cancel.
  [[nodiscard]] virtual std::string GetSelectedServices() = 0;
  /// Modal. True when the window has closed, by whatever button.
  virtual Boolean16 ShowDialog() = 0;
  /// The same with the view's extent, an `AddImageServiceDialog` document; an empty text means no filter.
  virtual Boolean16 ShowDialogEx(const std::string& Xml) = 0;
  /// The last failure text of the class on this thread; never cleared by a success.
  [[nodiscard]] virtual std::string Status() = 0;
};

/// The newer generation: Init takes any object, which must answer as an IOVLServerClient when it is asked.
/// The other operations are those of the older interface.
class IOVLImageServicesDialog : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IOVLImageServicesDialog";

  /// @param dialogConfigXml accepted and ignored. @param Client any object, or null.
  virtual Boolean16 Init(const std::string& dialogConfigXml, const ObjectPtr& Client) = 0;
  /// As IImageServicesDialog::GetSelectedServices.
  [[nodiscard]] virtual std::string GetSelectedServices() = 0;
  /// As IImageServicesDialog::ShowDialog.
  virtual Boolean16 ShowDialog() = 0;
  /// As IImageServicesDialog::ShowDialogEx.
  virtual Boolean16 ShowDialogEx(const std::string& Xml) = 0;
  /// As IImageServicesDialog::Status.
  [[nodiscard]] virtual std::string Status() = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
