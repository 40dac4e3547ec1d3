#pragma once

#include <memory>
#include <optional>
#include <string>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Keeps secrets for a user, each under a key. Any thread may ask; calls may block, for a person may have to
/// open the store first. Such a wait can be watched and given up as one for a server. Nothing is raised.
class SecretStore {
 public:
  /// The outcome of a search.
  struct Found {
    std::optional<std::string> secret;  ///< nothing where there is none, or the store cannot be asked
    std::string problem;                ///< why it cannot; empty when it was asked
  };

  virtual ~SecretStore() = default;

  /// @param key names the secret for find and forget. @param label what a person sees in the store's own
  /// windows.
  /// @param secret replaces a former one.
  /// @returns why it is not kept; empty when it is.
  [[nodiscard]] virtual std::string keep(const std::string& key, const std::string& label,
                                         const std::string& secret) = 0;
  /// The secret under the key.
  [[nodiscard]] virtual Found find(const std::string& key) = 0;
  /// @returns why it may still be there; empty when it is not.
  virtual std::string forget(const std::string& key) = 0;
};

/// The secret store of the desktop, by its library, which is looked for at the first use: a machine without
/// it, or a session without the service, gives problems and no more.
/// @param library its file name. @see desktopSecretLibrary
[[nodiscard]] std::unique_ptr<SecretStore> desktopSecretStore(const std::string& library);

/// The library of the desktops that keep to the Secret Service.
inline constexpr const char* desktopSecretLibrary = "libsecret-1.so.0";

}  // namespace vlclientui::client
#pragma GCC visibility pop
