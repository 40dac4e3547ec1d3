#include "client/ranges/OpenableFiles.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include <cpl_conv.h>
#include <cpl_error.h>

#include "client/network/FileContent.h"
#include "client/ranges/FileAnswers.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/ranges/WebMosaic.h"
#include "client/transport/HttpText.h"
#include "client/transport/Secrets.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

using FilePtr = OpenableFiles::FilePtr;

constexpr std::size_t mostFormBytes = 2 * MosaicTree::mostBytes;
constexpr std::size_t mostForms = 4096;
constexpr auto givenUp = "The file was given up.";

FilePtr failed(const std::string& problem) {
  CPLError(CE_Failure, CPLE_HttpResponse, "%s", problem.c_str());
  return nullptr;
}

// What lies beside a file is asked for only where it is known to be there. Some formats of it name files.
bool isLookedFor(const std::string& name) {
  if (!isBesideImages(name)) return true;
  const std::string small = smallLetters(name);
  if (small.ends_with(".aux") || small.ends_with(".rrd")) return false;
  const std::vector<std::string> names = RemoteFiles::shared().neighbors(name);
  return std::ranges::find(names, std::string(CPLGetFilename(name.c_str()))) != names.end();
}

// The raster library opens one source after the other, whoever still wants them.
FilePtr meet(const std::string& name) {
  const auto address = addressWithSecrets(name);
  if (!address || !isLookedFor(name)) return nullptr;
  if (WaitScope::isGivenUp()) return failed(givenUp);
  RemoteFile::Met met = RemoteFiles::shared().meet(*address);
  if (const auto* problem = std::get_if<RemoteFile::Problem>(&met)) return failed(problem->text);
  return std::get<FilePtr>(std::move(met));
}

std::string wholeTextOf(RemoteFile& file, std::string& text) {
  text.resize(static_cast<std::size_t>(file.size()));
  return file.read({{0, text.size(), reinterpret_cast<std::byte*>(text.data())}});
}

std::variant<FileContent, std::string> startOf(RemoteFile& file) {
  std::array<std::byte, contentBytes> start{};
  const std::size_t size = std::min<std::size_t>(start.size(), file.size());
  std::string problem = file.read({{0, size, start.data()}});
  if (!problem.empty()) return problem;
  return contentOf({reinterpret_cast<const char*>(start.data()), size});
}

// Nothing where it is none that can be read; the image stands for itself then.
FilePtr harmlessForm(RemoteFile& file) {
  std::string text;
  if (file.size() > mostMosaicBytes || !wholeTextOf(file, text).empty()) return nullptr;
  std::string harmless = harmlessSideCar(text);
  return harmless.empty() ? nullptr : RemoteFile::held(std::move(harmless));
}

}  // namespace

OpenableFiles& OpenableFiles::shared() {
  static OpenableFiles files;
  return files;
}

FilePtr OpenableFiles::open(const std::string& name) {
  FilePtr file = meet(name);
  if (!file) return nullptr;
  const std::string small = smallLetters(name);
  if (small.ends_with(".aux.xml")) return harmlessForm(*file);
  return isTextBesideImages(small) ? file : imageOrMosaic(file, name);
}

// One that is named as an image would not be counted where a virtual raster names it.
FilePtr OpenableFiles::imageOrMosaic(const FilePtr& file, const std::string& name) {
  const auto start = startOf(*file);
  if (const auto* problem = std::get_if<std::string>(&start)) return failed(*problem);
  const FileContent content = std::get<FileContent>(start);
  if (content == FileContent::Image) return file;
  const bool isMosaic = content == FileContent::Mosaic && mayBeMosaic(name) && !isBesideImages(name);
  return isMosaic ? openMosaic(file, name) : failed(noImage(*addressOfRangeRaster(name)));
}

FilePtr OpenableFiles::openMosaic(const FilePtr& file, const std::string& name) {
  FormPtr form = formOf(file, name);
  if (!form->openable) return failed(form->refusal);
  if (form->isCounted) return form->openable;
  MosaicTree tree([this](const std::string& inner) { return below(inner); });
  const std::string refusal = tree.refusal(form->node);
  if (WaitScope::isGivenUp()) return failed(givenUp);
  auto counted = std::make_shared<Form>(*form);
  counted->isCounted = true;
  if (!refusal.empty()) {
    counted->openable = nullptr;
    counted->refusal = mosaicRefusal(*addressOfRangeRaster(name), refusal);
  }
  keep(name, counted);
  return refusal.empty() ? counted->openable : failed(counted->refusal);
}

OpenableFiles::FormPtr OpenableFiles::known(const FilePtr& file, const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = forms_.find(name);
  return found != forms_.end() && found->second->met == file ? found->second : nullptr;
}

// What cannot be read just now may be there the next time.
OpenableFiles::FormPtr OpenableFiles::formOf(const FilePtr& file, const std::string& name) {
  if (FormPtr before = known(file, name)) return before;
  const std::string address = *addressOfRangeRaster(name);
  auto form = std::make_shared<Form>();
  form->met = file;
  if (file->size() > mostMosaicBytes) form->refusal = noImage(address);
  std::string text;
  if (form->refusal.empty()) form->refusal = wholeTextOf(*file, text);
  if (!form->refusal.empty()) return form;
  auto openable = openableMosaic(text, address);
  if (auto* refused = std::get_if<MosaicRefusal>(&openable)) {
    form->refusal = std::move(refused->text);
    return form;
  }
  auto& mosaic = std::get<OpenableMosaic>(openable);
  form->node = {mosaic.text.size(), mosaic.sources, std::move(mosaic.mayBeMosaics)};
  form->openable = RemoteFile::held(std::move(mosaic.text), file->state());
  keep(name, form);
  return form;
}

void OpenableFiles::keep(const std::string& name, FormPtr form) {
  const std::lock_guard lock(mutex_);
  if (bytes_ > mostFormBytes || forms_.size() >= mostForms) {
    forms_.clear();
    bytes_ = 0;
  }
  const auto [place, isNew] = forms_.try_emplace(name);
  if (!isNew) bytes_ -= place->second->node.bytes;
  bytes_ += form->node.bytes;
  place->second = std::move(form);
}

// What is missing or refused ends the reading when it comes to it, with the reason.
MosaicTree::Found OpenableFiles::below(const std::string& name) {
  CPLPushErrorHandler(CPLQuietErrorHandler);
  const FilePtr file = meet(name);
  CPLPopErrorHandler();
  CPLErrorReset();
  if (WaitScope::isGivenUp()) return std::string(givenUp);
  if (!file) return MosaicTree::Other{};
  const auto start = startOf(*file);
  const auto* content = std::get_if<FileContent>(&start);
  if (content == nullptr || *content != FileContent::Mosaic) return MosaicTree::Other{};
  const FormPtr form = formOf(file, name);
  if (!form->openable) return MosaicTree::Other{};
  return form->node;
}

}  // namespace vlclientui::client
