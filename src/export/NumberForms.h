#pragma once

/// Pictures of the boxes; "." stands for the user's decimal separator. No digit is forced before it: 0.5
/// shows as ".500".
namespace vlclientui::numberForm {

// Left coordinates below 360 count as degrees, all others as ground units.
inline constexpr const char* degreeExtent = "###.000000000";
inline constexpr const char* degreePixel = "###.000000000000";
inline constexpr const char* groundExtent = "###.000";
inline constexpr const char* groundPixel = "###.0000";

[[nodiscard]] inline const char* ofExtent(bool degrees) { return degrees ? degreeExtent : groundExtent; }
[[nodiscard]] inline const char* ofPixels(bool degrees) { return degrees ? degreePixel : groundPixel; }

// Size estimates above 10, and between 1 and 10.
inline constexpr const char* wholeEstimate = "###";
inline constexpr const char* tenthEstimate = "###.0";

}  // namespace vlclientui::numberForm
