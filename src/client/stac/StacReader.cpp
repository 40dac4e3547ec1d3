#include "client/stac/StacReader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unordered_map>

#include "client/raster/Text.h"
#include "client/stac/StacJson.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

using namespace stac_json;

constexpr std::size_t mostDepth = 64;
constexpr std::size_t mostBytes = std::size_t{256} << 20U;
constexpr std::size_t mostKeywords = 100;
constexpr std::size_t mostSources = 10;

// Extents hold a list of boxes, the first around all others; intervals likewise.
std::optional<Element> firstOf(const Element& group, std::string_view list) {
  Array array;
  if (group[list].get(array) != simdjson::SUCCESS || array.size() == 0) return std::nullopt;
  return array.at(0).value();
}

std::optional<StacInterval> intervalOf(const Element& value) {
  Array array;
  if (value.get(array) != simdjson::SUCCESS || array.size() != 2) return std::nullopt;
  return StacInterval{textOf(array.at(0).value()), textOf(array.at(1).value())};
}

void takeExtent(StacDocument& document, const Element& value) {
  Element group;
  if (value["spatial"].get(group) == simdjson::SUCCESS) {
    if (const auto box = firstOf(group, "bbox")) document.extent = degreesOf(*box);
  }
  if (value["temporal"].get(group) == simdjson::SUCCESS) {
    if (const auto interval = firstOf(group, "interval")) document.interval = intervalOf(*interval);
  }
}

void takeSummaries(StacDocument& document, const Element& value) {
  for (const std::string_view name : {"platform", "constellation", "instruments"}) {
    Element list;
    if (!document.sources.empty() || value[name].get(list) != simdjson::SUCCESS) continue;
    document.sources = textsOf(list, mostSources);
  }
  for (const std::string_view name : {"proj:code", "proj:epsg"}) {
    Array list;
    if (value[name].get(list) != simdjson::SUCCESS || list.size() != 1) continue;
    ToldRaster told;
    told.system = document.system;
    takePlace(told, name, list.at(0).value());
    document.system = told.system;
  }
}

void takeMatched(StacDocument& document, const Element& value) {
  const auto number = numberOf(value);
  if (number && *number >= 0 && *number < 1e15) document.matched = static_cast<std::size_t>(*number);
}

// Words for people; some hold addresses, and a server may have signed these.
std::string shownText(const Element& value) { return textWithoutSecrets(textOf(value)); }

// The words of all kinds of documents but items.
void takeMember(StacDocument& document, std::string_view name, const Element& value) {
  if (name == "id") document.id = textOf(value);
  if (name == "title") document.title = shownText(value);
  if (name == "description") document.description = shownText(value);
  if (name == "license") document.license = shownText(value);
  if (name == "keywords") document.keywords = textsOf(value, mostKeywords);
  if (name == "extent" && value.is_object()) takeExtent(document, value);
  if (name == "summaries" && value.is_object()) takeSummaries(document, value);
  if (name == "item_assets") document.itemAssets = assetsOf(value, true);
  if (name == "links") document.links = linksOf(value);
  if (name == "numberMatched") takeMatched(document, value);
  Element matched;
  if (name == "context" && value["matched"].get(matched) == simdjson::SUCCESS) takeMatched(document, matched);
}

StacDocument membersOf(const Object& object) {
  StacDocument document;
  for (const auto [name, value] : object) takeMember(document, name, value);
  return document;
}

void takeItems(StacDocument& page, const Array& features) {
  // What stands there need not be items.
  constexpr std::size_t mostReserved = 1000;
  page.items.reserve(std::min(features.size(), mostReserved));
  for (const Element& feature : features) {
    if (auto item = itemOf(feature)) {
      page.items.push_back(*std::move(item));
    } else {
      ++page.dropped;
    }
  }
}

void takeCollections(StacDocument& page, const Array& collections) {
  for (const Element& element : collections) {
    Object object;
    if (element.get(object) != simdjson::SUCCESS) continue;
    StacDocument collection = membersOf(object);
    collection.kind = StacKind::Collection;
    if (!collection.id.empty()) page.children.push_back(std::move(collection));
  }
}

OrStacProblem<StacDocument> itemDocument(const Element& root) {
  auto item = itemOf(root);
  if (!item) return StacProblem{"the item has no id"};
  StacDocument document;
  document.kind = StacKind::Item;
  document.id = item->id;
  document.links = item->links;
  document.items.push_back(*std::move(item));
  return document;
}

// Landing pages of a service are catalogues; some older ones do not say so.
std::optional<StacKind> kindOf(const Object& object, const std::string& type) {
  if (type == "Catalog" || type == "Collection")
    return type == "Catalog" ? StacKind::Catalogue : StacKind::Collection;
  Element ignored;
  const auto has = [&](std::string_view name) { return object[name].get(ignored) == simdjson::SUCCESS; };
  if (!has("stac_version") || !has("links")) return std::nullopt;
  return has("extent") ? StacKind::Collection : StacKind::Catalogue;
}

OrStacProblem<StacDocument> documentOf(const Element& root) {
  Object object;
  if (root.get(object) != simdjson::SUCCESS) return StacProblem{"it is no document of a catalogue"};
  Element typeMember;
  const std::string type = object["type"].get(typeMember) == simdjson::SUCCESS ? textOf(typeMember) : "";
  if (type == "Feature") return itemDocument(root);
  Array list;
  if (type == "FeatureCollection" && object["features"].get(list) == simdjson::SUCCESS) {
    StacDocument page = membersOf(object);
    page.kind = StacKind::Items;
    takeItems(page, list);
    return page;
  }
  if (object["collections"].get(list) == simdjson::SUCCESS) {
    StacDocument page = membersOf(object);
    page.kind = StacKind::Collections;
    takeCollections(page, list);
    return page;
  }
  const auto kind = kindOf(object, type);
  if (!kind) return StacProblem{"it is no document of a catalogue"};
  StacDocument document = membersOf(object);
  document.kind = *kind;
  return document;
}

StacProblem problemOf(simdjson::error_code error) {
  switch (error) {
    case simdjson::DEPTH_ERROR:
      return {"it nests too deeply"};
    case simdjson::NUMBER_ERROR:
      return {"it holds a number that is none, or too large"};
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
      return {"it is too large"};
    case simdjson::EMPTY:
      return {"it is empty"};
    case simdjson::UTF8_ERROR:
      return {"its text is no UTF-8"};
    default:
      return {"it is damaged or cut off"};
  }
}

// The kinds of assets that were read, each held once.
class SharedKinds {
 public:
  void share(StacDocument& document) {
    for (StacItem& item : document.items) {
      for (StacAsset& asset : item.assets) share(asset);
    }
  }

 private:
  // A key has one kind mostly; more than these are items that tell each another one.
  static constexpr std::size_t mostOfKey = 8;
  static constexpr std::size_t mostKeys = 1000;

  void share(StacAsset& asset) {
    auto found = kinds_.find(asset.key());
    if (found == kinds_.end()) {
      if (kinds_.size() == mostKeys) return;
      found = kinds_.try_emplace(asset.key()).first;
    }
    auto& kinds = found->second;
    const auto same = std::ranges::find_if(kinds, [&](const auto& known) { return *known == *asset.kind; });
    if (same != kinds.end()) {
      asset.kind = *same;
    } else if (kinds.size() < mostOfKey) {
      kinds.push_back(asset.kind);
    }
  }

  std::unordered_map<std::string, std::vector<std::shared_ptr<const StacAssetKind>>> kinds_;
};

bool mayBeJson(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
}

}  // namespace

struct StacReader::Parser {
  simdjson::dom::parser parser{mostBytes};
  SharedKinds kinds;
};

StacReader::StacReader() : parser_(std::make_unique<Parser>()) {}

StacReader::~StacReader() = default;

OrStacProblem<StacDocument> StacReader::read(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  if (!mayBeJson(text)) return StacProblem{text.empty() ? "it is empty" : "it is no JSON document"};
  simdjson::dom::parser& parser = parser_->parser;
  const bool grows = parser.capacity() < text.size() || parser.max_depth() != mostDepth;
  const auto allocated = grows ? parser.allocate(text.size(), mostDepth) : simdjson::SUCCESS;
  if (allocated != simdjson::SUCCESS) return problemOf(allocated);
  Element root;
  const auto parsed = parser.parse(text.data(), text.size()).get(root);
  if (parsed != simdjson::SUCCESS) return problemOf(parsed);
  auto document = documentOf(root);
  if (auto* const found = std::get_if<StacDocument>(&document)) parser_->kinds.share(*found);
  return document;
}

}  // namespace vlclientui::client
