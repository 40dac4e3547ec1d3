#pragma once

#include <memory>
#include <source_location>
#include <string>
#include <string_view>

#include "contracts/controls/Visit.h"
#include "documents/ParsedDocument.h"
#include "frame/ThreadState.h"

namespace vlclientui {

/// A new document of the thread's platform with what the text holds; empty, and told, when it does not parse.
/// A call out, so the text is copied: it may belong to a window that is filled anew meanwhile.
/// @throws WindowGone when the window of the visit under way went meanwhile.
[[nodiscard]] inline std::unique_ptr<XmlDocument> parsedDocument(
    std::string_view text, const RoutineName& routine = std::source_location::current()) {
  const std::string own(text);
  auto document = parsedDocument(*currentPlatform().xml, own, routine);
  Visit::lookAgain();
  return document;
}

}  // namespace vlclientui
