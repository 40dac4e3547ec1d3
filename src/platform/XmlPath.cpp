#include "platform/XmlPath.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "contracts/RuntimeFailure.h"
#include "platform/SimpleXmlPath.h"
#include "platform/XmlRoot.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

template <auto free>
struct FreeWith {
  template <typename Type>
  void operator()(Type* object) const {
    free(object);
  }
};
using XPathContext = std::unique_ptr<xmlXPathContext, FreeWith<xmlXPathFreeContext>>;
using CompiledXPath = std::unique_ptr<xmlXPathCompExpr, FreeWith<xmlXPathFreeCompExpr>>;
using XPathResult = std::unique_ptr<xmlXPathObject, FreeWith<xmlXPathFreeObject>>;

struct Path {
  std::optional<SimpleXmlPath> simple;
  CompiledXPath compiled;  ///< when it is not a simple path
};

[[noreturn]] void failPath(std::string_view path) {
  throw RuntimeFailure("'" + std::string(path) + "' is no path to nodes");
}

// Without it, libxml2 would print errors to standard error.
void ignoreError(void* /*context*/, xmlError* /*error*/) {}

/// The paths that this thread used, and the XPath engine for those that are not simple.
class PathCache {
 public:
  PathCache() : context_((xmlInitParser(), xmlXPathNewContext(nullptr))) {
    if (context_ == nullptr) throw RuntimeFailure("No memory for paths");
    context_->error = ignoreError;
  }

  [[nodiscard]] xmlXPathContext& context() { return *context_; }

  [[nodiscard]] const Path& find(std::string_view path) {
    std::string key(path);
    if (const auto found = paths_.find(key); found != paths_.end()) return found->second;
    // Paths with indexes in them may be many; starting over costs little.
    if (paths_.size() >= maxPaths) paths_.clear();
    return paths_.emplace(std::move(key), make(path)).first->second;
  }

 private:
  static constexpr std::size_t maxPaths = 256;

  [[nodiscard]] Path make(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) failPath(path);
    if (std::optional<SimpleXmlPath> simple = SimpleXmlPath::parse(path)) return {std::move(simple), nullptr};
    const std::string fromOne = withIndexesFromOne(path);
    CompiledXPath compiled(xmlXPathCtxtCompile(context_.get(), xmlText(fromOne.c_str())));
    if (compiled == nullptr) failPath(path);
    return {std::nullopt, std::move(compiled)};
  }

  XPathContext context_;
  std::unordered_map<std::string, Path> paths_;
};

PathCache& cacheOfThread() {
  thread_local PathCache cache;
  return cache;
}

std::vector<xmlNode*> nodesOf(const xmlNodeSet* set, XmlRoot& root, std::size_t limit) {
  std::vector<xmlNode*> result;
  for (int index = 0; set != nullptr && index < set->nodeNr && result.size() < limit; ++index) {
    xmlNode* node = set->nodeTab[index];
    if (node->type != XML_NAMESPACE_DECL && !root.isStandIn(node)) result.push_back(node);
  }
  return result;
}

std::vector<xmlNode*> evaluate(xmlXPathContext& context, xmlNode* from, const Path& path,
                               std::string_view text, std::size_t limit) {
  XmlRoot root(from);
  context.doc = root.document();
  context.node = from;
  const XPathResult result(xmlXPathCompiledEval(path.compiled.get(), &context));
  context.doc = nullptr;
  context.node = nullptr;
  if (result == nullptr || result->type != XPATH_NODESET) failPath(text);
  xmlXPathNodeSetSort(result->nodesetval);
  return nodesOf(result->nodesetval, root, limit);
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// The predicate that begins here, if it is a plain number, and its length up to the closing bracket.
std::optional<std::pair<unsigned long long, std::size_t>> plainIndex(std::string_view predicate) {
  const std::size_t end = predicate.find(']');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view digits = trimmed(predicate.substr(0, end));
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit)) return std::nullopt;
  unsigned long long value = 0;
  if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc()) {
    return std::nullopt;
  }
  return std::pair(value, end);
}

}  // namespace

std::string withIndexesFromOne(std::string_view path) {
  std::string result;
  char quote = '\0';
  for (std::size_t at = 0; at < path.size(); ++at) {
    const char character = path[at];
    result += character;
    if (quote != '\0') {
      if (character == quote) quote = '\0';
    } else if (character == '\'' || character == '"') {
      quote = character;
    } else if (character == '[') {
      if (const auto index = plainIndex(path.substr(at + 1))) {
        result += std::to_string(index->first + 1);
        at += index->second;
      }
    }
  }
  return result;
}

std::vector<xmlNode*> selectXmlNodes(xmlNode* from, std::string_view path, std::size_t limit) {
  PathCache& cache = cacheOfThread();
  const Path& known = cache.find(path);
  return known.simple ? known.simple->select(from, limit)
                      : evaluate(cache.context(), from, known, path, limit);
}

}  // namespace vlclientui::platform
