#include "client/mapping/PerceptualRamp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vlclientui::client {
namespace {

using Three = std::array<double, 3>;

constexpr Three white = {0.95047, 1.0, 1.08883};
constexpr double bend = 6.0 / 29;

double cubeRoot(double share) {
  return share > bend * bend * bend ? std::cbrt(share) : share / (3 * bend * bend) + 4.0 / 29;
}

double cube(double root) { return root > bend ? root * root * root : 3 * bend * bend * (root - 4.0 / 29); }

double linear(std::uint8_t byte) {
  const double share = byte / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

std::uint8_t byteOf(double light) {
  const double inside = std::clamp(light, 0.0, 1.0);
  const double share = inside <= 0.0031308 ? 12.92 * inside : 1.055 * std::pow(inside, 1 / 2.4) - 0.055;
  return static_cast<std::uint8_t>(255 * share + 0.5);
}

}  // namespace

std::array<std::uint8_t, 3> screenColor(const LabColor& color) {
  const double middle = (color.lightness + 16) / 116;
  const Three xyz = {white[0] * cube(middle + color.a / 500), white[1] * cube(middle),
                     white[2] * cube(middle - color.b / 200)};
  return {byteOf(3.2404542 * xyz[0] - 1.5371385 * xyz[1] - 0.4985314 * xyz[2]),
          byteOf(-0.9692660 * xyz[0] + 1.8760108 * xyz[1] + 0.0415560 * xyz[2]),
          byteOf(0.0556434 * xyz[0] - 0.2040259 * xyz[1] + 1.0572252 * xyz[2])};
}

LabColor labColor(const std::array<std::uint8_t, 3>& color) {
  const Three rgb = {linear(color[0]), linear(color[1]), linear(color[2])};
  const double x = cubeRoot((0.4124564 * rgb[0] + 0.3575761 * rgb[1] + 0.1804375 * rgb[2]) / white[0]);
  const double y = cubeRoot((0.2126729 * rgb[0] + 0.7151522 * rgb[1] + 0.0721750 * rgb[2]) / white[1]);
  const double z = cubeRoot((0.0193339 * rgb[0] + 0.1191920 * rgb[1] + 0.9503041 * rgb[2]) / white[2]);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

LabColor colorBetween(std::span<const LabColor> stops, double share) {
  const double at = std::clamp(share, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
  const auto below = std::min(static_cast<std::size_t>(at), stops.size() - 2);
  const double rest = at - static_cast<double>(below);
  const auto mixed = [&](double LabColor::*part) {
    return stops[below].*part + (stops[below + 1].*part - stops[below].*part) * rest;
  };
  return {mixed(&LabColor::lightness), mixed(&LabColor::a), mixed(&LabColor::b)};
}

}  // namespace vlclientui::client
