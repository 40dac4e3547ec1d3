#include "qgis/provider/GivenUpWaits.h"

#include <string_view>

namespace vlclientui::qgis {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds untilAskedAgain(10'000);
/// Longer than QGIS takes from one layer of a project to the next, shorter than a person to the next wish.
constexpr milliseconds closely(1'000);

bool isWithin(const std::map<std::string, GivenUpWaits::Clock::time_point>& known, const std::string& key,
              GivenUpWaits::Clock::time_point now, milliseconds time) {
  const auto found = known.find(key);
  return found != known.end() && now - found->second < time;
}

// A server by its name or its address; of local files their folder.
std::string serverOf(const std::string& reference) {
  constexpr std::string_view behindScheme = "://";
  std::size_t begin = reference.find(behindScheme);
  if (begin == std::string::npos) return reference.substr(0, reference.rfind('/'));
  begin += behindScheme.size();
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (reference.compare(begin, scheme.size(), scheme) == 0) begin += scheme.size();
  }
  return reference.substr(0, reference.find('/', begin));
}

}  // namespace

void GivenUpWaits::note(const std::string& reference, Clock::time_point now) {
  const std::lock_guard lock(mutex_);
  services_[reference] = servers_[serverOf(reference)] = now;
}

bool GivenUpWaits::has(const std::string& reference, Clock::time_point now) {
  const std::lock_guard lock(mutex_);
  const std::string server = serverOf(reference);
  const bool follows = isWithin(servers_, server, now, closely);
  if (follows) servers_[server] = now;
  return follows || isWithin(services_, reference, now, untilAskedAgain);
}

}  // namespace vlclientui::qgis
