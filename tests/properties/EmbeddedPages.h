#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/PropertiesFixture.h"

/// What the tests of pages, of their closing and of the modal windows share.
namespace vlclientui::test {

inline constexpr auto metadata = PropertyPageId::PropertyPageMetadata;
inline constexpr auto properties = PropertyPageId::PropertyPageProperties;
inline constexpr auto viewPoint = PropertyPageId::PropertyPageViewPoint;
inline constexpr auto noPage = static_cast<PropertyPageId>(7);
inline constexpr PropertyPageId allPages[] = {metadata, properties, viewPoint};

inline constexpr const char* neverInitialized = "Cannot show without initializing the object";
inline constexpr const char* initFailed = "Initialization failed";

/// A dialog object with documents given by the host, and a window to embed pages in.
class EmbeddedPages : public PropertiesFixture {
 protected:
  EmbeddedPages() {
    newer()->serviceInfoXml("<Info/>");
    newer()->MetaDataXml("<Meta/>");
    newer()->ImageMetaDataXml("<Image/>");
  }

  [[nodiscard]] const std::vector<std::string>& calls() const { return toolkit->calls; }
  Boolean16 show(PropertyPageId page) { return older()->ShowPropertyPage(page, host); }
  /// Calls of the toolkit from the query of the host's window to the show of the page.
  [[nodiscard]] std::vector<std::string> embedding(PropertyPageId page) {
    toolkit->calls.clear();
    EXPECT_EQ(show(page), boolean16True) << status();
    const auto& all = calls();
    const auto begin = std::ranges::find(all, "windowRect host");
    auto end = std::ranges::find_if(all, [](const auto& call) { return call.starts_with("showWindow"); });
    if (end != all.end()) ++end;
    return {begin, end};
  }
  /// What the toolkit was told of that form since the last clear.
  [[nodiscard]] std::vector<std::string> callsOn(const std::string& form) const {
    std::vector<std::string> found;
    std::ranges::copy_if(calls(), std::back_inserter(found),
                         [&form](const auto& call) { return call.find(form) != std::string::npos; });
    return found;
  }
  void close(PropertyPageId page) {
    toolkit->calls.clear();
    EXPECT_EQ(older()->Close(page), boolean16True);
  }
  [[nodiscard]] Form& formOf(PropertyPageId page) const {
    if (page == metadata) return dialog->metadataPage();
    if (page == properties) return dialog->propertiesPage();
    return dialog->viewPointPage();
  }

  WindowHandle host = toolkit->addNamedWindow("host", {0, 0, 640, 480});
};

}  // namespace vlclientui::test
