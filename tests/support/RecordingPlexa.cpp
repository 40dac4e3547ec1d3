#include "support/RecordingPlexa.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {

RecordingPlexa::~RecordingPlexa() { record_->calls.push_back(std::to_string(number_) + ".released"); }

std::string RecordingPlexa::GetResultXml() {
  log("GetResultXml");
  return kept("DataXml");
}

bool RecordingPlexa::Commit() {
  log("Commit");
  return true;
}

bool RecordingPlexa::Show() {
  log("Show");
  if (record_->duringShow) record_->duringShow();
  return record_->showAnswer;
}

std::string RecordingPlexa::GetTemplateXml() {
  log("GetTemplateXml");
  return record_->templateXml;
}

bool RecordingPlexa::SetOption(const std::string& name, const std::string& value) {
  log("SetOption " + name, value);
  properties_[name] = value;
  return true;
}

std::shared_ptr<PlexaControl> RecordingPlexa::FindControl(const std::string& name) {
  log("FindControl", name);
  return nullptr;
}

void RecordingPlexa::log(const std::string& operation, const std::string& value) {
  record_->calls.push_back(std::to_string(number_) + "." + operation + (value.empty() ? "" : " " + value));
  const bool isCallToFail = record_->calls.size() == record_->failAtCall;
  if (operation == record_->failAt || isCallToFail) throw RuntimeFailure("the engine fails at " + operation);
}

void RecordingPlexa::keep(const std::string& property, const std::string& value) {
  log(property, value);
  properties_[property] = value;
}

std::string RecordingPlexa::kept(const std::string& property) const {
  const auto found = properties_.find(property);
  return found == properties_.end() ? std::string() : found->second;
}

std::shared_ptr<Plexa> RecordingPlexaFactory::createPlexa() {
  auto made = std::make_shared<RecordingPlexa>(record, static_cast<int>(engines_.size()) + 1);
  engines_.push_back(made);
  return made;
}

std::vector<std::string> RecordingPlexaFactory::callsFrom(std::size_t start) const {
  return {record->calls.begin() + static_cast<std::ptrdiff_t>(start), record->calls.end()};
}

std::shared_ptr<RecordingPlexa> RecordingPlexaFactory::engine(int number) const {
  return engines_.at(static_cast<std::size_t>(number - 1)).lock();
}

std::shared_ptr<RecordingPlexa> RecordingPlexaFactory::lastEngine() const {
  for (auto engine = engines_.rbegin(); engine != engines_.rend(); ++engine) {
    if (auto living = engine->lock()) return living;
  }
  return nullptr;
}

std::string RecordingPlexaFactory::lastListValues() const {
  const std::string operation = ".SetOption List_Values ";
  for (auto call = record->calls.rbegin(); call != record->calls.rend(); ++call) {
    const auto at = call->find(operation);
    if (at != std::string::npos) return call->substr(at + operation.size());
  }
  return {};
}

}  // namespace vlclientui::test
