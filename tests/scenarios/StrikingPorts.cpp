#include "scenarios/StrikingPorts.h"

#include <algorithm>

namespace vlclientui::test {

void Strike::arm(std::size_t at, std::function<void()> deed) {
  calls_ = 0;
  act_ = 0;
  at_ = at;
  if (at == 0) {
    seen_ = {};
    worthStriking_.clear();
  }
  struck_ = false;
  armed_ = true;
  deed_ = std::move(deed);
}

void Strike::call(Asked asked) {
  if (!armed_) return;
  ++calls_;
  if (at_ == 0) see(asked);
  if (calls_ != at_) return;
  armed_ = false;
  struck_ = true;
  deed_();
  armed_ = true;
}

void Strike::see(Asked asked) {
  if (sparesOthers_ && asked == Asked::Others && !sweepsEveryCall()) return;
  if (sweepsEveryCall() || seen_.isNew(act_)) worthStriking_.push_back(calls_);
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
      strike_.nextAct();
      if (stands()) act(form);
    }
    if (stands()) form.userCloses();
  });
}

/// One control of an engine before another.
class StrikingControl final : public PlexaControl {
 public:
  StrikingControl(std::shared_ptr<PlexaControl> inner, Strike& strike)
      : inner_(std::move(inner)), strike_(strike) {}

  std::int32_t ListCount() const override { return called().ListCount(); }
  std::string List(std::int32_t index) const override { return called().List(index); }
  std::string Text() const override { return called().Text(); }
  void Visible(bool visible) override { called().Visible(visible); }
  void Enabled(bool enabled) override { called().Enabled(enabled); }

 private:
  [[nodiscard]] PlexaControl& called() const {
    strike_.call();
    return *inner_;
  }

  std::shared_ptr<PlexaControl> inner_;
  Strike& strike_;
};

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
  std::string DataXml() const override { return called().DataXml(); }
  void AttributeDefinition(const std::string& text) override { called().AttributeDefinition(text); }
  std::string AttributeDefinition() const override { return called().AttributeDefinition(); }
  void FormDefinition(const std::string& text) override { called().FormDefinition(text); }
  std::string FormDefinition() const override { return called().FormDefinition(); }
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
    auto control = called().FindControl(name);
    if (!control) return nullptr;
    return std::make_shared<StrikingControl>(std::move(control), factory_.strike_);
  }

 private:
  /// Whoever calls keeps this engine alive.
  [[nodiscard]] Plexa& called() const {
    factory_.strike_.call();
    return *inner_;
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
