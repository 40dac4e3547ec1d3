#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

class ServicePropertiesDialog;

/// The modal window that shows the properties and the metadata of a service on two tabs.
class ServicePropertiesDialogForm : public Form {
 public:
  explicit ServicePropertiesDialogForm(Toolkit& toolkit);

  // Set by the dialog object before each showing.
  ServicePropertiesDialog* myDialogObject = nullptr;  ///< the object that opened the window and outlives it
  ObjectPtr myImageServiceObject;
  std::string myServiceInfoXml;
  std::string myMetaDataXml;
  std::string myImageMetaDataXml;
  bool mySrsReadOnly = false;

  /// Shows the window modally. @returns 1 after OK, 0 otherwise.
  std::int32_t ShowMe();

  /// Declared for the dialog object, which listens; this window raises it never.
  Event<> OnOKClick;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override {}
};

}  // namespace vlclientui
