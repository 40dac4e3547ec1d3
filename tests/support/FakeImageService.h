#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "contracts/VorlaneClient.h"

namespace vlclientui::test {

/// A fake image service for tests, of either generation: answers from fields, records each call in order.
class FakeImageService : public ImageService {
 public:
  /// "IImageService" is the older generation, "IOVLImageService" in any case the newer.
  std::string type = "IImageService";
  std::map<std::int32_t, std::string> definitions;  ///< by kind; a kind that is missing throws
  std::string properties;
  std::string info;
  std::string metadata;         ///< of the image, at each level
  std::string fullMetadata;     ///< of the image at the level "Full"; empty for what the others have
  std::string serviceMetadata;  ///< of the service
  bool saveAnswer = true;
  bool exportAnswer = true;
  std::string statusAnswer;
  std::string failAt;                  ///< beginning of the calls that throw, such as "GetImageMetadata"
  std::size_t failAtCall = 0;          ///< the call that throws, counted from 1; 0 for none
  std::function<void()> duringExport;  ///< run inside ExportImage
  std::function<void(const std::string&)> onCall;  ///< told each call, before it may throw

  std::vector<std::string> calls;
  std::string exportRequest;
  std::vector<std::string> savedFiles;

  std::string typeName() const override { return type; }
  std::string getProperty(const std::string& key) override;
  std::string GetDefinition(std::int32_t kind) override;
  std::string ServiceProperties() override;
  std::string ServiceInfo() override;
  std::string GetImageMetadata(const std::string& level) override;
  std::string GetMetaData(const std::string& key) override;
  bool SaveProperties(const std::string& fileName) override;
  void ExportProperties(const std::string& request) override;
  bool ExportImage() override;
  std::string status() override;

 private:
  void log(const std::string& call);
  [[nodiscard]] std::string definition(std::int32_t kind) const;
};

}  // namespace vlclientui::test
