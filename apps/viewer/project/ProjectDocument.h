#pragma once

#include <filesystem>
#include <string>

#include "contracts/XmlDocument.h"
#include "viewer/project/Project.h"

/// Projects as XML; docs/projects.md describes it, and definitions/project.rng is its schema.
namespace vlclientui::viewer {

/// The ending of their files, with the point.
inline constexpr const char* projectEnding = ".VLProject";

/// Whether a file is named as a project.
[[nodiscard]] bool isProjectFile(const std::filesystem::path& file);

/// Writes the file whole or not at all. Files of services that lie below its folder are also told by their
/// way from there, so that both can be moved together.
/// @param file native. @throws RuntimeFailure when it cannot be written, or the properties of a service are
/// no XML document.
void saveProject(const Project& project, const XmlService& xml, const std::filesystem::path& file);

/// Files that are not where the project has them, but in the same place below its folder, are found there.
/// @param file native. @throws RuntimeFailure with why it is no project, for a person.
[[nodiscard]] Project openProject(const XmlService& xml, const std::filesystem::path& file);

}  // namespace vlclientui::viewer
