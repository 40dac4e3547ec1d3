#include <algorithm>
#include <string>

#include "contracts/RuntimeFailure.h"
#include "export/ExportControl.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

void makeFolder(const std::string& path) {
  System& system = *currentPlatform().system;
  // A path that begins with a backslash has an empty first folder, which cannot be made.
  if (path.empty()) throw RuntimeFailure("a folder without a name");
  if (path.ends_with(':') || system.folderExists(path)) return;
  if (!system.makeSureDirectoryPathExists(path + "\\")) {
    throw RuntimeFailure("the folder '" + path + "' cannot be made");
  }
}

}  // namespace

Boolean16 ExportControl::FExists(const std::string& OrigFile) {
  const bool exists = currentPlatform().system->fileExists(OrigFile);
  if (!exists) prepareFolderOf(OrigFile);
  return toBoolean16(exists);
}

void ExportControl::prepareFolderOf(const std::string& file) {
  const std::string folder = StripFileName(file);
  if (folder != file) return MakeDirPath(folder);
  // Deliberate: a bare file name lands in the root of drive C.
  uiTxtFileName.setText("C:\\" + uiTxtFileName.text());
  ApplyFormatExtension(uiTxtFileName.text());
}

Boolean16 ExportControl::DirExists(const std::string& OrigFile) const {
  return toBoolean16(currentPlatform().system->folderExists(OrigFile));
}

std::string ExportControl::StripFileName(const std::string& strPath) {
  const auto separator = strPath.rfind('\\');
  return separator == std::string::npos ? strPath : strPath.substr(0, separator + 1);
}

void ExportControl::MakeDirPath(const std::string& dirname) {
  endsQuietly([&] {
    for (std::size_t at = 0; at < dirname.size(); ++at) {
      at = std::min(dirname.find('\\', at), dirname.size());
      makeFolder(dirname.substr(0, at));
    }
  });
}

}  // namespace vlclientui
