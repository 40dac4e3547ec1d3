#pragma once

#include <functional>
#include <string>

namespace vlclientui::test {

/// How a child process ended, and the text that its work returned; empty when it ended before that.
struct ChildResult {
  bool isKilled = false;
  std::string text;
};

/// Runs work in a child process, so that it may drop rights or be killed.
[[nodiscard]] ChildResult inChild(const std::function<std::string()>& work);

/// For a child: gives it a file system of its own of that size at a folder.
/// @returns why that is not possible here; empty when it was done.
[[nodiscard]] std::string mountSmallFileSystem(const std::string& folder, const std::string& size);
/// For a child: forbids writing there. @returns as above.
[[nodiscard]] std::string makeReadOnly(const std::string& folder);
/// For a child: an administrator becomes the user "nobody".
void dropRights();

}  // namespace vlclientui::test
