#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

namespace vlclientui::platform {

/// The paths that almost all callers write: names or `*` between slashes, each with an optional index from 0,
/// from the node, the root (`/`) or anywhere below (`//`, `.//`), optionally ending in an attribute
/// (`@name`). Walking them takes one pass over the nodes concerned.
class SimpleXmlPath {
 public:
  /// Nothing for a path of any other form.
  [[nodiscard]] static std::optional<SimpleXmlPath> parse(std::string_view path);

  /// At most `limit` nodes, in document order.
  [[nodiscard]] std::vector<xmlNode*> select(xmlNode* from, std::size_t limit) const;

 private:
  enum class Origin { Node, Root };
  enum class Reach { Children, Descendants };

  struct Step {
    std::string name;
    std::optional<std::size_t> index;
  };

  class ChildWalk;
  class DescendantWalk;

  [[nodiscard]] static std::optional<Step> parseStep(std::string_view text);
  [[nodiscard]] static bool matches(const xmlNode* node, const Step& step);
  std::string_view takeOrigin(std::string_view path);
  bool addStep(std::string_view text);
  [[nodiscard]] bool add(xmlNode* element, std::vector<xmlNode*>& result, std::size_t limit) const;

  Origin origin_ = Origin::Node;
  Reach reach_ = Reach::Children;
  std::vector<Step> steps_;
  std::string attribute_;
};

}  // namespace vlclientui::platform
