#include "support/ViewPointFixture.h"

#include "platform/LibXmlService.h"

namespace vlclientui::test {

namespace {

std::string element(const std::string& name, const std::string& text) {
  return text.empty() ? "" : "<" + name + ">" + text + "</" + name + ">";
}

}  // namespace

std::string SteeredService::GetImageMetadata(const std::string& level) {
  return answer("GetImageMetadata '" + level + "'", metadata);
}

std::string SteeredService::ServiceProperties() { return answer("ServiceProperties", properties); }

std::string SteeredService::answer(const std::string& call, const std::string& text) {
  calls.push_back(call);
  if (duringCall) duringCall();
  if (fails) throw RuntimeFailure("the service fails");
  return text;
}

std::string basicMetadata(const ExtentText& extent) {
  return "<Vorlane><Client><ImageMetadata><Basic>" + element("XMin", extent.xMin) +
         element("YMin", extent.yMin) + element("XMax", extent.xMax) + element("YMax", extent.yMax) +
         "</Basic></ImageMetadata></Client></Vorlane>";
}

std::string spacingProperties(const std::string& x, const std::string& y) {
  return "<Vorlane><ImageServiceProperties>" + element("AvgImageSpacingX", x) +
         element("AvgImageSpacingY", y) + "</ImageServiceProperties></Vorlane>";
}

ViewPointFixture::ViewPointFixture() {
  service->metadata = basicMetadata({});
  service->properties = spacingProperties("5", "2");
  auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  setPlatform(
      std::make_shared<Platform>(Platform{system, xml, toolkit, std::make_shared<RecordingPlexaFactory>(),
                                          std::make_shared<FakeClientLibrary>()}));
}

ViewPointFixture::~ViewPointFixture() {
  setPlatform(nullptr);
  threadState() = {};
}

std::string ViewPointFixture::published() {
  return threadState().gViewPointX + "|" + threadState().gViewPointY;
}

}  // namespace vlclientui::test
