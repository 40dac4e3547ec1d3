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
  std::string stretch = {};  ///< chosen for its colors, as client::stretchText; empty where it decides

  bool operator==(const LayerSource&) const = default;
};

/// The layer's source as QGIS keeps it. That of a local file begins with its path as it is, which QGIS itself
/// makes relative to the project, layer definition or project around it, and finds again from there:
/// "/folder/file.VLDef|vlclientui&content=...&stretch=...&properties=...". Others are
/// "reference=...&content=..." and so on. All but the path is percent-encoded, so that QGIS takes nothing
/// else for one.
[[nodiscard]] QString sourceText(const LayerSource& source);

/// Reads both. Another text is a reference alone.
[[nodiscard]] LayerSource layerSourceOf(const QString& text);

/// The local file of a service, whole; empty for one of a server.
[[nodiscard]] QString localFileOf(const LayerSource& source);
/// The same service in another local file.
[[nodiscard]] LayerSource withLocalFile(LayerSource source, const QString& file);

}  // namespace vlclientui::qgis
