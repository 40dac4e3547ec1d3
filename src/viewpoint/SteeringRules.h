#pragma once

#include <functional>
#include <utility>

namespace vlclientui {

/// All that differs between the two windows that steer a viewpoint. ViewPointSteering has everything else.
struct SteeringRules {
  /// The separator of numbers in gViewPointX and gViewPointY.
  enum class PublishedNumbers { WithPoint, AsInTheBoxes };
  /// What losing the focus and unloading the window do.
  enum class WhenLeft { Publishes, StaysSilent };
  /// An OK button changes the separator in the boxes to ".", publishes them and unloads the window.
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

/// The modal window. It has no event; closed by its frame, it leaves the locale's separator in what it
/// published.
[[nodiscard]] inline SteeringRules dialogRules() {
  return {.formName = "ViewPointDialogForm",
          .caption = "ViewPoint",
          .publishedNumbers = SteeringRules::PublishedNumbers::AsInTheBoxes,
          .whenLeft = SteeringRules::WhenLeft::StaysSilent,
          .okButton = SteeringRules::OkButton::Present,
          .announce = [] {}};
}

}  // namespace vlclientui
