#include "client/transport/Retries.h"

#include <algorithm>
#include <string>

#include <curl/curl.h>

#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;

constexpr int tooManyRequests = 429;
constexpr int badGateway = 502;
constexpr int unavailable = 503;
constexpr int gatewayTimeout = 504;

bool isPassingStatus(int status) {
  return status == tooManyRequests || status == badGateway || status == unavailable ||
         status == gatewayTimeout;
}

// What is posted may have been done already, unless it never left.
bool mayRepeat(const ExchangeOutcome& outcome, const HttpRequest& request) {
  if (request.retrying == Retrying::Never) return false;
  if (!request.body.empty()) return outcome.isUnsent;
  return outcome.failure ? outcome.isPassing : isPassingStatus(outcome.answer.status);
}

milliseconds ownPause(int tried, const TransportSettings& settings) {
  milliseconds pause = settings.firstPause;
  for (int i = 1; i < tried && pause < settings.longestPause; ++i) pause *= 2;
  const double share = 1.0 - settings.sources.chance() / 2;
  const auto whole = static_cast<double>(std::min(pause, settings.longestPause).count());
  return milliseconds(static_cast<milliseconds::rep>(whole * share));
}

}  // namespace

std::optional<milliseconds> toldPause(std::string_view retryAfter, system_clock::time_point now) {
  // Longer than anybody waits, and short enough to be counted in milliseconds.
  constexpr std::uint64_t longest = std::uint64_t{1} << 31U;
  const std::string text(withoutBlanks(retryAfter));
  if (text.empty()) return std::nullopt;
  if (text.find_first_not_of("0123456789") == std::string::npos) {
    const std::uint64_t seconds = std::min(wholeNumber(text).value_or(longest), longest);
    return std::chrono::seconds(static_cast<std::int64_t>(seconds));
  }
  const std::time_t date = curl_getdate(text.c_str(), nullptr);
  if (date == -1) return std::nullopt;
  const auto pause = system_clock::from_time_t(date) - now;
  return std::max(std::chrono::duration_cast<milliseconds>(pause), milliseconds(0));
}

bool isOverload(const ExchangeOutcome& outcome) {
  return outcome.answer.status == tooManyRequests || outcome.answer.status == unavailable;
}

std::optional<milliseconds> pauseBeforeRetry(const ExchangeOutcome& outcome, const HttpRequest& request,
                                             int tried, const TransportSettings& settings) {
  if (tried >= settings.tries || !mayRepeat(outcome, request)) return std::nullopt;
  const auto told = toldPause(outcome.answer.header("Retry-After"), settings.sources.now());
  if (told && *told > settings.longestRetryAfter) return std::nullopt;
  return std::max(ownPause(tried, settings), told.value_or(milliseconds(0)));
}

}  // namespace vlclientui::client
