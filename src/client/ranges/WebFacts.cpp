#include "client/ranges/WebFacts.h"

#include <utility>

#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/RasterReader.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/waiting/SideBySide.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostKnown = 10000;

WebFacts::Read asRead(const RasterResult& result) {
  if (const auto* facts = std::get_if<RasterFacts>(&result)) return *facts;
  return std::get<RasterProblem>(result);
}

// The name of such a file itself is spelled for the raster library.
std::string nameForPeople(const std::string& address) {
  return utf8FromAny(std::filesystem::path(fileNameOf(*parsedAddress(address))).stem().string());
}

}  // namespace

std::vector<WebFacts::Read> WebFacts::read(const std::vector<std::string>& addresses) {
  std::vector<Read> results(addresses.size());
  doSideBySide(addresses.size(), waitersAtATime, [&] {
    return [&, geographic = GeographicBounds()](std::size_t i) mutable {
      results[i] = readOne(addresses[i], geographic);
    };
  });
  return results;
}

WebFacts::Read WebFacts::readOne(const std::string& address, GeographicBounds& geographic) {
  const std::string name = rangeRasterName(address);
  const auto met = files_.meet(*addressWithSecrets(name));
  if (const auto* problem = std::get_if<RemoteFile::Problem>(&met)) {
    if (problem->trouble == RemoteFile::Trouble::Passing) return Unread{problem->text};
    return RasterProblem{true, problem->text};
  }
  const FileState& state = std::get<std::shared_ptr<RemoteFile>>(met)->state();
  if (const auto before = known(name, state)) return asRead(*before);
  const RasterResult result = readRasterFacts(name, geographic, nameForPeople(address));
  if (WaitScope::isGivenUp()) return Unread{"its reading was given up"};
  const std::lock_guard lock(mutex_);
  if (known_.size() >= mostKnown) known_.clear();
  known_[name] = {state, result};
  return asRead(result);
}

std::optional<RasterResult> WebFacts::known(const std::string& name, const FileState& state) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(name);
  const bool holds = found != known_.end() && found->second.state == state;
  return holds ? std::optional(found->second.result) : std::nullopt;
}

}  // namespace vlclientui::client
