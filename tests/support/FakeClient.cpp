#include "support/FakeClient.h"

namespace vlclientui::test {

namespace {

class FakeInstallPaths : public InstallPaths {
 public:
  explicit FakeInstallPaths(const FakeClientLibrary& library) : library_(library) {}
  std::string GetPath(std::int32_t kind) override {
    if (kind == 0) return library_.definitionsFolder;
    if (kind == 1) return library_.home;
    return "C:\\Asked\\" + std::to_string(kind);
  }

 private:
  const FakeClientLibrary& library_;
};

class FakeClientStatus : public ClientStatus {
 public:
  std::string GetText(const std::string& statusXml) override { return "text of " + statusXml; }
};

}  // namespace

std::unique_ptr<InstallPaths> FakeClientLibrary::createInstallPaths() {
  return std::make_unique<FakeInstallPaths>(*this);
}

std::string FakeClientLibrary::serverToShow(const std::string& typed) {
  typedServers.push_back(typed);
  const std::string secret = "secret@";
  const std::size_t found = typed.find(secret);
  return found == std::string::npos ? typed : std::string(typed).erase(found, secret.size());
}

std::unique_ptr<ClientStatus> FakeClientLibrary::createClientStatus() {
  return std::make_unique<FakeClientStatus>();
}

}  // namespace vlclientui::test
