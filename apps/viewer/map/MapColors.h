#pragma once

#include <QColor>

class QPalette;

namespace vlclientui::viewer {

/// Of what a map shows beside its services. Lines and texts lie on pictures of any color: each has ink and a
/// halo of the opposite lightness.
struct MapColors {
  QColor water;  ///< where no service lies
  QColor ink;    ///< of texts
  QColor halo;   ///< around them
  QColor line;   ///< of the graticule
  QColor sheet;  ///< behind texts that stand over the map
};

/// Light ones, or dark ones where the windows are dark.
[[nodiscard]] MapColors mapColorsBy(const QPalette& palette);

}  // namespace vlclientui::viewer
