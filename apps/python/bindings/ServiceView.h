#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Session.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServerClient.h"

/// The library's own clients and services, as Python holds them.
namespace vlclientui::python {

/// Asks a progress function, if there is one, whether an export goes on. Without the interpreter's lock.
/// @throws RuntimeFailure for what the function raises.
[[nodiscard]] bool goesOn(const Reference& progress, double share);

/// A client of the catalogue, of either generation.
class ServerClientView : public Held<Object> {
 public:
  using Held::Held;
};

/// An image service of the catalogue, of either generation. It belongs to the thread of its session.
class ServiceView : public Held<client::CatalogueImageService> {
 public:
  using Held::Held;

  /// @param progress a function of the share done, 0 to 1, that returns False to cancel; or None.
  void setProgress(const py::object& progress);
  [[nodiscard]] std::vector<py::handle> heldObjects() const;
  void forgetObjects();

 private:
  std::shared_ptr<Reference> progress_;  ///< shared with the service
};

}  // namespace vlclientui::python
