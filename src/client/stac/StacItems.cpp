#include "client/stac/StacItems.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <utility>

#include "client/raster/Text.h"
#include "client/stac/AddressParameters.h"
#include "documents/DecimalText.h"

namespace vlclientui::client {
namespace {

enum class Wish { All, OfAnArea };

std::string tooMany(std::size_t limit) {
  return "there are more items than are used at a time; these are the first " + std::to_string(limit);
}

// Their links are of no more use.
void keep(StacItems& found, StacItem&& item, const std::shared_ptr<const std::string>& base) {
  item.links.clear();
  item.links.shrink_to_fit();
  found.items.push_back({std::move(item), base});
}

void tellDropped(StacItems& found, const StacPage& page) {
  if (page.document.dropped == 0) return;
  found.problems.push_back(
      leftOut(*page.base, std::to_string(page.document.dropped) + " of its items have no id"));
}

OrStacProblem<StacItems> pagedItems(StacFetcher& fetcher, const std::string& address, Wish wish) {
  StacItems found;
  const std::size_t limit = fetcher.limits().items;
  auto problem = fetcher.eachPage(address, [&](StacPage&& page) {
    tellDropped(found, page);
    for (StacItem& item : page.document.items) {
      if (found.items.size() == limit) {
        found.isWhole = false;
        return false;
      }
      keep(found, std::move(item), page.base);
    }
    const bool isTooMuch = wish == Wish::All && page.document.matched.value_or(0) > limit;
    const bool isFull = found.items.size() == limit && page.document.link("next") != nullptr;
    found.isWhole = !isTooMuch && !isFull;
    return found.isWhole;
  });
  if (problem) return *std::move(problem);
  if (!found.isWhole) found.problems.push_back(leftOut(address, tooMany(found.items.size())));
  return found;
}

// Items that documents link to, one by one, also by catalogues below.
class LinkWalk {
 public:
  LinkWalk(StacFetcher& fetcher, const StacService& service)
      : fetcher_(fetcher), visited_({service.address}) {
    take(service.about, service.address);
  }

  StacItems read() {
    for (std::size_t depth = 0; !catalogues_.empty(); ++depth) {
      const auto level = std::exchange(catalogues_, {});
      if (depth == fetcher_.limits().depth) {
        found_.problems.push_back(leftOut(level.front(), "catalogues are not followed deeper than this"));
        break;
      }
      std::vector<std::optional<StacPage>> pages(level.size());
      fetcher_.eachDocument(level, found_.problems,
                            [&](std::size_t index, StacPage&& page) { pages[index] = std::move(page); });
      for (const auto& page : pages) {
        const bool isPart = page && page->document.kind == StacKind::Catalogue;
        if (isPart) take(page->document, *page->base);
      }
    }
    readItems();
    return std::move(found_);
  }

 private:
  void take(const StacDocument& document, const std::string& base) {
    for (const StacLink& link : document.links) {
      const bool isItem = link.relation == "item";
      if (!isItem && link.relation != "child") continue;
      auto address = fetcher_.followed(base, link.address);
      if (const auto* problem = std::get_if<StacProblem>(&address)) {
        found_.problems.push_back(leftOut(link.address, problem->text));
      } else if (visited_.insert(std::get<std::string>(address)).second) {
        (isItem ? items_ : catalogues_).push_back(std::get<std::string>(std::move(address)));
      }
    }
    const std::size_t most = fetcher_.limits().documents;
    if (catalogues_.size() > most) catalogues_.resize(most);
  }

  void readItems() {
    const std::size_t limit = fetcher_.limits().items;
    if (items_.size() > limit) {
      found_.problems.push_back(leftOut(items_[limit], tooMany(limit)));
      items_.resize(limit);
    }
    std::vector<std::optional<StacFound>> inOrder(items_.size());
    fetcher_.eachDocument(items_, found_.problems, [&](std::size_t index, StacPage&& page) {
      if (page.document.items.size() != 1 || page.document.kind != StacKind::Item) {
        found_.problems.push_back(leftOut(items_[index], "it is no item"));
        return;
      }
      inOrder[index] = StacFound{std::move(page.document.items.front()), page.base};
    });
    for (auto& item : inOrder) {
      if (item) keep(found_, std::move(item->item), item->base);
    }
  }

  StacFetcher& fetcher_;
  std::set<std::string> visited_;
  std::vector<std::string> catalogues_;
  std::vector<std::string> items_;
  StacItems found_;
};

// The part of the area that a search is about anyway; nothing where they do not meet, or nobody can tell.
std::optional<Bounds> withinSearch(const std::string& address, const Bounds& area) {
  if (!parameterOf(address, "intersects").empty()) return std::nullopt;
  const std::vector<std::string> edges = splitAtCommas(parameterOf(address, "bbox"));
  if (edges.empty()) return area;
  std::array<double, 4> own{};
  if (edges.size() != own.size()) return std::nullopt;
  for (std::size_t i = 0; i < own.size(); ++i) {
    const auto number = readDecimal(edges[i]);
    if (!number) return std::nullopt;
    own[i] = *number;
  }
  const Bounds part{std::max(area.xMin, own[0]), std::max(area.yMin, own[1]), std::min(area.xMax, own[2]),
                    std::min(area.yMax, own[3])};
  return part.xMin < part.xMax && part.yMin < part.yMax ? std::optional(part) : std::nullopt;
}

std::string boxText(const Bounds& box) {
  return numberText(box.xMin) + "," + numberText(box.yMin) + "," + numberText(box.xMax) + "," +
         numberText(box.yMax);
}

}  // namespace

OrStacProblem<StacItems> readStacItems(Transport& transport, const StacService& service,
                                       const StacLimits& limits) {
  if (!service.held.empty()) return StacItems{service.held, {}, true};
  StacFetcher fetcher(transport, service.address, limits);
  if (!service.pages.empty()) return pagedItems(fetcher, service.pages, Wish::All);
  return LinkWalk(fetcher, service).read();
}

OrStacProblem<StacItems> readStacItemsWithin(Transport& transport, const StacService& service,
                                             const Bounds& geographic, const StacLimits& limits) {
  const auto area = service.pages.empty() ? std::nullopt : withinSearch(service.pages, geographic);
  if (!area) return StacItems();
  StacFetcher fetcher(transport, service.address, limits);
  return pagedItems(fetcher, withReplacedParameter(service.pages, "bbox", boxText(*area)), Wish::OfAnArea);
}

}  // namespace vlclientui::client
