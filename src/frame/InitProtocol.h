#pragma once

#include <string>

#include "frame/ThreadState.h"

/// The steps of Init and the show guard that the dialog classes share.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The two generations of interfaces and of client objects: which kind of server client an Init takes.
enum class ClientGeneration { Older, Newer };

/// "Init was called" and "Init succeeded", told apart on purpose.
struct InitFlags {
  bool called = false;
  bool succeeded = false;
};

[[nodiscard]] std::string missingDefinitionText(const std::string& path);
[[nodiscard]] std::string invalidDefinitionText(const std::string& path);

/// UserDataFolder from the documents folder; the paths of the definition files from the install folder.
void buildUserDataFolder();
void buildClientXADefPath();
void buildClientXfdefPath();

/// True when the object may be shown; otherwise `status` tells why not. The short text for a failed Init
/// replaces the long one that Init left: hosts rely on it.
[[nodiscard]] bool passesShowGuard(const InitFlags& flags, std::string& status);

}  // namespace vlclientui
#pragma GCC visibility pop
