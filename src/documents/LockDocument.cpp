#include "documents/LockDocument.h"

#include "documents/TextCase.h"

namespace vlclientui {

namespace {

std::string escaped(std::string_view text) {
  return replacedAll(replacedAll(text, "&", "&amp;"), "<", "&lt;");
}

}  // namespace

std::string lockIdOf(const std::string& rasterId) { return rasterId.substr(0, rasterId.find('.')); }

std::string lockDocument(std::string_view lockId) {
  return std::string("<Vorlane><ImageServiceProperties><MosaicMethod>") + lockRasterMethod +
         "</MosaicMethod><LockImageID>" + escaped(lockId) +
         "</LockImageID></ImageServiceProperties></Vorlane>";
}

bool allowsMosaicMethod(std::string_view allowedMethods, std::string_view method) {
  return lowerCased(allowedMethods).find(lowerCased(method)) != std::string::npos;
}

}  // namespace vlclientui
