// Input: any text, as a project. What is opened is saved as one that opens the same.

#include "Require.h"
#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"
#include "viewer/project/Project.h"
#include "viewer/project/ProjectDocument.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

void checkValues(const viewer::Project& project) {
  for (const auto& service : project.services) {
    require(!service.reference.empty(), "a service has a reference");
    require(service.state.opacity >= 0 && service.state.opacity <= 1, "an opacity is a share");
  }
  require(!project.picked || *project.picked < project.services.size(), "the picked service is there");
}

// What was saved is never refused.
void checkSaved(const viewer::Project& project, const XmlService& xml, const std::filesystem::path& again) {
  const viewer::Project second = viewer::openProject(xml, again);
  require(second.services.size() == project.services.size(), "as many services are opened again");
  viewer::saveProject(second, xml, again);
  require(viewer::openProject(xml, again) == second, "a saved project opens the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  static const fuzzing::ScratchFolder folder;
  viewer::Project project;
  try {
    project = viewer::openProject(xml, folder.file("a.VLProject", fuzzing::textOf(data, size)));
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
    return 0;
  }
  checkValues(project);
  const std::filesystem::path again = folder.path() / "b.VLProject";
  try {
    viewer::saveProject(project, xml, again);
  } catch (const RuntimeFailure& failure) {
    // Properties that are no document are refused.
    require(!failure.description().empty(), "a refusal has words");
    return 0;
  }
  checkSaved(project, xml, again);
  return 0;
}
