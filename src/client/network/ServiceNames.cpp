#include "client/network/ServiceNames.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>

#include "client/catalogue/CatalogueNames.h"

namespace vlclientui::client {
namespace {

// One folder: what stands in it, by the step; a service and a folder may have the same one.
struct Folder {
  std::map<std::string, Folder> folders;
  std::vector<std::pair<std::string, std::size_t>> services;  // step and index of the id
};

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool mayBeEnding(std::string_view text) {
  constexpr std::size_t longest = 4;
  return text.size() <= longest &&
         std::ranges::all_of(text, [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); });
}

// How many characters separate two steps here; 0 for a character of a step.
std::size_t separatorAt(std::string_view id, std::size_t at) {
  if (id[at] == '/' || id[at] == ':') return 1;
  if (id.substr(at).starts_with("__")) return 2;
  const bool isBetweenLetters =
      id[at] == '.' && at > 0 && at + 1 < id.size() && isLetter(id[at - 1]) && isLetter(id[at + 1]);
  return isBetweenLetters && !mayBeEnding(id.substr(at + 1)) ? 1 : 0;
}

void nameFolder(const Folder& folder, const std::string& path, const std::vector<std::string>& ids,
                std::vector<std::string>& names) {
  std::vector<Sibling> siblings;
  for (const auto& [step, below] : folder.folders) siblings.push_back({step, step});
  for (const auto& [step, index] : folder.services) siblings.push_back({step, ids[index] + ".coverage"});
  const auto named = nameSiblings(siblings);
  auto next = named.begin();
  for (const auto& [step, below] : folder.folders)
    nameFolder(below, path + (next++)->shown + '/', ids, names);
  for (const auto& [step, index] : folder.services) names[index] = path + (next++)->shown;
}

}  // namespace

std::vector<std::string> nameSteps(const std::string& id) {
  std::vector<std::string> steps(1);
  for (std::size_t at = 0; at < id.size();) {
    const std::size_t separator = separatorAt(id, at);
    if (separator == 0) {
      steps.back() += id[at++];
    } else {
      at += separator;
      if (!steps.back().empty()) steps.emplace_back();
    }
  }
  if (steps.size() > 1 && steps.back().empty()) steps.pop_back();
  return steps.front().empty() ? std::vector{id} : steps;
}

std::vector<std::string> serviceNames(const std::vector<std::string>& ids) {
  Folder root;
  for (std::size_t index = 0; index < ids.size(); ++index) {
    Folder* folder = &root;
    const std::vector<std::string> steps = nameSteps(ids[index]);
    for (std::size_t step = 0; step + 1 < steps.size(); ++step) folder = &folder->folders[steps[step]];
    folder->services.emplace_back(steps.back(), index);
  }
  std::vector<std::string> names(ids.size());
  nameFolder(root, "", ids, names);
  return names;
}

}  // namespace vlclientui::client
