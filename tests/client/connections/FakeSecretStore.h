#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "client/connections/SecretStore.h"

namespace vlclientui::client {

/// A secret store in memory, which may refuse.
class FakeSecretStore final : public SecretStore {
 public:
  std::string keep(const std::string& key, const std::string& label, const std::string& secret) override {
    if (onCall) onCall();
    if (!problem.empty()) return problem;
    labels[key] = label;
    secrets[key] = secret;
    return {};
  }
  Found find(const std::string& key) override {
    ++asked;
    if (!problem.empty()) return {std::nullopt, problem};
    const auto found = secrets.find(key);
    const Found answer{found == secrets.end() ? std::nullopt : std::optional(found->second), ""};
    if (onFound) onFound();
    return answer;
  }
  std::string forget(const std::string& key) override {
    if (onCall) onCall();
    if (problem.empty()) secrets.erase(key);
    return problem;
  }

  std::map<std::string, std::string> secrets;
  std::map<std::string, std::string> labels;
  std::string problem;            ///< told for each call
  std::function<void()> onCall;   ///< before a secret is kept or forgotten
  std::function<void()> onFound;  ///< after a secret was looked for, before it is handed out
  int asked = 0;
};

}  // namespace vlclientui::client
