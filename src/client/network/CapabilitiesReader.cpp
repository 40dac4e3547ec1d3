#include <algorithm>
#include <utility>

#include "client/network/CoverageAnswers.h"
#include "client/network/XmlTree.h"

namespace vlclientui::client {
namespace {

std::vector<std::string> textsOf(const XmlElement& parent, std::string_view name) {
  std::vector<std::string> texts;
  for (const XmlElement& element : parent.children(name)) {
    if (std::string text = element.text(); !text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

std::optional<Bounds> boundsBetween(const std::vector<double>& low, const std::vector<double>& high) {
  if (low.size() < 2 || high.size() < 2 || low[0] > high[0] || low[1] > high[1]) return std::nullopt;
  return Bounds{low[0], low[1], high[0], high[1]};
}

std::optional<Bounds> lonLatBox(const XmlElement& box) {
  return boundsBetween(numbersIn(box.child("LowerCorner").text()),
                       numbersIn(box.child("UpperCorner").text()));
}

std::optional<Bounds> lonLatEnvelope(const XmlElement& envelope) {
  const auto corners = envelope.children("pos");
  if (corners.size() < 2) return std::nullopt;
  return boundsBetween(numbersIn(corners[0].text()), numbersIn(corners[1].text()));
}

CoverageSummary summaryOfFirstVersion(const XmlElement& offering) {
  CoverageSummary summary;
  summary.id = offering.child("name").text();
  summary.title = offering.child("label").text();
  summary.abstract = offering.child("description").text();
  summary.keywords = textsOf(offering.child("keywords"), "keyword");
  summary.geographic = lonLatEnvelope(offering.child("lonLatEnvelope"));
  return summary;
}

CoverageSummary summaryOf(const XmlElement& element) {
  CoverageSummary summary;
  summary.id = element.child("CoverageId").text();
  if (summary.id.empty()) summary.id = element.child("Identifier").text();
  summary.title = element.child("Title").text();
  summary.abstract = element.child("Abstract").text();
  summary.keywords = textsOf(element.child("Keywords"), "Keyword");
  summary.geographic = lonLatBox(element.child("WGS84BoundingBox"));
  return summary;
}

// Of 1.1, summaries may stand in summaries; those that are no coverage themselves have no identifier.
void addSummaries(const XmlElement& parent, std::vector<CoverageSummary>& coverages) {
  for (const XmlElement& element : parent.children("CoverageSummary")) {
    CoverageSummary summary = summaryOf(element);
    if (!summary.id.empty()) coverages.push_back(std::move(summary));
    addSummaries(element, coverages);
  }
}

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
  for (const XmlElement& offering : root.child("ContentMetadata").children("CoverageOfferingBrief")) {
    CoverageSummary summary = summaryOfFirstVersion(offering);
    if (!summary.id.empty()) found.coverages.push_back(std::move(summary));
  }
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
  addSummaries(root.child("Contents"), found.coverages);
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
  const auto tree = XmlTree::parse(document);
  if (!tree) return CoverageProblem{"", "the answer is no document of a coverage service"};
  const XmlElement root = tree->root();
  if (isException(root)) return exceptionOf(root);
  if (root.name() == "WCS_Capabilities") return firstVersion(root);
  if (root.name() != "Capabilities")
    return CoverageProblem{"", "the answer is no document of a coverage service"};
  const bool isSecond = root.attribute("version").starts_with("2");
  return laterVersion(root, isSecond ? CoverageVersion::V201 : CoverageVersion::V111);
}

std::optional<CoverageProblem> readException(std::string_view document) {
  const auto tree = XmlTree::parse(document);
  if (!tree || !isException(tree->root())) return std::nullopt;
  return exceptionOf(tree->root());
}

}  // namespace vlclientui::client
