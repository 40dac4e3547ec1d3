#include "servers/FaultProxy.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "servers/WebAnswer.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

fs::path newFolder() {
  std::string pattern = (fs::temp_directory_path() / "vlclientui-certificates-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no folder for certificates";
  return pattern;
}

// "other=2 tls=3"
std::map<std::string, std::string> parsedPairs(const std::string& line) {
  std::map<std::string, std::string> told;
  std::istringstream words(line);
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    told[word.substr(0, equals)] = word.substr(equals + 1);
  }
  return told;
}

}  // namespace

FaultProxy::FaultProxy(const fs::path& folder, Ports ports) {
  std::vector<std::string> options{"--folder", folder.string()};
  if (ports == Ports::Secured) {
    certificates_ = newFolder();
    options.insert(options.end(), {"--certificates", certificates_.string()});
  }
  start(std::move(options));
}

FaultProxy::FaultProxy(const std::string& upstream) { start({"--upstream", upstream}); }

FaultProxy::~FaultProxy() {
  process_.reset();
  if (!certificates_.empty()) fs::remove_all(certificates_);
}

void FaultProxy::start(std::vector<std::string> options) {
  std::vector<std::string> command{pythonProgram(), "-B", sourceFolder() + "/tests/servers/fault_proxy.py"};
  command.insert(command.end(), options.begin(), options.end());
  process_ = std::make_unique<ServerProcess>(command);
  told_ = parsedPairs(ask("ports"));
}

std::string FaultProxy::address(const std::string& path) const { return process_->address() + path; }

std::string FaultProxy::otherAddress(const std::string& path) const {
  return "http://127.0.0.1:" + told_.at("other") + path;
}

std::string FaultProxy::secured(const std::string& port, const std::string& path) const {
  return "https://localhost:" + told_.at(port) + path;
}

std::string FaultProxy::securedAddress(const std::string& path) const { return secured("tls", path); }

std::string FaultProxy::expiredAddress(const std::string& path) const { return secured("expired", path); }

std::string FaultProxy::http2Address() const { return secured("http2", "/"); }

std::string FaultProxy::ask(const std::string& command) const {
  const WebAnswer answer = fetchPlainly(address("/control/" + command));
  EXPECT_EQ(answer.status, 200) << command << ": " << answer.body;
  return answer.body;
}

void FaultProxy::tell(const std::string& command) const { EXPECT_EQ(ask(command), "ok") << command; }

void FaultProxy::arm(int times, const std::string& fault) const {
  tell("arm/" + std::to_string(times) + "/" + fault);
}

void FaultProxy::always(const std::string& fault) const { tell("every/" + fault); }

void FaultProxy::alwaysAfter(std::size_t requests, const std::string& fault) const {
  tell("after/" + std::to_string(requests) + "/" + fault);
}

void FaultProxy::release() const { tell("release"); }

void FaultProxy::clear() const { tell("clear"); }

FaultProxy::Counts FaultProxy::counts() const {
  Counts counts;
  std::istringstream(ask("counts")) >> counts.requests >> counts.connections >> counts.together >>
      counts.open;
  return counts;
}

std::vector<std::string> FaultProxy::requests() const {
  std::istringstream lines(ask("requests"));
  std::vector<std::string> requests;
  for (std::string line; std::getline(lines, line);) requests.push_back(line);
  return requests;
}

std::string encoded(const std::string& text) {
  std::string out;
  for (const char letter : text) {
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(letter));
    out += std::isalnum(static_cast<unsigned char>(letter)) != 0 ? std::string(1, letter) : code.data();
  }
  return out;
}

}  // namespace vlclientui::test
