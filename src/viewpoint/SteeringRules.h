#pragma once

#include <functional>
#include <utility>

namespace vlclientui {

/// All that differs between the two windows that steer a viewpoint; the rest is ViewPointSteering.
struct SteeringRules {
  /// How a number stands in gViewPointX and gViewPointY.
  enum class PublishedNumbers { WithPoint, AsInTheBoxes };
  /// What the loss of the focus and the unload of the window do.
  enum class WhenLeft { Publishes, StaysSilent };
  /// An OK button makes the separator "." in the boxes, publishes them and unloads the window.
  enum class OkButton { None, Present };

  const char* formName;
  const char* caption;
  PublishedNumbers publishedNumbers;
  WhenLeft whenLeft;
  OkButton okButton;
  /// Called at the start of each publication.
  std::function<void()> announce;
};

/// The page that a host embeds. @param announce raises its event.
[[nodiscard]] inline SteeringRules pageRules(std::function<void()> announce) {
  return {.formName = "ViewPoint",
          .caption = "View Point",
          .publishedNumbers = SteeringRules::PublishedNumbers::WithPoint,
          .whenLeft = SteeringRules::WhenLeft::Publishes,
          .okButton = SteeringRules::OkButton::None,
          .announce = std::move(announce)};
}

/// The modal window. It has no event, and closed by its frame it leaves the separator of the locale behind.
[[nodiscard]] inline SteeringRules dialogRules() {
  return {.formName = "ViewPointDialogForm",
          .caption = "ViewPoint",
          .publishedNumbers = SteeringRules::PublishedNumbers::AsInTheBoxes,
          .whenLeft = SteeringRules::WhenLeft::StaysSilent,
          .okButton = SteeringRules::OkButton::Present,
          .announce = [] {}};
}

}  // namespace vlclientui
