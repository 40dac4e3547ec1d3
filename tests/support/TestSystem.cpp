#include "support/TestSystem.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <stdlib.h>
#include <unistd.h>

#include "contracts/RuntimeFailure.h"
#include "documents/TextCase.h"

namespace vlclientui::test {

namespace {

namespace fs = std::filesystem;

/// In memory where there is such a place: what is saved is brought to disk, which is slow and no matter here.
fs::path placeOfTemporaryFolders() {
  const fs::path inMemory = "/dev/shm";
  return access(inMemory.c_str(), W_OK | X_OK) == 0 ? inMemory : fs::temp_directory_path();
}

fs::path makeTemporaryFolder() {
  std::string pattern = (placeOfTemporaryFolders() / "vlclientui-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw RuntimeFailure("cannot make a temporary folder");
  return pattern;
}

class TestRegistryKey : public RegistryKey {
 public:
  TestRegistryKey(TestSystem& system, std::string key) : system_(system), key_(std::move(key)) {}
  ~TestRegistryKey() override { system_.registryLog.emplace_back("close"); }

  std::optional<RegistryValue> query(const std::string& valueName) const override {
    system_.registryLog.push_back("query " + valueName);
    const auto found = system_.registry.find(key_ + "\\" + valueName);
    return found == system_.registry.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  TestSystem& system_;
  std::string key_;
};

}  // namespace

TestSystem::TestSystem() : home_(makeTemporaryFolder()) {}

TestSystem::~TestSystem() {
  std::error_code ignored;
  fs::remove_all(home_, ignored);
}

fs::path TestSystem::nativeFile(const std::string& path) const { return nativePath(path); }

void TestSystem::writeFile(const std::string& path, const std::string& text) const {
  const fs::path file = nativeFile(path);
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

std::string TestSystem::readFile(const std::string& path) const {
  std::ostringstream text;
  text << std::ifstream(nativeFile(path), std::ios::binary).rdbuf();
  return text.str();
}

std::optional<std::string> TestSystem::shellFolder(std::int32_t folderId) {
  failIfTold();
  const auto found = shellFolders.find(folderId);
  return found == shellFolders.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> TestSystem::environment(const std::string& name) {
  failIfTold();
  const auto found = variables.find(name);
  return found == variables.end() ? std::nullopt : std::optional(found->second);
}

std::unique_ptr<RegistryKey> TestSystem::openRegistryKey(RegistryHive hive, const std::string& key) {
  failIfTold();
  const std::string root =
      hive == RegistryHive::HKEY_LOCAL_MACHINE ? "HKEY_LOCAL_MACHINE\\" : "HKEY_CURRENT_USER\\";
  registryLog.push_back("open " + root + key);
  const bool known = std::ranges::any_of(
      registry, [&](const auto& entry) { return entry.first.starts_with(root + key + "\\"); });
  return known ? std::make_unique<TestRegistryKey>(*this, root + key) : nullptr;
}

bool TestSystem::makeSureDirectoryPathExists(const std::string& path) {
  failIfTold();
  createdPaths.push_back(path);
  if (!folderCreationWorks) return false;
  std::error_code error;
  fs::create_directories(nativeFile(path.substr(0, path.rfind('\\'))), error);
  return !error;
}

std::string TestSystem::firstDirectoryEntry(const std::string& path) {
  failIfTold();
  const fs::path folder = nativeFile(path);
  if (!fs::is_directory(folder)) throw RuntimeFailure("no folder " + path);
  return folder.filename().empty() ? "." : folder.filename().string();
}

std::int64_t TestSystem::fileLength(const std::string& path) {
  failIfTold();
  std::error_code error;
  const auto size = fs::file_size(nativeFile(path), error);
  if (error) throw RuntimeFailure("no file " + path);
  return static_cast<std::int64_t>(size);
}

bool TestSystem::fileExists(const std::string& path) {
  failIfTold();
  return fs::is_regular_file(nativeFile(path));
}

bool TestSystem::folderExists(const std::string& path) {
  failIfTold();
  return fs::is_directory(nativeFile(path));
}

void TestSystem::launch(const std::string& commandText) {
  failIfTold();
  launched.push_back(commandText);
}

std::int32_t TestSystem::userLocale() { return 0x409; }

std::int32_t TestSystem::localeInfo(std::int32_t /*locale*/, std::int32_t item, std::string& buffer,
                                    std::int32_t size) {
  failIfTold();
  const std::string answer = (item == 14 ? locale.decimalSeparator : std::string()) + '\0';
  if (size > 0) buffer = answer.substr(0, static_cast<std::size_t>(size));
  return static_cast<std::int32_t>(answer.size());
}

LocaleFormat TestSystem::localeFormat() {
  failIfTold();
  return locale;
}

std::string TestSystem::nativePath(const std::string& path) const {
  if (path.starts_with('/')) return path;
  std::string below = path.starts_with("C:\\") ? path.substr(3) : path;
  std::ranges::replace(below, '\\', '/');
  fs::path native = home_;
  for (const auto& component : fs::path(below)) {
    const std::string name = trimmedBlanks(component.string());
    if (!name.empty()) native /= name;
  }
  return native.string();
}

std::string TestSystem::logicPath(const std::string& nativePath) const {
  std::string path = "C:\\" + fs::path(nativePath).lexically_relative(home_).string();
  std::ranges::replace(path, '/', '\\');
  return path;
}

void TestSystem::failIfTold() const {
  if (everythingFails) throw RuntimeFailure("the system fails");
}

}  // namespace vlclientui::test
