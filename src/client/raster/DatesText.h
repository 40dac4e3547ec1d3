#pragma once

#include <string>

namespace vlclientui::client {

/// A span of time for a person, by its days: "2019-08-30 to 2021-05-12", "since 2019-08-30".
/// @param from,to dates as ISO 8601 writes them, with or without a time of day; empty for an open end.
[[nodiscard]] std::string datesText(const std::string& from, const std::string& to);

}  // namespace vlclientui::client
