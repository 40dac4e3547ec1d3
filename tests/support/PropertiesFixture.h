#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "properties/ServicePropertiesDialog.h"
#include "support/FakeClient.h"
#include "support/FakeImageService.h"
#include "support/RecordingPlexa.h"
#include "support/RecordingToolkit.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// A service properties document with these children of ImageServiceProperties.
[[nodiscard]] std::string propertiesXml(const std::string& children);

/// A definition below its wrapper `XADef` or `XFDef`, with these children of ImageServiceProperties.
[[nodiscard]] std::string definitionXml(const std::string& wrapper, const std::string& children);

/// A client attribute definition that offers these mosaic methods.
[[nodiscard]] std::string attributeDefinitionXml(const std::string& methodList);

/// A fake callback that keeps what it was told.
class FakePropertiesCallback : public IServicePropertiesCallback {
 public:
  std::vector<std::string> told;
  std::function<void()> duringCall;

  void OnServicePropertiesChanged(const std::string& xml) override {
    if (duringCall) duringCall();
    told.push_back(xml);
  }
};

/// The library on fakes: recording toolkit and engines, a system in a temporary folder, a fake service with
/// both definitions. VLClient.XADef and VLClient.Xfdef stand in C:\Program.
class PropertiesFixture : public testing::Test {
 protected:
  PropertiesFixture();
  ~PropertiesFixture() override;

  [[nodiscard]] std::shared_ptr<IServicePropertiesDialog> older() const;
  [[nodiscard]] std::shared_ptr<IOVLServicePropertiesDialog> newer() const;
  [[nodiscard]] std::shared_ptr<IOVLServicePropertiesDialog2> extension() const;
  /// The older Init with the fake service; expected to succeed.
  void initialize();
  /// The same without a service.
  void initializeWithoutService();
  /// The service becomes one of the newer generation.
  void makeNewer() const { service->type = "IOVLImageService"; }
  [[nodiscard]] static std::string status() { return threadState().gStatus; }
  /// What one of the service, the engines and the toolkit did since the last call of this, in order.
  [[nodiscard]] std::vector<std::string> takeJournal();

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<RecordingToolkit> toolkit = std::make_shared<RecordingToolkit>();
  std::shared_ptr<RecordingPlexaFactory> plexa = std::make_shared<RecordingPlexaFactory>();
  std::shared_ptr<FakeClientLibrary> clientLibrary = std::make_shared<FakeClientLibrary>();
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<ServicePropertiesDialog> dialog;

 private:
  std::vector<std::string> journal_;
};

}  // namespace vlclientui::test
