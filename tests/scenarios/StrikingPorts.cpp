#include "scenarios/StrikingPorts.h"

#include <algorithm>

namespace vlclientui::test {

void Strike::arm(std::size_t at, std::function<void()> deed) {
  calls_ = 0;
  at_ = at;
  struck_ = false;
  armed_ = true;
  deed_ = std::move(deed);
}

void Strike::call() {
  if (!armed_ || ++calls_ != at_) return;
  armed_ = false;
  struck_ = true;
  deed_();
  armed_ = true;
}

StrikingToolkit& StrikingToolkit::called() {
  strike_.call();
  return *this;
}

MessageAnswer StrikingToolkit::doShowMessage(const MessageBox& box) {
  strike_.call();
  return box.buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
}

void StrikingToolkit::runModal(Form& form) {
  Acts acts;
  if (!visits.empty()) {
    acts = std::move(visits.front());
    visits.pop_front();
  }
  strike_.call();
  const auto keptAlive = form.shared_from_this();
  const auto window = form.windowNumber();
  const auto stands = [&form, window] { return form.windowNumber() == window; };
  runModal_(form, [&] {
    for (const auto& act : acts) {
      if (stands()) act(form);
    }
    if (stands()) form.userCloses();
  });
}

/// One engine before another.
class StrikingPlexa final : public Plexa, public std::enable_shared_from_this<StrikingPlexa> {
 public:
  StrikingPlexa(std::shared_ptr<Plexa> inner, StrikingPlexaFactory& factory)
      : inner_(std::move(inner)), factory_(factory) {}

  void passEventsOn() {
    inner_->Notify.connect([self = weak_from_this()](Plexa&, const PlexaEvent& event) {
      if (const auto engine = self.lock()) engine->Notify.raise(*engine, event);
    });
  }

  void ParentWindow(WindowHandle window) override { called().ParentWindow(window); }
  void DataRootPath(const std::string& path) override { called().DataRootPath(path); }
  void Visible(bool visible) override { called().Visible(visible); }
  void Caption(const std::string& caption) override { called().Caption(caption); }
  void Width(std::int32_t pixels) override { called().Width(pixels); }
  void Height(std::int32_t pixels) override { called().Height(pixels); }
  void Left(std::int32_t pixels) override { called().Left(pixels); }
  void Top(std::int32_t pixels) override { called().Top(pixels); }
  void DataXml(const std::string& xml) override { called().DataXml(xml); }
  std::string DataXml() const override { return inner_->DataXml(); }
  void AttributeDefinition(const std::string& text) override { called().AttributeDefinition(text); }
  std::string AttributeDefinition() const override { return inner_->AttributeDefinition(); }
  void FormDefinition(const std::string& text) override { called().FormDefinition(text); }
  std::string FormDefinition() const override { return inner_->FormDefinition(); }
  void ModalFrame(bool modalFrame) override { called().ModalFrame(modalFrame); }
  void EmbeddedMode(bool embedded) override { called().EmbeddedMode(embedded); }
  std::string GetResultXml() override { return called().GetResultXml(); }
  bool Commit() override { return called().Commit(); }
  bool Show() override {
    factory_.shown_ = shared_from_this();
    return called().Show();
  }
  std::string GetTemplateXml() override { return called().GetTemplateXml(); }
  bool SetOption(const std::string& name, const std::string& value) override {
    return called().SetOption(name, value);
  }
  std::shared_ptr<PlexaControl> FindControl(const std::string& name) override {
    return called().FindControl(name);
  }

 private:
  Plexa& called() {
    const auto inner = inner_;
    factory_.strike_.call();
    return *inner;
  }

  std::shared_ptr<Plexa> inner_;
  StrikingPlexaFactory& factory_;
};

std::shared_ptr<Plexa> StrikingPlexaFactory::createPlexa() {
  strike_.call();
  auto engine = std::make_shared<StrikingPlexa>(inner_->createPlexa(), *this);
  engine->passEventsOn();
  made_.emplace_back(engine);
  return engine;
}

void StrikingPlexaFactory::raise(const PlexaEvent& event) const {
  if (const auto engine = shown_.lock()) engine->Notify.raise(*engine, event);
}

std::size_t StrikingPlexaFactory::alive() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(made_, [](const auto& made) { return !made.expired(); }));
}

}  // namespace vlclientui::test
