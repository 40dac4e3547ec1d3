#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui::test {

/// What a fake server says, and what it was asked.
struct FakeServer {
  std::string answer;
  bool fails = false;                ///< every call throws
  std::function<void()> duringCall;  ///< run inside every call; may throw whatever a client could throw
  std::vector<std::string> requests;

  std::string ask(const std::string& request) {
    requests.push_back(request);
    if (duringCall) duringCall();
    if (fails) throw RuntimeFailure("the server call fails");
    return answer;
  }
};

/// Fake clients of both generations over one fake server.
class FakeServerClient : public IServerClient {
 public:
  explicit FakeServerClient(std::shared_ptr<FakeServer> server) : server_(std::move(server)) {}
  std::string GetServerInfo(const std::string& request) override { return server_->ask(request); }

 private:
  std::shared_ptr<FakeServer> server_;
};

class FakeOVLServerClient : public IOVLServerClient {
 public:
  explicit FakeOVLServerClient(std::shared_ptr<FakeServer> server) : server_(std::move(server)) {}
  std::string GetServerInfo(const std::string& request) override { return server_->ask(request); }

 private:
  std::shared_ptr<FakeServer> server_;
};

/// An object that is no client at all.
class FakeStranger : public virtual Object {
 public:
  std::string typeName() const override { return "Stranger"; }
};

/// Answers folder kinds by a table; any kind outside it answers "C:\Asked\" and the kind.
class FakeClientLibrary : public ClientLibrary {
 public:
  std::string definitionsFolder = "C:\\Program\\";
  std::string home = "C:\\Home";

  std::unique_ptr<InstallPaths> createInstallPaths() override;
  std::unique_ptr<ClientStatus> createClientStatus() override;
  /// Takes "secret@" away, and remembers what it was given.
  std::string serverToShow(const std::string& typed) override;
  std::vector<std::string> typedServers;
};

}  // namespace vlclientui::test
