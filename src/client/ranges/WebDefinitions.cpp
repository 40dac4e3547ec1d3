#include "client/ranges/WebDefinitions.h"

#include <filesystem>
#include <optional>
#include <set>
#include <utility>

#include "client/catalogue/DefinitionWords.h"
#include "client/network/XmlTree.h"
#include "client/ranges/FileAnswers.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/WebSources.h"
#include "client/transport/Secrets.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
namespace words = definition_words;

constexpr std::size_t definitionsAtATime = 8;
constexpr std::size_t mostSources = 20000;
constexpr std::size_t mostKnown = 200;
constexpr auto remembered = std::chrono::seconds(60);

void addSource(MosaicDefinition& definition, const XmlElement& row, const WebSources& sources,
               std::set<std::string>& taken) {
  const std::string told = row.child(words::file).text();
  if (told.empty()) return;
  auto address = sources.addressOf(told, WebSources::Told::FromDocument);
  if (const auto* refusal = std::get_if<WebSources::Refusal>(&address)) {
    definition.problems.push_back({withoutSecrets(told), "the source " + refusal->text});
    return;
  }
  MosaicSource source;
  source.file = rangeRasterName(std::get<std::string>(address));
  source.name = fs::path(fileNameOf(*parsedAddress(std::get<std::string>(address)))).stem().string();
  for (const XmlElement& attribute : row.child(words::attributes).children()) {
    const std::string name(attribute.name());
    source.attributes.emplace_back(name, propertyWithoutSecrets(name, attribute.text()));
  }
  definition.sources.push_back(std::move(source));
  definition.sources.back().rasterId =
      freeRasterId(taken, row.child(words::rasterId).text(), definition.sources.size());
}

std::string homeOfSources(const std::string& told, const std::string& address) {
  const std::string folder =
      told.empty() ? fs::path(fileNameOf(*parsedAddress(address))).stem().string() + words::sourcesEnding
                   : told;
  const auto found = WebSources(address).addressOf(folder.ends_with('/') ? folder : folder + '/',
                                                   WebSources::Told::FromDocument);
  const auto* const home = std::get_if<std::string>(&found);
  return home == nullptr ? std::string() : *home;
}

}  // namespace

std::variant<WebDefinition, std::string> readWebDefinition(const std::string& text,
                                                           const std::string& address) {
  const auto tree = XmlTree::parse(text);
  if (!tree) return "the mosaic definition is not well-formed XML";
  const bool isOurs = tree->root().name() == words::document;
  const XmlElement node = isOurs ? tree->root().child(words::definition) : XmlElement();
  if (!node) return "the file holds no mosaic definition";
  WebDefinition read;
  MosaicDefinition& definition = read.definition;
  definition.name = node.child(words::name).text();
  definition.title = node.child(words::title).text();
  definition.region = node.child(words::region).text();
  definition.pixelSource = node.child(words::pixelSource).text();
  read.sourceFolder = homeOfSources(node.child(words::sourceFolder).text(), address);
  const WebSources sources(address);
  std::set<std::string> taken;
  for (const XmlElement& row : node.child(words::sources).children(words::source)) {
    if (definition.sources.size() == mostSources) {
      definition.problems.push_back({withoutSecrets(address), "its further sources are too many"});
      break;
    }
    addSource(definition, row, sources, taken);
  }
  if (!definition.sources.empty()) return read;
  return definition.problems.empty()
             ? "the mosaic definition names no sources"
             : "none of its sources can be used: " + definition.problems.front().reason;
}

WebDefinitions::DefinitionPtr WebDefinitions::known(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(address);
  const bool holds = found != known_.end() && Clock::now() < found->second.until;
  return holds ? found->second.definition : nullptr;
}

std::vector<WebDefinitions::Read> WebDefinitions::read(const std::vector<std::string>& addresses,
                                                       Freshness freshness) {
  std::vector<Read> definitions(addresses.size());
  std::vector<HttpRequest> requests;
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    DefinitionPtr before = freshness == Freshness::Remembered ? known(addresses[i]) : nullptr;
    definitions[i] = before;
    if (before) continue;
    HttpRequest request;
    request.address = addresses[i];
    request.mostBytes = words::mostBytes;
    request.remember = true;
    requests.push_back(std::move(request));
    places.push_back(i);
  }
  if (requests.empty()) return definitions;
  transport_.fetchEach(requests, definitionsAtATime, [&](std::size_t index, HttpResult&& result) {
    const std::size_t place = places[index];
    const auto* answer = std::get_if<HttpAnswer>(&result);
    definitions[place] =
        answer != nullptr ? fetched(addresses[place], *answer) : Read(std::get<HttpFailure>(result).text);
    return true;
  });
  return definitions;
}

WebDefinitions::Read WebDefinitions::fetched(const std::string& address, const HttpAnswer& answer) {
  constexpr int found = 200;
  if (answer.status != found) return refusalText(answer, address);
  auto read = readWebDefinition(answer.body, address);
  if (auto* reason = std::get_if<std::string>(&read)) return std::move(*reason);
  auto definition = std::make_shared<const WebDefinition>(std::get<WebDefinition>(std::move(read)));
  const std::lock_guard lock(mutex_);
  if (known_.size() >= mostKnown) known_.clear();
  known_[address] = {definition, Clock::now() + remembered};
  return DefinitionPtr(std::move(definition));
}

}  // namespace vlclientui::client
