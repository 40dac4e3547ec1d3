#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "contracts/Platform.h"
#include "viewer/project/Project.h"

namespace vlclientui::viewer {

/// The project that comes back at the next start, in a file that is there whole or not at all. For one thread
/// at a time.
class SessionFile {
 public:
  /// @param file native. What a program that died has left half written beside it is taken away.
  SessionFile(std::shared_ptr<const Platform> platform, std::filesystem::path file);

  /// Makes the folder. @returns why it cannot be kept, for a person; empty when it is.
  [[nodiscard]] std::string keep(const Project& project) const;
  struct Found {
    std::optional<Project> project;  ///< nothing where there is none, or it cannot be used
    std::string problem;             ///< why it cannot, and where it stays
    bool mayBeReplaced = true;  ///< by the next one; not where it cannot be used, but cannot be put aside
  };
  [[nodiscard]] Found find() const;

  [[nodiscard]] const std::filesystem::path& path() const { return file_; }

 private:
  void tidy() const;
  [[nodiscard]] std::filesystem::path aside() const;

  std::shared_ptr<const Platform> platform_;
  std::filesystem::path file_;
};

}  // namespace vlclientui::viewer
