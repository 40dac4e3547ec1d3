#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/VorlaneClient.h"
#include "frame/ThreadState.h"
#include "headless/HeadlessToolkit.h"
#include "support/FakeClient.h"
#include "support/RecordingPlexa.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// A fake image service for tests that steer a viewpoint: answers two documents, records who asked.
class SteeredService : public ImageService {
 public:
  std::string metadata;
  std::string properties;
  bool fails = false;                ///< every call throws
  std::function<void()> duringCall;  ///< run inside each call
  std::vector<std::string> calls;

  std::string typeName() const override { return "IImageService"; }
  std::string GetImageMetadata(const std::string& level) override;
  std::string ServiceProperties() override;
  std::string getProperty(const std::string&) override { return unused(); }
  std::string GetDefinition(std::int32_t) override { return unused(); }
  std::string ServiceInfo() override { return unused(); }
  std::string GetMetaData(const std::string&) override { return unused(); }
  bool SaveProperties(const std::string&) override { return unused().empty(); }
  void ExportProperties(const std::string&) override { unused(); }
  bool ExportImage() override { return unused().empty(); }
  std::string status() override { return unused(); }

 private:
  std::string answer(const std::string& call, const std::string& text);
  static std::string unused() { throw RuntimeFailure("the viewpoint windows do not call this"); }
};

/// Edges of an image as texts of a document; an empty one leaves its element out.
struct ExtentText {
  std::string xMin = "100";
  std::string yMin = "10";
  std::string xMax = "200";
  std::string yMax = "30";
};

/// Image metadata of level Basic.
[[nodiscard]] std::string basicMetadata(const ExtentText& extent);
/// Service properties with these steps; an empty one leaves its element out.
[[nodiscard]] std::string spacingProperties(const std::string& x, const std::string& y);

/// The library on fakes with real documents, and a service whose image has the default extent and the
/// steps 5 and 2.
class ViewPointFixture : public testing::Test {
 protected:
  ViewPointFixture();
  ~ViewPointFixture() override;

  void useComma() { system->locale = {",", ".", "\u20AC"}; }
  /// The published viewpoint, with a bar between.
  [[nodiscard]] static std::string published();

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<headless::HeadlessToolkit> toolkit = std::make_shared<headless::HeadlessToolkit>();
  std::shared_ptr<SteeredService> service = std::make_shared<SteeredService>();
};

}  // namespace vlclientui::test
