#pragma once

#include <QString>
#include <string>

namespace vlclientui::qgis {

/// By this name QGIS knows the provider, in its projects too.
inline constexpr auto providerKey = "vlclientui";

/// What a layer shows of a service.
enum class LayerContent {
  Colors,  ///< one band of colors, as the service draws itself
  Values,  ///< the bands as they are stored, for QGIS's own styles and computations
};

/// Which service a layer shows, and how: all that a project keeps of it.
struct LayerSource {
  std::string reference;        ///< of the service
  std::string properties = {};  ///< a service properties document; empty for the service's own
  LayerContent content = LayerContent::Colors;

  bool operator==(const LayerSource&) const = default;
};

/// The layer's source as QGIS keeps it: "reference=...&content=...&properties=...", each percent-encoded, so
/// that QGIS takes nothing in it for a path.
[[nodiscard]] QString sourceText(const LayerSource& source);

/// A text without such a beginning is a reference alone.
[[nodiscard]] LayerSource layerSourceOf(const QString& text);

}  // namespace vlclientui::qgis
