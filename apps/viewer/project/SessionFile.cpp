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
    return {openProject(*platform_->xml, file_), {}};
  } catch (const RuntimeFailure& failure) {
    fs::rename(file_, aside(), error);
    return {std::nullopt, failure.description() + ". It stays as '" + aside().string() + "'."};
  }
}

fs::path SessionFile::aside() const { return file_.string() + ".unusable"; }

}  // namespace vlclientui::viewer
