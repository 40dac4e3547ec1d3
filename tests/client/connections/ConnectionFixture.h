#pragma once

#include <fstream>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "client/connections/ConnectionBook.h"
#include "client/connections/FakeSecretStore.h"
#include "client/transport/Address.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client {

/// A book of connections in a folder of its own, with a secret store in memory.
class ConnectionFixture : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path folder() const { return home_.path() / "VLClientUI" / "connections"; }
  [[nodiscard]] std::filesystem::path file() const { return folder() / "connections.json"; }
  [[nodiscard]] std::unique_ptr<ConnectionBook> openBook() const {
    return std::make_unique<ConnectionBook>(ConnectionBook::Settings{folder(), desktop});
  }
  /// What the files of the folder hold, names included.
  [[nodiscard]] std::string everythingWritten() const {
    std::ostringstream text;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home_.path())) {
      text << entry.path().string() << "\n";
      if (entry.is_regular_file()) text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    }
    return text.str();
  }
  [[nodiscard]] std::string written() const {
    std::ostringstream text;
    text << std::ifstream(file(), std::ios::binary).rdbuf();
    return text.str();
  }
  static ConnectionEdit withPassword(const std::string& name, const std::string& address,
                                     SecretKeeping keeping = SecretKeeping::Best) {
    Connection connection;
    connection.name = name;
    connection.address = address;
    connection.signIn = SignIn::Password;
    connection.user = "ann";
    return {connection, "hemlig-ord", keeping, ""};
  }
  static ConnectionEdit withToken(const std::string& name, const std::string& address, TokenPlace place,
                                  const std::string& tokenName) {
    Connection connection;
    connection.name = name;
    connection.address = address;
    connection.signIn = SignIn::Token;
    connection.tokenPlace = place;
    connection.tokenName = tokenName;
    return {connection, "geheim.zeichen", SecretKeeping::Best, ""};
  }
  /// As a transport asks.
  static Credentials credentialsFor(ConnectionBook& book, const std::string& address) {
    const auto parsed = parsedAddress(address);
    book.prepare(parsed->server, parsed->path);
    return book.credentials(parsed->server, parsed->path);
  }
  /// Why it is refused; empty where it is not.
  template <class Step>
  static std::string refusal(Step step) {
    try {
      step();
      return {};
    } catch (const std::exception& failure) {
      return failure.what();
    }
  }

  std::shared_ptr<FakeSecretStore> desktop = std::make_shared<FakeSecretStore>();

 private:
  test::TemporaryFolder home_;
};

}  // namespace vlclientui::client
