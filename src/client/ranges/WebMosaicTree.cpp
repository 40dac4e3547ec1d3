#include "client/ranges/WebMosaicTree.h"

#include <algorithm>
#include <utility>

namespace vlclientui::client {

std::string MosaicTree::refusal(const MosaicNode& root) {
  static_cast<void>(weightOf(root, 1));
  return refusal_;
}

void MosaicTree::refuse(std::string why) {
  if (refusal_.empty()) refusal_ = std::move(why);
}

MosaicTree::Weight MosaicTree::weightOf(const MosaicNode& node, int depth) {
  ++mosaics_;
  bytes_ += node.bytes;
  if (mosaics_ > mostMosaics || bytes_ > mostBytes)
    refuse("it leads to more than " + std::to_string(mostMosaics) + " virtual rasters, or to " +
           std::to_string(mostBytes >> 20U) + " MB of them");
  Weight weight{1, node.sources};
  for (const std::string& name : node.mayBeMosaics) {
    if (!refusal_.empty()) break;
    const Weight below = weightBelow(name, depth + 1);
    weight.height = std::max(weight.height, below.height + 1);
    weight.sources += below.sources;
    if (depth + weight.height - 1 > deepest)
      refuse("virtual rasters stand more than " + std::to_string(deepest) + " deep in each other");
    if (weight.sources > mostSources)
      refuse("it leads to more than " + std::to_string(mostSources) + " sources");
  }
  if (weight.sources > mostSources)
    refuse("it leads to more than " + std::to_string(mostSources) + " sources");
  return weight;
}

MosaicTree::Weight MosaicTree::weightBelow(const std::string& name, int depth) {
  if (depth > deepest + 1) return {};
  const auto known = known_.find(name);
  if (known != known_.end()) return known->second;
  const Found found = read_(name);
  if (const auto* reason = std::get_if<std::string>(&found)) refuse(*reason);
  const auto* node = std::get_if<MosaicNode>(&found);
  const Weight weight = node == nullptr || !refusal_.empty() ? Weight{} : weightOf(*node, depth);
  return known_[name] = weight;
}

}  // namespace vlclientui::client
