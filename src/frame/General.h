#pragma once

#include <cstdint>
#include <string>

#include "contracts/System.h"

/// What all windows share: operating-system calls, folders, definition files and help. Paths have drives and
/// backslashes.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Folder kinds of GetInstallFolder.
namespace installFolder {
inline constexpr std::int32_t definitions = 0;  ///< ends in a separator
inline constexpr std::int32_t home = 1;
inline constexpr std::int32_t help = 15;
}  // namespace installFolder

/// Folder ids of GetSpecialFolder.
namespace specialFolder {
inline constexpr std::int32_t documents = 5;
}

/// The settings file's folder below the documents folder.
inline constexpr const char* userDataFolderTail = "\\Ostrel\\Vor Lane";

/// @returns the folder, or an empty string for any kind but 0, 1 and 15.
[[nodiscard]] std::string GetInstallFolder(std::int32_t kind);

/// @returns the folder up to the first NUL of the system's answer, or an empty string on failure.
[[nodiscard]] std::string GetSpecialFolder(std::int32_t folderId);

/// Makes every folder up to the last separator. @param path gets "blank, backslash, blank" appended, in the
/// caller's string too, unless it ends in a backslash. Deliberate: the system call takes what stands before
/// the last separator, and ignores the blanks.
/// @returns whether the system call succeeded.
bool CreatePath(std::string& path);

/// False for any error, too.
[[nodiscard]] bool FolderExist(const std::string& path);
/// True for an empty file too; false when its length cannot be told.
[[nodiscard]] bool FileExist(const std::string& path);

/// A string (type 1, cut at its first NUL) or a number (type 4, in decimal); the default for any other type
/// or a failed query. Always closes the key.
[[nodiscard]] std::string ReadRegistryValue(RegistryHive hive, const std::string& key,
                                            const std::string& valueName,
                                            const std::string& defaultValue = {});

/// The user's decimal separator; `separator` keeps its value when the system gives no terminated text.
void readLocaleDecimalSeparator(std::string& separator);

/// Where the help file's home comes from.
enum class HelpHome { InstallFolder, Registry };

/// Opens the help at a page for Ctrl+F1 without further modifiers. Ignores every other key, and Ctrl+F1 while
/// no control of the window has the focus.
void LaunchHelp(std::int32_t keyPressed, std::int32_t shift, bool windowHasActiveControl,
                const std::string& page, HelpHome home = HelpHome::InstallFolder);

}  // namespace vlclientui
#pragma GCC visibility pop
