#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Object.h"

/// The client library as this library needs it. Documents cross as strings of XML, everything else as plain
/// numbers or booleans. Implementers: calls come on the user-interface thread and may block it; report a
/// failure by RuntimeFailure, never by an empty string.
#pragma GCC visibility push(default)
namespace vlclientui {

/// A server client of the older generation.
class IServerClient : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IServerClient";
  [[nodiscard]] std::string typeName() const override { return "IServerClient"; }
  /// @param request a whole client document; `//Vorlane/Client/ServerInfo/Request` holds `Server` and
  /// `MetadataLevel`.
  /// @returns the server info document; empty for a server that gave no answer.
  [[nodiscard]] virtual std::string GetServerInfo(const std::string& request) = 0;
};

/// A server client of the newer generation. The same operation, another interface.
class IOVLServerClient : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IOVLServerClient";
  [[nodiscard]] std::string typeName() const override { return "IOVLServerClient"; }
  /// As IServerClient::GetServerInfo.
  [[nodiscard]] virtual std::string GetServerInfo(const std::string& request) = 0;
};

/// One image service, of either generation; the run-time type name alone tells which (isNewerGeneration).
/// Members that a generation lacks throw RuntimeFailure. A newer object answers GetDefinition with 1 and 2 as
/// well. ServiceProperties and GetImageMetadata are asked often: keep their answers cheap and repeatable.
class ImageService : public virtual Object {
 public:
  /// Newer generation only. @param key "ClientXADef", "ClientXFDef", "ServiceMetadataXADef" or
  /// "ServiceMetadataXFDef". @returns a definition below the wrapper `XADef` or `XFDef`.
  [[nodiscard]] virtual std::string getProperty(const std::string& key) = 0;
  /// @param kind 1 to 4, in the order of the keys of getProperty.
  [[nodiscard]] virtual std::string GetDefinition(std::int32_t kind) = 0;
  /// The service properties document: how the service is drawn now.
  [[nodiscard]] virtual std::string ServiceProperties() = 0;
  /// What the server tells of the service: an `ImageServiceInfo` document.
  [[nodiscard]] virtual std::string ServiceInfo() = 0;
  /// Of the image last returned. @param level "Basic", "Full" or empty.
  [[nodiscard]] virtual std::string GetImageMetadata(const std::string& level) = 0;
  /// @param key empty. @returns the metadata document of the service, root `Metadata`.
  [[nodiscard]] virtual std::string GetMetaData(const std::string& key) = 0;
  /// @returns whether the file was written.
  [[nodiscard]] virtual bool SaveProperties(const std::string& fileName) = 0;
  /// The export request, `<Vorlane><Client>...</Client></Vorlane>`.
  virtual void ExportProperties(const std::string& request) = 0;
  /// @returns true when the export ran.
  [[nodiscard]] virtual bool ExportImage() = 0;
  /// A document whose `//Item/Message` tells why the last call failed.
  [[nodiscard]] virtual std::string status() = 0;
};

/// True for an object whose type name is "IOVLImageService" in any case.
[[nodiscard]] bool isNewerGeneration(const Object& imageService);

/// What a host passes to SetCallback.
class IServicePropertiesCallback : public virtual Object {
 public:
  /// The name that queryInterface finds it by.
  static constexpr std::string_view interfaceName = "IServicePropertiesCallback";
  [[nodiscard]] std::string typeName() const override { return "IServicePropertiesCallback"; }
  /// @param servicePropertiesXml the whole service properties document, the lock already written into it.
  virtual void OnServicePropertiesChanged(const std::string& servicePropertiesXml) = 0;
};

/// The embedded pages. Any other number is accepted and shows no page.
enum class PropertyPageId : std::int32_t {
  PropertyPageMetadata = 1,    ///< tells what an image is, and where its pixels come from
  PropertyPageProperties = 2,  ///< shows and changes the properties of a service
  PropertyPageViewPoint = 3    ///< steers the viewpoint of a mosaic
};

/// Where the product's files stand.
class InstallPaths {
 public:
  virtual ~InstallPaths() = default;
  /// @param kind 0: the folder of the definition files, ending in a separator; 1: the program's home;
  /// 15: a further folder that holds the help. @returns a path with drive and backslashes.
  [[nodiscard]] virtual std::string GetPath(std::int32_t kind) = 0;
};

/// Turns an image's status into readable text.
class ClientStatus {
 public:
  virtual ~ClientStatus() = default;
  /// @param statusXml outer XML of a `Status` element.
  [[nodiscard]] virtual std::string GetText(const std::string& statusXml) = 0;
};

/// The helper objects of the client library that this library makes itself.
class ClientLibrary {
 public:
  virtual ~ClientLibrary() = default;
  /// Never null.
  [[nodiscard]] virtual std::unique_ptr<InstallPaths> createInstallPaths() = 0;
  /// Never null.
  [[nodiscard]] virtual std::unique_ptr<ClientStatus> createClientStatus() = 0;
  /// A server as it may be shown, listed and kept, when a person has typed or a file tells one. A library
  /// that takes addresses with passwords in them keeps these to itself, for requests, and gives the address
  /// without; any other text comes back as it is. Raises nothing.
  [[nodiscard]] virtual std::string serverToShow(const std::string& typed) { return typed; }
};

}  // namespace vlclientui
#pragma GCC visibility pop
