#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "host/Compose.h"

namespace vlclientui::vlhost {

/// What the commands that go through a window share: a platform without a screen, set for this thread, whose
/// pages a command can act on as a person would.
class HeadlessSession {
 public:
  /// @throws RuntimeFailure when there is no installation.
  HeadlessSession();

  [[nodiscard]] const host::ComposedHost& host() const { return host_; }
  [[nodiscard]] headless::HeadlessToolkit& toolkit() const;
  [[nodiscard]] const headless::HeadlessSurfaceFactory& surfaces() const { return *surfaces_; }

  /// Puts on standard error what a person would have been told: the boxes that only inform, and failures.
  /// @returns whether there was anything to tell.
  bool tellMessages() const;

 private:
  host::ComposedHost host_;
  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces_;
};

/// On a command line a file may be named from where one stands. Any other reference stays as it is.
[[nodiscard]] std::string wholeReference(const std::string& reference);

/// The file that a person names, from the root on.
[[nodiscard]] std::filesystem::path wholePath(const std::string& file);

}  // namespace vlclientui::vlhost
