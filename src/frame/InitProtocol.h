#pragma once

#include <string>

#include "frame/ThreadState.h"

/// The steps of Init and the show guard that the dialog classes share.
namespace vlclientui {

/// "Init was called" and "Init succeeded", told apart on purpose.
struct InitFlags {
  bool called = false;
  bool succeeded = false;
};

[[nodiscard]] std::string missingDefinitionText(const std::string& path);
[[nodiscard]] std::string invalidDefinitionText(const std::string& path);

/// UserDataFolder from the documents folder; ClientXADefPath from the install folder.
void buildUserDataFolder();
void buildClientXADefPath();

/// True when the object may be shown; otherwise `status` tells why not. The short text for a failed Init
/// replaces the long one that Init left: hosts rely on it.
[[nodiscard]] bool passesShowGuard(const InitFlags& flags, std::string& status);

}  // namespace vlclientui
