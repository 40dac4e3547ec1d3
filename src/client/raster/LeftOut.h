#pragma once

#include <string>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A file or folder that could not become a service, or part of one.
struct LeftOut {
  std::string path;    ///< native, UTF-8
  std::string reason;  ///< for a person

  /// Whether path and reason are equal.
  bool operator==(const LeftOut&) const = default;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
