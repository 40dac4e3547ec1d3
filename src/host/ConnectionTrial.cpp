#include "host/ConnectionTrial.h"

#include <utility>

#include "client/connections/ConnectionBook.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::host {
namespace {

std::string counted(std::size_t services) {
  return "The server answers, with " + std::to_string(services) +
         (services == 1 ? " service." : " services.");
}

TrialOutcome asked(client::CatalogueServer& catalogue, const client::Connection& connection) {
  std::string reason;
  const SilenceListener listener([&](const SilentEnd& end) {
    if (auto told = reasonOfServerSilence(end.reason)) reason = *std::move(told);
  });
  const auto names = catalogue.factsByName(connection.address);
  const bool isSilent = names.empty() && !reason.empty();
  if (isSilent) return {false, 0, "The server does not answer: " + reason};
  if (names.empty()) return {false, 0, "No services are found at this address."};
  return {true, names.size(), counted(names.size())};
}

}  // namespace

TrialOutcome tryConnection(client::ConnectionBook& book, client::CatalogueServer& catalogue,
                           const client::Connection& connection, const std::optional<std::string>& secret,
                           const client::WaitQuestions& questions) {
  if (std::string problem = problemOf(connection); !problem.empty()) return {false, 0, std::move(problem)};
  try {
    const client::ConnectionBook::Trial trial(book, connection, secret);
    const client::ServerWaitScope scope(questions);
    return asked(catalogue, connection);
  } catch (const RuntimeFailure& failure) {
    return {false, 0, failure.description()};
  }
}

}  // namespace vlclientui::host
