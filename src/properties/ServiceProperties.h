#pragma once

#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"

namespace vlclientui {

/// The page that a host embeds to change the properties of a service. The form engine draws the fields from
/// the service's definitions; saving merges viewpoint and lock into the thread's gServicePropertiesXml.
/// Every routine ends silently at its first failure; what was written before it stays.
class ServiceProperties : public Form {
 public:
  struct Controls {
    explicit Controls(ServiceProperties& form);

    Frame Frame1;      ///< holds the engine
    Button SaveAs;     ///< writes the service definition to a file
    Label ErrorLabel;  ///< why the page could not be drawn; hidden at first
  };

  explicit ServiceProperties(Toolkit& toolkit);
  ~ServiceProperties() override;

  // Set before the page is loaded.
  ObjectPtr myImageServiceObject;
  bool mySrsReadOnly = false;  ///< the fields of the spatial reference can only be read

  // What the engine was given.
  std::string myXFDefBody;
  std::string myXADefBody;
  std::shared_ptr<Plexa> plexaUtil;  ///< null until the page was loaded

  /// The first touch loads the page.
  [[nodiscard]] Controls& controls();

  /// The document with the person's edits; empty while there is no engine.
  [[nodiscard]] std::string GetGuiUpdates();
  /// Shows the thread's document in place of the edits. Always false.
  bool RefreshTheForm();
  /// Takes edits, lock and viewpoint into the thread's document; the lock is used up. Always false.
  bool Save();
  /// Writes this viewpoint into the thread's document.
  void StoreViewPoint(const std::string& x, const std::string& y);
  /// Takes the edits into the thread's document and lets the engine go.
  void ReleaseEngine();
  void plexaUtil_Notify(Plexa& source, const PlexaEvent& event);

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;
  void onUnload() override { Save(); }

 private:
  void showServiceProperties();
  void showPage(WindowHandle frame, const std::string& data);
  void showFailure();
  void takeEdits();
  void openViewPointDialog();
  void saveDefinition();

  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
