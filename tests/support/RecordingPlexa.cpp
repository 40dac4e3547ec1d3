#include "support/RecordingPlexa.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {

namespace {

/// Logs as "1.@MosaicMethod.List 0".
class RecordingSubControl : public PlexaControl {
 public:
  RecordingSubControl(std::shared_ptr<PlexaRecord> record, int engine, std::string name)
      : record_(std::move(record)), engine_(engine), name_(std::move(name)) {}

  std::int32_t ListCount() const override {
    log("ListCount");
    return static_cast<std::int32_t>(state().entries.size());
  }
  std::string List(std::int32_t index) const override {
    log("List", std::to_string(index));
    return state().entries.at(static_cast<std::size_t>(index));
  }
  std::string Text() const override {
    log("Text");
    return state().text;
  }
  void Visible(bool visible) override {
    log("Visible", visible ? "true" : "false");
    state().visible = visible;
  }
  void Enabled(bool enabled) override {
    log("Enabled", enabled ? "true" : "false");
    state().enabled = enabled;
  }

 private:
  void log(const std::string& operation, const std::string& value = {}) const {
    record_->log(std::to_string(engine_) + "." + name_, operation, value);
  }
  [[nodiscard]] SubControlState& state() const { return record_->subControls.at(name_); }

  std::shared_ptr<PlexaRecord> record_;
  int engine_;
  std::string name_;
};

}  // namespace

void PlexaRecord::log(const std::string& prefix, const std::string& operation, const std::string& value) {
  calls.push_back(prefix + "." + operation + (value.empty() ? "" : " " + value));
  if (onCall) onCall(calls.back());
  const bool isCallToFail = calls.size() == failAtCall;
  if (operation == failAt || isCallToFail) throw RuntimeFailure("the engine fails at " + operation);
}

RecordingPlexa::~RecordingPlexa() {
  record_->calls.push_back(std::to_string(number_) + ".released");
  if (record_->onCall) record_->onCall(record_->calls.back());
}

std::string RecordingPlexa::GetResultXml() {
  log("GetResultXml");
  return record_->resultXml.value_or(kept("DataXml"));
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
  if (!record_->subControls.contains(name)) return nullptr;
  return std::make_shared<RecordingSubControl>(record_, number_, name);
}

void RecordingPlexa::log(const std::string& operation, const std::string& value) {
  record_->log(std::to_string(number_), operation, value);
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
