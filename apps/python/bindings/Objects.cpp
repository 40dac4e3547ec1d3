#include "Objects.h"

#include "ServiceView.h"

namespace vlclientui::python {
namespace {

template <class Written>
Given writtenIn(py::handle object) {
  auto written = std::make_shared<Written>(object);
  return {written, written};
}

}  // namespace

Given givenClient(const py::object& client) {
  if (client.is_none()) return {};
  if (py::isinstance<ServerClientView>(client)) {
    return {client.cast<const ServerClientView&>().object(), nullptr, client};
  }
  return writtenIn<PythonServerClient>(client);
}

Given givenService(const py::object& service) {
  if (service.is_none()) return {};
  if (py::isinstance<ServiceView>(service)) {
    return {service.cast<const ServiceView&>().object(), nullptr, service};
  }
  return writtenIn<PythonImageService>(service);
}

Given givenCallback(const py::object& callback) {
  return callback.is_none() ? Given{} : writtenIn<PythonCallback>(callback);
}

std::vector<py::handle> PublicObject::heldObjects() const {
  std::vector<py::handle> held;
  for (const auto& [place, given] : given_) {
    if (given.written) held.push_back(given.written->calls().object());
    if (given.bound) held.push_back(given.bound);
  }
  return held;
}

void PublicObject::forgetObjects() {
  for (const auto& [place, given] : std::exchange(given_, {})) {
    if (given.written) given.written->calls().forget();
  }
}

}  // namespace vlclientui::python
