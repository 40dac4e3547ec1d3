#include "host/RunDialogs.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <locale>
#include <map>
#include <optional>
#include <sstream>
#include <system_error>

#include "client/connections/SentSecret.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServerClient.h"
#include "contracts/Operations.h"
#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/ParsedDocument.h"
#include "export/ExportDialogInterfaces.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesDialog.h"
#include "selection/FirstServers.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace vlclientui::host {
namespace {

constexpr std::array imagePaths{"//Basic/XMin", "//Basic/YMin",  "//Basic/XMax",
                                "//Basic/YMax", "//Basic/NCols", "//Basic/NRows"};

/// The words behind a dialog: a reference, then names and values in turn.
class Words {
 public:
  explicit Words(const std::vector<std::string>& words) {
    const std::size_t first = words.size() % 2 == 0 ? 2 : 1;
    if (first == 2) reference_ = words[1];
    for (std::size_t i = first; i + 1 < words.size(); i += 2) values_[words[i]] = words[i + 1];
  }
  [[nodiscard]] const std::string& reference() const {
    if (reference_.empty()) throw RuntimeFailure("no service is named");
    return reference_;
  }
  [[nodiscard]] std::string value(const std::string& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::string() : found->second;
  }
  void refuseOthers(std::initializer_list<std::string_view> known) const {
    for (const auto& [name, value] : values_) {
      if (std::find(known.begin(), known.end(), name) == known.end())
        throw RuntimeFailure("'" + name + "' is unknown");
    }
  }

 private:
  std::string reference_;
  std::map<std::string, std::string> values_;
};

std::string wholeReference(const std::string& reference) {
  std::error_code error;
  return std::filesystem::exists(reference, error)
             ? std::filesystem::absolute(reference).lexically_normal().string()
             : reference;
}

std::shared_ptr<client::CatalogueImageService> serviceOf(const ComposedHost& host, const Words& words) {
  auto service = std::make_shared<client::OVLCatalogueImageService>(
      host.catalogue, *host.platform->xml, wholeReference(words.reference()),
      client::ImageServiceSettings{host.installation.definitions});
  if (const std::string properties = words.value("properties"); !properties.empty())
    service->setServiceProperties(properties);
  return service;
}

/// Makes a part of the service the image last returned, since the window begins with it.
void showImage(client::CatalogueImageService& service, const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  client::Bounds place;
  int columns = 0;
  int rows = 0;
  stream >> place.xMin >> place.yMin >> place.xMax >> place.yMax >> columns >> rows;
  if (!stream || columns < 1 || rows < 1) throw RuntimeFailure("'" + text + "' is no place of an image");
  service.showDrawn(service.drawing(), place, columns, rows);
}

std::string showExport(const ComposedHost& host, const Words& words) {
  words.refuseOthers({"properties", "extents", "image"});
  const auto service = serviceOf(host, words);
  if (const std::string image = words.value("image"); !image.empty()) showImage(*service, image);
  const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
  if (dialog->IExportImageDialog_Init("", nullptr, service) == boolean16False)
    throw RuntimeFailure("the export cannot be prepared");
  dialog->iExportImageDialog_ShowModalDialogEx(words.value("extents"));
  return dialog->iExportImageDialog_GetUpdatedProperties();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

std::string showServices(const ComposedHost& host, const Words& words) {
  words.refuseOthers({"extent", "servers"});
  std::optional<ServersInPlace> servers;
  if (const std::string told = words.value("servers"); !told.empty()) servers.emplace(linesOf(told));
  const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
  const bool isShown = dialog->Init("", std::make_shared<client::OVLCatalogueServerClient>(host.catalogue)) !=
                           boolean16False &&
                       dialog->ShowDialogEx(words.value("extent")) != boolean16False;
  if (!isShown) throw RuntimeFailure(dialog->Status());
  return dialog->GetSelectedServices();
}

enum class Side { Properties, ViewPoint };

std::string showProperties(const ComposedHost& host, const Words& words, Side side) {
  words.refuseOthers({"properties"});
  const auto dialog = queryInterface<IOVLServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
  if (dialog->Init("", nullptr, serviceOf(host, words)) == boolean16False)
    throw RuntimeFailure(dialog->Status());
  if (side == Side::Properties) {
    dialog->ShowPropertiesModalDialog();
  } else if (dialog->ShowViewPointModalDialog() == boolean16False) {
    throw RuntimeFailure(dialog->Status());
  }
  return dialog->GetUpdatedProperties();
}

}  // namespace

std::string showDialogOfRun(const ComposedHost& host, const runs::RunStatement& open) {
  const std::string& dialog = open.words.front();
  const Words words(open.words);
  if (dialog == "export") return showExport(host, words);
  if (dialog == "services") return showServices(host, words);
  if (dialog == "properties") return showProperties(host, words, Side::Properties);
  if (dialog == "viewpoint") return showProperties(host, words, Side::ViewPoint);
  throw RuntimeFailure("there are export, services, properties and viewpoint");
}

ToldDialog::ToldDialog(const std::string& dialog, const std::string& reference,
                       std::vector<std::string> more) {
  for (std::size_t i = 0; i + 1 < more.size();) {
    if (more[i + 1].empty()) {
      more.erase(more.begin() + static_cast<std::ptrdiff_t>(i),
                 more.begin() + static_cast<std::ptrdiff_t>(i) + 2);
    } else {
      i += 2;
    }
  }
  tellOperation({Operation::Kind::Dialog, {}, dialog, reference, std::move(more)});
}

ToldDialog::~ToldDialog() { tellOperation({Operation::Kind::DialogEnd, {}, {}, {}, {}}); }

std::vector<std::string> beginningOfServices(const std::string& extent) {
  std::string servers;
  for (const std::string& server : firstServers())
    servers += (servers.empty() ? "" : "\n") + client::withoutTypedSecrets(server).text;
  return {"extent", extent, "servers", servers};
}

std::vector<std::string> beginningOfExport(const ComposedHost& host, client::CatalogueImageService& service,
                                           const std::string& extents) {
  const auto document = parsedDocument(*host.platform->xml, service.GetImageMetadata("Basic"));
  std::string image;
  for (const char* const path : imagePaths)
    image += (image.empty() ? "" : " ") + readText(*document, path).value_or("");
  return {"properties", service.ServiceProperties(), "image", image, "extents", extents};
}

}  // namespace vlclientui::host
