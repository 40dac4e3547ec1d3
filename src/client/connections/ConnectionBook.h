#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/connections/Connection.h"
#include "client/connections/SecretStore.h"
#include "client/transport/TransportSettings.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What a person says where a secret is to be kept.
enum class SecretKeeping {
  Best,     ///< the desktop's store where there is one, else the file
  Desktop,  ///< there or not at all
  File,     ///< in the file of connections, which only its owner can read
  Session   ///< in the memory of this program, until it ends
};

/// A connection as a person describes it.
struct ConnectionEdit {
  /// As it shall be, without its secret.
  Connection connection;
  /// Nothing keeps the one that is there.
  std::optional<std::string> secret;
  /// Where the secret is to be kept.
  SecretKeeping keeping = SecretKeeping::Best;
  /// The connection that it takes the place of; empty for a new one.
  std::string replaced;
};

/// A user or key in the address, as a person may have pasted it, becomes that of the connection; a secret
/// that is given beside it stays. An address with several of them, or with one where a secret is given for
/// the other way to sign in, stays as it is, which problemOf refuses.
[[nodiscard]] ConnectionEdit withoutAddressSecrets(ConnectionEdit edit);

/// Whether a connection that is changed without a new secret keeps the one it had: another server or user
/// does not get it.
[[nodiscard]] bool keepsSecret(const Connection& before, const Connection& after);

/// The connections of a user with their secrets, and the secrets that were typed in this session. Any thread
/// may ask. Changes of other processes are seen.
class ConnectionBook {
 public:
  /// What a book is made from.
  struct Settings {
    std::filesystem::path folder;          ///< of the file; empty: nothing can be kept
    std::shared_ptr<SecretStore> desktop;  ///< null for none
  };
  /// Asked for the secret of a connection that keeps it for a session only. Nothing for want of an answer.
  using Question = std::function<std::optional<std::string>(const Connection&)>;

  /// Opens nothing yet: the file is read when somebody asks.
  explicit ConnectionBook(Settings settings);
  ConnectionBook(const ConnectionBook&) = delete;
  ConnectionBook& operator=(const ConnectionBook&) = delete;
  ~ConnectionBook();

  /// The one of this process, in connectionsFolder.
  [[nodiscard]] static ConnectionBook& shared();

  /// By name. @throws RuntimeFailure when the file cannot be read or understood; so too all below that read
  /// it.
  [[nodiscard]] std::vector<Connection> connections() const;
  /// The connection of that name; see isSameName. Nothing where there is none.
  [[nodiscard]] std::optional<Connection> find(const std::string& name) const;

  /// Adds or replaces a connection. Secrets in its address become those of the connection.
  /// @returns where its secret is kept, as a sentence for a person, and whether a former one may be left;
  /// empty where there is neither.
  /// @throws RuntimeFailure with what is wrong with it, and where the wait for the desktop is given up;
  /// nothing has changed then.
  std::string save(const ConnectionEdit& edit);
  /// @returns what could not be removed with it, as a sentence; empty when all is gone.
  /// @throws RuntimeFailure when there is none of that name.
  std::string remove(const std::string& name);
  /// Why the desktop keeps no secrets; empty when it does.
  [[nodiscard]] std::string problemOfDesktop() const;
  /// The file, for a person.
  [[nodiscard]] std::filesystem::path file() const;

  /// A server text or reference without secrets; those in it are used for the rest of this session. A text
  /// without any comes back as it is.
  [[nodiscard]] std::string withoutSecrets(const std::string& typed);
  /// The address behind a server text that is the name of a connection; other texts come back as they are.
  /// Raises nothing: a file that cannot be read is told in the trace.
  [[nodiscard]] std::string addressOf(const std::string& serverText) const;
  /// The same for "name/..." as it follows "ImageService://".
  [[nodiscard]] std::string addressOfReference(const std::string& serverAndName) const;

  /// TransportSettings::prepareCredentials of this book: fetches the secret that a request to the path needs,
  /// from the desktop or by the question. May block. @throws RuntimeFailure where the question that is open
  /// makes a request itself, with helpers or without, for which a secret would have to be asked, and where
  /// that of another thread stays open for longer than its patience. A wait for one ends with its WaitScope.
  void prepare(const Server& server, const std::string& path);
  /// TransportSettings::credentials of this book: what is at hand for a request to the path of that server;
  /// empty where no connection leads there.
  [[nodiscard]] Credentials credentials(const Server& server, const std::string& path) const;
  /// Replaces the question. It is asked on the thread that makes a request. @param patience how long requests
  /// of other threads wait for its answer before they fail, since it may itself wait for one of them; nothing
  /// for no end.
  void setQuestion(Question question, std::optional<std::chrono::milliseconds> patience = {});

  /// While it lives, requests use the secret of this connection, kept or not.
  class Trial {
   public:
    /// @param book outlives the trial. @param connection whose address and way to sign in count.
    /// @param secret nothing takes the one that is kept under the name.
    Trial(ConnectionBook& book, const Connection& connection, const std::optional<std::string>& secret);
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;
    ~Trial();

   private:
    ConnectionBook& book_;
    int number_;
  };

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
