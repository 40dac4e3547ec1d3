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

// Their links are of no more use.
void keep(StacItems& found, StacItem&& item, const std::shared_ptr<const std::string>& base) {
  item.links.clear();
  item.links.shrink_to_fit();
  found.items.push_back({std::move(item), base});
}

OrStacProblem<StacItems> pagedItems(StacFetcher& fetcher, const std::string& address, Wish wish) {
  StacItems found;
  const std::size_t limit = fetcher.limits().items;
  auto problem = fetcher.eachPage(address, [&](StacPage&& page) {
    tellDropped(found.problems, page);
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
  if (!found.isWhole) found.problems.push_back(leftOut(address, tooManyItems(found.items.size())));
  return found;
}

// Items that documents link to, one by one, also by catalogues below. What does not answer just now ends all
// of it: a mosaic is kept as it was read, and must have no holes that nobody asks about again.
class LinkWalk {
 public:
  LinkWalk(StacFetcher& fetcher, const StacService& service)
      : fetcher_(fetcher), visited_({service.address}) {
    take(service.about, service.address);
  }

  OrStacProblem<StacItems> read() {
    for (std::size_t depth = 0; !catalogues_.empty(); ++depth) {
      const auto level = std::exchange(catalogues_, {});
      if (depth == fetcher_.limits().depth) {
        found_.problems.push_back(leftOut(level.front(), "catalogues are not followed deeper than this"));
        break;
      }
      if (auto problem = readLevel(level)) return *std::move(problem);
    }
    if (auto problem = readItems()) return *std::move(problem);
    return std::move(found_);
  }

 private:
  using Passing = StacFetcher::Passing;

  void take(const StacDocument& document, const std::string& base) {
    for (const StacLink& link : document.links) {
      const bool isItem = link.relation == "item";
      if (!isItem && link.relation != "child") continue;
      auto address = fetcher_.followed(base, link.address);
      if (const auto* problem = std::get_if<StacProblem>(&address)) {
        found_.problems.push_back(leftOut(link.address, problem->text));
      } else if (isItem) {
        follow(std::get<std::string>(std::move(address)), items_, items_.size(), fetcher_.limits().items,
               tooManyItems(fetcher_.limits().items));
      } else {
        follow(std::get<std::string>(std::move(address)), catalogues_, documents_ + catalogues_.size(),
               fetcher_.limits().documents, "the catalogue has too many documents");
      }
    }
  }

  // Beyond the limit nothing is even noted; the first one that is not is told.
  void follow(std::string address, std::vector<std::string>& places, std::size_t count, std::size_t limit,
              const std::string& beyond) {
    if (count >= limit) {
      if (told_.insert(beyond).second) found_.problems.push_back(leftOut(address, beyond));
    } else if (visited_.insert(address).second) {
      places.push_back(std::move(address));
    }
  }

  std::optional<StacProblem> readLevel(const std::vector<std::string>& level) {
    documents_ += level.size();
    std::vector<std::optional<StacPage>> pages(level.size());
    auto end =
        fetcher_.eachDocument(level, Passing::EndsAll, found_.problems,
                              [&](std::size_t index, StacPage&& page) { pages[index] = std::move(page); });
    for (const auto& page : pages) {
      const bool isPart = page && page->document.kind == StacKind::Catalogue;
      if (isPart) take(page->document, *page->base);
    }
    return end;
  }

  std::optional<StacProblem> readItems() {
    std::vector<std::optional<StacFound>> inOrder(items_.size());
    auto end = fetcher_.eachDocument(
        items_, Passing::EndsAll, found_.problems, [&](std::size_t index, StacPage&& page) {
          if (page.document.items.size() != 1 || page.document.kind != StacKind::Item) {
            found_.problems.push_back(leftOut(items_[index], "it is no item"));
            return;
          }
          inOrder[index] = StacFound{std::move(page.document.items.front()), page.base};
        });
    for (auto& item : inOrder) {
      if (item) keep(found_, std::move(item->item), item->base);
    }
    return end;
  }

  StacFetcher& fetcher_;
  std::set<std::string> visited_;
  std::set<std::string> told_;
  std::vector<std::string> catalogues_;
  std::vector<std::string> items_;
  std::size_t documents_ = 0;
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
  if (!service.held.empty()) return StacItems{service.held, service.problems, true};
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
