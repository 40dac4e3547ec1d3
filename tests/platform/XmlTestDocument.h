#pragma once

#include <memory>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/LibXmlService.h"

namespace vlclientui::platform {

inline std::unique_ptr<XmlDocument> emptyDocument() {
  return LibXmlService(PathTranslation("/nonexistent-home")).createDocument();
}

inline std::unique_ptr<XmlDocument> parsed(std::string_view text) {
  std::unique_ptr<XmlDocument> document = emptyDocument();
  EXPECT_TRUE(document->loadXml(text)) << text.substr(0, 200);
  return document;
}

inline bool loads(std::string_view text) {
  const std::unique_ptr<XmlDocument> document = emptyDocument();
  const bool isLoaded = document->loadXml(text);
  EXPECT_EQ(isLoaded, document->documentElement() != nullptr);
  EXPECT_EQ(isLoaded, !document->xml().empty());
  return isLoaded;
}

/// What a text becomes by loading and writing it.
inline std::string rewritten(std::string_view text) { return parsed(text)->xml(); }

}  // namespace vlclientui::platform
