#include "contracts/VorlaneClient.h"

#include <algorithm>

namespace vlclientui {

bool isNewerGeneration(const Object& imageService) {
  std::string name = imageService.typeName();
  std::ranges::transform(name, name.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return name == "IOVLIMAGESERVICE";
}

}  // namespace vlclientui
