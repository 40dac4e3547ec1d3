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

/// For a child: an administrator becomes the user "nobody".
void dropRights();

}  // namespace vlclientui::test
