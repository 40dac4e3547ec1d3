#pragma once

#include <QImage>
#include <QString>
#include <vector>

#include "client/mapping/ServiceColors.h"
#include "client/mapping/Stretch.h"

namespace vlclientui::viewer {

/// A line of a legend: a patch of color, or a bar from one value to another, and what it means.
struct LegendLine {
  QImage colors;  ///< one row, from the lowest to the highest value; one pixel for a patch beside the text
  QString text;   ///< of what: "Red: band 4"; may be empty
  QString low;    ///< value at the bar's left end; empty for none
  QString high;

  [[nodiscard]] bool isPatch() const { return colors.width() == 1; }
};

/// What the colors of a service mean. @param words of the service; bands that are not among them are told by
/// number, and of many classes the first ones.
[[nodiscard]] std::vector<LegendLine> legendOf(const client::Stretch& stretch,
                                               const client::ServiceWords& words = {});

/// The name of a way to color, for a person.
[[nodiscard]] QString coloringName(client::Coloring coloring);
[[nodiscard]] QString rampName(client::Ramp ramp);
/// One row of so many pixels.
[[nodiscard]] QImage rampImage(client::Ramp ramp, int pixels);

}  // namespace vlclientui::viewer
