#include "viewer/project/SessionFile.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <system_error>
#include <utility>

#include <sys/types.h>

#include "contracts/RuntimeFailure.h"
#include "viewer/project/ProjectDocument.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

// As the writer of whole files names them: "name.PROCESS-NUMBER.tmp".
bool isLeftBehind(const std::string& name, const std::string& ofFile) {
  if (!name.starts_with(ofFile + '.') || !name.ends_with(".tmp")) return false;
  pid_t process = 0;
  const char* const begin = name.c_str() + ofFile.size() + 1;
  const auto [end, error] = std::from_chars(begin, name.c_str() + name.size(), process);
  if (error != std::errc() || *end != '-' || process <= 0) return false;
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

SessionFile::SessionFile(std::shared_ptr<const Platform> platform, fs::path file)
    : platform_(std::move(platform)), file_(std::move(file)) {
  tidy();
}

void SessionFile::tidy() const {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(file_.parent_path(), error)) {
    if (isLeftBehind(entry.path().filename().string(), file_.filename().string()))
      fs::remove(entry.path(), error);
  }
}

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
