#pragma once

#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

/// The help block: the name of the help file in every document that goes to the form engine, so that the
/// engine can find it. It is written in two ways that do not stand for each other: into a whole document, and
/// around a fragment.
namespace vlclientui {

/// Roots below which a whole document takes its block.
inline constexpr const char* vorlaneRoot = "//Vorlane";
inline constexpr const char* serviceMetadataRoot = "//Metadata";

/// Adds `X_DEF` below the root and `HELP_Path` to the root's first `X_DEF`. Nothing looks for a block that is
/// there already: a document that passes twice has a second, empty `X_DEF`, and its first holds two
/// `HELP_Path`. Nothing happens when there is no such root.
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
