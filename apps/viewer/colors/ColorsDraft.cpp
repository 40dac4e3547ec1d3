#include "viewer/colors/ColorsDraft.h"

#include <algorithm>
#include <utility>

namespace vlclientui::viewer {

using client::Coloring;
using client::ServiceBand;
using client::ValueSpan;

ColorsDraft::ColorsDraft(client::ServiceColors colors, const std::optional<client::Stretch>& chosen)
    : colors_(std::move(colors)), stretch_(chosen.value_or(colors_.decided)) {}

std::string ColorsDraft::text() const {
  return stretch_ == colors_.decided ? std::string() : client::stretchText(stretch_);
}

std::vector<Coloring> ColorsDraft::colorings() const {
  std::vector<Coloring> offered;
  if (colors_.hasClasses) offered.push_back(Coloring::Palette);
  if (colors_.bands.size() > 1) offered.push_back(Coloring::Colors);
  for (const auto always : {Coloring::Ramp, Coloring::Relief, Coloring::Deviations, Coloring::Shading}) {
    offered.push_back(always);
  }
  // What a project tells is shown even so.
  if (std::ranges::find(offered, stretch_.coloring) == offered.end()) offered.push_back(stretch_.coloring);
  return offered;
}

std::size_t ColorsDraft::spans() const {
  if (stretch_.coloring == Coloring::Palette || stretch_.coloring == Coloring::Shading) return 0;
  return bandCount();
}

const ServiceBand* ColorsDraft::bandOf(int number) const {
  const auto found = std::ranges::find(colors_.bands, number, &ServiceBand::number);
  return found == colors_.bands.end() ? nullptr : &*found;
}

std::optional<ValueSpan> ColorsDraft::spanFor(int band, SpanBy by) const {
  if (by == SpanBy::Type) {
    const ServiceBand* const told = bandOf(band);
    return told != nullptr ? told->typeSpan : std::nullopt;
  }
  const auto found = spreads_.find(band);
  if (found == spreads_.end()) return std::nullopt;
  return by == SpanBy::Usual ? found->second.usual : found->second.whole;
}

bool ColorsDraft::mayUse(SpanBy by) const {
  if (spans() == 0) return false;
  if (by != SpanBy::Type) return true;
  return std::ranges::all_of(stretch_.shownBands(),
                             [this](int band) { return spanFor(band, SpanBy::Type).has_value(); });
}

void ColorsDraft::setColoring(Coloring coloring) {
  if (coloring == stretch_.coloring) return;
  const std::size_t before = spans();
  stretch_.coloring = coloring;
  if (coloring == colors_.decided.coloring) {
    stretch_ = colors_.decided;
    return;
  }
  if (coloring == Coloring::Colors) {
    for (std::size_t place = 0; place < 3; ++place)
      stretch_.bands[place] = colors_.bands[std::min(place, colors_.bands.size() - 1)].number;
  }
  if (spans() == before && !stretch_.isRelief()) return;
  for (std::size_t place = 0; place < spans(); ++place) want(place, firstSpanOf(stretch_.bands[place]));
  settle();
}

void ColorsDraft::setBand(std::size_t place, int band) {
  if (stretch_.bands[place] == band) return;
  stretch_.bands[place] = band;
  if (place < spans()) want(place, firstSpanOf(band));
  settle();
}

void ColorsDraft::setSpan(std::size_t place, const ValueSpan& span) {
  stretch_.lowest[place] = span.low;
  stretch_.highest[place] = span.high;
  wanted_[place].reset();
}

void ColorsDraft::use(SpanBy by) {
  for (std::size_t place = 0; place < spans(); ++place) want(place, by);
  settle();
}

// As services decide: bytes are shown as they are.
SpanBy ColorsDraft::firstSpanOf(int band) const {
  constexpr ValueSpan bytes{0, 255};
  const bool isByte = spanFor(band, SpanBy::Type) == bytes;
  return isByte && !stretch_.isRelief() ? SpanBy::Type : SpanBy::Usual;
}

void ColorsDraft::want(std::size_t place, SpanBy by) { wanted_[place] = by; }

void ColorsDraft::settle() {
  for (std::size_t place = 0; place < wanted_.size(); ++place) {
    if (!wanted_[place] || place >= spans()) continue;
    const auto span = spanFor(stretch_.bands[place], *wanted_[place]);
    if (span) setSpan(place, *span);
  }
  // Relief without the steepness of its ground would be flat.
  const auto known = spreads_.find(stretch_.bands[0]);
  if (!stretch_.isRelief() || known == spreads_.end()) return;
  stretch_.steepness = known->second.steepness;
  stretch_.roughness = known->second.roughness;
}

void ColorsDraft::reset() {
  stretch_ = colors_.decided;
  wanted_ = {};
}

std::vector<int> ColorsDraft::missing() const {
  std::vector<int> bands;
  for (std::size_t place = 0; place < spans(); ++place) {
    const int band = stretch_.bands[place];
    const bool isSampled = !wanted_[place] || *wanted_[place] == SpanBy::Type || spreads_.contains(band);
    if (!isSampled && std::ranges::find(bands, band) == bands.end()) bands.push_back(band);
  }
  return bands;
}

void ColorsDraft::learn(const std::vector<int>& bands, const std::vector<client::BandSpread>& spreads) {
  for (std::size_t i = 0; i < std::min(bands.size(), spreads.size()); ++i) spreads_[bands[i]] = spreads[i];
  settle();
}

}  // namespace vlclientui::viewer
