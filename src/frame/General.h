#pragma once

#include <cstdint>
#include <string>

#include "contracts/System.h"

/// What all windows share: operating-system calls, folders, definition files and help. Paths are those of the
/// rules: drives and backslashes.
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

/// Below the documents folder, where the settings file stands.
inline constexpr const char* userDataFolderTail = "\\Ostrel\\Vor Lane";

/// @returns the folder, or an empty string for any kind but 0, 1 and 15.
[[nodiscard]] std::string GetInstallFolder(std::int32_t kind);

/// @returns the folder up to the first NUL of the system's answer, or an empty string on failure.
[[nodiscard]] std::string GetSpecialFolder(std::int32_t folderId);

/// Makes every folder up to the last separator. @param path when it does not end in a backslash, blank,
/// backslash, blank are appended to it, in the caller's string too. The form is deliberate: the system
/// call takes what stands before the last separator, and the blanks mean nothing to it.
/// @returns whether the system call succeeded.
bool CreatePath(std::string& path);

/// False also for any error.
[[nodiscard]] bool FolderExist(const std::string& path);
/// True when the length can be read and is not negative; an empty file exists.
[[nodiscard]] bool FileExist(const std::string& path);

/// A string (type 1, cut at its first NUL) or a number (type 4, in decimal); anything else, or a failed
/// query, is the default. The key is closed in every case.
[[nodiscard]] std::string ReadRegistryValue(RegistryHive hive, const std::string& key,
                                            const std::string& valueName,
                                            const std::string& defaultValue = {});

/// The user's decimal separator; `separator` keeps its value when the system gives no terminated text.
void readLocaleDecimalSeparator(std::string& separator);

/// Where the help file's home comes from.
enum class HelpHome { InstallFolder, Registry };

/// Opens the help at a page when Ctrl+F1 was pressed, exactly so. Nothing for any other key, and nothing
/// while no control of the window holds the focus.
void LaunchHelp(std::int32_t keyPressed, std::int32_t shift, bool windowHasActiveControl,
                const std::string& page, HelpHome home = HelpHome::InstallFolder);

}  // namespace vlclientui
