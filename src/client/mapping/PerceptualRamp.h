#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace vlclientui::client {

/// A color by its lightness (0 to 100) and its place between green and red (a) and blue and yellow (b):
/// CIELAB of CIE 15:2018, white point D65.
struct LabColor {
  double lightness = 0;
  double a = 0;
  double b = 0;
};

/// In sRGB (IEC 61966-2-1), brought within what a screen shows: red, green, blue.
[[nodiscard]] std::array<std::uint8_t, 3> screenColor(const LabColor& color);
[[nodiscard]] LabColor labColor(const std::array<std::uint8_t, 3>& color);

/// Between stops at even distances. Where their lightness grows evenly, equal steps of a value look equally
/// large. @param stops two at least. @param share 0 to 1.
[[nodiscard]] LabColor colorBetween(std::span<const LabColor> stops, double share);

}  // namespace vlclientui::client
