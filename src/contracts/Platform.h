#pragma once

#include <memory>

#include "contracts/Plexa.h"
#include "contracts/System.h"
#include "contracts/Toolkit.h"
#include "contracts/VorlaneClient.h"
#include "contracts/XmlDocument.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// The adapters of one host, all of them set. Given to the library once per thread, before any object is
/// made there.
struct Platform {
  std::shared_ptr<System> system;
  std::shared_ptr<XmlService> xml;
  std::shared_ptr<Toolkit> toolkit;
  std::shared_ptr<PlexaFactory> plexa;
  std::shared_ptr<ClientLibrary> clientLibrary;
};

}  // namespace vlclientui
#pragma GCC visibility pop
