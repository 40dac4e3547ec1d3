#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contracts/Boolean16.h"
#include "contracts/Event.h"
#include "contracts/VorlaneClient.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "export/ExportControl.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The modal window of the export dialog. OK shows a field's complaint instead of exporting, asks before it
/// overwrites a file, and runs the export through the service. The window closes when the export succeeded.
class ExportDialogForm : public Form {
 public:
  struct Controls {
    explicit Controls(ExportDialogForm& form);

    ExportControl ExportControl1;
    Button Command1;
    Button Command2;
  };

  explicit ExportDialogForm(Toolkit& toolkit);
  ~ExportDialogForm() override;

  std::vector<std::string> ComboVals;  ///< the extents to choose from
  std::string myLastAOIXml;
  std::string myFullViewXml;
  std::string UpdatedXml;  ///< the result: the `GetImage` element; empty before any show and after Cancel
  ObjectPtr myImageServiceObject;
  std::shared_ptr<IServerClient> myClient;
  Boolean16 ExModalCalled = boolean16False;
  bool acceptPressed = false;  ///< OK was pressed during this show, with or without success

  /// Raised once UpdatedXml tells what came of a show, while the window goes.
  Event<> closed;

  /// Loads the form when needed.
  [[nodiscard]] Controls& controls();

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;
  void onUnload() override;

 private:
  void acceptExport();
  [[nodiscard]] const std::string* firstComplaint();
  void exportImage();
  [[nodiscard]] bool mayWrite(const std::string& file) const;
  void runExport();
  void showExportFailure(const std::string& status) const;

  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
