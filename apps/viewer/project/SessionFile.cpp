#include "viewer/project/SessionFile.h"

#include <system_error>
#include <utility>

#include "contracts/NewFile.h"
#include "contracts/RuntimeFailure.h"
#include "viewer/project/ProjectDocument.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

}  // namespace

SessionFile::SessionFile(std::shared_ptr<const Platform> platform, fs::path file)
    : platform_(std::move(platform)), file_(std::move(file)) {
  tidy();
}

void SessionFile::tidy() const { NewFile::removeLeftOvers(file_); }

std::string SessionFile::keep(const Project& project) const {
  try {
    std::error_code error;  // without the folder the file cannot be written either
    fs::create_directories(file_.parent_path(), error);
    saveProject(project, *platform_->xml, file_);
    return {};
  } catch (const RuntimeFailure& failure) {
    return failure.description();
  }
}

SessionFile::Found SessionFile::find() const {
  std::error_code error;
  if (!fs::exists(file_, error)) return {};
  try {
    return {openProject(*platform_->xml, file_), {}, true};
  } catch (const RuntimeFailure& failure) {
    const fs::path place = aside();
    fs::rename(file_, place, error);
    if (!error) return {{}, failure.description() + ". It stays as '" + place.string() + "'.", true};
    return {{},
            failure.description() + ". It cannot be put aside (" + error.message() +
                "), so nothing is kept of this session.",
            false};
  }
}

// Earlier ones stay as well.
fs::path SessionFile::aside() const {
  const std::string first = file_.string() + ".unusable";
  std::error_code error;
  fs::path place = first;
  for (int number = 2; fs::exists(place, error); ++number) place = first + "-" + std::to_string(number);
  return place;
}

}  // namespace vlclientui::viewer
