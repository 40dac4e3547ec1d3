#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"
#include "metadata/SourceMetadata.h"
#include "support/FakeClient.h"
#include "support/RecordingPlexa.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// A fake image service for tests: answers by a table, records what it was asked.
class FakeMetadataService : public ImageService {
 public:
  /// By call, as it stands in `calls`: "ServiceInfo", "GetImageMetadata Full", "GetDefinition 1". A call that
  /// is not here answers an empty text.
  std::map<std::string, std::string> answers;
  std::string type = "IImageService";
  std::string failAt;  ///< the call that throws
  std::vector<std::string> calls;

  std::string typeName() const override { return type; }
  std::string getProperty(const std::string& key) override { return answer("getProperty " + key); }
  std::string GetDefinition(std::int32_t kind) override {
    return answer("GetDefinition " + std::to_string(kind));
  }
  std::string ServiceProperties() override { return answer("ServiceProperties"); }
  std::string ServiceInfo() override { return answer("ServiceInfo"); }
  std::string GetImageMetadata(const std::string& level) override {
    return answer("GetImageMetadata " + level);
  }
  std::string GetMetaData(const std::string& key) override { return answer("GetMetaData " + key); }
  bool SaveProperties(const std::string&) override { return answer("SaveProperties").empty(); }
  void ExportProperties(const std::string&) override { answer("ExportProperties"); }
  bool ExportImage() override { return answer("ExportImage").empty(); }
  std::string status() override { return answer("status"); }

 private:
  std::string answer(const std::string& call);
};

/// A raster record of a test. An empty part is left out of it.
struct RasterText {
  std::string id = "1";
  std::string name = "north";
  std::string visible = "True";
  std::string metadata = "<Metadata><Sensor>frame</Sensor></Metadata>";  ///< outer XML, as the next ones
  std::string attributes = "<Attributes><Year>1998</Year></Attributes>";
  std::string process = "<ProcessMetadata><Step>warp</Step></ProcessMetadata>";
};

[[nodiscard]] std::string rasterXml(const RasterText& raster);
/// An image metadata document. @param basic and @param detailed are put into the groups as they are.
[[nodiscard]] std::string imageXml(const std::string& basic, const std::string& detailed);
/// An image metadata document with rasters and process data.
[[nodiscard]] std::string imageOf(const std::vector<RasterText>& rasters,
                                  const std::string& available = "True");

/// A metadata viewer in a window of its own, made of what one of the two windows differs in. Stands for the
/// one-window dialog where a test holds both side by side.
class ViewerForm : public MetadataFields, public Form {
 public:
  struct Set : MetadataControls {
    Set(ViewerForm& form, const MetadataViewerDifferences& differences);
    MetadataViewer viewer;
  };

  ViewerForm(Toolkit& toolkit, const MetadataViewerDifferences& differences);
  ~ViewerForm() override;
  [[nodiscard]] Set& controls();

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { set_.reset(); }
  void onLoad() override;
  void onUnload() override { set_->viewer.releaseEngines(); }

 private:
  const MetadataViewerDifferences& differences_;
  std::shared_ptr<Set> set_;
};

/// The metadata viewer on fakes: headless toolkit, recording engines, a system in a temporary folder. The
/// definition files stand in C:\Program with all sections that the pages cut out. Documents and service are
/// those of the fields below until a test gives others.
class MetadataFixture : public testing::Test {
 protected:
  MetadataFixture();
  ~MetadataFixture() override;

  /// The page or the window is made with the fields' documents and with `service`, and loaded.
  void openPage();
  void openOneWindow();
  /// The same without a service, on the three documents alone.
  void openPageWithoutService();
  void openOneWindowWithoutService();

  /// The focus comes into the window, as it does before anything in it is clicked.
  void enter() {
    controls->uiTreeView.userFocuses();
    service->calls.clear();
  }
  void clickNode(const std::string& key) { controls->uiTreeView.userSelects(key); }
  void clickRasterTab(const std::string& caption);
  void clickServiceTab(const std::string& caption);

  /// Keys of the tree's nodes, in order.
  [[nodiscard]] std::vector<std::string> nodeKeys() const;
  /// The engine of the page on show.
  [[nodiscard]] Plexa& page() const { return *fields->myPlexa; }
  /// Calls of all engines since the last asking.
  [[nodiscard]] std::vector<std::string> newEngineCalls();
  /// Calls of the service since the last asking.
  [[nodiscard]] std::vector<std::string> newServiceCalls();
  /// Pointers that were set since the last asking.
  [[nodiscard]] std::vector<Pointer> newPointers();
  /// The data of the last call of that engine operation; empty when there is none.
  [[nodiscard]] std::string lastEngineValue(const std::string& operation) const;
  [[nodiscard]] SourceMetadata& sourceMetadata() const { return dynamic_cast<SourceMetadata&>(*form); }

  std::shared_ptr<TestSystem> system;
  std::shared_ptr<headless::HeadlessToolkit> toolkit;
  std::shared_ptr<RecordingPlexaFactory> plexa;
  std::shared_ptr<FakeClientLibrary> clientLibrary;
  std::shared_ptr<FakeMetadataService> service;

  std::string imageMetadata;
  std::string serviceInfo;
  std::string serviceMetadata;

  std::unique_ptr<Form> form;
  MetadataFields* fields = nullptr;
  MetadataControls* controls = nullptr;
  MetadataViewer* viewer = nullptr;

 private:
  enum class Window { Page, OneWindow };
  enum class Service { Given, None };
  void open(Window window, Service given);
  void writeDefinitions() const;
  void answerUnlessTold(const std::string& call, const std::string& answer);

  std::map<std::string, std::string> ownAnswers_;  ///< those that no test has told
  std::size_t engineCallsSeen_ = 0;
  std::size_t pointersSeen_ = 0;
};

}  // namespace vlclientui::test
