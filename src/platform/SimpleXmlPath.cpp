#include "platform/SimpleXmlPath.h"

#include <algorithm>
#include <charconv>

#include "platform/XmlRoot.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

/// A child walk goes one call deeper per step.
constexpr std::size_t maxSteps = 32;

/// Characters that a name may hold without closer inspection; others send the path to the full XPath engine.
bool isNameCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_' || character == '-' || character == '.';
}

bool isSimpleName(std::string_view name) {
  const auto isStart = [](char character) {
    return isNameCharacter(character) && !(character >= '0' && character <= '9') && character != '-' &&
           character != '.';
  };
  return !name.empty() && isStart(name[0]) && std::all_of(name.begin(), name.end(), isNameCharacter);
}

std::optional<std::size_t> toIndex(std::string_view digits) {
  std::size_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto [parsedTo, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || parsedTo != end || digits.empty()) return std::nullopt;
  return value;
}

xmlAttr* findAttribute(const xmlNode* element, const std::string& name) {
  for (xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
    if (attribute->ns == nullptr && view(attribute->name) == name) return attribute;
  }
  return nullptr;
}

}  // namespace

std::string_view SimpleXmlPath::takeOrigin(std::string_view path) {
  if (path.starts_with(".//")) {
    reach_ = Reach::Descendants;
    return path.substr(3);
  }
  if (path.starts_with("./")) return path.substr(2);
  if (!path.starts_with('/')) return path;
  origin_ = Origin::Root;
  if (!path.starts_with("//")) return path.substr(1);
  reach_ = Reach::Descendants;
  return path.substr(2);
}

std::optional<SimpleXmlPath::Step> SimpleXmlPath::parseStep(std::string_view text) {
  Step step;
  if (const std::size_t bracket = text.find('['); bracket != std::string_view::npos) {
    if (text.back() != ']') return std::nullopt;
    step.index = toIndex(text.substr(bracket + 1, text.size() - bracket - 2));
    if (!step.index) return std::nullopt;
    text = text.substr(0, bracket);
  }
  if (text != "*" && !isSimpleName(text)) return std::nullopt;
  step.name = text;
  return step;
}

bool SimpleXmlPath::addStep(std::string_view text) {
  if (!attribute_.empty() || text.empty()) return false;
  if (text[0] == '@') {
    attribute_ = text.substr(1);
    return !steps_.empty() && isSimpleName(attribute_);
  }
  std::optional<Step> step = parseStep(text);
  if (!step || steps_.size() == maxSteps) return false;
  steps_.push_back(std::move(*step));
  return true;
}

std::optional<SimpleXmlPath> SimpleXmlPath::parse(std::string_view path) {
  SimpleXmlPath result;
  std::string_view rest = result.takeOrigin(path);
  for (;;) {
    const std::size_t slash = rest.find('/');
    if (!result.addStep(rest.substr(0, slash))) return std::nullopt;
    if (slash == std::string_view::npos) return result;
    rest.remove_prefix(slash + 1);
  }
}

bool SimpleXmlPath::matches(const xmlNode* node, const Step& step) {
  if (!isElement(node)) return false;
  return step.name == "*" || (node->ns == nullptr && view(node->name) == step.name);
}

/// @returns false when the result is full.
bool SimpleXmlPath::add(xmlNode* element, std::vector<xmlNode*>& result, std::size_t limit) const {
  if (attribute_.empty()) {
    result.push_back(element);
  } else if (xmlAttr* attribute = findAttribute(element, attribute_); attribute != nullptr) {
    result.push_back(reinterpret_cast<xmlNode*>(attribute));
  }
  return result.size() < limit;
}

/// Follows the steps downward. Parents of one step never contain each other, so order is kept.
class SimpleXmlPath::ChildWalk {
 public:
  ChildWalk(const SimpleXmlPath& path, std::vector<xmlNode*>& result, std::size_t limit)
      : path_(path), result_(result), limit_(limit) {}

  /// @returns false when the result is full.
  bool walk(const xmlNode* parent, std::size_t stepIndex) {
    if (stepIndex == path_.steps_.size()) {
      return path_.add(const_cast<xmlNode*>(parent), result_, limit_);
    }
    const Step& step = path_.steps_[stepIndex];
    std::size_t position = 0;
    for (const xmlNode* child = childrenOf(parent); child != nullptr; child = child->next) {
      if (!matches(child, step)) continue;
      if ((!step.index || *step.index == position) && !walk(child, stepIndex + 1)) return false;
      if (step.index && *step.index == position++) return true;
    }
    return true;
  }

 private:
  const SimpleXmlPath& path_;
  std::vector<xmlNode*>& result_;
  std::size_t limit_;
};

/// Visits all elements below the origin in document order and compares each one's ancestors with the steps.
class SimpleXmlPath::DescendantWalk {
 public:
  DescendantWalk(const SimpleXmlPath& path, const xmlNode* origin)
      : path_(path), origin_(origin), places_(path.steps_.size()) {}

  void walk(std::vector<xmlNode*>& result, std::size_t limit) {
    for (xmlNode* node = nextInOrder(origin_, origin_); node != nullptr; node = nextInOrder(node, origin_)) {
      if (fits(node) && !path_.add(node, result, limit)) return;
    }
  }

 private:
  /// The last sibling that was numbered, so that counting goes on from there.
  struct Place {
    const xmlNode* parent = nullptr;
    const xmlNode* node = nullptr;
    std::size_t position = 0;
  };

  bool fits(const xmlNode* node) {
    for (std::size_t stepIndex = path_.steps_.size(); stepIndex-- > 0; node = node->parent) {
      if (node == nullptr || node == origin_ || !matches(node, path_.steps_[stepIndex])) return false;
      const std::optional<std::size_t>& index = path_.steps_[stepIndex].index;
      if (index && positionOf(node, stepIndex) != *index) return false;
    }
    return true;
  }

  std::size_t positionOf(const xmlNode* node, std::size_t stepIndex) {
    Place& place = places_[stepIndex];
    if (place.parent != node->parent) place = {node->parent, firstMatch(node->parent, stepIndex), 0};
    while (place.node != node) {
      place.node = place.node->next;
      if (matches(place.node, path_.steps_[stepIndex])) ++place.position;
    }
    return place.position;
  }

  [[nodiscard]] const xmlNode* firstMatch(const xmlNode* parent, std::size_t stepIndex) const {
    const xmlNode* child = parent->children;
    while (!matches(child, path_.steps_[stepIndex])) child = child->next;
    return child;
  }

  const SimpleXmlPath& path_;
  const xmlNode* origin_;
  std::vector<Place> places_;
};

std::vector<xmlNode*> SimpleXmlPath::select(xmlNode* from, std::size_t limit) const {
  std::vector<xmlNode*> result;
  XmlRoot root(from);
  xmlNode* origin = origin_ == Origin::Root ? root.node() : from;
  if (reach_ == Reach::Descendants) {
    DescendantWalk(*this, origin).walk(result, limit);
  } else {
    ChildWalk(*this, result, limit).walk(origin, 0);
  }
  return result;
}

}  // namespace vlclientui::platform
