#include "client/connections/Refusal.h"

namespace vlclientui::client {
namespace {

constexpr int unknown = 401;
constexpr int forbidden = 403;
constexpr std::string_view advice = "a connection to this address can keep ";

}  // namespace

bool asksWhoIsThere(const HttpAnswer& answer) {
  return answer.status == unknown || answer.status == forbidden;
}

std::string refusalText(const HttpAnswer& answer) {
  const std::string status = "the server answers with status " + std::to_string(answer.status);
  if (answer.status == unknown)
    return status + ": it asks for a user and password or a token, or refuses the one it was sent; " +
           std::string(advice) + "it";
  if (answer.status == forbidden)
    return status + ": it allows this to others only; " + std::string(advice) + "a user or token";
  return status;
}

bool tellsOfConnection(std::string_view text) { return text.find(advice) != std::string_view::npos; }

}  // namespace vlclientui::client
