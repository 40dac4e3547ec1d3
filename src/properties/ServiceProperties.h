#pragma once

#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The page that a host embeds to change the properties of a service. The form engine draws the fields from
/// the service's definitions; saving merges viewpoint and lock into the thread's gServicePropertiesXml. Every
/// routine ends silently at its first failure and keeps what it wrote before.
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
  bool mySrsReadOnly = false;  ///< the fields of the spatial reference are read-only

  // Given to the engine.
  std::string myXFDefBody;
  std::string myXADefBody;
  std::shared_ptr<Plexa> plexaUtil;  ///< null until the page is loaded

  /// Loads the page when needed.
  [[nodiscard]] Controls& controls();

  /// The document with the person's edits; empty without an engine.
  [[nodiscard]] std::string GetGuiUpdates();
  /// Drops the edits and shows the thread's document. Returns false always.
  bool RefreshTheForm();
  /// Writes edits, lock and viewpoint into the thread's document, and clears the lock. Returns false always.
  bool Save();
  /// Writes this viewpoint into the thread's document.
  void StoreViewPoint(const std::string& x, const std::string& y);
  /// Writes the edits into the thread's document and releases the engine.
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
#pragma GCC visibility pop
