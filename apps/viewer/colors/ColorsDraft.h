#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/mapping/ServiceColors.h"

namespace vlclientui::viewer {

/// Where the lowest and the highest value of a band come from.
enum class SpanBy {
  Usual,  ///< 2 to 98 percent of a sample
  Whole,  ///< the smallest and the greatest of a sample
  Type,   ///< what the type can hold
};

/// What a person makes of a service's colors. Spans may need samples of bands that nobody has read yet: these
/// are missing until they are learned.
class ColorsDraft {
 public:
  /// @param chosen before; nothing where the service decided.
  ColorsDraft(client::ServiceColors colors, const std::optional<client::Stretch>& chosen);

  [[nodiscard]] const client::Stretch& stretch() const { return stretch_; }
  /// As the list keeps it: empty for what the service decides by itself.
  [[nodiscard]] std::string text() const;
  [[nodiscard]] const client::ServiceColors& colors() const { return colors_; }
  /// What is offered: classes only where the service has some, three bands where it has several.
  [[nodiscard]] std::vector<client::Coloring> colorings() const;
  /// How many bands are shown with a span of their own: 3, 1, or none.
  [[nodiscard]] std::size_t spans() const;
  [[nodiscard]] bool hasRamp() const { return stretch_.coloring == client::Coloring::Ramp; }
  [[nodiscard]] bool hasExaggeration() const { return stretch_.coloring == client::Coloring::Shading; }
  [[nodiscard]] std::size_t bandCount() const { return stretch_.shownBands().size(); }
  [[nodiscard]] bool mayUse(SpanBy by) const;

  /// Bands that come in get the span that services give them: bytes that of their type, others the usual one.
  void setColoring(client::Coloring coloring);
  /// @param place 0 to 2: red, green, blue, or 0 alone. @param band one of the service's.
  void setBand(std::size_t place, int band);
  void setSpan(std::size_t place, const client::ValueSpan& span);
  void setRamp(client::Ramp ramp) { stretch_.ramp = ramp; }
  /// @param lift above 0.
  void setLift(double lift) { stretch_.lift = lift; }
  void setExaggeration(double exaggeration) { stretch_.exaggeration = exaggeration; }
  void use(SpanBy by);
  void reset();

  /// Bands whose samples are wanted; empty most often.
  [[nodiscard]] std::vector<int> missing() const;
  void learn(const std::vector<int>& bands, const std::vector<client::BandSpread>& spreads);

 private:
  [[nodiscard]] const client::ServiceBand* bandOf(int number) const;
  [[nodiscard]] std::optional<client::ValueSpan> spanFor(int band, SpanBy by) const;
  [[nodiscard]] SpanBy firstSpanOf(int band) const;
  void want(std::size_t place, SpanBy by);
  void settle();

  client::ServiceColors colors_;
  client::Stretch stretch_;
  std::map<int, client::BandSpread> spreads_;
  std::array<std::optional<SpanBy>, 3> wanted_;
};

}  // namespace vlclientui::viewer
