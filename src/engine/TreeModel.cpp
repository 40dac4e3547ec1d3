#include "engine/TreeModel.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "documents/ParsedDocument.h"
#include "documents/TextCase.h"

namespace vlclientui::engine {
namespace {

bool isElement(const XmlNodePtr& node) { return node->kind() == XmlNodeKind::Element; }

bool isText(const XmlNodePtr& node) {
  return node->kind() == XmlNodeKind::Text || node->kind() == XmlNodeKind::CData;
}

}  // namespace

std::shared_ptr<TreeModel> TreeModel::parse(const XmlService& xml, std::string_view text) {
  const auto document = xml.createDocument();
  if (!loadOrStayEmpty(*document, text)) return nullptr;
  return std::shared_ptr<TreeModel>(new TreeModel(document->documentElement()));
}

TreeModel::TreeModel(XmlNodePtr element) {
  auto name = element->name();
  nodes_.push_back({.element = std::move(element), .name = std::move(name), .text = {}});
}

void TreeModel::add(Node parent, Kind kind, std::string name, std::string text, XmlNodePtr element) {
  auto& above = nodes_[parent];
  if (above.childCount == 0) above.firstChild = static_cast<Node>(nodes_.size());
  nodes_.push_back({.element = std::move(element),
                    .name = std::move(name),
                    .text = std::move(text),
                    .parent = parent,
                    .row = above.childCount++,
                    .kind = kind});
}

void TreeModel::open(Node node) {
  if (std::exchange(nodes_[node].opened, true) || nodes_[node].kind != Kind::Element) return;
  const auto element = nodes_[node].element;
  for (auto& [name, value] : element->attributes()) add(node, Kind::Attribute, name, value, nullptr);
  const auto children = element->childNodes();
  nodes_[node].hasElements = std::ranges::any_of(children, isElement);
  if (!nodes_[node].hasElements) return;
  for (const auto& child : children) {
    if (isElement(child)) add(node, Kind::Element, child->name(), {}, child);
    if (isText(child)) add(node, Kind::Text, {}, child->text(), nullptr);
  }
}

std::size_t TreeModel::childCount(Node node) {
  open(node);
  return nodes_[node].childCount;
}

TreeModel::Node TreeModel::child(Node parent, std::size_t index) {
  open(parent);
  return nodes_[parent].firstChild + static_cast<Node>(index);
}

std::optional<TreeModel::Node> TreeModel::parent(Node node) const {
  return node == root ? std::nullopt : std::optional(nodes_[node].parent);
}

std::string TreeModel::value(Node node) {
  if (kind(node) != Kind::Element) return nodes_[node].text;
  open(node);
  return nodes_[node].hasElements ? std::string() : nodes_[node].element->text();
}

std::string TreeModel::step(Node node) {
  if (kind(node) == Kind::Attribute) return "/@" + name(node);
  std::size_t before = 0;
  std::size_t alike = 0;
  const auto above = parent(node);
  for (std::size_t row = 0; above && row < childCount(*above); ++row) {
    const auto other = child(*above, row);
    if (kind(other) != kind(node) || name(other) != name(node)) continue;
    ++alike;
    if (other < node) ++before;
  }
  const auto position = alike > 1 ? "[" + std::to_string(before + 1) + "]" : std::string();
  return "/" + (kind(node) == Kind::Text ? std::string("text()") : name(node)) + position;
}

std::string TreeModel::path(Node node) {
  std::string path;
  for (std::optional<Node> at = node; at; at = parent(*at)) path.insert(0, step(*at));
  return path;
}

TreeModel::Node TreeModel::next(Node node) {
  if (childCount(node) > 0) return nodes_[node].firstChild;
  while (node != root && nodes_[node].row + 1 == nodes_[nodes_[node].parent].childCount) {
    node = nodes_[node].parent;
  }
  return node == root ? root : node + 1;
}

TreeModel::Node TreeModel::previous(Node node) {
  if (node != root && nodes_[node].row == 0) return nodes_[node].parent;
  if (node != root) --node;
  while (childCount(node) > 0) node = nodes_[node].firstChild + nodes_[node].childCount - 1;
  return node;
}

bool TreeModel::holds(Node node, const std::string& text) {
  return lowerCased(name(node)).find(text) != std::string::npos ||
         lowerCased(value(node)).find(text) != std::string::npos;
}

std::optional<TreeModel::Node> TreeModel::find(std::string_view text, Node from, Direction direction,
                                               bool fromItself) {
  if (text.empty()) return std::nullopt;
  const auto wanted = lowerCased(text);
  if (fromItself && holds(from, wanted)) return from;
  auto node = from;
  do {
    node = direction == Direction::Forward ? next(node) : previous(node);
    if (holds(node, wanted)) return node;
  } while (node != from);
  return std::nullopt;
}

}  // namespace vlclientui::engine
