#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "export/Envelope.h"
#include "frame/ThreadState.h"
#include "library/ClassFactory.h"
#include "platform/LibXmlService.h"
#include "scenarios/ExportPerson.h"
#include "support/ExportFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::test {

/// A person at the export window of a fake service, with the shipped template.
class ExportVisit : public testing::Test {
 protected:
  ExportVisit() {
    system->writeFile("C:\\Program\\VLClient.XADef", sourceFileText("definitions/VLClient.XADef"));
    system->variables["APPDATA"] = "C:\\Data";
    service->metadata = imageMetadata({});
    service->info = serviceInfo({.maxColumns = "3000", .maxRows = "2000"});
    Platform made;
    made.system = system;
    made.xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    made.clientLibrary = std::make_shared<FakeClientLibrary>();
    person->equip(made);
    setPlatform(std::make_shared<Platform>(made));
    customEnvelopes().clear();
  }
  ~ExportVisit() override {
    dialog.reset();
    customEnvelopes().clear();
    setPlatform(nullptr);
  }

  /// Shows the dialog as a host does; the visit runs in the open window.
  void visit(const std::function<void()>& actions, const std::string& extents = {}) {
    if (!dialog) dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
    ASSERT_EQ(dialog->IExportImageDialog_Init("", nullptr, service), boolean16True);
    bool ran = false;
    person->whenWindowAppears([&] {
      actions();
      ran = true;
    });
    EXPECT_EQ(dialog->iExportImageDialog_ShowModalDialogEx(extents), boolean16False);
    EXPECT_TRUE(ran);
    EXPECT_FALSE(person->windowIsOpen());
  }

  /// An element of the request that the dialog gave back.
  [[nodiscard]] std::string requested(const std::string& element) const {
    const auto request = currentPlatform().xml->createDocument();
    if (!request->loadXml(dialog->iExportImageDialog_GetUpdatedProperties())) return "no request";
    const auto node = request->selectSingleNode("//GetImage/" + element);
    return node ? node->text() : "no " + element;
  }
  [[nodiscard]] bool exported() const { return !service->exportRequest.empty(); }
  void expectText(const std::string& box, const std::string& text) const {
    EXPECT_EQ(person->text(box), text) << box;
  }
  /// A person replaces the text of a box and leaves it.
  void edit(const std::string& box, const std::string& text) {
    person->type(box, text);
    person->pressTab();
  }

  std::unique_ptr<ExportPerson> person = makeExportPerson();
  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<IExportImageDialog> dialog;
};

}  // namespace vlclientui::test
