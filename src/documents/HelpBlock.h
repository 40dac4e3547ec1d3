#pragma once

#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

/// The help block: it names the help file inside a document for the form engine, so that the engine can find
/// it. Two ways to write it, not interchangeable: into a whole document, and around a fragment.
namespace vlclientui {

/// Roots below which a whole document takes its block.
inline constexpr const char* vorlaneRoot = "//Vorlane";
inline constexpr const char* serviceMetadataRoot = "//Metadata";

/// Adds `X_DEF` below the root and `HELP_Path` to the root's first `X_DEF`. An existing block is not looked
/// for: a document that passes twice has a second, empty `X_DEF`, and its first holds two `HELP_Path`. A
/// document without the root stays as it is.
void addHelpBlock(XmlDocument& document, const std::string& rootPath = vorlaneRoot);

/// The same on a text: parsed, changed and written again. A text that does not parse, or lacks the root,
/// comes back as it was.
[[nodiscard]] std::string withHelpBlock(const XmlService& service, std::string document,
                                        const std::string& rootPath = vorlaneRoot);

/// A document with the help block at its head around the outer XML of a fragment.
[[nodiscard]] std::string helpDocumentAround(std::string_view fragment);

/// A document without help block around the outer XML of a fragment; for form definitions.
[[nodiscard]] std::string plainDocumentAround(std::string_view fragment);

}  // namespace vlclientui
