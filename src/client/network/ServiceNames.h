#pragma once

#include <string>
#include <vector>

namespace vlclientui::client {

/// The steps that the name of a service on a server is made of: at "/", ":" and "__" it goes into a folder,
/// and at
/// "." between two letters, which is all that some servers allow; not before what may be the ending of a
/// file. The steps depend on the name alone, so that a reference stays what it is when other services come.
[[nodiscard]] std::vector<std::string> nameSteps(const std::string& id);

/// Names as the list of services shows them, folders with "/" between, in the order of the ids; no two are
/// the same. Characters are replaced as those of files are: catalogue/CatalogueNames.h.
[[nodiscard]] std::vector<std::string> serviceNames(const std::vector<std::string>& ids);

}  // namespace vlclientui::client
