#pragma once

#include <memory>
#include <source_location>
#include <string_view>

#include "documents/ParsedDocument.h"
#include "frame/ThreadState.h"

namespace vlclientui {

/// A new document of the thread's platform with what the text holds; empty, and told, when it does not parse.
[[nodiscard]] inline std::unique_ptr<XmlDocument> parsedDocument(
    std::string_view text, const RoutineName& routine = std::source_location::current()) {
  return parsedDocument(*currentPlatform().xml, text, routine);
}

}  // namespace vlclientui
