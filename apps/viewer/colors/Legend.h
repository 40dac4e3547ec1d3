#pragma once

#include <QImage>
#include <QString>
#include <vector>

#include "client/mapping/Stretch.h"

namespace vlclientui::viewer {

/// A line of a legend: a patch of color, or a bar from one value to another, and what it means.
struct LegendLine {
  QImage colors;  ///< one row, from the lowest to the highest value; one pixel for a plain patch
  QString text;   ///< of what: "Red: band 4"; may be empty
  QString low;    ///< value at the bar's left end; empty for none
  QString high;
};

/// What the colors of a service mean. @param bandNames of bands by their number, from 1; those that are not
/// there are told by number.
[[nodiscard]] std::vector<LegendLine> legendOf(const client::Stretch& stretch,
                                               const std::vector<QString>& bandNames = {});

/// The name of a way to color, for a person.
[[nodiscard]] QString coloringName(client::Coloring coloring);
[[nodiscard]] QString rampName(client::Ramp ramp);
/// One row of so many pixels.
[[nodiscard]] QImage rampImage(client::Ramp ramp, int pixels);

}  // namespace vlclientui::viewer
