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
  /// The operating system: files, environment, locale, help.
  std::shared_ptr<System> system;
  /// Makes and reads documents.
  std::shared_ptr<XmlService> xml;
  /// Windows, boxes and the clipboard.
  std::shared_ptr<Toolkit> toolkit;
  /// Makes the form engines of pages and lists.
  std::shared_ptr<PlexaFactory> plexa;
  /// Where files are installed, and how the status of an image is read.
  std::shared_ptr<ClientLibrary> clientLibrary;
};

}  // namespace vlclientui
#pragma GCC visibility pop
