#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/ThreadState.h"
#include "properties/ServicePropertiesDialog.h"
#include "scenarios/PropertiesPerson.h"
#include "support/FakeImageService.h"
#include "support/PropertiesFixture.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// The image last returned of the service of the scenarios: what its groups hold.
struct ReturnedImage {
  std::string bufferSize = "393216";
  std::string status = "<Status>one source is missing</Status>";
  std::string detailed{};  ///< the group of rasters and processes, as it is
};

/// A service of two rasters for those who tell of its pages: the shipped definitions, the form engine, and a
/// fake service in a dialog object of a host.
class ServiceScenarios : public testing::Test {
 protected:
  ServiceScenarios();
  ~ServiceScenarios() override;

  /// Gives the library the window system of this person, who stays until the dialog object has gone.
  void equip(std::shared_ptr<PropertiesPerson> person);
  /// System, documents and client library; toolkit and engine are left to fill.
  [[nodiscard]] Platform platformWithoutWindows() const;
  /// The older Init with the service. @param configuration of the dialog object.
  void initialize(const std::string& configuration = {});
  [[nodiscard]] std::shared_ptr<IServicePropertiesDialog> older() const {
    return queryInterface<IServicePropertiesDialog>(dialog);
  }
  [[nodiscard]] static std::string& published() { return threadState().gServicePropertiesXml; }
  /// The text of an element in a document; what is missing is told instead.
  [[nodiscard]] static std::string textIn(const std::string& xml, const std::string& element);
  /// What stands in a field that the person sees; what is missing is told instead.
  [[nodiscard]] static std::string shown(const PropertiesPerson& person, const std::string& field);
  /// The client attribute definition as shipped, with these mosaic methods.
  [[nodiscard]] std::string definitionOffering(const std::string& methods) const;

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<ServicePropertiesDialog> dialog;

 private:
  [[nodiscard]] std::string cut(const std::string& file, const std::string& path) const;

  std::shared_ptr<XmlService> xml_;
  std::shared_ptr<PropertiesPerson> equipped_;
};

[[nodiscard]] std::string imageDocument(const ReturnedImage& image);

}  // namespace vlclientui::test
