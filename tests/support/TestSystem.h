#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contracts/System.h"

namespace vlclientui::test {

/// A fake system for tests. Drive C is a temporary folder of its own, removed with the object; everything
/// else is a table. Calls that tests look at are recorded.
class TestSystem : public System {
 public:
  TestSystem();
  ~TestSystem() override;

  // What the system answers.
  std::map<std::int32_t, std::string> shellFolders{{5, "C:\\Documents"}};
  std::map<std::string, std::string> variables;
  std::map<std::string, RegistryValue> registry;  ///< by "key\value"
  LocaleFormat locale;
  bool folderCreationWorks = true;
  bool everythingFails = false;  ///< every call throws

  // What was asked.
  std::vector<std::string> createdPaths;
  std::vector<std::string> launched;
  std::vector<std::string> registryLog;  ///< "open key", "query value", "close"

  /// The native path of a path on drive C.
  [[nodiscard]] std::filesystem::path nativeFile(const std::string& path) const;
  void writeFile(const std::string& path, const std::string& text) const;
  [[nodiscard]] std::string readFile(const std::string& path) const;
  [[nodiscard]] const std::filesystem::path& home() const { return home_; }

  [[nodiscard]] std::optional<std::string> shellFolder(std::int32_t folderId) override;
  [[nodiscard]] std::optional<std::string> environment(const std::string& name) override;
  [[nodiscard]] std::unique_ptr<RegistryKey> openRegistryKey(RegistryHive hive,
                                                             const std::string& key) override;
  bool makeSureDirectoryPathExists(const std::string& path) override;
  [[nodiscard]] std::string firstDirectoryEntry(const std::string& path) override;
  [[nodiscard]] std::int64_t fileLength(const std::string& path) override;
  [[nodiscard]] bool fileExists(const std::string& path) override;
  [[nodiscard]] bool folderExists(const std::string& path) override;
  void launch(const std::string& commandText) override;
  [[nodiscard]] std::int32_t userLocale() override;
  std::int32_t localeInfo(std::int32_t locale, std::int32_t item, std::string& buffer,
                          std::int32_t size) override;
  [[nodiscard]] LocaleFormat localeFormat() override;
  [[nodiscard]] std::string nativePath(const std::string& path) const override;
  [[nodiscard]] std::string logicPath(const std::string& nativePath) const override;

 private:
  void failIfTold() const;

  std::filesystem::path home_;
};

}  // namespace vlclientui::test
