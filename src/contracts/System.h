#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "contracts/LocaleFormat.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// The two registry roots that the library reads.
enum class RegistryHive {
  HKEY_CURRENT_USER,  ///< of the person
  HKEY_LOCAL_MACHINE  ///< of all who use the machine
};

/// A registry value: type 1 is a string, type 4 a 32-bit number. The data of other types are not read.
struct RegistryValue {
  /// 1 or 4 as told above; any other type has neither text nor number.
  std::int32_t type = 0;
  std::string text;          ///< type 1: up to `size` characters, with a NUL at the end
  std::uint32_t number = 0;  ///< type 4
};

/// An open registry key; closing is its destructor.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;
  /// Nothing when the query failed.
  [[nodiscard]] virtual std::optional<RegistryValue> query(const std::string& valueName) const = 0;
};

/// The operating system. Paths in and out have drives and backslashes: drive C is the user's home folder,
/// drive Z the root of the file system; trailing blanks of a path component mean nothing. Implementers
/// translate here and nowhere else.
class System {
 public:
  virtual ~System() = default;

  /// SHGetFolderPathA with flags 0. @param folderId 5 is the user's documents folder.
  /// @returns the whole buffer that the call filled (its text ends at the first NUL); nothing when the call
  /// failed.
  [[nodiscard]] virtual std::optional<std::string> shellFolder(std::int32_t folderId) = 0;
  /// Nothing when the variable is not set. "APPDATA" is a path.
  [[nodiscard]] virtual std::optional<std::string> environment(const std::string& name) = 0;
  /// Null when the key does not exist.
  [[nodiscard]] virtual std::unique_ptr<RegistryKey> openRegistryKey(RegistryHive hive,
                                                                     const std::string& key) = 0;

  /// MakeSureDirectoryPathExists: makes every folder up to the last separator.
  virtual bool makeSureDirectoryPathExists(const std::string& path) = 0;
  /// The first name in a directory listing of the path; empty when the listing has none.
  /// @throws RuntimeFailure when the listing fails.
  [[nodiscard]] virtual std::string firstDirectoryEntry(const std::string& path) = 0;
  /// In bytes. @throws RuntimeFailure when it cannot be read.
  [[nodiscard]] virtual std::int64_t fileLength(const std::string& path) = 0;

  /// Whether a file has this path; a folder does not count. @throws RuntimeFailure when the system cannot
  /// tell.
  [[nodiscard]] virtual bool fileExists(const std::string& path) = 0;
  /// Whether a folder has this path. @throws RuntimeFailure as fileExists.
  [[nodiscard]] virtual bool folderExists(const std::string& path) = 0;

  /// Runs a help command: "hh.exe " + help file + "::/" + page + ".htm". Never blocks and reports no outcome.
  /// Without such a program, implementers open the file of that page in the folder `help`.
  virtual void launch(const std::string& commandText) = 0;

  /// GetUserDefaultLCID.
  [[nodiscard]] virtual std::int32_t userLocale() = 0;
  /// GetLocaleInfoA. @param locale as userLocale tells it. @param item 14 is the decimal separator. @param
  /// size of the caller's buffer; 0 asks for the needed size. @param buffer receives at most size characters,
  /// the last being NUL.
  /// @returns the number of characters needed or written, the NUL included; 0 on failure.
  virtual std::int32_t localeInfo(std::int32_t locale, std::int32_t item, std::string& buffer,
                                  std::int32_t size) = 0;
  /// How the user writes numbers.
  [[nodiscard]] virtual LocaleFormat localeFormat() = 0;

  /// Drive path to native path, and back. For views and hosts.
  [[nodiscard]] virtual std::string nativePath(const std::string& path) const = 0;
  /// Native path to drive path: below the home folder on drive C, all else on drive Z.
  [[nodiscard]] virtual std::string logicPath(const std::string& nativePath) const = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
