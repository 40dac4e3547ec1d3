#pragma once

#include <string>

namespace vlclientui::client {

/// A search as an address tells it, as the document that servers want that take searches by POST alone.
struct SearchQuestion {
  std::string address;  ///< without its parameters
  std::string body;     ///< JSON
};

/// What a server answers to a search by GET that takes them by POST alone.
inline constexpr int notAllowed = 405;

/// Whether the address is that of a search, and not of a list that only GET gives.
[[nodiscard]] bool isSearchAddress(const std::string& address);
/// @pre it is.
[[nodiscard]] SearchQuestion searchQuestion(const std::string& address);

}  // namespace vlclientui::client
