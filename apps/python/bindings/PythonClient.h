#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "NamedCalls.h"
#include "contracts/VorlaneClient.h"

/// Clients, services and callbacks that are written in Python.
namespace vlclientui::python {

/// Something of Python that stands behind an object of the contracts.
class PythonObject {
 public:
  explicit PythonObject(py::handle object) : calls_(object) {}
  PythonObject(const PythonObject&) = delete;
  PythonObject& operator=(const PythonObject&) = delete;
  virtual ~PythonObject() = default;

  [[nodiscard]] NamedCalls& calls() { return calls_; }
  [[nodiscard]] const NamedCalls& calls() const { return calls_; }

 private:
  NamedCalls calls_;
};

/// Both generations ask the same.
class PythonServerClient final : public IServerClient, public IOVLServerClient, public PythonObject {
 public:
  using PythonObject::PythonObject;

  [[nodiscard]] std::string typeName() const override { return calls().typeName(); }
  [[nodiscard]] Object* queryInterface(std::string_view name) override;
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;
};

/// The type name tells its generation: that of the class, or the attribute `type_name`.
class PythonImageService final : public ImageService, public PythonObject {
 public:
  using PythonObject::PythonObject;

  [[nodiscard]] std::string typeName() const override { return calls().typeName(); }
  [[nodiscard]] std::string getProperty(const std::string& key) override;
  [[nodiscard]] std::string GetDefinition(std::int32_t kind) override;
  [[nodiscard]] std::string ServiceProperties() override;
  [[nodiscard]] std::string ServiceInfo() override;
  [[nodiscard]] std::string GetImageMetadata(const std::string& level) override;
  [[nodiscard]] std::string GetMetaData(const std::string& key) override;
  [[nodiscard]] bool SaveProperties(const std::string& fileName) override;
  void ExportProperties(const std::string& request) override;
  [[nodiscard]] bool ExportImage() override;
  [[nodiscard]] std::string status() override;
};

/// What SetCallback takes: an object with OnServicePropertiesChanged, or a function.
class PythonCallback final : public IServicePropertiesCallback, public PythonObject {
 public:
  explicit PythonCallback(py::handle object);

  void OnServicePropertiesChanged(const std::string& servicePropertiesXml) override;

 private:
  const char* member_;
};

}  // namespace vlclientui::python
