#pragma once

#include <map>
#include <optional>
#include <string>

#include "contracts/System.h"
#include "platform/Environment.h"
#include "platform/PathTranslation.h"
#include "platform/UserLocale.h"

namespace vlclientui::platform {

/// The stand-in for the registry: values by hive, key and name, such as
/// `HKEY_LOCAL_MACHINE\SOFTWARE\X\Home`. Case does not matter.
using RegistryTable = std::map<std::string, RegistryValue>;

/// The system port over POSIX and the XDG folders.
///
/// - Folders by identity: 5 documents, 0x10 desktop, 0x1A and 0x1C application data, 0x28 home.
/// - "APPDATA" falls back on the documents folder: what dialogs propose for a file stands in it, and nobody
///   finds a file again in a hidden folder. A native path in it is translated.
/// - A listing names what stands at the path, be it a file or a folder, and "." for a folder whose path ends
///   in a separator.
/// - Help opens <page>.htm of the help folder with the user's browser; a page that is not there does nothing.
/// - The locale is that of LC_ALL, LC_NUMERIC or LANG, whichever is set first.
/// - Items of localeInfo: 14 decimal separator, 15 group separator, 20 currency symbol; sizes count bytes of
///   UTF-8.
class PosixSystem final : public System {
 public:
  struct Settings {
    PathTranslation paths = PathTranslation::ofUser();
    std::string helpFolder;  ///< native
    RegistryTable registry;
    Environment environment = processEnvironment();
  };

  explicit PosixSystem(Settings settings);

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
  [[nodiscard]] std::string localeName() const;

  /// The user's locale, from the variables as they are now.
  [[nodiscard]] const UserLocale& usersLocale();

  Settings settings_;
  std::string usersLocaleName_;
  std::optional<UserLocale> usersLocale_;
};

}  // namespace vlclientui::platform
