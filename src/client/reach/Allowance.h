#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vlclientui::client {

/// What a person lets files lead to besides the places that were opened, by the environment:
/// VLCLIENTUI_ALLOW_OUTSIDE: absolute folders, the word "addresses" and "*" for all, with ":" between them;
/// VLCLIENTUI_DRIVERS_OFF, VLCLIENTUI_DRIVERS_ON: names of drivers of the raster library, with "," between
/// them.
struct Allowance {
  std::vector<std::filesystem::path> folders = {};  ///< with all below them
  bool addresses = false;  ///< files may lead to servers, and drivers that ask servers are on
  bool everything = false;
  std::vector<std::string> driversOff = {};  ///< in small letters, like those below
  std::vector<std::string> driversOn = {};

  /// As the environment says now. Parts that say nothing are passed over.
  [[nodiscard]] static Allowance fromEnvironment();

  /// Whether a driver opens nothing for us: those that a person turned off, and those that reach the network,
  /// run code or write by themselves unless they were turned on.
  [[nodiscard]] bool isOff(const std::string& driver) const;
};

/// Why a driver is off from the beginning, as the end of a sentence about it; empty for all others.
[[nodiscard]] std::string riskOfDriver(const std::string& driver);

}  // namespace vlclientui::client
