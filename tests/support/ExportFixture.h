#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "export/Envelope.h"
#include "export/ExportDialog.h"
#include "headless/HeadlessToolkit.h"
#include "support/FakeClient.h"
#include "support/FakeImageService.h"
#include "support/RecordingPlexa.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// The image metadata of a test.
struct ImageText {
  std::string xMin = "1000";
  std::string yMin = "1000";
  std::string xMax = "2000";
  std::string yMax = "2000";
  std::string rows = "1000";
  std::string columns = "1000";
  std::string bands = "3";
  std::string pixelType = "Byte";
};

/// An image metadata document; an empty field leaves its element out.
[[nodiscard]] std::string imageMetadata(const ImageText& image);

/// The service info of a test.
struct ServiceInfoText {
  std::string xMin = "500";
  std::string yMin = "500";
  std::string xMax = "2500";
  std::string yMax = "2500";
  std::string maxColumns{};
  std::string maxRows{};
  std::string pixelSize = "1.5";
  std::string bands = "3";
  std::string bitDepth = "8";
};

/// A service info document; an empty field leaves its element out.
[[nodiscard]] std::string serviceInfo(const ServiceInfoText& service);

/// One `CustomEnvelope` element; an empty text leaves its element out.
[[nodiscard]] std::string customEnvelope(const std::string& description, const std::string& xMin,
                                         const std::string& yMin, const std::string& xMax,
                                         const std::string& yMax);
/// The host's document around such elements.
[[nodiscard]] std::string exportExtents(const std::string& children);

/// A template as VLClient.XADef gives it.
extern const char* const exportTemplateXml;

[[nodiscard]] LocaleFormat germanFormat();
[[nodiscard]] LocaleFormat frenchFormat();

/// The library on fakes: headless toolkit, recording engines, a system in a temporary folder, a fake service.
class ExportFixture : public testing::Test {
 protected:
  ExportFixture();
  ~ExportFixture() override;

  using Script = std::function<void(ExportDialogForm&, ExportControl&)>;

  [[nodiscard]] std::shared_ptr<ExportDialog> readyDialog();
  /// The extended show of `dialog`; the script acts on the open window.
  void show(const Script& script, const std::string& extentsXml = "");
  /// The plain show.
  void showPlainly(const Script& script);
  /// A person moves into the box, replaces its text and leaves it for the check box.
  static void edit(ExportControl& control, TextBox& box, const std::string& text);
  /// The same without an edit.
  static void visit(ExportControl& control, TextBox& box);
  static void selectFormat(ExportControl& control, const std::string& entry);

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<headless::HeadlessToolkit> toolkit = std::make_shared<headless::HeadlessToolkit>();
  std::shared_ptr<RecordingPlexaFactory> plexa = std::make_shared<RecordingPlexaFactory>();
  std::shared_ptr<FakeClientLibrary> clientLibrary = std::make_shared<FakeClientLibrary>();
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<ExportDialog> dialog;  ///< made by the first show

 private:
  void script(const Script& act, bool& ran);
};

}  // namespace vlclientui::test
