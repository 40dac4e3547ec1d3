#include "PythonClient.h"

namespace vlclientui::python {
namespace {

constexpr const char* changed = "OnServicePropertiesChanged";

/// A function has no such member, and is called itself.
const char* memberOf(py::handle callback) {
  const bool isFunction = !py::hasattr(callback, changed) && PyCallable_Check(callback.ptr()) != 0;
  return isFunction ? "__call__" : changed;
}

}  // namespace

Object* PythonServerClient::queryInterface(std::string_view name) {
  if (name == IServerClient::interfaceName) return static_cast<IServerClient*>(this);
  if (name == IOVLServerClient::interfaceName) return static_cast<IOVLServerClient*>(this);
  return nullptr;
}

std::string PythonServerClient::GetServerInfo(const std::string& request) {
  return calls().callForText("GetServerInfo", request);
}

std::string PythonImageService::getProperty(const std::string& key) {
  return calls().callForText("getProperty", key);
}

std::string PythonImageService::GetDefinition(std::int32_t kind) {
  return calls().callForText("GetDefinition", kind);
}

std::string PythonImageService::ServiceProperties() { return calls().readText("ServiceProperties"); }

std::string PythonImageService::ServiceInfo() { return calls().readText("ServiceInfo"); }

std::string PythonImageService::GetImageMetadata(const std::string& level) {
  return calls().callForText("GetImageMetadata", level);
}

std::string PythonImageService::GetMetaData(const std::string& key) {
  return calls().callForText("GetMetaData", key);
}

bool PythonImageService::SaveProperties(const std::string& fileName) {
  return calls().callForTruth("SaveProperties", fileName);
}

void PythonImageService::ExportProperties(const std::string& request) {
  calls().write("ExportProperties", request);
}

bool PythonImageService::ExportImage() { return calls().callForTruth("ExportImage"); }

std::string PythonImageService::status() { return calls().readText("status"); }

PythonCallback::PythonCallback(py::handle object) : PythonObject(object), member_(memberOf(object)) {}

void PythonCallback::OnServicePropertiesChanged(const std::string& servicePropertiesXml) {
  calls().call(member_, servicePropertiesXml);
}

}  // namespace vlclientui::python
