#include "client/mapping/Stretch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

#include "client/raster/Text.h"
#include "documents/DecimalText.h"

namespace vlclientui::client {
namespace {

constexpr std::array<std::string_view, 6> coloringNames = {"palette", "colors",     "ramp",
                                                           "relief",  "deviations", "shading"};
constexpr std::array<std::string_view, 8> rampNames = {"gray",     "ground", "heat",   "water",
                                                       "spectrum", "dusk",   "lagoon", "ice"};

template <class Numbers>
std::string listText(const Numbers& numbers) {
  std::string text;
  for (const auto number : numbers)
    text += (text.empty() ? "" : ",") + numberText(static_cast<double>(number));
  return text;
}

std::optional<std::vector<double>> numbersOf(const std::string& text) {
  std::vector<double> numbers;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, ',');) {
    const auto number = readDecimal(part);
    if (!number || !std::isfinite(*number)) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

std::optional<std::size_t> indexOf(std::span<const std::string_view> names, const std::string& name) {
  const auto found = std::ranges::find(names, name);
  if (found == names.end()) return std::nullopt;
  return static_cast<std::size_t>(found - names.begin());
}

bool takeThree(std::array<double, 3>& to, const std::vector<double>& numbers) {
  if (numbers.size() != to.size()) return false;
  std::ranges::copy(numbers, to.begin());
  return true;
}

bool takeBands(std::array<int, 3>& to, const std::vector<double>& numbers) {
  constexpr double most = 65535;
  const auto isBand = [](double number) {
    return number >= 1 && number <= most && number == std::floor(number);
  };
  if (numbers.size() != to.size() || !std::ranges::all_of(numbers, isBand)) return false;
  std::ranges::transform(numbers, to.begin(), [](double number) { return static_cast<int>(number); });
  return true;
}

bool takeOne(double& to, const std::vector<double>& numbers, double least, double most) {
  if (numbers.size() != 1 || numbers.front() < least || numbers.front() > most) return false;
  to = numbers.front();
  return true;
}

bool takeNumbers(Stretch& stretch, const std::string& name, const std::string& value) {
  constexpr double anything = 1e300;
  const auto numbers = numbersOf(value);
  if (!numbers) return false;
  if (name == "bands") return takeBands(stretch.bands, *numbers);
  if (name == "lowest") return takeThree(stretch.lowest, *numbers);
  if (name == "highest") return takeThree(stretch.highest, *numbers);
  if (name == "lift") return takeOne(stretch.lift, *numbers, 0.01, 100);
  if (name == "steepness") return takeOne(stretch.steepness, *numbers, 0, anything);
  if (name == "exaggeration") return takeOne(stretch.exaggeration, *numbers, 1e-6, 1e6);
  return takeOne(stretch.roughness, *numbers, 0, 1);
}

bool takeField(Stretch& stretch, const std::string& name, const std::string& value) {
  constexpr std::array<std::string_view, 7> numeric = {"bands",     "lowest",    "highest",     "lift",
                                                       "steepness", "roughness", "exaggeration"};
  if (name == "coloring") {
    const auto found = indexOf(coloringNames, value);
    if (found) stretch.coloring = static_cast<Coloring>(*found);
    return found.has_value();
  }
  if (name == "ramp") {
    const auto found = indexOf(rampNames, value);
    if (found) stretch.ramp = static_cast<Ramp>(*found);
    return found.has_value();
  }
  return std::ranges::find(numeric, name) == numeric.end() || takeNumbers(stretch, name, value);
}

}  // namespace

std::vector<int> Stretch::shownBands() const {
  if (coloring == Coloring::Colors) return {bands.begin(), bands.end()};
  return {bands.front()};
}

std::string stretchText(const Stretch& stretch) {
  return "coloring=" + std::string(coloringNames[static_cast<std::size_t>(stretch.coloring)]) +
         " bands=" + listText(stretch.bands) + " lowest=" + listText(stretch.lowest) +
         " highest=" + listText(stretch.highest) + " lift=" + numberText(stretch.lift) +
         " ramp=" + std::string(rampNames[static_cast<std::size_t>(stretch.ramp)]) +
         " steepness=" + numberText(stretch.steepness) + " roughness=" + numberText(stretch.roughness) +
         " exaggeration=" + numberText(stretch.exaggeration);
}

std::optional<Stretch> stretchOf(const std::string& text) {
  Stretch stretch;
  std::istringstream stream(text);
  for (std::string field; stream >> field;) {
    const std::size_t equals = field.find('=');
    if (equals == std::string::npos) return std::nullopt;
    if (!takeField(stretch, field.substr(0, equals), field.substr(equals + 1))) return std::nullopt;
  }
  return stretch;
}

}  // namespace vlclientui::client
