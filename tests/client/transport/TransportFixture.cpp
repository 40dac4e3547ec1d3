#include "client/transport/TransportFixture.h"

#include <cstdlib>
#include <fstream>

namespace vlclientui::test {

namespace fs = std::filesystem;
using client::HttpAnswer;
using client::HttpFailure;
using client::HttpRequest;
using client::HttpResult;
using std::chrono::milliseconds;

TransportFixture::TransportFixture() {
  std::string pattern = (fs::temp_directory_path() / "vlclientui-transport-XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  settings.sources.chance = [] { return 0.0; };
  settings.sources.pause = [this](milliseconds pause) {
    const std::lock_guard lock(mutex_);
    pauses_.push_back(static_cast<int>(pause.count()));
    return milliseconds(0);
  };
}

TransportFixture::~TransportFixture() {
  transport_.reset();
  server_.reset();
  fs::remove_all(folder_);
}

void TransportFixture::writeFile(const std::string& name, const std::string& text) const {
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

FaultProxy& TransportFixture::server(FaultProxy::Ports ports) {
  if (!server_) server_ = std::make_unique<FaultProxy>(folder_, ports);
  return *server_;
}

client::Transport& TransportFixture::transport() {
  if (!transport_) transport_ = std::make_unique<client::Transport>(settings);
  return *transport_;
}

HttpResult TransportFixture::get(const std::string& address) {
  return transport().fetch(requestFor(address));
}

HttpAnswer TransportFixture::answerOf(const HttpRequest& request) {
  HttpResult result = transport().fetch(request);
  if (const auto* const failure = std::get_if<HttpFailure>(&result)) {
    ADD_FAILURE() << request.address << ": " << failure->text;
    return {};
  }
  return std::get<HttpAnswer>(std::move(result));
}

HttpAnswer TransportFixture::answerOf(const std::string& address) { return answerOf(requestFor(address)); }

HttpFailure TransportFixture::failureOf(const HttpRequest& request) {
  HttpResult result = transport().fetch(request);
  if (const auto* const answer = std::get_if<HttpAnswer>(&result)) {
    ADD_FAILURE() << request.address << ": answered with " << answer->status;
    return {};
  }
  return std::get<HttpFailure>(std::move(result));
}

HttpFailure TransportFixture::failureOf(const std::string& address) { return failureOf(requestFor(address)); }

std::vector<int> TransportFixture::pauses() const {
  const std::lock_guard lock(mutex_);
  return pauses_;
}

HttpRequest requestFor(const std::string& address) {
  HttpRequest request;
  request.address = address;
  return request;
}

TemporaryVariable::TemporaryVariable(std::string name, const char* value) : name_(std::move(name)) {
  if (const char* const former = std::getenv(name_.c_str())) former_ = former;
  if (value == nullptr) {
    unsetenv(name_.c_str());
  } else {
    setenv(name_.c_str(), value, 1);
  }
}

TemporaryVariable::~TemporaryVariable() {
  if (former_) {
    setenv(name_.c_str(), former_->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

}  // namespace vlclientui::test
