// The pages that stand in a window of the host.

#include "scenarios/SweepCases.h"

namespace vlclientui::test {

namespace {

/// The host hears of a lock.
class Listener final : public IServicePropertiesCallback {
 public:
  explicit Listener(Strike& strike) : strike_(strike) {}
  void OnServicePropertiesChanged(const std::string&) override { strike_.call(); }

 private:
  Strike& strike_;
};

/// A page of a service in the host's window: what a person does there, then what the host does.
template <class Page, Page& (ServicePropertiesDialog::*pageOf)(), PropertyPageId id>
class PageCase : public SweepCase {
 public:
  using Act = std::function<void(typename Page::Controls&)>;

  PageCase(SweepWorld& world, std::vector<Act> acts)
      : world_(world), acts_(std::move(acts)), dialog_(std::make_shared<ServicePropertiesDialog>()) {
    dialog_->SetCallback(std::make_shared<Listener>(world_.strike));
  }

  void run() override {
    queryInterface<IServicePropertiesDialog>(dialog_)->Init("", nullptr, world_.service);
    if (const auto held = dialog_) held->ShowPropertyPage(id, world_.stage->hostWindow());
    for (const Act& act : acts_) actOn(act);
    const auto operate = [this](auto operation) {
      if (const auto held = dialog_) static_cast<void>(((*held).*operation)());
    };
    operate(&ServicePropertiesDialog::Refresh);
    operate(&ServicePropertiesDialog::HasChanged);
    operate(&ServicePropertiesDialog::GetUpdatedProperties);
    close();
  }
  std::shared_ptr<Form> window() override {
    return dialog_ ? ((*dialog_).*pageOf)().shared_from_this() : nullptr;
  }
  void close() override {
    if (const auto held = dialog_) held->Close(id);
  }
  std::string showAgain() override {
    return dialog_->ShowPropertyPage(id, world_.stage->hostWindow()) ? std::string() : threadState().gStatus;
  }
  void release() override { dialog_.reset(); }
  std::string told() override { return toldByProperties(*dialog_); }

 private:
  void actOn(const Act& act) {
    world_.strike.nextAct();
    const auto page = window();
    if (page && page->loaded()) act(dynamic_cast<Page&>(*page).controls());
  }

  SweepWorld& world_;
  std::vector<Act> acts_;
  std::shared_ptr<ServicePropertiesDialog> dialog_;
};

using PropertiesCase = PageCase<ServiceProperties, &ServicePropertiesDialog::propertiesPage,
                                PropertyPageId::PropertyPageProperties>;
using MetadataCase =
    PageCase<SourceMetadata, &ServicePropertiesDialog::metadataPage, PropertyPageId::PropertyPageMetadata>;
using ViewPointCase =
    PageCase<ViewPoint, &ServicePropertiesDialog::viewPointPage, PropertyPageId::PropertyPageViewPoint>;

std::unique_ptr<SweepCase> propertiesCase(SweepWorld& world) {
  const StrikingPlexaFactory& engines = *world.engines;
  return std::make_unique<PropertiesCase>(
      world, std::vector<PropertiesCase::Act>{[&engines](auto&) {
                                                engines.raise({"Change", "MosaicMethod", "Viewpoint", "", 0});
                                              },
                                              [&engines](auto&) {
                                                engines.raise({"Click", "ViewPointControl", "", "", 0});
                                              },
                                              [](auto& all) { all.SaveAs.userClicks(); }});
}

/// A service of the newer generation, whose properties cannot be saved.
std::unique_ptr<SweepCase> newerPropertiesCase(SweepWorld& world) {
  world.service->type = "IOVLImageService";
  world.service->saveAnswer = false;
  return propertiesCase(world);
}

std::unique_ptr<SweepCase> metadataCase(SweepWorld& world) {
  std::vector<MetadataCase::Act> acts;
  for (const auto& act : metadataWalk()) acts.emplace_back(act);
  return std::make_unique<MetadataCase>(world, std::move(acts));
}

std::unique_ptr<SweepCase> viewPointCase(SweepWorld& world) {
  return std::make_unique<ViewPointCase>(
      world, std::vector<ViewPointCase::Act>{[](auto& all) { all.MoveNE.userClicks(); },
                                             [](auto& all) { all.MoveNE.userClicks(); },
                                             [](auto& all) { all.Center.userClicks(); },
                                             [](auto& all) { all.uiTxtBoxX.userTypes("12"); }});
}

}  // namespace

std::string toldByProperties(ServicePropertiesDialog& dialog) {
  return threadState().gStatus + "|" + dialog.GetUpdatedProperties();
}

std::vector<std::function<void(MetadataControls&)>> metadataWalk() {
  return {[](MetadataControls& all) { all.uiTreeView.userSelects("Image"); },
          [](MetadataControls& all) { all.uiTreeView.userSelects("Service"); },
          [](MetadataControls& all) { all.TabStrip2.userSelects(1); },
          [](MetadataControls& all) { all.uiTreeView.userSelects("ServerProcess"); },
          [](MetadataControls& all) { all.uiTreeView.userSelects("Raster"); },
          [](MetadataControls& all) { all.TabStrip1.userSelects(1); },
          [](MetadataControls& all) { all.TabStrip1.userSelects(2); },
          [](MetadataControls& all) {
            if (all.RasterList.count() > 1) all.RasterList.userSelects(1);
          },
          [](MetadataControls& all) {
            if (!all.ListView1.rows().empty()) all.ListView1.userSelects(0);
          },
          [](MetadataControls& all) { all.ListView1.userPresses('C', keyModifier::control); },
          [](MetadataControls& all) { all.Command7.userClicks(); },
          [](MetadataControls& all) { all.Save.userClicks(); }};
}

std::vector<SweepScenario> pageScenarios() {
  return {{"properties page", propertiesCase},
          {"properties page of a newer service", newerPropertiesCase},
          {"metadata page", metadataCase},
          {"viewpoint page", viewPointCase}};
}

std::vector<SweepScenario> sweepScenarios() {
  auto all = modalScenarios();
  for (auto& page : pageScenarios()) all.push_back(std::move(page));
  return all;
}

}  // namespace vlclientui::test
