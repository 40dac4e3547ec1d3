#include "client/output/PartialFiles.h"

#include <cerrno>
#include <system_error>

#include "client/raster/Text.h"
#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

fs::path wholePath(const fs::path& path) {
  std::error_code error;
  fs::path whole = fs::absolute(path, error);
  return error ? path : whole;
}

}  // namespace

std::vector<fs::path> descriptionsOf(const fs::path& image) {
  std::vector<fs::path> images = {image};
  if (const fs::path behind = replacedFile(image).file; behind != image) images.push_back(behind);
  std::vector<fs::path> files;
  for (const fs::path& name : images) {
    for (const char* const ending : {".aux.xml", ".ovr", ".msk"}) files.emplace_back(name.string() + ending);
  }
  return files;
}

// A folder that cannot be written fails here, before any work is done.
PartialFiles::PartialFiles(const fs::path& target, PartialPlace place)
    : target_(wholePath(target)),
      place_(place),
      files_([this](const std::string& name) { return make(name); }) {
  std::error_code error;
  if (fs::is_directory(target_, error))
    failAt("Cannot write, there is a folder of this name:", target_, EISDIR);
  if (replacedFile(target_).isDevice)
    failAt("Cannot write, there is a device or a pipe of this name:", target_, EEXIST);
  folderOf(target_).prove();
  folderOf(replacedFile(target_).file).prove();
}

std::string PartialFiles::file() const { return files_.pathOf(target_.filename().string()); }

std::string PartialFiles::failure() const {
  const int reason = files_.failureNumber();
  if (reason == 0) return {};
  const fs::path folder = replacedFile(target_).file.parent_path();
  return "Cannot write in the folder " + utf8FromAny(folder.string()) + ": " + reasonText(reason);
}

void PartialFiles::write(const std::string& name, std::string_view content) {
  const auto file = files_.make(name);
  const bool isWritten = file && file->write(0, content.data(), content.size()) == content.size();
  if (!isWritten) throw RuntimeFailure(failure());
}

void PartialFiles::publish() {
  syncAll();
  giveNames();
  moveAll();
}

std::shared_ptr<GrowingFile> PartialFiles::make(const std::string& name) {
  const ReplacedFile former = replacedFile(target_.parent_path() / name);
  auto file = folderOf(former.file).make(name);
  if (!file || (former.rights && !file->setRights(*former.rights))) return nullptr;
  places_[name] = former.file;
  return file;
}

PartialFolder& PartialFiles::folderOf(const fs::path& place) {
  const fs::path folder = place.parent_path();
  return folders_.try_emplace(folder, folder, target_.filename().string(), place_).first->second;
}

void PartialFiles::syncAll() {
  for (const std::string& name : files_.names()) {
    const auto file = files_.find(name);
    if (!file->sync()) failAt("Cannot bring to the disk:", places_[name], file->failureNumber());
  }
}

// Names all of them before moving the first.
void PartialFiles::giveNames() {
  for (const std::string& name : files_.names()) folderOf(places_[name]).giveName(*files_.find(name), name);
}

void PartialFiles::moveAll() {
  const std::string image = target_.filename().string();
  for (const std::string& name : files_.names()) {
    if (name != image) move(name);
  }
  move(image);
  removeFormerDescriptions();
  for (auto& [path, folder] : folders_) folder.settle();
}

void PartialFiles::move(const std::string& name) { folderOf(places_[name]).move(name, places_[name]); }

void PartialFiles::removeFormerDescriptions() {
  std::error_code error;
  for (const fs::path& former : descriptionsOf(target_)) {
    const bool isMade =
        former.parent_path() == target_.parent_path() && files_.find(former.filename().string());
    if (!isMade) fs::remove(former, error);
  }
}

void writeWholeFile(const fs::path& target, std::string_view content) {
  PartialFiles partial(target);
  partial.write(target.filename().string(), content);
  partial.publish();
}

}  // namespace vlclientui::client
