#pragma once

#include <cstddef>
#include <string>

namespace vlclientui::client {

/// From then on each driver of the raster library that is registered asks, on threads with a ReachScope,
/// whether it may open what it is to open. All others that share the library see nothing of it. Done once.
void guardDrivers();

/// While one lives on this thread, files lead only where a person pointed. Scopes nest.
class ReachScope {
 public:
  ReachScope();
  ~ReachScope();
  ReachScope(const ReachScope&) = delete;
  ReachScope& operator=(const ReachScope&) = delete;

  [[nodiscard]] static bool isActive();
};

/// How often something was refused on this thread.
[[nodiscard]] std::size_t refusalsOfThread();

/// A name that this library opens by itself, because a person chose it: it is no stranger's, and what lies
/// around it may be opened from then on. Names of parts of files come from these files, so they are looked at
/// as all others. Stands on this thread while the name is opened.
class ChosenName {
 public:
  explicit ChosenName(const std::string& name);
  ~ChosenName();
  ChosenName(const ChosenName&) = delete;
  ChosenName& operator=(const ChosenName&) = delete;

 private:
  const std::string* former_;
};

}  // namespace vlclientui::client
