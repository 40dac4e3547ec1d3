#include "contracts/ServerSilence.h"

namespace vlclientui {
namespace {

constexpr std::string_view mark = "' does not answer: ";

}  // namespace

std::string serverSilence(std::string_view what, std::string_view server, std::string_view reason) {
  return "the " + std::string(what) + " '" + std::string(server) + std::string(mark) + std::string(reason);
}

std::optional<std::string> reasonOfServerSilence(std::string_view told) {
  const std::size_t found = told.find(mark);
  if (found == std::string_view::npos) return std::nullopt;
  return std::string(told.substr(found + mark.size()));
}

}  // namespace vlclientui
