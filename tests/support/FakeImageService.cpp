#include "support/FakeImageService.h"

#include <algorithm>
#include <array>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {

namespace {
const std::array<std::string, 4> definitionKeys{"ClientXADef", "ClientXFDef", "ServiceMetadataXADef",
                                                "ServiceMetadataXFDef"};
}  // namespace

std::string FakeImageService::getProperty(const std::string& key) {
  log("getProperty '" + key + "'");
  if (!isNewerGeneration(*this)) throw RuntimeFailure("an older service has no getProperty");
  const auto found = std::ranges::find(definitionKeys, key);
  if (found == definitionKeys.end()) throw RuntimeFailure("the service knows no key " + key);
  return definition(static_cast<std::int32_t>(found - definitionKeys.begin()) + 1);
}

std::string FakeImageService::GetDefinition(std::int32_t kind) {
  log("GetDefinition " + std::to_string(kind));
  return definition(kind);
}

std::string FakeImageService::definition(std::int32_t kind) const {
  const auto found = definitions.find(kind);
  if (found == definitions.end()) throw RuntimeFailure("the service has no definition of that kind");
  return found->second;
}

std::string FakeImageService::ServiceProperties() {
  log("ServiceProperties");
  return properties;
}

std::string FakeImageService::ServiceInfo() {
  log("ServiceInfo");
  return info;
}

std::string FakeImageService::GetImageMetadata(const std::string& level) {
  log("GetImageMetadata '" + level + "'");
  return level == "Full" && !fullMetadata.empty() ? fullMetadata : metadata;
}

std::string FakeImageService::GetMetaData(const std::string& key) {
  log("GetMetaData '" + key + "'");
  return serviceMetadata;
}

bool FakeImageService::SaveProperties(const std::string& fileName) {
  log("SaveProperties '" + fileName + "'");
  savedFiles.push_back(fileName);
  return saveAnswer;
}

void FakeImageService::ExportProperties(const std::string& request) {
  log("ExportProperties");
  exportRequest = request;
}

bool FakeImageService::ExportImage() {
  log("ExportImage");
  if (duringExport) duringExport();
  return exportAnswer;
}

std::string FakeImageService::status() {
  log("status");
  return statusAnswer;
}

void FakeImageService::log(const std::string& call) {
  calls.push_back(call);
  if (onCall) onCall(call);
  const bool isCallToFail = calls.size() == failAtCall;
  if (isCallToFail || (!failAt.empty() && call.starts_with(failAt))) {
    throw RuntimeFailure("the service fails at " + (isCallToFail ? call : failAt));
  }
}

}  // namespace vlclientui::test
