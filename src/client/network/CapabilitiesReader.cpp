#include <algorithm>
#include <cmath>
#include <utility>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageTimes.h"
#include "client/network/XmlTree.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

std::vector<std::string> textsOf(const XmlElement& parent, std::string_view name) {
  std::vector<std::string> texts;
  for (const XmlElement& element : parent.children(name)) {
    if (std::string text = element.text(); !text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

// Edges of pixels reach a little beyond the globe, and some servers count longitudes from 0 to 360. Whoever
// tells more tells no degrees.
bool areDegrees(const std::vector<double>& corner) {
  constexpr double mostAcross = 540;
  constexpr double mostUp = 100;
  return corner.size() >= 2 && std::abs(corner[0]) <= mostAcross && std::abs(corner[1]) <= mostUp;
}

std::optional<Bounds> boundsBetween(const std::vector<double>& low, const std::vector<double>& high) {
  if (!areDegrees(low) || !areDegrees(high) || low[0] > high[0] || low[1] > high[1]) return std::nullopt;
  return Bounds{low[0], low[1], high[0], high[1]};
}

/// The coverages of the list, in the order of their beginnings. Of 1.1, summaries may stand in summaries;
/// those that are no coverage themselves have no identifier.
class Summaries final : public XmlRecords {
 public:
  [[nodiscard]] bool isRecord(std::string_view name) const override {
    return name == "CoverageSummary" || name == "CoverageOfferingBrief";
  }

  void begin(std::string_view name) override {
    path_.push_back(name);
    if (!isRecord(name)) return;
    open_.push_back({found_.size(), path_.size()});
    found_.emplace_back();
  }

  void end(std::string_view name, std::string_view text) override {
    const Open& open = open_.back();
    const std::size_t depth = path_.size() - open.depth;
    Parts& parts = found_[open.index];
    if (depth == 1) takeText(parts, name, text);
    if (depth == 2) takeInner(parts, path_[path_.size() - 2], name, text);
    if (depth == 0) open_.pop_back();
    path_.pop_back();
  }

  [[nodiscard]] std::vector<CoverageSummary> take() {
    std::vector<CoverageSummary> coverages;
    coverages.reserve(found_.size());
    for (Parts& parts : found_) {
      if (parts.summary.id.empty()) continue;
      parts.summary.geographic = boundsBetween(numbersIn(parts.low), numbersIn(parts.high));
      parts.summary.dates = parts.taken.dates();
      coverages.push_back(std::move(parts.summary));
    }
    found_.clear();
    return coverages;
  }

 private:
  struct Parts {
    CoverageSummary summary;
    std::string low;  ///< corners of the first box
    std::string high;
    DateSpan taken;
  };
  struct Open {
    std::size_t index;
    std::size_t depth;
  };

  static void keepFirst(std::string& kept, std::string_view text) {
    if (kept.empty()) kept = trimmed(text);
  }

  static void takeText(Parts& parts, std::string_view name, std::string_view text) {
    CoverageSummary& summary = parts.summary;
    if (name == "CoverageId") summary.id = trimmed(text);
    if (name == "Identifier" || name == "name") keepFirst(summary.id, text);
    if (name == "Title" || name == "label") keepFirst(summary.title, text);
    if (name == "Abstract" || name == "description") keepFirst(summary.abstract, text);
  }

  static void takeInner(Parts& parts, std::string_view outer, std::string_view name, std::string_view text) {
    if (outer == "Keywords" || outer == "keywords") {
      std::string word = trimmed(text);
      if (!word.empty()) parts.summary.keywords.push_back(std::move(word));
    } else if (outer == "WGS84BoundingBox") {
      if (name == "LowerCorner") keepFirst(parts.low, text);
      if (name == "UpperCorner") keepFirst(parts.high, text);
    } else if (outer == "lonLatEnvelope") {
      if (name == "pos") keepFirst(parts.low.empty() ? parts.low : parts.high, text);
      if (name == "timePosition") parts.taken.addMoment(text);
    }
  }

  std::vector<Parts> found_;
  std::vector<Open> open_;
  std::vector<std::string_view> path_;  ///< of the records and what stands in them
};

std::string operationAddress(const XmlElement& root, std::string_view name) {
  for (const XmlElement& operation : root.child("OperationsMetadata").children("Operation")) {
    if (operation.attribute("name") == name) return operation.at("DCP/HTTP/Get").attribute("href");
  }
  return {};
}

std::vector<std::string> formatsOf(const XmlElement& root) {
  std::vector<std::string> formats = textsOf(root.child("ServiceMetadata"), "formatSupported");
  for (const XmlElement& operation : root.child("OperationsMetadata").children("Operation")) {
    for (const XmlElement& parameter : operation.children("Parameter")) {
      if (operation.attribute("name") != "GetCoverage" || parameter.attribute("name") != "format") continue;
      for (std::string& format : textsOf(parameter.child("AllowedValues"), "Value"))
        formats.push_back(format);
    }
  }
  return formats;
}

// An extension that is not named in the profiles may be missing; a server that names none at all is tried.
bool offersScaling(const XmlElement& root) {
  const auto profiles = textsOf(root.child("ServiceIdentification"), "Profile");
  return profiles.empty() || std::ranges::any_of(profiles, [](const std::string& profile) {
           return profile.find("scaling") != std::string::npos;
         });
}

CoverageCapabilities firstVersion(const XmlElement& root) {
  CoverageCapabilities found;
  found.version = CoverageVersion::V100;
  const XmlElement service = root.child("Service");
  found.title = service.child("label").text();
  if (found.title.empty()) found.title = service.child("name").text();
  found.abstract = service.child("description").text();
  found.keywords = textsOf(service.child("keywords"), "keyword");
  const XmlElement requests = root.at("Capability/Request");
  constexpr std::string_view way = "DCPType/HTTP/Get/OnlineResource";
  found.describeAddress = requests.child("DescribeCoverage").at(way).attribute("href");
  found.getAddress = requests.child("GetCoverage").at(way).attribute("href");
  return found;
}

CoverageCapabilities laterVersion(const XmlElement& root, CoverageVersion version) {
  CoverageCapabilities found;
  found.version = version;
  const XmlElement service = root.child("ServiceIdentification");
  found.title = service.child("Title").text();
  found.abstract = service.child("Abstract").text();
  found.keywords = textsOf(service.child("Keywords"), "Keyword");
  found.versions = textsOf(service, "ServiceTypeVersion");
  found.describeAddress = operationAddress(root, "DescribeCoverage");
  found.getAddress = operationAddress(root, "GetCoverage");
  found.formats = formatsOf(root);
  found.canScale = version != CoverageVersion::V201 || offersScaling(root);
  return found;
}

CoverageProblem exceptionOf(const XmlElement& root) {
  CoverageProblem problem{"", "the server refuses without a reason"};
  for (const XmlElement& exception : root.children()) {
    problem.code = exception.attribute("exceptionCode");
    if (problem.code.empty()) problem.code = exception.attribute("code");
    const XmlElement words = exception.child("ExceptionText");
    const std::string text = words ? words.text() : exception.text();
    if (!text.empty()) problem.text = text;
    break;
  }
  return problem;
}

bool isException(const XmlElement& root) {
  return root.name() == "ExceptionReport" || root.name() == "ServiceExceptionReport";
}

}  // namespace

std::string versionText(CoverageVersion version) {
  if (version == CoverageVersion::V201) return "2.0.1";
  return version == CoverageVersion::V111 ? "1.1.1" : "1.0.0";
}

std::variant<CoverageCapabilities, CoverageProblem> readCapabilities(std::string_view document) {
  Summaries summaries;
  const auto tree = XmlTree::parse(document, summaries);
  if (!tree) return CoverageProblem{"", "the answer is no document of a coverage service"};
  const XmlElement root = tree->root();
  if (isException(root)) return exceptionOf(root);
  const bool isFirst = root.name() == "WCS_Capabilities";
  if (!isFirst && root.name() != "Capabilities")
    return CoverageProblem{"", "the answer is no document of a coverage service"};
  const bool isSecond = root.attribute("version").starts_with("2");
  CoverageCapabilities found =
      isFirst ? firstVersion(root)
              : laterVersion(root, isSecond ? CoverageVersion::V201 : CoverageVersion::V111);
  found.coverages = summaries.take();
  return found;
}

std::optional<CoverageProblem> readException(std::string_view document) {
  const auto tree = XmlTree::parse(document);
  return tree ? exceptionIn(*tree) : std::nullopt;
}

std::optional<CoverageProblem> exceptionIn(const XmlTree& document) {
  const XmlElement root = document.root();
  return isException(root) ? std::optional(exceptionOf(root)) : std::nullopt;
}

}  // namespace vlclientui::client
