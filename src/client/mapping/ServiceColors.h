#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/mapping/Stretch.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct Drawing;

/// Two values, the lower one first.
struct ValueSpan {
  /// The lower one.
  double low = 0;
  /// The higher one.
  double high = 1;

  /// Whether both ends are equal.
  bool operator==(const ValueSpan&) const = default;
};

/// A band that a service can show.
struct ServiceBand {
  int number = 1;                          ///< as in Stretch::bands
  std::string name;                        ///< the raster's own words for it, else its color or "Band 2"
  std::optional<ValueSpan> typeSpan = {};  ///< what its type can hold; nothing for numbers with a fraction
};

/// Pixels of one value, with a color of their own.
struct ServiceClass {
  /// The value of its pixels.
  int value = 0;
  std::array<std::uint8_t, 4> color{};  ///< red, green, blue, opacity
  std::string name;                     ///< the raster's own word for it; may be empty

  /// Whether value, color and name are equal.
  bool operator==(const ServiceClass&) const = default;
};

/// What there is to be seen of a service, in words.
struct ServiceWords {
  std::vector<ServiceBand> bands = {};  ///< empty only where nothing is known
  /// Those that have names; where none has, all whose colors the raster tells.
  std::vector<ServiceClass> classes = {};
};

/// @throws RuntimeFailure when the service cannot be read.
[[nodiscard]] ServiceWords serviceWordsOf(const Drawing& drawing);

/// What a person chooses a service's colors from.
struct ServiceColors : ServiceWords {
  bool hasClasses = false;  ///< with colors of their own
  Stretch decided;          ///< how it looks by itself
};

/// Reads for some hundredths of a second; not for the thread of a window.
/// @returns nothing when the work of this thread was given up.
/// @throws RuntimeFailure when the service cannot be read.
[[nodiscard]] std::optional<ServiceColors> serviceColorsOf(const Drawing& drawing);

/// What a sample of all of a band holds.
struct BandSpread {
  ValueSpan usual;       ///< 2 to 98 percent of the values
  ValueSpan whole;       ///< the smallest and the greatest
  double steepness = 0;  ///< as Stretch has them
  /// As Stretch has it.
  double roughness = 1;
};

/// Reads a sample of the service. @param drawing of the service. @param bands of those that the service can
/// show. @returns one for each; nothing when the work of this thread was given up. @throws RuntimeFailure
/// when the service cannot be read.
[[nodiscard]] std::optional<std::vector<BandSpread>> spreadsOf(const Drawing& drawing,
                                                               const std::vector<int>& bands);

}  // namespace vlclientui::client
#pragma GCC visibility pop
