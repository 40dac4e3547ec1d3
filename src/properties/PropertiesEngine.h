#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "contracts/Plexa.h"

/// The engine that draws the properties of a service in a frame: showing it, keeping the viewpoint button in
/// step with the mosaic method, releasing it.
namespace vlclientui {

/// The inputs of the engine.
struct PropertiesPage {
  std::string attributeDefinition;
  std::string formDefinition;
  std::string data;
  std::string rootPath = "//";
};

/// Place of the engine in its frame, pixels.
struct EnginePlace {
  WindowHandle frame = 0;
  std::int32_t top = 0;
  std::int32_t left = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// What to do with a page that has neither definitions nor data.
enum class EmptyPage { Shown, LeftBlank };

using NotifyHandler = std::function<void(Plexa&, const PlexaEvent&)>;

/// Replaces the engine and shows the page, then enables the viewpoint button if the mosaic method asks for
/// it.
/// @returns false when the engine could not show the page, or an empty one was left blank.
bool showPropertiesPage(std::shared_ptr<Plexa>& engine, const PropertiesPage& page, const EnginePlace& place,
                        EmptyPage emptyPage, const NotifyHandler& notify);

/// The person picked a mosaic method: enables or disables the viewpoint button.
void followMosaicMethod(Plexa& engine, const std::string& method);

}  // namespace vlclientui
