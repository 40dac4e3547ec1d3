#include "viewer/project/ProjectDocument.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

constexpr int version = 1;

/// What is wrong with a document, as the end of a sentence.
class Damage : public std::exception {
 public:
  explicit Damage(std::string words) : words_(std::move(words)) {}
  [[nodiscard]] const char* what() const noexcept override { return words_.c_str(); }

 private:
  std::string words_;
};

// The shortest text that reads as the same number.
std::string textOf(double value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string attribute(const XmlNode& element, const char* name) {
  return element.getNamedItem(name).value_or(std::string());
}

template <class Number>
Number numberIn(const XmlNode& element, const char* name) {
  const std::string text = attribute(element, name);
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  if (!isWhole || value != value)
    throw Damage("the " + std::string(name) + " of a " + element.name() + " is '" + text + "'");
  return value;
}

bool isFile(const std::string& reference) { return fs::path(reference).is_absolute(); }

// Empty for what does not lie below.
std::string wayBelow(const fs::path& folder, const std::string& reference) {
  if (!isFile(reference)) return {};
  const fs::path way = fs::path(reference).lexically_relative(folder);
  return way.empty() || *way.begin() == ".." ? std::string() : way.generic_string();
}

class Writer {
 public:
  Writer(const XmlService& xml, fs::path folder)
      : xml_(xml), folder_(std::move(folder)), document_(xml.createDocument()) {}

  void write(const Project& project) {
    const XmlNodePtr root = document_->appendChild(document_->createElement("VLProject"));
    root->setAttribute("Version", std::to_string(version));
    if (!project.file.empty()) root->setAttribute("Project", project.file);
    const XmlNodePtr map = add(root, "Map");
    if (!project.system.empty()) map->setAttribute("System", project.system);
    write(project.view, add(map, "View"));
    if (project.area) write(*project.area, add(map, "Area"));
    const XmlNodePtr services = add(root, "Services");
    if (project.picked) services->setAttribute("Picked", std::to_string(*project.picked));
    for (const ProjectService& service : project.services) write(service, add(services, "Service"));
  }
  void save(const fs::path& file) const { document_->save(file.string()); }

 private:
  XmlNodePtr add(const XmlNodePtr& parent, const char* name) {
    return parent->appendChild(document_->createElement(name));
  }
  template <class Box>
  static void write(const Box& box, const XmlNodePtr& element) {
    for (const auto& [name, value] :
         {std::pair("XMin", box.xMin), {"YMin", box.yMin}, {"XMax", box.xMax}, {"YMax", box.yMax}})
      element->setAttribute(name, textOf(value));
  }
  void write(const ProjectService& service, const XmlNodePtr& element) {
    element->setAttribute("Reference", service.reference);
    const std::string way = wayBelow(folder_, service.reference);
    if (!way.empty()) element->setAttribute("Beside", way);
    const ServiceState& state = service.state;
    if (!state.name.empty()) element->setAttribute("Name", state.name);
    element->setAttribute("Visible", state.isVisible ? "true" : "false");
    element->setAttribute("Opacity", textOf(state.opacity));
    if (!state.stretch.empty()) add(element, "Stretch")->setText(state.stretch);
    if (!state.properties.empty())
      add(element, "Properties")->appendChild(documentOf(service)->documentElement());
  }
  [[nodiscard]] std::unique_ptr<XmlDocument> documentOf(const ProjectService& service) const {
    auto properties = xml_.createDocument();
    if (properties->loadXml(service.state.properties)) return properties;
    throw RuntimeFailure("The properties of '" + service.reference +
                         "' are no XML document, and a project cannot keep them");
  }

  const XmlService& xml_;
  fs::path folder_;
  std::unique_ptr<XmlDocument> document_;
};

std::string foundReference(const XmlNode& element, const fs::path& folder) {
  std::string reference = attribute(element, "Reference");
  if (reference.empty()) throw Damage("a Service has no Reference");
  const std::string way = attribute(element, "Beside");
  std::error_code error;
  const bool isElsewhere = !way.empty() && isFile(reference) && !fs::exists(reference, error);
  if (isElsewhere && fs::exists(folder / way, error)) return (folder / way).lexically_normal().string();
  return reference;
}

ProjectService readService(const XmlNode& element, const fs::path& folder) {
  ProjectService service;
  service.reference = foundReference(element, folder);
  ServiceState& state = service.state;
  state.name = attribute(element, "Name");
  state.isVisible = attribute(element, "Visible") != "false";
  if (element.getNamedItem("Opacity"))
    state.opacity = std::clamp(numberIn<double>(element, "Opacity"), 0.0, 1.0);
  state.stretch = textAt(element, "Stretch");
  if (const XmlNodePtr properties = element.selectSingleNode("Properties"))
    if (const XmlNodePtr document = properties->firstChild()) state.properties = document->xml();
  return service;
}

// Nothing for one that makes no sense: the services are worth more than the place where somebody looked.
template <class Box>
std::optional<Box> boxIn(const XmlNode& map, const char* name) {
  const XmlNodePtr element = map.selectSingleNode(name);
  if (!element) return {};
  try {
    const Box read{numberIn<double>(*element, "XMin"), numberIn<double>(*element, "YMin"),
                   numberIn<double>(*element, "XMax"), numberIn<double>(*element, "YMax")};
    const bool isAny = read.xMin < read.xMax && read.yMin < read.yMax;
    const bool isBounded = std::isfinite(read.xMax - read.xMin) && std::isfinite(read.yMax - read.yMin);
    return isAny && isBounded ? std::optional(read) : std::nullopt;
  } catch (const Damage&) {
    return {};
  }
}

void readMap(const XmlNode& map, Project& project) {
  project.system = attribute(map, "System");
  if (const auto view = boxIn<host::GeographicEnvelope>(map, "View")) project.view = *view;
  project.area = boxIn<client::Bounds>(map, "Area");
}

Project readProject(const XmlDocument& document, const fs::path& folder) {
  const XmlNodePtr root = document.selectSingleNode("/VLProject");
  if (!root) throw Damage("it holds no VLProject");
  const int written = numberIn<int>(*root, "Version");
  if (written > version)
    throw Damage("it was written by a newer program, as version " + std::to_string(written));
  Project project;
  project.file = attribute(*root, "Project");
  if (const XmlNodePtr map = root->selectSingleNode("Map")) readMap(*map, project);
  for (const XmlNodePtr& element : root->selectNodes("Services/Service"))
    project.services.push_back(readService(*element, folder));
  const XmlNodePtr services = root->selectSingleNode("Services");
  if (!services || !services->getNamedItem("Picked")) return project;
  const auto picked = numberIn<std::size_t>(*services, "Picked");
  if (picked < project.services.size()) project.picked = picked;
  return project;
}

}  // namespace

bool isProjectFile(const fs::path& file) {
  const std::string ending = file.extension().string();
  const std::string wanted = projectEnding;
  const auto isSame = [](char one, char other) { return (one | 0x20) == (other | 0x20); };
  return std::ranges::equal(ending, wanted, isSame);
}

void saveProject(const Project& project, const XmlService& xml, const fs::path& file) {
  Writer writer(xml, file.parent_path());
  writer.write(project);
  writer.save(file);
}

Project openProject(const XmlService& xml, const fs::path& file) {
  const auto document = xml.createDocument();
  if (!document->load(file.string()))
    throw RuntimeFailure("'" + file.string() + "' is no project: it cannot be read, or is no XML document");
  try {
    return readProject(*document, file.parent_path());
  } catch (const Damage& damage) {
    throw RuntimeFailure("'" + file.string() + "' is no project: " + damage.what());
  }
}

}  // namespace vlclientui::viewer
