#include "platform/PosixSystem.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "platform/HelpLauncher.h"
#include "platform/UserFolders.h"
#include "platform/UserLocale.h"

namespace vlclientui::platform {
namespace {

namespace fs = std::filesystem;

enum FolderId { Documents = 5, Desktop = 0x10, AppData = 0x1A, LocalAppData = 0x1C, Profile = 0x28 };
enum LocaleItem { DecimalSeparator = 14, GroupSeparator = 15, CurrencySymbol = 20 };

std::string folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return text;
}

RegistryTable withFoldedNames(const RegistryTable& table) {
  RegistryTable result;
  for (const auto& [name, value] : table) result.emplace(folded(name), value);
  return result;
}

std::string nameOf(RegistryHive hive) {
  return hive == RegistryHive::HKEY_LOCAL_MACHINE ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
}

class TableKey final : public RegistryKey {
 public:
  TableKey(RegistryTable table, std::string prefix) : table_(std::move(table)), prefix_(std::move(prefix)) {}

  [[nodiscard]] std::optional<RegistryValue> query(const std::string& valueName) const override {
    const auto found = table_.find(prefix_ + folded(valueName));
    return found == table_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  RegistryTable table_;
  std::string prefix_;
};

std::optional<std::string> itemOf(const LocaleFormat& format, std::int32_t item) {
  switch (item) {
    case DecimalSeparator:
      return format.decimalSeparator;
    case GroupSeparator:
      return format.groupSeparator;
    case CurrencySymbol:
      return format.currencySymbol;
    default:
      return std::nullopt;
  }
}

/// 0x400 and 0x800 are "the user's" and "the system's".
bool meansTheUsers(std::int32_t locale) { return locale == 0x400 || locale == 0x800; }

/// The type of file at a native path. @throws RuntimeFailure when the system cannot tell.
fs::file_status knownStatus(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::none) {
    throw RuntimeFailure("'" + path + "' cannot be looked at: " + error.message());
  }
  return status;
}

}  // namespace

PosixSystem::PosixSystem(Settings settings) : settings_(std::move(settings)) {
  settings_.registry = withFoldedNames(settings_.registry);
}

std::optional<std::string> PosixSystem::shellFolder(std::int32_t folderId) {
  const std::string& home = settings_.paths.homeFolder();
  switch (folderId) {
    case Documents:
      return logicPath(documentsFolder(home, settings_.environment));
    case Desktop:
      return logicPath(desktopFolder(home, settings_.environment));
    case AppData:
    case LocalAppData:
      return logicPath(dataFolder(home, settings_.environment));
    case Profile:
      return logicPath(home + "/");
    default:
      return std::nullopt;
  }
}

std::optional<std::string> PosixSystem::environment(const std::string& name) {
  std::optional<std::string> value = settings_.environment(name);
  if (name != "APPDATA") return value;
  return logicPath(value.value_or(documentsFolder(settings_.paths.homeFolder(), settings_.environment)));
}

std::unique_ptr<RegistryKey> PosixSystem::openRegistryKey(RegistryHive hive, const std::string& key) {
  const std::string prefix = folded(nameOf(hive) + "\\" + key + "\\");
  const auto first = settings_.registry.lower_bound(prefix);
  const bool isKnown = first != settings_.registry.end() && first->first.starts_with(prefix);
  return isKnown ? std::make_unique<TableKey>(settings_.registry, prefix) : nullptr;
}

bool PosixSystem::makeSureDirectoryPathExists(const std::string& path) {
  try {
    const std::size_t separator = path.find_last_of("\\/");
    if (separator == std::string::npos) return true;
    const std::string folder = nativePath(path.substr(0, separator + 1));
    std::error_code error;
    fs::create_directories(folder, error);
    std::error_code ignored;
    if (fs::is_directory(folder, ignored)) return true;
    endSilently("the folder '" + folder + "' cannot be made: " + error.message());
    return false;
  } catch (const RuntimeFailure& failure) {
    endSilently(failure.what());
    return false;
  }
}

std::string PosixSystem::firstDirectoryEntry(const std::string& path) {
  const fs::path native = nativePath(path);
  std::error_code error;
  const fs::file_status status = fs::status(native, error);
  if (status.type() == fs::file_type::none) {
    throw RuntimeFailure("'" + path + "' cannot be listed: " + error.message());
  }
  if (native.empty() || !fs::exists(status)) return "";
  return native.filename().empty() ? "." : native.filename().string();
}

std::int64_t PosixSystem::fileLength(const std::string& path) {
  std::error_code error;
  const std::uintmax_t length = fs::file_size(nativePath(path), error);
  if (error) throw RuntimeFailure("The length of '" + path + "' cannot be read: " + error.message());
  return static_cast<std::int64_t>(length);
}

bool PosixSystem::fileExists(const std::string& path) {
  const fs::file_status status = knownStatus(nativePath(path));
  return fs::exists(status) && !fs::is_directory(status);
}

bool PosixSystem::folderExists(const std::string& path) {
  return fs::is_directory(knownStatus(nativePath(path)));
}

void PosixSystem::launch(const std::string& commandText) {
  const std::optional<std::string> page = helpPageOf(commandText);
  if (!page) return;
  const fs::path file = fs::path(settings_.helpFolder) / (*page + ".htm");
  std::error_code error;
  if (fs::is_regular_file(file, error)) startAlone(openerOf(file.string(), settings_.environment));
}

std::string PosixSystem::localeName() const {
  for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    if (auto value = settings_.environment(variable); value && !value->empty()) return *value;
  }
  return "";
}

const UserLocale& PosixSystem::usersLocale() {
  std::string name = localeName();
  // Dialogs ask for every number that they read or show, and the C library answers slowly.
  if (!usersLocale_ || name != usersLocaleName_) {
    usersLocale_ = findLocale(name);
    usersLocaleName_ = std::move(name);
  }
  return *usersLocale_;
}

std::int32_t PosixSystem::userLocale() { return usersLocale().id; }

std::int32_t PosixSystem::localeInfo(std::int32_t locale, std::int32_t item, std::string& buffer,
                                     std::int32_t size) {
  const UserLocale users = usersLocale();
  const UserLocale asked = meansTheUsers(locale) || locale == users.id ? users : findLocale(locale);
  const std::optional<std::string> text = itemOf(asked.format, item);
  if (asked.id == 0 || !text || size < 0) return 0;
  const auto needed = static_cast<std::int32_t>(text->size()) + 1;
  if (size == 0) return needed;
  if (size < needed) return 0;
  buffer = *text + '\0';
  return needed;
}

LocaleFormat PosixSystem::localeFormat() { return usersLocale().format; }

std::string PosixSystem::nativePath(const std::string& path) const { return settings_.paths.toNative(path); }

std::string PosixSystem::logicPath(const std::string& nativePath) const {
  return settings_.paths.toLogic(nativePath);
}

}  // namespace vlclientui::platform
