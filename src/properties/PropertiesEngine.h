#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "contracts/Plexa.h"

/// The engine that draws the properties of a service in a frame: how it is shown, how the button of the
/// viewpoint follows the mosaic method, how it is let go.
namespace vlclientui {

/// What the engine is given.
struct PropertiesPage {
  std::string attributeDefinition;
  std::string formDefinition;
  std::string data;
  std::string rootPath = "//";
};

/// Where the engine stands in its frame, pixels.
struct EnginePlace {
  WindowHandle frame = 0;
  std::int32_t top = 0;
  std::int32_t left = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// What becomes of a page without definitions and data.
enum class EmptyPage { Shown, LeftBlank };

using NotifyHandler = std::function<void(Plexa&, const PlexaEvent&)>;

/// Takes the engine out of its window and lets it go. Nothing without one.
void detachAndRelease(std::shared_ptr<Plexa>& engine);

/// Puts a new engine in place of an old one and shows the page; then the button of the viewpoint stands as
/// the mosaic method wants it.
/// @returns false when the engine could not show the page, or an empty one was left blank.
bool showPropertiesPage(std::shared_ptr<Plexa>& engine, const PropertiesPage& page, const EnginePlace& place,
                        EmptyPage emptyPage, const NotifyHandler& notify);

/// The person picked a mosaic method: the button of the viewpoint is enabled, or disabled.
void followMosaicMethod(Plexa& engine, const std::string& method);

}  // namespace vlclientui
