#include "client/stac/StacTree.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "client/stac/AddressParameters.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

using Folders = std::vector<std::string>;

// A document to be read, and the folder that it is in or is itself.
struct Place {
  std::string address;
  Folders folders;
};

class TreeWalk {
 public:
  TreeWalk(Transport& transport, const std::string& address, const StacLimits& limits)
      : address_(address), fetcher_(transport, address, limits) {}

  OrStacProblem<StacTree> read(std::optional<HttpAnswer> root) {
    auto page = root ? fetcher_.read(address_, *std::move(root)) : fetcher_.fetchInAnyWay(address_);
    if (auto* problem = std::get_if<StacProblem>(&page)) return std::move(*problem);
    visited_ = {address_, *std::get<StacPage>(page).base};
    if (auto problem = take(std::get<StacPage>(std::move(page)), {})) return *std::move(problem);
    for (std::size_t depth = 0; !next_.empty(); ++depth) {
      if (depth == fetcher_.limits().depth) {
        leaveOutRest("catalogues are not followed deeper than this");
        break;
      }
      if (auto problem = readLevel()) return *std::move(problem);
    }
    return std::move(tree_);
  }

 private:
  void leaveOutRest(const std::string& reason) {
    for (const Place& place : next_) tree_.problems.push_back(leftOut(place.address, reason));
    next_.clear();
  }

  std::optional<StacProblem> readLevel() {
    std::vector<Place> places = std::exchange(next_, {});
    const std::size_t room = fetcher_.limits().documents - std::min(fetcher_.limits().documents, documents_);
    if (places.size() > room) {
      tree_.problems.push_back(leftOut(places[room].address, "the catalogue has too many documents"));
      places.resize(room);
    }
    documents_ += places.size();
    std::vector<std::string> addresses;
    for (const Place& place : places) addresses.push_back(place.address);
    // In any order they come, but in that of the links they are taken.
    std::vector<std::optional<StacPage>> pages(places.size());
    auto end =
        fetcher_.eachDocument(addresses, StacFetcher::Passing::IsLeftOut, tree_.problems,
                              [&](std::size_t index, StacPage&& page) { pages[index] = std::move(page); });
    if (end) return end;
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (!pages[i]) continue;
      const auto problem = take(*std::move(pages[i]), places[i].folders);
      if (problem && WaitScope::isGivenUp()) return problem;
      if (problem) tree_.problems.push_back(leftOut(places[i].address, problem->text));
    }
    return std::nullopt;
  }

  std::optional<StacProblem> take(StacPage&& page, Folders folders) {
    switch (page.document.kind) {
      case StacKind::Catalogue:
        return takeCatalogue(std::move(page), std::move(folders));
      case StacKind::Collection:
        addCollection(std::move(page.document), *page.base, folders);
        return std::nullopt;
      case StacKind::Collections:
        return takeCollections(std::move(page), folders);
      case StacKind::Item:
        addHeld(page.document.id, std::move(page.document), page.base, folders);
        return std::nullopt;
      case StacKind::Items:
        return takeItems(std::move(page), folders);
    }
    return std::nullopt;
  }

  // A catalogue below the server's own is a folder, and its items are a mosaic that bears its name.
  std::optional<StacProblem> takeCatalogue(StacPage&& page, Folders folders) {
    const StacDocument& catalogue = page.document;
    const bool isServer = documents_ == 0;
    Folders own = folders;
    if (!isServer) own.push_back(catalogue.id.empty() ? "catalog" : catalogue.id);
    if (const StacLink* data = catalogue.link("data")) {
      takeSearch(page);
      auto problem = takeCollections(page, *data, own);
      // Collections of another service are not asked for there.
      search_.clear();
      return problem;
    }
    for (const StacLink& link : catalogue.links) {
      if (link.relation == "child") follow(*page.base, link, own);
    }
    if (catalogue.link("item") != nullptr || catalogue.link("items") != nullptr) {
      addCollection(std::move(page.document), *page.base, folders);
    }
    return std::nullopt;
  }

  // Where a service answers questions; some collections tell their items in no other way.
  void takeSearch(const StacPage& landing) {
    const StacLink* const link = landing.document.link("search");
    if (link == nullptr) return;
    auto address = fetcher_.followed(*landing.base, link->address);
    if (auto* found = std::get_if<std::string>(&address)) search_ = std::move(*found);
  }

  void follow(const std::string& base, const StacLink& link, const Folders& folders) {
    auto address = fetcher_.followed(base, link.address);
    if (const auto* problem = std::get_if<StacProblem>(&address)) {
      tree_.problems.push_back(leftOut(link.address, problem->text));
      return;
    }
    auto& found = std::get<std::string>(address);
    if (visited_.insert(found).second) next_.push_back({std::move(found), folders});
  }

  std::optional<StacProblem> takeCollections(const StacPage& landing, const StacLink& data,
                                             const Folders& folders) {
    auto address = fetcher_.followed(*landing.base, data.address);
    if (auto* problem = std::get_if<StacProblem>(&address)) return std::move(*problem);
    const auto& found = std::get<std::string>(address);
    return takeCollections(found, folders,
                           [&](const EachPage& each) { return fetcher_.eachPage(found, each); });
  }

  std::optional<StacProblem> takeCollections(StacPage&& first, const Folders& folders) {
    const std::string address = *first.base;
    return takeCollections(address, folders,
                           [&](const EachPage& each) { return fetcher_.eachPage(std::move(first), each); });
  }

  using EachPage = std::function<bool(StacPage&&)>;
  using Pages = std::function<std::optional<StacProblem>(const EachPage&)>;

  std::optional<StacProblem> takeCollections(const std::string& address, const Folders& folders,
                                             const Pages& pages) {
    std::size_t count = 0;
    auto problem = pages([&](StacPage&& page) {
      for (StacDocument& collection : page.document.children) {
        if (++count > fetcher_.limits().documents) {
          tree_.problems.push_back(leftOut(address, "the catalogue has too many collections"));
          return false;
        }
        addCollection(std::move(collection), *page.base, folders);
      }
      return true;
    });
    const bool isPart = problem && count > 0 && !WaitScope::isGivenUp();
    if (!isPart) return problem;
    tree_.problems.push_back(leftOut(address, problem->text));
    return std::nullopt;
  }

  void addCollection(StacDocument&& collection, const std::string& base, const Folders& folders) {
    StacService service;
    service.folders = folders;
    service.address = base;
    if (collection.id.empty()) collection.id = "collection";
    if (const StacLink* items = collection.link("items")) {
      auto pages = fetcher_.followed(base, items->address);
      if (const auto* problem = std::get_if<StacProblem>(&pages)) {
        tree_.problems.push_back(leftOut(items->address, problem->text));
        return;
      }
      service.pages = std::get<std::string>(std::move(pages));
    } else if (!search_.empty() && collection.link("item") == nullptr &&
               collection.link("child") == nullptr) {
      service.pages = withReplacedParameter(search_, "collections", collection.id);
    }
    service.about = std::move(collection);
    tree_.services.push_back(std::move(service));
  }

  void addHeld(const std::string& id, StacDocument&& document, const std::shared_ptr<const std::string>& base,
               const Folders& folders) {
    StacService service;
    service.folders = folders;
    service.address = *base;
    service.about.id = id.empty() ? "items" : id;
    for (StacItem& item : document.items) service.held.push_back({std::move(item), base});
    if (!service.held.empty()) tree_.services.push_back(std::move(service));
  }

  // A search tells which collections it is about, or its items do.
  std::optional<StacProblem> takeItems(StacPage&& first, const Folders& folders) {
    const std::vector<std::string> told = splitAtCommas(parameterOf(address_, "collections"));
    const bool isSearch = documents_ == 0 && !told.empty();
    if (isSearch) {
      for (const std::string& id : told) addSearched(id, first, told.size());
      return std::nullopt;
    }
    std::map<std::string, StacService> byCollection;
    std::vector<LeftOut> problems;
    const std::string address = *first.base;
    auto problem = fetcher_.eachPage(std::move(first), [&, count = std::size_t{0}](StacPage&& page) mutable {
      tellDropped(problems, page);
      for (StacItem& item : page.document.items) {
        if (count++ == fetcher_.limits().items) {
          problems.push_back(leftOut(address, tooManyItems(fetcher_.limits().items)));
          return false;
        }
        byCollection[item.collection].held.push_back({std::move(item), page.base});
      }
      return true;
    });
    if (problem) return problem;
    tree_.problems.insert(tree_.problems.end(), problems.begin(), problems.end());
    for (auto& [id, service] : byCollection) {
      service.folders = folders;
      service.address = address;
      service.problems = problems;
      service.about.id = id.empty() ? "items" : id;
      tree_.services.push_back(std::move(service));
    }
    return std::nullopt;
  }

  void addSearched(const std::string& id, const StacPage& first, std::size_t collections) {
    StacService service;
    service.address = *first.base;
    service.pages = collections == 1 ? address_ : withReplacedParameter(address_, "collections", id);
    const auto item = std::ranges::find(first.document.items, id, &StacItem::collection);
    if (item != first.document.items.end()) service.about = collectionOf(*item, *first.base);
    service.about.id = id;
    tree_.services.push_back(std::move(service));
  }

  // What the item's collection tells of itself, where it can be had.
  StacDocument collectionOf(const StacItem& item, const std::string& base) {
    const auto link = std::ranges::find(item.links, "collection", &StacLink::relation);
    if (link == item.links.end()) return {};
    const auto address = fetcher_.followed(base, link->address);
    if (!std::holds_alternative<std::string>(address)) return {};
    auto page = fetcher_.fetch(std::get<std::string>(address));
    auto* found = std::get_if<StacPage>(&page);
    if (found == nullptr || found->document.kind != StacKind::Collection) return {};
    found->document.links.clear();
    return std::move(found->document);
  }

  std::string address_;
  StacFetcher fetcher_;
  StacTree tree_;
  std::vector<Place> next_;
  std::set<std::string> visited_;
  std::size_t documents_ = 0;
  std::string search_;  ///< empty where the service has none
};

}  // namespace

OrStacProblem<StacTree> readStacTree(Transport& transport, const std::string& address,
                                     const StacLimits& limits, std::optional<HttpAnswer> root) {
  return TreeWalk(transport, address, limits).read(std::move(root));
}

}  // namespace vlclientui::client
