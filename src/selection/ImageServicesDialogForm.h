#pragma once

#include <memory>
#include <string>

#include "contracts/VorlaneClient.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "selection/ImageServicesControl.h"

namespace vlclientui {

/// The modal window of the add-service dialog. On OK it turns the control's lists into the result for the
/// host and into the per-user settings file.
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

  std::string SelectedServicesXml;  ///< the result; empty before any show and after a cancel
  bool OkPressed = false;
  std::shared_ptr<IServerClient> myClient;
  ObjectPtr myOVLClient;

  /// The first touch loads the form.
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
