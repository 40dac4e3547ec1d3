#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/Platform.h"
#include "contracts/Plexa.h"
#include "contracts/VorlaneClient.h"
#include "export/ExportDialogForm.h"
#include "export/ExportDialogInterfaces.h"
#include "frame/LiveObjects.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What a host creates for an export. Collects the extents that the window offers, and keeps the window so
/// that its result can be read after the show.
class ExportDialog : public IExportImageDialog, public std::enable_shared_from_this<ExportDialog> {
 public:
  ExportDialog();

  // The fields of the default interface.
  ObjectPtr myImageServiceObject;           ///< as given; a call fails when it is not an ImageService
  std::shared_ptr<IServerClient> myClient;  ///< of the older generation, the only one that this class takes

  Boolean16 IExportImageDialog_Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                                    const ObjectPtr& imageService) override;
  [[nodiscard]] std::string iExportImageDialog_GetUpdatedProperties() override;
  Boolean16 iExportImageDialog_ShowEmbeddedForm(std::int32_t parentWindowHandle) override;
  Boolean16 iExportImageDialog_ShowModalDialogEx(const std::string& exportDialogPropertiesXml) override;
  Boolean16 iExportImageDialog_ShowModalDialog() override;
  [[nodiscard]] std::string iExportImageDialog_Status() override { return {}; }

  /// For hosts of this program: the window as a page in one of theirs, as `ShowPropertyPage` of the
  /// properties has it, with the extents of the extended show. Its two buttons end it; window().closed tells
  /// so.
  /// @returns whether it stands. @throws as the shows.
  bool showPage(const std::string& exportDialogPropertiesXml, WindowHandle parentHandle);
  /// Ends it as Cancel does. Nothing happens where it does not stand.
  void closePage();

  [[nodiscard]] std::string typeName() const override { return "ExportDialog"; }
  [[nodiscard]] Object* queryInterface(std::string_view name) override;

  /// The window, made on first use. Hosts never see it.
  [[nodiscard]] ExportDialogForm& window();

 private:
  [[nodiscard]] bool findsDefinition();
  Boolean16 show(Boolean16 extended, const std::function<void()>& readExtents);
  void fillWindow();
  void readCustomEnvelopes(const std::string& xml);
  void takeCustomEnvelope(const std::string& xml);

  LiveObject alive_;
  std::string decimalSeparator_;              ///< empty until the first extended show
  std::shared_ptr<const Platform> platform_;  ///< outlives the window, which uses its toolkit
  std::shared_ptr<ExportDialogForm> form_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
