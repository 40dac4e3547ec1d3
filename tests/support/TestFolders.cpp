#include "support/TestFolders.h"

#include <fstream>
#include <sstream>

namespace vlclientui {

const std::string& sourceFolder() {
  static const std::string folder = VL_SOURCE_DIR;
  return folder;
}

std::string sourceFileText(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(sourceFolder() + "/" + name, std::ios::binary).rdbuf();
  return text.str();
}

const std::string& testDataFolder() {
  static const std::string folder = sourceFolder() + "/tests/data";
  return folder;
}

const std::string& samplesFolder() {
  static const std::string folder = VL_SAMPLES_DIR;
  return folder;
}

const std::string& serverFilesFolder() {
  static const std::string folder = VL_SERVER_FILES_DIR;
  return folder;
}

}  // namespace vlclientui
