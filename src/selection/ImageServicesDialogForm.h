#pragma once

#include <memory>
#include <string>

#include "contracts/VorlaneClient.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "selection/ImageServicesControl.h"

namespace vlclientui {

/// The modal window for picking services. OK writes the control's lists into the host's result and into the
/// user's settings file.
class ImageServicesDialogForm : public Form {
 public:
  struct Controls {
    explicit Controls(ImageServicesDialogForm& form);

    ImageServicesControl ImageServicesControl1;
    Button uibtnok;
    Button uibtncancel;
  };

  explicit ImageServicesDialogForm(Toolkit& toolkit);
  ~ImageServicesDialogForm() override;

  std::string SelectedServicesXml;  ///< the result; empty before any show and after Cancel
  bool OkPressed = false;
  std::shared_ptr<IServerClient> myClient;
  ObjectPtr myOVLClient;

  /// Loads the form when needed.
  [[nodiscard]] Controls& controls();

  /// Asks the server and fills the list, before the window appears.
  void ShowMePlexa();

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;
  void onUnload() override;

 private:
  void selectionChanged();
  void acceptSelection();
  void publishDocuments(XmlDocument& settingsTemplate);

  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
