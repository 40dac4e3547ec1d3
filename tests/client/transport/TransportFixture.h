#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/transport/Transport.h"
#include "servers/FaultProxy.h"

namespace vlclientui::test {

/// A transport and the server of the tests over a folder of files. Pauses before another try are noted and
/// not waited for, chance takes nothing off them.
class TransportFixture : public testing::Test {
 protected:
  TransportFixture();
  ~TransportFixture() override;

  void writeFile(const std::string& name, const std::string& text) const;

  /// Starts the server, if it is not there yet.
  FaultProxy& server(FaultProxy::Ports ports = FaultProxy::Ports::Plain);
  /// Made at the first use with the settings of that time.
  client::Transport& transport();
  /// The next use has a new one.
  void dropTransport() { transport_.reset(); }

  [[nodiscard]] client::HttpResult get(const std::string& address);
  /// Fails the test, and gives an empty answer, where there is none.
  [[nodiscard]] client::HttpAnswer answerOf(const client::HttpRequest& request);
  [[nodiscard]] client::HttpAnswer answerOf(const std::string& address);
  /// Fails the test where there is an answer.
  [[nodiscard]] client::HttpFailure failureOf(const client::HttpRequest& request);
  [[nodiscard]] client::HttpFailure failureOf(const std::string& address);

  /// Pauses before further tries, in milliseconds.
  [[nodiscard]] std::vector<int> pauses() const;

  client::TransportSettings settings;

 private:
  std::filesystem::path folder_;
  std::unique_ptr<FaultProxy> server_;
  std::unique_ptr<client::Transport> transport_;
  mutable std::mutex mutex_;
  std::vector<int> pauses_;
};

/// A request for an address, nothing else told.
[[nodiscard]] client::HttpRequest requestFor(const std::string& address);
/// Sets a variable of the environment for the length of a test; null removes it.
class TemporaryVariable {
 public:
  TemporaryVariable(std::string name, const char* value);
  TemporaryVariable(const TemporaryVariable&) = delete;
  TemporaryVariable& operator=(const TemporaryVariable&) = delete;
  ~TemporaryVariable();

 private:
  std::string name_;
  std::optional<std::string> former_;
};

}  // namespace vlclientui::test
