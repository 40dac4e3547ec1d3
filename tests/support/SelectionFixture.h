#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"
#include "selection/ImageServicesDialog.h"
#include "support/FakeClient.h"
#include "support/RecordingPlexa.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// One service of a server info document that a test makes.
struct ServiceText {
  std::string name;
  std::string info = "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>";  ///< outer XML
};

/// A server info document with one provider.
[[nodiscard]] std::string serverInfo(const std::vector<ServiceText>& services);
/// The same for bare names, each with an ImageServiceInfo that has a Name.
[[nodiscard]] std::string serverInfoOf(const std::vector<std::string>& names);
/// An ImageServiceInfo element with an envelope.
[[nodiscard]] std::string infoWithEnvelope(double xMin, double xMax, double yMin, double yMax);

/// A template as VLClient.XADef gives it, with one placeholder child in MruServers.
extern const char* const templateXml;

/// The library on fakes: headless toolkit, recording engines, a system in a temporary folder, a fake server.
/// VLClient.XADef stands in C:\Program, and the engine's template is `templateXml`.
class SelectionFixture : public testing::Test {
 protected:
  SelectionFixture();
  ~SelectionFixture() override;

  /// An initialized dialog with an older client.
  [[nodiscard]] std::shared_ptr<ImageServicesDialog> readyDialog();
  [[nodiscard]] std::shared_ptr<IImageServicesDialog> older(
      const std::shared_ptr<ImageServicesDialog>& dialog);
  [[nodiscard]] std::shared_ptr<IOVLImageServicesDialog> newer(
      const std::shared_ptr<ImageServicesDialog>& dialog);
  /// Shows a ready dialog over the server's answer; the script acts on the open window.
  void show(const std::function<void(ImageServicesDialogForm&, ImageServicesControl&)>& script,
            const std::string& extentXml = {});
  /// Raises Notify on the engine of the list, as a person's act on a row would.
  void notify(const PlexaEvent& event);
  void click(const std::string& item, const std::string& parent = "/");
  void doubleClick(const std::string& item, const std::string& parent = "/");
  void backspace(const std::string& parent = "/");

  std::shared_ptr<TestSystem> system;
  std::shared_ptr<headless::HeadlessToolkit> toolkit;
  std::shared_ptr<RecordingPlexaFactory> plexa;
  std::shared_ptr<FakeClientLibrary> clientLibrary;
  std::shared_ptr<FakeServer> server;
  std::shared_ptr<ImageServicesDialog> dialog;  ///< the one that show() made
};

}  // namespace vlclientui::test
