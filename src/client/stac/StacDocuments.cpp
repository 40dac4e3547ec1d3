#include "client/stac/StacDocuments.h"

#include <algorithm>

namespace vlclientui::client {

const StacLink* StacDocument::link(std::string_view relation) const {
  const auto found = std::ranges::find(links, relation, &StacLink::relation);
  return found == links.end() ? nullptr : &*found;
}

}  // namespace vlclientui::client
