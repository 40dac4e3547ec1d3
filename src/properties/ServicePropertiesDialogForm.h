#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"
#include "metadata/MetadataControls.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataViewer.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

class ExportDialog;
class ServicePropertiesDialog;

/// The modal window that shows the properties and the metadata of a service on two tabs. A person's edits
/// stay in the window until OK writes them to the thread's gServicePropertiesXml.
///
/// Its routines show no message: each ends silently at its first failure and keeps what it did before.
class ServicePropertiesDialogForm : public MetadataFields, public Form {
 public:
  struct Controls {
    explicit Controls(ServicePropertiesDialogForm& form);

    TabStrip myTab;                         ///< the two sides
    std::array<Frame, 2> ServicePropFrame;  ///< one per side: 0 properties, 1 metadata
    Button SaveAs;                          ///< writes the properties to a file
    MetadataControls metadata;              ///< the metadata side
    MetadataViewer viewer;
    Button Command2;     ///< opens the export dialog
    Button uibtnok;      ///< OK
    Button uibtncancel;  ///< Cancel
    Button Command1;     ///< always hidden
  };

  explicit ServicePropertiesDialogForm(Toolkit& toolkit);
  ~ServicePropertiesDialogForm() override;

  // Set by the dialog object before each show, like documents and service.
  ServicePropertiesDialog* myDialogObject = nullptr;  ///< the object that opened the window and outlives it
  bool mySrsReadOnly = false;                         ///< the fields of the spatial reference are read-only

  // State of the open window. Hosts never see it.
  std::string myPropertiesXml;       ///< the properties being edited
  std::string myLastTab;             ///< caption of the side shown last
  std::string myLockImageID;         ///< raster that the mosaic was locked to in this window; may be empty
  std::string myXFDefBody;           ///< form definition of the properties side
  std::string myXADefBody;           ///< its attribute definition
  std::shared_ptr<Plexa> plexaUtil;  ///< engine of the properties side; null until that side is shown
  std::shared_ptr<ExportDialog> myExportDialog;
  std::int32_t myResult = 0;  ///< 1 after OK, otherwise 0
  bool myOkPressed = false;
  bool myCancelPressed = false;

  /// Shows the window modally. @returns 1 after OK, 0 otherwise.
  std::int32_t ShowMe();

  /// Shows the side of the selected tab, built anew.
  void ShowSelectedTab();
  /// Writes the edits of the properties side and the thread's viewpoint into myPropertiesXml.
  void CollectProperties();
  void plexaUtil_Notify(Plexa& source, const PlexaEvent& event);

  /// Loads the window when needed.
  [[nodiscard]] Controls& controls();

  /// The dialog object connects to it, but the window never raises it.
  Event<> OnOKClick;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;
  void onUnload() override;

 private:
  void connectButtons();
  void openWithService();
  void showName(const std::string& serviceInfoXml);
  void showPropertiesSide();
  void showServiceProperties();
  void showMetadataSide();
  void buildMetadataTree();
  void releaseEngines();
  void lockToRaster();
  [[nodiscard]] bool mayLock() const;
  void accept();
  void cancel();
  void publishProperties();
  void saveProperties();
  void saveUpdatedProperties();
  void exportImage();

  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
