#include "engine/Engine.h"
#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "scenarios/SweepStage.h"

namespace vlclientui::test {

namespace {

class HeadlessSweepStage final : public SweepStage {
 public:
  void equip(Platform& platform) override {
    platform.toolkit = toolkit_;
    const auto toolkit = toolkit_;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<headless::HeadlessSurfaceFactory>(headless::ChildWindowHooks{
                          [toolkit](WindowHandle parent, const std::string& text) {
                            return toolkit->addChildWindow(parent, text);
                          },
                          [toolkit](WindowHandle window) { toolkit->removeWindow(window); }}));
  }
  WindowHandle hostWindow() override {
    if (!toolkit_->hasWindow(host_)) host_ = toolkit_->addHostWindow("host");
    return host_;
  }
  void destroyHostWindow() override { toolkit_->removeWindow(host_); }
  void runModal(Form& form, const std::function<void()>& script) override {
    if (!form.loaded()) return toolkit_->runModal(form);
    toolkit_->scriptModal([&script](Form&) { script(); });
    toolkit_->runModal(form);
  }
  void settle() override {}

 private:
  std::shared_ptr<headless::HeadlessToolkit> toolkit_ = std::make_shared<headless::HeadlessToolkit>();
  WindowHandle host_ = 0;
};

}  // namespace

std::unique_ptr<SweepStage> makeSweepStage() { return std::make_unique<HeadlessSweepStage>(); }

}  // namespace vlclientui::test
